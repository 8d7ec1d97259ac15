// The base of the screens that show a report: the viewer, and what its buttons do. Which report: PrintRpt.h.
#pragma once
#include "screens/screen.h"
#include <memory>

class paged_report;
class report_viewer;

class report_screen : public screen {
    Q_OBJECT
public:
    // name as in the log and for the help, such as "PrintRpt".
    report_screen(const QString &name, const QString &title, const QString &empty_text, QWidget *parent = nullptr);
    void Load() override;

    QSize sizeHint() const override { return {900, 640}; }

protected:
    virtual std::shared_ptr<paged_report> make_report() = 0; // nullptr: there is nothing to show

private:
    void print_b_Click();
    void save_b_Click();
    void answer(const char *routine, void (report_screen::*deed)()); // guarded, as a box can fail too
    void print_report();
    void save_report();
    QByteArray log_name() const;

    report_viewer *CRViewer;
};
