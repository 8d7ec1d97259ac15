#include "screens/frame/outbox_frm.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/outbox_words.h"
#include "frame/say_surely.h"
#include "frame/session.h"
#include "platform/mail_delivery.h"
#include "platform/mail_settings.h"
#include "screens/frame/outbox_deed.h"
#include "screens/frame/outbox_list.h"
#include "screens/icons.h"
#include "ui_outbox_frm.h"

#include <QKeyEvent>
#include <QPersistentModelIndex>
#include <QTimer>
#include <utility>

namespace {

constexpr int refresh_ms = 500; // reports come as fast as mails go out

const char *const now_tip = "Tries at once to send all that waits, also what was to be tried later";
const char *const nothing_there = "The Outbox is empty.\nEvery mail that the program sends waits here until the server "
                                  "has taken it.";

}

outbox_frm::outbox_frm(QWidget *parent)
    : screen(parent),
      ui(std::make_unique<Ui::outbox_frm>()),
      rows(new outbox_list(this)),
      Timer1(new QTimer(this)),
      deed(new outbox_deed(this))
{
    ui->setupUi(this);
    setWindowIcon(drawn_icon("sent"));
    ui->qt_splitter->setStretchFactor(0, 3);
    ui->qt_splitter->setStretchFactor(1, 1);
    ui->qt_splitter->remember_place("outbox_frm.qt_splitter");
    ui->LV_outbox->setModel(rows);
    ui->LV_outbox->set_empty_text(nothing_there);
    ui->LV_outbox->remember_columns("outbox_frm.LV_outbox", {200, 240, 80, 280, 170});
    Timer1->setObjectName("Timer1");
    Timer1->setSingleShot(true);
    Timer1->setInterval(refresh_ms);

    connect(ui->LV_outbox->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &outbox_frm::LV_outbox_Click);
    connect(ui->again_b, &QPushButton::clicked, this, &outbox_frm::again_b_Click);
    connect(ui->delete_b, &QPushButton::clicked, this, &outbox_frm::delete_b_Click);
    connect(ui->now_b, &QPushButton::clicked, this, &outbox_frm::now_b_Click);
    connect(ui->close_b, &QPushButton::clicked, this, &outbox_frm::close_b_Click);
    connect(Timer1, &QTimer::timeout, this, &outbox_frm::show_mails);
    connect(deed, &outbox_deed::slice_done, this, &outbox_frm::show_what_is_to_go);
    connect(deed, &outbox_deed::ended, this, &outbox_frm::deed_ended);
}

outbox_frm::~outbox_frm() = default;

void outbox_frm::Load()
{
    show_mails();
    ui->LV_outbox->setFocus();
}

void outbox_frm::show_mails()
{
    guarded("outbox_frm.frm", "show_mails", [this] {
        const QPersistentModelIndex uppermost = ui->LV_outbox->indexAt({0, 0});
        std::vector<outbox::kept_mail> mails = outbox::contents();
        const bool sending_is_off = mail::read_client_settings().sending == mail::send_by::keep;
        const delivery::report told = delivery::present();
        list_changes = true;
        rows->set_mails(std::move(mails), {sending_is_off, told.trouble});
        ui->LV_outbox->take_up_shift();
        show_summary(told.line);
        show_whether_now(told, sending_is_off);
        if (uppermost.row() > 0) // the list stays where it was read
            ui->LV_outbox->scrollTo(uppermost, QAbstractItemView::PositionAtTop);
    });
    list_changes = false;
    LV_outbox_Click();
}

void outbox_frm::delivery_told(const delivery::report &told)
{
    if (deed->is_under_way()) // what it has to tell is nearer; the list follows when it is done
        return;
    show_summary(told.line);
    if (!Timer1->isActive())
        Timer1->start();
}

void outbox_frm::show_summary(const QString &line)
{
    ui->summary_l->setText(line);
    ui->summary_l->setVisible(!line.isEmpty());
}

void outbox_frm::show_whether_now(const delivery::report &told, bool sending_is_off)
{
    const QString why_not = outbox_words::why_not_now(told.left, {sending_is_off, told.trouble});
    ui->now_b->setEnabled(why_not.isEmpty());
    ui->now_b->setToolTip(why_not.isEmpty() ? now_tip : why_not);
}

std::vector<outbox::kept_mail> outbox_frm::selected_mails() const
{
    std::vector<outbox::kept_mail> found;
    for (const QModelIndex &index : ui->LV_outbox->selectionModel()->selectedRows())
        found.push_back(rows->mail(index.row()));
    return found;
}

void outbox_frm::LV_outbox_Click()
{
    if (list_changes)
        return;
    const QModelIndexList chosen = ui->LV_outbox->selectionModel()->selectedRows();
    const bool is_free = !chosen.isEmpty() && !deed->is_under_way();
    ui->again_b->setEnabled(is_free);
    ui->delete_b->setEnabled(is_free);
    // Whole, as its column may be narrow; empty it keeps its place, so that the list stays as it is.
    ui->why_l->setText(chosen.isEmpty() ? QString() : rows->why(rows->mail(chosen.first().row())));
    const QString id = chosen.isEmpty() ? QString() : rows->mail(chosen.first().row()).id;
    if (id == shown_id)
        return;
    shown_id = id;
    ui->text_t->clear();
    if (!id.isEmpty())
        guarded("outbox_frm.frm", "LV_outbox", [&] { ui->text_t->setPlainText(outbox_words::text_to_read(id)); });
}

namespace {

// A second Enter deletes nothing; where the question cannot be asked, nothing is done.
bool is_confirmed(const char *routine, const QString &question)
{
    bool confirmed = false;
    guarded("outbox_frm.frm", routine, [&] { confirmed = yes_no_before_loss(question, "Outbox"); });
    return confirmed;
}

}

void outbox_frm::again_b_Click()
{
    const QString question = outbox_words::send_again_question(selected_mails());
    if (!question.isEmpty() && !is_confirmed("again_b", question))
        return;
    do_to_selected("again_b", outbox::send_again);
}

void outbox_frm::delete_b_Click()
{
    if (is_confirmed("delete_b", outbox_words::delete_question(selected_mails())))
        do_to_selected("delete_b", outbox::discard);
}

void outbox_frm::do_to_selected(const char *routine, qsizetype (*what)(const QStringList &ids))
{
    QStringList ids;
    for (const outbox::kept_mail &mail : selected_mails())
        ids += mail.id;
    deed->begin(routine, what, ids);
}

void outbox_frm::show_what_is_to_go()
{
    LV_outbox_Click();
    show_summary(closes_when_done ? outbox_words::to_go_before_closing_text(deed->left())
                                  : outbox_words::to_go_text(deed->left()));
}

void outbox_frm::deed_ended()
{
    guarded("outbox_frm.frm", "deed_ended", delivery::wake);
    show_mails();
    const bool closes = std::exchange(closes_when_done, false);
    const bool broke_off = !deed->failure().isEmpty();
    if (broke_off)
        say_surely("outbox_frm.frm", "deed_ended", outbox_words::broken_off_text(deed->left(), deed->failure()),
                   "Outbox", message_icon::exclamation);
    else if (deed->left_alone() > 0)
        say_surely("outbox_frm.frm", "deed_ended", outbox_words::left_alone_text(deed->left_alone()), "Outbox");
    if (closes && !broke_off)
        unload();
    emit done_with_work();
}

bool outbox_frm::is_at_work() const
{
    return deed->is_under_way();
}

void outbox_frm::finish()
{
    deed->finish();
}

void outbox_frm::now_b_Click()
{
    if (!guarded("outbox_frm.frm", "now_b", delivery::send_now))
        say_surely("outbox_frm.frm", "now_b", "What waits cannot be sent now. " + session.err_description, "Outbox",
                   message_icon::exclamation);
}

// What was to be done to the mails is done first.
void outbox_frm::close_b_Click()
{
    if (!deed->is_under_way())
        return unload();
    closes_when_done = true;
    show_what_is_to_go();
}

void outbox_frm::closeEvent(QCloseEvent *event)
{
    if (!deed->is_under_way())
        return screen::closeEvent(event);
    event->ignore();
    close_b_Click();
}

void outbox_frm::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Delete && ui->LV_outbox->hasFocus())
        ui->delete_b->click();
    else if (event->key() == Qt::Key_Escape)
        close_b_Click();
    else
        screen::keyPressEvent(event);
}

QSize outbox_frm::sizeHint() const
{
    return {980, 520};
}
