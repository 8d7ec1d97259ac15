#include "screens/report_screen.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/status.h"
#include "platform/dialogs.h"
#include "platform/printing.h"
#include "platform/services.h"
#include "platform/widgets/report_output.h"
#include "platform/widgets/report_viewer.h"

#include <QApplication>
#include <QFileInfo>
#include <QVBoxLayout>

namespace {

void say_what_failed(const QString &what)
{
    say(what + "\n\n" + session.err_description, "Tessaly", message_icon::exclamation);
}

bool may_be_written(const QString &path)
{
    return !QFileInfo::exists(path) ||
           yes_no_before_loss("The file " + QFileInfo(path).fileName() + " is there already. Replace it?");
}

}

report_screen::report_screen(const QString &name, const QString &title, const QString &empty_text, QWidget *parent)
    : screen(parent), CRViewer(new report_viewer(this))
{
    setObjectName(name);
    setWindowTitle(title);
    setMinimumSize(480, 320);
    CRViewer->setObjectName("CRViewer");
    CRViewer->set_empty_text(empty_text);
    auto *rows = new QVBoxLayout(this);
    rows->addWidget(CRViewer);
    connect(CRViewer, &report_viewer::print_wanted, this, &report_screen::print_b_Click);
    connect(CRViewer, &report_viewer::save_wanted, this, &report_screen::save_b_Click);
    connect(CRViewer, &report_viewer::close_wanted, this, &screen::unload);
}

QByteArray report_screen::log_name() const
{
    return objectName().toLatin1() + ".frm";
}

void report_screen::Load()
{
    QApplication::setOverrideCursor(Qt::WaitCursor); // each row is laid out: thousands take some seconds
    std::shared_ptr<paged_report> report;
    if (!guarded(log_name(), "Form_Load", [&] { report = make_report(); }))
        CRViewer->set_empty_text("The report could not be read.\n" + session.err_description);
    CRViewer->ViewReport(std::move(report));
    QApplication::restoreOverrideCursor();
    CRViewer->take_focus();
}

void report_screen::answer(const char *routine, void (report_screen::*deed)())
{
    if (!guarded(log_name(), routine, [&] { (this->*deed)(); }))
        status_line(session.err_description);
}

void report_screen::print_b_Click()
{
    answer("print_b", &report_screen::print_report);
}

void report_screen::save_b_Click()
{
    answer("save_b", &report_screen::save_report);
}

void report_screen::print_report()
{
    if (services.printing->availablePrinterNames().isEmpty())
        return say("No printer is set up on this computer.\n\nSave as PDF keeps the report in a file, which can be "
                   "printed elsewhere.");
    bool printed = false;
    if (!guarded(log_name(), "print_b", [&] { printed = services.printing->PrintReport(*CRViewer->report()); }))
        return say_what_failed("The report could not be printed.");
    if (printed)
        status_line("The report was handed to the printer.");
}

void report_screen::save_report()
{
    const auto chosen = services.dialogs->ShowSave(CRViewer->report()->title() + ".pdf", "PDF files|*.pdf");
    if (!chosen)
        return;
    const QString path = chosen->endsWith(u".pdf", Qt::CaseInsensitive) ? *chosen : *chosen + ".pdf";
    if (!may_be_written(path))
        return;
    QApplication::setOverrideCursor(Qt::WaitCursor); // a thousand pages take some seconds
    const bool all_went = guarded(log_name(), "save_b", [&] { save_as_pdf(*CRViewer->report(), path); });
    QApplication::restoreOverrideCursor();
    if (!all_went)
        return say_what_failed("The report could not be saved.");
    status_line("The report was saved as " + path);
}
