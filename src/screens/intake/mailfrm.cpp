#include "screens/intake/mailfrm.h"
#include "frame/error_log.h"
#include "frame/session.h"
#include "frame/status.h"
#include "frame/store.h"
#include "frame/text.h"
#include "intake/mail_lines.h"
#include "screens/icons.h"
#include "screens/intake/listed_mails.h"
#include "screens/intake/pane_height.h"
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
    inbox = new listed_mails({*ui->LV_sub,
                              *ui->Insearch_t,
                              {"From", "Subject", "Received"},
                              "mailfrm.LV_sub",
                              empty_inbox,
                              mail_list::date_order::by_time},
                             this);
    sent = new listed_mails({*ui->LV_sub_si,
                             *ui->Ssearch_t,
                             {"To", "Subject", "Sent"},
                             "mailfrm.LV_sub_si",
                             empty_sent,
                             mail_list::date_order::as_text},
                            this);
    heights = new pane_height(*ui->qt_splitter);
    set_up_commands();
    show_view(*ui->inbox_fr);

    connect(inbox, &listed_mails::selection_changed, this, &mailfrm::LV_sub_Click);
    connect(sent, &listed_mails::selection_changed, this, &mailfrm::LV_sub_si_Click);
    connect(ui->report_bar, &sent_report_bar::rows_wanted, this, &mailfrm::sentitems_show);
    connect(ui->report_bar, &sent_report_bar::fold_changed, heights, &pane_height::fit);
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
    const quint64 changes = mail_changes();
    inbox->set_lines(intake::stored_mail_lines(left_out));
    changes_listed = changes;
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

// The hidden view asks for no room: the report bar is high.
void mailfrm::show_view(QWidget &view)
{
    for (QWidget *each : {ui->inbox_fr, ui->sentitems_fr})
        each->setSizePolicy(QSizePolicy::Preferred, each == &view ? QSizePolicy::Preferred : QSizePolicy::Ignored);
    ui->qt_views->setCurrentWidget(&view);
    show_fetch_summary();
    if (shows_sent_items())
        heights->show_view("mailfrm.sent_height", ui->report_bar);
    else
        heights->show_view("mailfrm.inbox_height", nullptr);
}

// What the fetch brought is in the Inbox.
void mailfrm::show_fetch_summary()
{
    ui->Label3->setVisible(!ui->Label3->text().isEmpty() && !shows_sent_items());
}

void mailfrm::inb_Click()
{
    ui->inbox_b->setChecked(true);
    show_view(*ui->inbox_fr);
    inbox->take_focus();
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
    show_view(*ui->sentitems_fr);
    sent->take_focus();
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
    return {960, 680};
}

QString mailfrm::help_topic() const
{
    return "mailfrm";
}
