#include "screens/frame/outbox_frm.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/outbox_words.h"
#include "platform/mail_delivery.h"
#include "platform/mail_settings.h"
#include "screens/frame/outbox_list.h"
#include "screens/icons.h"
#include "ui_outbox_frm.h"

#include <QElapsedTimer>
#include <QKeyEvent>
#include <QScrollBar>
#include <QSet>
#include <QTimer>

namespace {

constexpr int refresh_ms = 500; // reports come as fast as mails go out
constexpr int slice_ms = 100;   // of thousands of mails; then the window gets its turn
constexpr qsizetype most_at_once = 20;

const char *const nothing_there = "The Outbox is empty.\nEvery mail that the program sends waits here until the server "
                                  "has taken it.";

}

outbox_frm::outbox_frm(QWidget *parent)
    : screen(parent),
      ui(std::make_unique<Ui::outbox_frm>()),
      rows(new outbox_list(this)),
      Timer1(new QTimer(this)),
      Timer2(new QTimer(this))
{
    ui->setupUi(this);
    setWindowIcon(drawn_icon("sent"));
    ui->qt_splitter->setStretchFactor(0, 3);
    ui->qt_splitter->setStretchFactor(1, 1);
    ui->LV_outbox->setModel(rows);
    ui->LV_outbox->set_empty_text(nothing_there);
    ui->LV_outbox->remember_columns("outbox_frm.LV_outbox", {200, 240, 80, 280, 170});
    Timer1->setObjectName("Timer1");
    Timer1->setSingleShot(true);
    Timer1->setInterval(refresh_ms);
    Timer2->setObjectName("Timer2");
    Timer2->setSingleShot(true);
    Timer2->setInterval(0);

    connect(ui->LV_outbox->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &outbox_frm::LV_outbox_Click);
    connect(ui->again_b, &QPushButton::clicked, this, &outbox_frm::again_b_Click);
    connect(ui->delete_b, &QPushButton::clicked, this, &outbox_frm::delete_b_Click);
    connect(ui->now_b, &QPushButton::clicked, this, &outbox_frm::now_b_Click);
    connect(ui->close_b, &QPushButton::clicked, this, &outbox_frm::close_b_Click);
    connect(Timer1, &QTimer::timeout, this, &outbox_frm::show_mails);
    connect(Timer2, &QTimer::timeout, this, &outbox_frm::go_on);
}

outbox_frm::~outbox_frm() = default;

void outbox_frm::Load()
{
    show_mails();
    ui->LV_outbox->setFocus();
}

// What is selected stays selected, and the list stays where it was read.
void outbox_frm::show_mails()
{
    guarded("outbox_frm.frm", "show_mails", [this] {
        QSet<QString> selected;
        for (const outbox::kept_mail &mail : selected_mails())
            selected += mail.id;
        const int place = ui->LV_outbox->verticalScrollBar()->value();
        rows->set_mails(outbox::contents(), mail::read_client_settings().sending != mail::send_by::keep);
        show_summary(delivery::present());
        ui->now_b->setEnabled(rows->rowCount() > 0);
        QItemSelection again; // in as few pieces as it has: thousands of them would take seconds
        for (int row = 0; row < rows->rowCount(); ++row) {
            const int first = row;
            while (row < rows->rowCount() && selected.contains(rows->mail(row).id))
                ++row;
            if (row > first)
                again.append({rows->index(first, 0), rows->index(row - 1, rows->columnCount() - 1)});
        }
        ui->LV_outbox->selectionModel()->select(again, QItemSelectionModel::ClearAndSelect);
        ui->LV_outbox->verticalScrollBar()->setValue(place);
    });
    LV_outbox_Click();
}

void outbox_frm::delivery_told(const delivery::report &told)
{
    show_summary(told);
    if (!Timer1->isActive() && under_way.left.isEmpty())
        Timer1->start();
}

void outbox_frm::show_summary(const delivery::report &told)
{
    ui->summary_l->setText(told.line);
    ui->summary_l->setVisible(!told.line.isEmpty());
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
    const QModelIndexList chosen = ui->LV_outbox->selectionModel()->selectedRows();
    const bool is_free = !chosen.isEmpty() && under_way.left.isEmpty();
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

void outbox_frm::do_to_selected(const char *routine, qsizetype (*deed)(const QStringList &ids))
{
    under_way = {routine, deed, {}, 0};
    for (const outbox::kept_mail &mail : selected_mails())
        under_way.left += mail.id;
    go_on();
}

void outbox_frm::go_on()
{
    bool broke_off = true; // and has been told
    guarded("outbox_frm.frm", under_way.routine, [this, &broke_off] {
        QElapsedTimer since;
        since.start();
        while (!under_way.left.isEmpty() && !since.hasExpired(slice_ms)) {
            const QStringList some = under_way.left.mid(0, most_at_once);
            under_way.left_alone += under_way.deed(some);
            under_way.left.remove(0, some.size());
        }
        broke_off = false;
    });
    if (broke_off)
        under_way.left.clear();
    if (!under_way.left.isEmpty()) {
        LV_outbox_Click();
        ui->summary_l->setText(outbox_words::to_go_text(under_way.left.size()));
        ui->summary_l->show();
        return Timer2->start();
    }
    guarded("outbox_frm.frm", under_way.routine, delivery::wake);
    show_mails();
    if (under_way.left_alone > 0)
        say(outbox_words::left_alone_text(under_way.left_alone), "Outbox");
}

void outbox_frm::now_b_Click()
{
    guarded("outbox_frm.frm", "now_b", delivery::wake);
}

void outbox_frm::close_b_Click()
{
    unload();
}

void outbox_frm::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Delete && ui->LV_outbox->hasFocus())
        ui->delete_b->click();
    else
        screen::keyPressEvent(event);
}

QSize outbox_frm::sizeHint() const
{
    return {980, 520};
}
