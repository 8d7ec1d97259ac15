#include "screens/preferences/OnlinePref.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/status.h"
#include "frame/store.h"
#include "onlineforms/form_file.h"
#include "platform/dialogs.h"
#include "platform/services.h"
#include "platform/winopen.h"
#include "screens/preferences/page_list.h"
#include "ui_OnlinePref.h"

namespace {

const char *const online_page_in_log = "Onlinepref.frm";
const char *const builder_not_there = "The form builder is not there yet.";
const char *const page_files = "htm(*.htm)|*.htm|html(*.html)|*.html|*.html , *.htm|*.html;*.htm";

// The program has no preview of its own yet; the desktop's browser shows the page as a visitor sees it.
void show_form_file(const QString &path)
{
    if (winopen(path))
        status_line(path + " is shown in your browser.");
    else
        status_line("No program on this desktop shows " + path + ".");
}

void open_form_file(const char *routine)
{
    const bool is_read = guarded(online_page_in_log, routine, [] {
        const std::optional<QString> path = services.dialogs->ShowOpen({}, page_files);
        if (!path)
            return;
        const QString fault = onlineforms::why_not_form(*path);
        if (!fault.isEmpty())
            return say(fault);
        show_form_file(*path);
    });
    if (!is_read)
        status_line("The page cannot be opened: " + session.err_description);
}

}

OnlinePref::OnlinePref(QWidget *parent) : screen(parent), ui(std::make_unique<Ui::OnlinePref>())
{
    using enum preference_page;
    ui->setupUi(this);
    fill_page_list(*ui->Combo1, online_form);
    lead_to_page(*ui->Command3, accounts);
    lead_to_page(*ui->Command4, labels);
    ui->not_there_l->setText(builder_not_there);
    for (QPushButton *command : {ui->Command5, ui->Command6}) {
        command->setEnabled(false);
        command->setToolTip(builder_not_there);
    }

    connect(ui->help_b, &QPushButton::clicked, this, &OnlinePref::show_own_help);
    connect(ui->close_b, &QPushButton::clicked, this, &OnlinePref::unload);
}

OnlinePref::~OnlinePref() = default;

void OnlinePref::Load()
{
    if (!guarded(online_page_in_log, "Form_load", open_store_if_closed))
        status_line("The store cannot be opened: " + session.err_description);
    ui->Combo1->setFocus();
}

void OnlinePref::openex_mnu_Click()
{
    open_form_file("openex_mnu_Click");
}

void OnlinePref::openmy_mnu_Click()
{
    open_form_file("openmy_mnu_Click");
}
