// What the Mail Auditor does with the selected mails, by its toolbars, popup menus and keys. The screen: mailfrm.cpp.
#include "frame/error_log.h"
#include "frame/session.h"
#include "frame/status.h"
#include "intake/mail_deletion.h"
#include "screens/intake/Showdetails.h"
#include "screens/intake/hover_pictures.h"
#include "screens/intake/listed_mails.h"
#include "screens/intake/mailfrm.h"
#include "screens/wait_pointer.h"
#include "ui_mailfrm.h"

#include <QMenu>

namespace {

void open_popup_at_pointer(list_view &list, const QList<QAction *> &commands)
{
    list.setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(&list, &QWidget::customContextMenuRequested, &list, [&list, commands](const QPoint &place) {
        auto *menu = new QMenu(&list);
        menu->setObjectName("popup_mnu");
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->setToolTipsVisible(true);
        menu->addActions(commands);
        menu->insertSeparator(commands.value(2));
        menu->popup(list.viewport()->mapToGlobal(place));
    });
}

}

void mailfrm::set_up_commands()
{
    auto *inbox_pictures = new hover_pictures("Timer2", this);
    inbox_pictures->add(*ui->Inreply_b, "reply");
    inbox_pictures->add(*ui->Indelete_b, "delete");
    inbox_pictures->add(*ui->Command1, "sendmail");
    auto *sent_pictures = new hover_pictures("Timer3", this);
    sent_pictures->add(*ui->SReply_b, "reply");
    sent_pictures->add(*ui->Sdelete_b, "delete");
    sent_pictures->add(*ui->Ssendmail_b, "sendmail");
    set_up_popups();

    connect(ui->Inreply_b, &QToolButton::clicked, this, &mailfrm::Inreply_b_Click);
    connect(ui->Indelete_b, &QToolButton::clicked, this, &mailfrm::Indelete_b_Click);
    connect(ui->SReply_b, &QToolButton::clicked, this, &mailfrm::SReply_b_Click);
    connect(ui->Sdelete_b, &QToolButton::clicked, this, &mailfrm::Sdelete_b_Click);
    connect(ui->inb, &QAction::triggered, this, &mailfrm::inb_Click);
    connect(ui->sitm, &QAction::triggered, this, &mailfrm::sitm_Click);
    connect(ui->replym, &QAction::triggered, this, &mailfrm::Inreply_b_Click);
    connect(ui->deletem, &QAction::triggered, this, &mailfrm::Indelete_b_Click);
    connect(ui->sreplym, &QAction::triggered, this, &mailfrm::SReply_b_Click);
    connect(ui->sdeletem, &QAction::triggered, this, &mailfrm::Sdelete_b_Click);
}

void mailfrm::set_up_popups()
{
    ui->inb->setIcon(ui->inbox_b->icon());
    ui->sitm->setIcon(ui->sentitems_b->icon());
    const QList<std::pair<QAction *, QToolButton *>> pictures{
        {ui->replym, ui->Inreply_b}, {ui->deletem, ui->Indelete_b}, {ui->sendm, ui->Command1},
        {ui->sreplym, ui->SReply_b}, {ui->sdeletem, ui->Sdelete_b}, {ui->ssendm, ui->Ssendmail_b}};
    for (const auto &[command, button] : pictures)
        command->setIcon(button->icon());
    open_popup_at_pointer(*ui->LV_sub, {ui->inb, ui->sitm, ui->replym, ui->deletem, ui->sendm});
    open_popup_at_pointer(*ui->LV_sub_si, {ui->inb, ui->sitm, ui->sreplym, ui->sdeletem, ui->ssendm});
}

void mailfrm::Indelete_b_Click()
{
    const bool was_up_to_date = changes_listed == mail_changes();
    if (!delete_lines(*inbox, "Indelete_b", intake::delete_stored_mail))
        return;
    mails_changed();
    if (was_up_to_date) // the list knows of it
        changes_listed = mail_changes();
}

void mailfrm::Sdelete_b_Click()
{
    if (!delete_lines(*sent, "Sdelete_b", intake::delete_sent_mail))
        return;
    list_sent_mails_anew("Sdelete_b");
}

// The lines go together, at the end: one by one the list would be drawn anew for each of thousands.
bool mailfrm::delete_lines(listed_mails &mails, const char *routine, void (*deed)(const intake::mail_line &line))
{
    const wait_pointer waiting(*this);
    std::vector<int> gone;
    const bool all_went = guarded("Mailfrm.frm", routine, [&] {
        for (const int row : mails.selected_rows()) {
            deed(mails.line(row));
            gone.push_back(row);
        }
    });
    mails.take_away(gone);
    if (!all_went)
        status_line("Not every mail could be deleted: " + session.err_description);
    else if (!gone.empty())
        status_line(gone.size() == 1 ? "1 mail was deleted." : QString::number(gone.size()) + " mails were deleted.");
    return !gone.empty();
}

void mailfrm::Inreply_b_Click()
{
    reply_to_selected(*inbox);
}

void mailfrm::SReply_b_Click()
{
    reply_to_selected(*sent);
}

void mailfrm::reply_to_selected(const listed_mails &mails)
{
    std::vector<intake::mail_line> lines;
    for (const int row : mails.selected_rows())
        lines.push_back(mails.line(row));
    if (lines.empty())
        return;
    auto &replies = the<Showdetails>();
    replies.set_mails(std::move(lines));
    connect(&replies, &Showdetails::reply_sent, this, &mailfrm::note_reply);
    replies.show_modal();
}

// It is seen at once among what was sent, but a report's list stays the report's.
void mailfrm::note_reply()
{
    if (shows_sent_items() && lists_all_sent)
        list_sent_mails_anew("populate_sentitems_tbl");
}

void mailfrm::list_sent_mails_anew(const char *routine)
{
    if (!guarded("Mailfrm.frm", routine, [this] { populate_sentitems_tbl(); }))
        status_line("The sent mails could not be listed anew: " + session.err_description);
}
