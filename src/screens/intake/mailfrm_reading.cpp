// How the Mail Auditor reads: the selected mail's text, and its lists anew when another screen has changed the mails.
// The screen: mailfrm.cpp. What the text is shown in: reading_pane.h.
#include "frame/account_list.h"
#include "frame/error_log.h"
#include "frame/session.h"
#include "frame/status.h"
#include "intake/fit_reasons.h"
#include "intake/mail_lines.h"
#include "screens/intake/listed_mails.h"
#include "screens/intake/mailfrm.h"
#include "screens/wait_pointer.h"
#include "ui_mailfrm.h"

namespace {

const char *const gone_words = "This mail is no longer stored: it was deleted, or its account was changed, after the "
                               "list was filled.";

void enable_all(bool is_selected, const QList<QToolButton *> &buttons, const QList<QAction *> &commands)
{
    for (QToolButton *button : buttons)
        button->setEnabled(is_selected);
    for (QAction *command : commands)
        command->setEnabled(is_selected);
}

}

void mailfrm::LV_sub_Click()
{
    if (shows_sent_items()) // its list is being filled behind the other one
        return;
    enable_all(inbox->row_to_read().has_value(), {ui->Inreply_b, ui->Indelete_b}, {ui->replym, ui->deletem});
    read_selected(*inbox, "LV_sub", "From:  ", intake::stored_mail_text);
}

void mailfrm::LV_sub_si_Click()
{
    if (!shows_sent_items())
        return;
    enable_all(sent->row_to_read().has_value(), {ui->SReply_b, ui->Sdelete_b}, {ui->sreplym, ui->sdeletem});
    read_selected(*sent, "LV_sub_si", "To:  ", intake::sent_mail_text);
}

// A search tells of the selection at each letter: the mail that is read already is not read again, and stays where it
// was scrolled to.
void mailfrm::read_selected(const listed_mails &mails, const char *routine, const QString &who_caption,
                            std::optional<intake::mail_text> (*text_of)(const intake::mail_line &line))
{
    const std::optional<int> row = mails.row_to_read();
    const auto mail = row ? std::optional(std::pair(mails.line(*row).table, mails.line(*row).id)) : std::nullopt;
    if (mail && mail == mail_read)
        return;
    mail_read.reset();
    ui->reading_fr->show_no_mail();
    if (!row)
        return;
    const bool was_read = guarded("Mailfrm.frm", routine, [&] {
        const intake::mail_line &line = mails.line(*row);
        const std::optional<intake::mail_text> text = text_of(line);
        if (!text)
            return ui->reading_fr->show_words(gone_words);
        ui->reading_fr->show_mail(*text, who_caption);
        mail_read = mail;
        if (text->unprocessed)
            ui->reading_fr->show_why_not(intake::fit_reasons(line.table, line.id));
    });
    if (was_read)
        return;
    if (mail_read) // its text stands there
        return status_line("Why this mail is in no table could not be found out: " + session.err_description);
    const QString words = "The mail could not be read: " + session.err_description;
    ui->reading_fr->show_words(words);
    status_line(words);
}

// Other screens delete mails, map them and change accounts. What a report found stays in the sent list, which only this
// screen changes.
void mailfrm::Activate()
{
    if (changes_listed == mail_changes())
        return;
    const wait_pointer waiting(*this);
    mail_read.reset(); // it may have been taken by a map
    const bool all_went = guarded("Mailfrm.frm", "Form_activate", [this] {
        if (stored_accounts().empty()) // that is said where mails are asked for, not at each click on a window
            return;
        load_accounts();
        showmails_from_database();
    });
    if (!all_went)
        status_line("The mails could not be listed anew: " + session.err_description);
}
