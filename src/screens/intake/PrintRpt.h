// The report on the sent mails, on pages. What it says: intake/printed_report.h; what makes it: sent_report_bar.h.
#pragma once
#include "screens/report_screen.h"

class PrintRpt : public report_screen {
    Q_OBJECT
public:
    explicit PrintRpt(QWidget *parent = nullptr);

protected:
    std::shared_ptr<paged_report> make_report() override;
};
