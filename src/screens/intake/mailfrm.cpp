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
#include "intake/fit_reasons.h"
#include "intake/mail_lines.h"
#include "intake/mail_source.h"
#include "intake/map_parser.h"
#include "platform/network.h"
#include "platform/outside_effects.h"
#include "screens/frame/closing.h"
#include "screens/icons.h"
#include "screens/intake/mail_list.h"
#include "ui_mailfrm.h"

#include <QKeyEvent>

namespace {

const char *const empty_inbox = "No mail is stored yet.\nChoose Mail > Fetch Mail to take the form mails of your "
                                "accounts from your Inbox.";
const char *const empty_sent = "Nothing was sent yet.\nEvery mail that the program sends is listed here.";
const char *const cancelled_line = "Fetching was cancelled. The mails stored so far are shown.";
const char *const nothing_found = "No mail matches the search.\nEmpty the search box to see all mails again.";

// Mail is hostile: a text of many megabytes would stop the program for as long as it is laid out.
QString shown_text(const QString &body)
{
    constexpr qsizetype most_shown = 300000;
    if (body.size() <= most_shown)
        return body;
    return left(body, most_shown) + "\n\n(The text is longer than what is shown here.)";
}

// A head line: what came by mail must neither fill the screen nor look like a line of its own.
QString shown_head(QString text)
{
    constexpr qsizetype most_shown = 160;
    for (QChar &letter : text)
        if (letter.isSpace())
            letter = u' ';
    return text.size() <= most_shown ? text : left(text, most_shown) + " ...";
}

QString why_not_text(const std::vector<intake::fit_reason> &reasons)
{
    if (reasons.empty())
        return "No map was made for this account yet. Mail > Mail Mapping Wizard makes one from a mail such as this.";
    QStringList lines;
    for (const intake::fit_reason &each : reasons)
        lines += each.map + ": " + (each.reason.isEmpty() ? "it fits, and is taken at the next fetch." : each.reason);
    return lines.join(u'\n');
}

// As high as its lines, up to five of them.
void fit_height(QPlainTextEdit &box)
{
    const int lines = qBound(1, box.document()->blockCount(), 5);
    const int margins = int(2 * box.document()->documentMargin()) + 2 * box.frameWidth();
    box.setFixedHeight(lines * box.fontMetrics().lineSpacing() + margins);
}

// The line whose mail is read: the one with the keyboard's frame, else the first of the selected ones.
QModelIndex selected_line(const list_view &view)
{
    const QModelIndexList rows = view.selectionModel()->selectedRows();
    if (rows.isEmpty() || view.selectionModel()->isRowSelected(view.currentIndex().row()))
        return rows.isEmpty() ? QModelIndex() : view.currentIndex();
    return rows.first();
}

}

mailfrm::mailfrm(QWidget *parent)
    : screen(parent),
      ui(std::make_unique<Ui::mailfrm>()),
      inbox_rows(new mail_list({"From", "Subject", "Received"}, this)),
      sent_rows(new mail_list({"To", "Subject", "Sent"}, this))
{
    ui->setupUi(this);
    setWindowIcon(drawn_icon("mauditor_mnu"));
    ui->inb->setIcon(drawn_icon("inbox"));
    ui->sitm->setIcon(drawn_icon("sent"));
    ui->qt_splitter->setStretchFactor(0, 3);
    ui->qt_splitter->setStretchFactor(1, 2);
    set_up_lists();
    show_no_mail();

    connect(ui->LV_sub->selectionModel(), &QItemSelectionModel::selectionChanged, this, &mailfrm::LV_sub_Click);
    connect(ui->LV_sub_si->selectionModel(), &QItemSelectionModel::selectionChanged, this, &mailfrm::LV_sub_si_Click);
    connect(ui->inb, &QToolButton::clicked, this, &mailfrm::inb_Click);
    connect(ui->sitm, &QToolButton::clicked, this, &mailfrm::sitm_Click);
    connect(ui->search_t, &QLineEdit::textChanged, this, &mailfrm::search_t_Change);
}

mailfrm::~mailfrm() = default;

void mailfrm::set_up_lists()
{
    set_up_list(*ui->LV_sub, *inbox_rows, "mailfrm.LV_sub");
    set_up_list(*ui->LV_sub_si, *sent_rows, "mailfrm.LV_sub_si");
    ui->LV_sub->set_empty_text(empty_inbox);
    ui->LV_sub_si->set_empty_text(empty_sent);
}

void mailfrm::set_up_list(list_view &view, mail_list &rows, const QString &name)
{
    view.setModel(&rows);
    view.remember_columns(name, {240, 400, 170});
}

void mailfrm::Load()
{
    ui->LV_sub->setFocus();
    if (!guarded("Mailfrm.frm", "Form_load", open_store_if_closed))
        return CriticalError(); // without the store nothing can be fetched, shown or done
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
    if (!net::present_patience().is_tick)
        return say("Mail could not be fetched.\n\n" + failure.description + "\n\nThe mails stored so far are shown.",
                   "Tessaly", message_icon::exclamation);
    pause_auto_fetch();
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
    say("Critical Error: " + QString::number(qint32(session.err_number)) + " " + session.err_description, "Tessaly",
        message_icon::critical);
    end_program();
}

void mailfrm::fetch_and_parse()
{
    status_line({}); // what an earlier fetch had to tell is past
    if (!net::present_patience().is_tick)
        end_auto_fetch_pause(); // the user asks: what the ticks know of the server is old
    intake::choose_mail_source();
    fetch_mail();
    store_lvindex();
    intake::parse_unprocessed_mails();
    intake::finish_fetch();
    intake::raise_cut();
    end_auto_fetch_pause();
    before_outside_effect(); // a pass that cannot be kept is a failure that is told, not a loss that nobody hears of
    intake::close_mail_source();
}

void mailfrm::fetch_mail()
{
    inbox_rows->set_lines({});
    show_no_mail();
    intake::fetch_mail();
    ui->Label3->setText(intake::fetch_summary());
    if (intake::fetch_was_cancelled())
        status_line(cancelled_line);
}

void mailfrm::store_lvindex()
{
    inbox_rows->set_lines({});
}

void mailfrm::showmails_from_database()
{
    open_store_if_closed();
    int left_out = 0;
    inbox_rows->set_lines(intake::stored_mail_lines(left_out));
    if (left_out > 0)
        status_line("The mails of " + QString::number(left_out) + " account(s) cannot be shown.");
}

void mailfrm::populate_sentitems_tbl()
{
    open_store_if_closed();
    sent_rows->set_lines(intake::sent_mail_lines());
}

void mailfrm::show_no_mail()
{
    ui->lbl_from->clear();
    ui->why_fr->hide();
    ui->txt_body->clear();
}

void mailfrm::show_mail(const intake::mail_text &mail, const QString &who_caption)
{
    ui->lbl_from->setText(who_caption + shown_head(mail.who) + "\nSub:   " + shown_head(mail.subject) +
                          "\nDate:  " + mail.date);
    ui->txt_body->setPlainText(shown_text(mail.body));
}

void mailfrm::show_why_not(const intake::mail_line &line)
{
    ui->why_t->setPlainText(why_not_text(intake::fit_reasons(line.table, line.id)));
    fit_height(*ui->why_t);
    ui->why_fr->show();
}

void mailfrm::LV_sub_Click()
{
    show_no_mail();
    const QModelIndex current = selected_line(*ui->LV_sub);
    if (!current.isValid())
        return;
    guarded("Mailfrm.frm", "LV_sub", [&] {
        const intake::mail_line &line = inbox_rows->line(current.row());
        const intake::mail_text mail = intake::stored_mail_text(line);
        show_mail(mail, "From:  ");
        if (mail.unprocessed)
            show_why_not(line);
    });
}

void mailfrm::LV_sub_si_Click()
{
    show_no_mail();
    const QModelIndex current = selected_line(*ui->LV_sub_si);
    if (!current.isValid())
        return;
    guarded("Mailfrm.frm", "LV_sub_si",
            [&] { show_mail(intake::sent_mail_text(sent_rows->line(current.row())), "To:  "); });
}

void mailfrm::inb_Click()
{
    ui->qt_views->setCurrentWidget(ui->inbox_fr);
    LV_sub_Click();
}

void mailfrm::sitm_Click()
{
    guarded("Mailfrm.frm", "sentitems_b_click", [this] { populate_sentitems_tbl(); });
    ui->qt_views->setCurrentWidget(ui->sentitems_fr);
    LV_sub_si_Click();
}

void mailfrm::search_t_Change(const QString &words)
{
    inbox_rows->set_filter(words);
    sent_rows->set_filter(words);
    show_no_mail();
    ui->LV_sub->set_empty_text(inbox_rows->line_count() > 0 ? nothing_found : empty_inbox);
    ui->LV_sub_si->set_empty_text(sent_rows->line_count() > 0 ? nothing_found : empty_sent);
}

// Escape leaves the search first, then the screen.
void mailfrm::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Escape || ui->search_t->text().isEmpty())
        return screen::keyPressEvent(event);
    ui->search_t->clear();
    (ui->sitm->isChecked() ? ui->LV_sub_si : ui->LV_sub)->setFocus();
}

QSize mailfrm::sizeHint() const
{
    return {920, 600};
}

QString mailfrm::help_topic() const
{
    return "mailfrm";
}
