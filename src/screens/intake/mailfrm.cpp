#include "screens/intake/mailfrm.h"
#include "frame/error_log.h"
#include "frame/session.h"
#include "frame/status.h"
#include "frame/store.h"
#include "frame/text.h"
#include "intake/fit_reasons.h"
#include "intake/mail_lines.h"
#include "screens/icons.h"
#include "screens/intake/listed_mails.h"
#include "ui_mailfrm.h"

#include <QKeyEvent>

namespace {

const char *const empty_inbox = "No mail is stored yet.\nChoose Mail > Fetch Mail to gather the form mails of your "
                                "accounts.";
const char *const empty_sent =
    "No reply was sent yet.\nThe replies that you send from here are listed. Automatic answers are not.";
const char *const empty_sent_report =
    "No sent mail fits the report.\nChoose other days or fewer conditions, or Sent Item "
    "to see all mails again.";

}

mailfrm::mailfrm(QWidget *parent) : screen(parent), ui(std::make_unique<Ui::mailfrm>())
{
    ui->setupUi(this);
    setWindowIcon(drawn_icon("mauditor_mnu"));
    ui->inbox_b->setIcon(drawn_icon("inbox"));
    ui->sentitems_b->setIcon(drawn_icon("sent"));
    ui->qt_splitter->setStretchFactor(0, 3);
    ui->qt_splitter->setStretchFactor(1, 2);
    inbox = new listed_mails(
        {*ui->LV_sub, *ui->Insearch_t, {"From", "Subject", "Received"}, "mailfrm.LV_sub", empty_inbox}, this);
    sent = new listed_mails(
        {*ui->LV_sub_si, *ui->Ssearch_t, {"To", "Subject", "Sent"}, "mailfrm.LV_sub_si", empty_sent}, this);
    set_up_commands();
    ui->Label3->hide(); // until there is something to tell

    connect(inbox, &listed_mails::selection_changed, this, &mailfrm::LV_sub_Click);
    connect(sent, &listed_mails::selection_changed, this, &mailfrm::LV_sub_si_Click);
    connect(ui->report_bar, &sent_report_bar::rows_wanted, this, &mailfrm::sentitems_show);
    connect(ui->inbox_b, &QToolButton::clicked, this, &mailfrm::inb_Click);
    connect(ui->sentitems_b, &QToolButton::clicked, this, &mailfrm::sitm_Click);
}

mailfrm::~mailfrm() = default;

void mailfrm::store_lvindex()
{
    inbox->set_lines({});
}

void mailfrm::showmails_from_database()
{
    open_store_if_closed();
    int left_out = 0;
    inbox->set_lines(intake::stored_mail_lines(left_out));
    if (left_out > 0)
        status_line("The mails of " + QString::number(left_out) + " account(s) cannot be shown.");
}

void mailfrm::populate_sentitems_tbl()
{
    open_store_if_closed();
    auto lines = intake::sent_mail_lines();
    sent->set_empty_text(empty_sent);
    ui->report_bar->show_no_report();
    show_sent_mails(std::move(lines));
    lists_all_sent = true;
}

void mailfrm::sentitems_show()
{
    guarded("Mailfrm.frm", "sentitems_show", [this] {
        auto lines = ui->report_bar->write_rows();
        if (!lines)
            return;
        sent->set_empty_text(empty_sent_report);
        show_sent_mails(std::move(*lines));
    });
}

void mailfrm::show_sent_mails(std::vector<intake::mail_line> lines)
{
    lists_all_sent = false;
    sent->set_lines(std::move(lines));
}

bool mailfrm::shows_sent_items() const
{
    return ui->qt_views->currentWidget() == ui->sentitems_fr;
}

void mailfrm::LV_sub_Click()
{
    if (shows_sent_items()) // its list is being filled behind the other one
        return;
    ui->reading_fr->show_no_mail();
    const std::optional<int> row = inbox->row_to_read();
    for (QToolButton *button : {ui->Inreply_b, ui->Indelete_b})
        button->setEnabled(row.has_value());
    for (QAction *command : {ui->replym, ui->deletem})
        command->setEnabled(row.has_value());
    if (!row)
        return;
    guarded("Mailfrm.frm", "LV_sub", [&] {
        const intake::mail_line &line = inbox->line(*row);
        const intake::mail_text mail = intake::stored_mail_text(line);
        ui->reading_fr->show_mail(mail, "From:  ");
        if (mail.unprocessed)
            ui->reading_fr->show_why_not(intake::fit_reasons(line.table, line.id));
    });
}

void mailfrm::LV_sub_si_Click()
{
    if (!shows_sent_items())
        return;
    ui->reading_fr->show_no_mail();
    const std::optional<int> row = sent->row_to_read();
    for (QToolButton *button : {ui->SReply_b, ui->Sdelete_b})
        button->setEnabled(row.has_value());
    for (QAction *command : {ui->sreplym, ui->sdeletem})
        command->setEnabled(row.has_value());
    if (!row)
        return;
    guarded("Mailfrm.frm", "LV_sub_si",
            [&] { ui->reading_fr->show_mail(intake::sent_mail_text(sent->line(*row)), "To:  "); });
}

// In a low window the hidden view asks for none: the report bar is high.
void mailfrm::give_room_to_the_shown_view()
{
    constexpr int low = 450; // pixels
    for (QWidget *each : {ui->inbox_fr, ui->sentitems_fr}) {
        const bool asks = height() >= low || each == ui->qt_views->currentWidget();
        each->setSizePolicy(QSizePolicy::Preferred, asks ? QSizePolicy::Preferred : QSizePolicy::Ignored);
    }
}

void mailfrm::resizeEvent(QResizeEvent *event)
{
    screen::resizeEvent(event);
    give_room_to_the_shown_view();
}

void mailfrm::inb_Click()
{
    ui->inbox_b->setChecked(true);
    ui->qt_views->setCurrentWidget(ui->inbox_fr);
    give_room_to_the_shown_view();
    LV_sub_Click();
}

void mailfrm::sitm_Click()
{
    ui->sentitems_b->setChecked(true);
    const bool all_went = guarded("Mailfrm.frm", "sentitems_b_click", [this] {
        populate_sentitems_tbl();
        ui->report_bar->open_view();
    });
    if (!all_went)
        status_line("Not everything about the sent mails could be read: " + session.err_description);
    ui->qt_views->setCurrentWidget(ui->sentitems_fr);
    give_room_to_the_shown_view();
    LV_sub_si_Click();
}

// Escape leaves the search first, then the screen.
void mailfrm::keyPressEvent(QKeyEvent *event)
{
    const bool in_list = focusWidget() == (shows_sent_items() ? ui->LV_sub_si : ui->LV_sub);
    const bool is_enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool is_control_r = event->key() == Qt::Key_R && event->modifiers() == Qt::ControlModifier;
    if (event->key() == Qt::Key_Escape && (shows_sent_items() ? sent : inbox)->leave_search())
        return;
    if (event->key() == Qt::Key_Delete && in_list)
        return (shows_sent_items() ? ui->Sdelete_b : ui->Indelete_b)->click();
    if (is_control_r || (is_enter && in_list))
        return (shows_sent_items() ? ui->SReply_b : ui->Inreply_b)->click();
    screen::keyPressEvent(event);
}

QSize mailfrm::sizeHint() const
{
    return {920, 600};
}

QString mailfrm::help_topic() const
{
    return "mailfrm";
}
