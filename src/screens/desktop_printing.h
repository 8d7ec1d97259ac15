// The desktop's print dialog, over the active window.
#pragma once
#include "platform/printing.h"

class desktop_printing : public printing_service {
public:
    QStringList availablePrinterNames() override;
    bool PrintReport(paged_report &report) override;
};
