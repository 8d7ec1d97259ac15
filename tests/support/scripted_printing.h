// Printers of a test: their names, and what was printed on them. In force as long as it lives. Nothing is painted.
#pragma once
#include "platform/printing.h"
#include "platform/run_time_error.h"
#include "platform/services.h"
#include "platform/widgets/paged_report.h"

class scripted_printing : public printing_service {
public:
    scripted_printing() { services.printing = this; }
    ~scripted_printing() override { services.printing = nullptr; }
    scripted_printing(const scripted_printing &) = delete;
    scripted_printing &operator=(const scripted_printing &) = delete;

    QStringList names;
    bool user_agrees = true;
    bool fails = false;
    QStringList printed; // titles

    QStringList availablePrinterNames() override { return names; }
    bool PrintReport(paged_report &report) override
    {
        if (fails)
            throw run_time_error{482, QStringLiteral("Printer error")};
        if (user_agrees)
            printed += report.title();
        return user_agrees;
    }
};
