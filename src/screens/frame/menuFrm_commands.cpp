// The console's commands: what each entry of the menu does. The entries themselves: menu_tree.h.
#include "frame/error_log.h"
#include "frame/help.h"
#include "frame/messages.h"
#include "frame/restore.h"
#include "frame/session.h"
#include "frame/status.h"
#include "frame/store.h"
#include "intake/progress_page.h"
#include "screens/background_colour.h"
#include "screens/frame/backup_frm.h"
#include "screens/frame/closing.h"
#include "screens/frame/frmAbout.h"
#include "screens/frame/frmSplash.h"
#include "screens/frame/menuFrm.h"
#include "screens/frame/outbox_frm.h"
#include "screens/intake/mailfrm.h"
#include "screens/intake/mfetchinprogress_frm.h"
#include "screens/maps/map_wizard_doors.h"
#include "screens/preferences/OnlinePref.h"
#include "screens/preferences/page_list.h"

#include <QAction>
#include <QStatusBar>

void menuFrm::connect_commands()
{
    works("bkp_folder_mnu", &menuFrm::bkp_folder_mnu_Click);
    works("rst_bkp", &menuFrm::rst_bkp_Click);
    works("fetchmail", &menuFrm::fetchmail_Click);
    works("mmw", &menuFrm::mmw_Click);
    works("mauditor_mnu", &menuFrm::mauditor_mnu_Click);
    works("outbox_mnu", &menuFrm::outbox_mnu_Click);
    works("lprint", &menuFrm::lprint_Click);
    works("general", &menuFrm::general_Click);
    works("account", &menuFrm::account_Click);
    works("mail_client_mnu", &menuFrm::mail_client_mnu_Click);
    works("exit", &menuFrm::exit_Click);
    works("contents", &menuFrm::contents_Click);
    works("showtips", &menuFrm::showtips_Click);
    works("about", &menuFrm::about_Click);
    works("openex_mnu", &menuFrm::openex_mnu_Click);
    works("openmy_mnu", &menuFrm::openmy_mnu_Click);
}

QAction *menuFrm::command(const char *name) const
{
    return findChild<QAction *>(name);
}

void menuFrm::works(const char *name, void (menuFrm::*handler)())
{
    command(name)->setEnabled(true);
    connect(command(name), &QAction::triggered, this, handler);
}

void menuFrm::fetchmail_Click()
{
    session.no_fetch = false;
    setCursor(Qt::WaitCursor);
    const bool page_written =
        guarded("menuFrm.frm", "fetchmail", [this] { intake::write_fetch_animation(GetBkColor(*this)); });
    if (page_written)
        the<mfetchinprogress_frm>().show_modal();
    unsetCursor();
}

void menuFrm::bkp_folder_mnu_Click()
{
    the<backup_frm>().show();
}

// A restored back-up ends the program, and with it every open screen.
void menuFrm::rst_bkp_Click()
{
    if (!all_screens_may_be_left())
        return;
    bool restored = false;
    setCursor(Qt::WaitCursor); // looking at a large file takes its time
    const bool good = guarded("menuFrm.frm", "rst_bkp", [&] { restored = restore_backup(); });
    unsetCursor();
    if (!good) {
        const QString words = "The back-up was not restored. " + session.err_description;
        if (!guarded("menuFrm.frm", "rst_bkp", [&words] { say(words, "Tessaly", message_icon::exclamation); }))
            status_line(words);
        guarded("menuFrm.frm", "rst_bkp", open_store_if_closed);
    }
    if (!restored)
        return;
    closing = true;
    end_program();
}

void menuFrm::mauditor_mnu_Click()
{
    session.no_fetch = true;
    the<mailfrm>().show();
}

void menuFrm::mmw_Click()
{
    open_map_wizard();
}

void menuFrm::outbox_mnu_Click()
{
    the<outbox_frm>().show();
}

// What a label run would print lies in formula_tbl.
void menuFrm::lprint_Click()
{
    guarded("menuFrm.frm", "lprint", [] {
        open_store_if_closed();
        ado::Recordset labels;
        labels.Open("select * from formula_tbl", *session.store_connection);
        if (labels.EOF_())
            ask_in_vain("You have not generated the labels yet. Would you like to generate labels now?",
                        "Label Printing", "The screens that make labels are not there yet.");
        else
            say("Labels cannot be printed yet: the screen that prints them is not there yet.", "Label Printing");
    });
}

void menuFrm::general_Click()
{
    open_page(preference_page::general);
}

void menuFrm::account_Click()
{
    open_page(preference_page::accounts);
}

void menuFrm::mail_client_mnu_Click()
{
    open_page(preference_page::mail_client);
}

void menuFrm::exit_Click()
{
    close();
}

void menuFrm::contents_Click()
{
    open_help({});
}

void menuFrm::open_help(const QString &topic)
{
    if (!show_help(topic))
        statusBar()->showMessage("There is no help file beside the program."); // passes with the next tip
}

void menuFrm::showtips_Click()
{
    the<frmSplash>().show_tips();
}

void menuFrm::about_Click()
{
    the<frmAbout>().show_modal();
}

void menuFrm::openex_mnu_Click()
{
    OnlinePref::openex_mnu_Click();
}

void menuFrm::openmy_mnu_Click()
{
    OnlinePref::openmy_mnu_Click();
}
