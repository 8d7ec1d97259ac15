#include "screens/intake/mailfrm.h"
#include "frame/account_list.h"
#include "frame/auto_fetch.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/status.h"
#include "frame/store.h"
#include "frame/text.h"
#include "intake/fetch.h"
#include "intake/mail_lines.h"
#include "intake/mail_source.h"
#include "intake/map_parser.h"
#include "platform/clock.h"
#include "platform/network.h"
#include "platform/outside_effects.h"
#include "screens/frame/closing.h"
#include "screens/icons.h"
#include "screens/intake/listed_mails.h"
#include "screens/intake/pane_height.h"
#include "ui_mailfrm.h"

#include <QKeyEvent>

namespace {

const char *const empty_inbox = "No mail is stored yet.\nChoose Mail > Fetch Mail to take the form mails of your "
                                "accounts from your Inbox.";
const char *const empty_sent = "Nothing was sent yet.\nEvery mail that the program sends is listed here.";
const char *const empty_sent_report =
    "No sent mail fits the report.\nChoose other days or fewer conditions, or Sent Item "
    "to see all mails again.";
const char *const cancelled_line = "Fetching was cancelled. The mails stored so far are shown.";

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
    ui->Label3->hide(); // until there is something to tell

    connect(inbox, &listed_mails::selection_changed, this, &mailfrm::LV_sub_Click);
    connect(sent, &listed_mails::selection_changed, this, &mailfrm::LV_sub_si_Click);
    connect(ui->report_bar, &sent_report_bar::rows_wanted, this, &mailfrm::sentitems_show);
    connect(ui->report_bar, &sent_report_bar::fold_changed, heights, &pane_height::fit);
    connect(ui->inbox_b, &QToolButton::clicked, this, &mailfrm::inb_Click);
    connect(ui->sentitems_b, &QToolButton::clicked, this, &mailfrm::sitm_Click);
}

mailfrm::~mailfrm() = default;

void mailfrm::Load()
{
    ui->LV_sub->setFocus();
    if (!guarded("Mailfrm.frm", "Form_load", open_store_if_closed))
        return CriticalError(); // without the store nothing can be fetched, shown or done
    std::optional<fetch_lines_scope> lines_are_the_fetchs;
    if (!session.no_fetch)
        lines_are_the_fetchs.emplace();
    const bool all_went = guarded("Mailfrm.frm", "Form_load", [this] {
        if (session.no_fetch)
            load_accounts();
        else
            fetch_and_parse();
        showmails_from_database();
    });
    if (all_went)
        return;
    const bool was_cut_off = net::is_network_failure({session.err_number, session.err_description});
    tell_broken_fetch();
    guarded("Mailfrm.frm", "Form_load", [] { intake::close_mail_source(); });
    if (was_cut_off) // what came before still wants its rows
        guarded("Mailfrm.frm", "Form_load", intake::parse_unprocessed_mails);
    show_what_is_stored();
}

// Of a server that cannot be reached the user who waits is told in a box. A tick, for which nobody waits, leaves a line
// and the next ticks alone.
void mailfrm::tell_broken_fetch()
{
    const run_time_error failure{session.err_number, session.err_description};
    if (net::is(failure, net::trouble::cancelled))
        return status_line(cancelled_line);
    if (!net::is_network_failure(failure))
        return status_line("Not everything went well: " + failure.description);
    if (net::present_patience().is_tick)
        pause_auto_fetch();
    else if (guarded("Mailfrm.frm", "Form_load", [&] {
                 say("Mail could not be fetched.\n\n" + failure.description + "\n\nThe mails stored so far are shown.",
                     "Tessaly", message_icon::exclamation);
             }))
        return;
    status_line("Mail could not be fetched: " + failure.description);
}

// What is stored can still be read, whatever became of the fetch.
void mailfrm::show_what_is_stored()
{
    guarded("Mailfrm.frm", "Form_load", [this] {
        if (session.account_ids.empty())
            load_accounts();
        showmails_from_database();
    });
}

void mailfrm::CriticalError()
{
    guarded("Mailfrm.frm", "CriticalError", [] {
        say("Critical Error: " + QString::number(qint32(session.err_number)) + " " + session.err_description, "Tessaly",
            message_icon::critical);
    });
    end_program();
}

void mailfrm::fetch_and_parse()
{
    take_away_fetch_line();                 // what an earlier fetch had to tell is past
    if (!net::present_patience().is_tick) { // the user asks: what the ticks know of the server is old
        end_auto_fetch_pause();
        status_line({});
    }
    intake::choose_mail_source();
    fetch_mail();
    store_lvindex();
    intake::parse_unprocessed_mails();
    intake::finish_fetch();
    intake::raise_cut();
    session.last_fetch = now();
    end_auto_fetch_pause();
    before_outside_effect(); // a pass that cannot be kept is a failure that is told, not a loss that nobody hears of
    intake::close_mail_source();
}

void mailfrm::fetch_mail()
{
    inbox->set_lines({});
    intake::fetch_mail();
    ui->Label3->setText(intake::fetch_summary());
    ui->Label3->show();
    if (intake::fetch_was_cancelled())
        status_line(cancelled_line);
}

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
    if (shows_sent_items())
        heights->show_view("mailfrm.sent_height", ui->report_bar);
    else
        heights->show_view("mailfrm.inbox_height", nullptr);
}

void mailfrm::resizeEvent(QResizeEvent *event)
{
    screen::resizeEvent(event);
    heights->fit();
}

void mailfrm::inb_Click()
{
    ui->inbox_b->setChecked(true);
    show_view(*ui->inbox_fr);
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
