// The printers of the desktop. Behind it: CUPS through Qt (screens/desktop_printing.h), a script in tests.
#pragma once
#include <QStringList>

class paged_report;

class printing_service {
public:
    virtual ~printing_service() = default;
    virtual QStringList availablePrinterNames() = 0; // empty: there is none to print on
    // Asks for printer and pages, and prints. False: the user thought better of it. Throws run_time_error.
    virtual bool PrintReport(paged_report &report) = 0;
};
