#include "screens/frame/console_status.h"
#include "frame/error_log.h"
#include "frame/last_fetch.h"
#include "frame/messages.h"
#include "frame/status.h"
#include "intake/unprocessed_count.h"
#include "platform/mail_delivery.h"
#include "screens/frame/status_text.h"
#include "screens/icons.h"

#include <QMainWindow>
#include <QPointer>
#include <QStatusBar>
#include <QTimer>
#include <QToolButton>

namespace {

constexpr int count_delay_ms = 100; // many changes in a row are counted once

QString unprocessed_words(qint64 mails)
{
    if (mails == 0)
        return "No mail waits to go into a table";
    return mails == 1 ? "1 mail is in no table yet" : QString::number(mails) + " mails are in no table yet";
}

}

console_status::console_status(QMainWindow &console)
    : QObject(&console),
      window(console),
      lasting_line(new status_text(&console)),
      fetched_l(new QLabel(&console)),
      count_timer(new QTimer(this))
{
    QStatusBar *bar = console.statusBar();
    bar->setObjectName("StatusBar1");
    lasting_line->setObjectName("status_l");
    bar->addPermanentWidget(lasting_line);
    lasting_line->hide(); // adding has shown it
    unprocessed_b = add_button("unprocessed_b", "inbox");
    fetched_l->setObjectName("fetched_l");
    fetched_l->setTextFormat(Qt::PlainText);
    bar->addPermanentWidget(fetched_l);
    fetched_l->hide();
    outbox_b = add_button("outbox_b", "sent");
    count_timer->setObjectName("count_timer");
    count_timer->setSingleShot(true);

    connect(unprocessed_b, &QToolButton::clicked, this, &console_status::unprocessed_clicked);
    connect(outbox_b, &QToolButton::clicked, this, &console_status::outbox_clicked);
    connect(count_timer, &QTimer::timeout, this, &console_status::count_mails_when_idle);
    set_status_sink([line = QPointer<status_text>(lasting_line)](const QString &text) {
        if (line)
            line->set_whole_text(text);
    });
    set_mails_changed_sink([this] { count_mails_soon(); });
}

console_status::~console_status()
{
    set_status_sink({});
    set_mails_changed_sink({});
}

QToolButton *console_status::add_button(const char *name, const char *picture)
{
    auto *button = new QToolButton(&window);
    button->setObjectName(name);
    button->setAutoRaise(true);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setIcon(drawn_icon(picture));
    window.statusBar()->addPermanentWidget(button);
    button->hide();
    return button;
}

void console_status::fit(int width)
{
    lasting_line->setMaximumWidth(width * 2 / 3);
}

void console_status::show_delivery(const delivery::report &told)
{
    const QString line = told.line.simplified();
    outbox_b->setText(window.fontMetrics().elidedText(line, Qt::ElideRight, window.width() / 3));
    outbox_b->setToolTip("<qt>" + line.toHtmlEscaped() + "</qt>");
    outbox_b->setAccessibleName("Outbox: " + line);
    outbox_b->setVisible(!line.isEmpty());
}

void console_status::count_mails_soon()
{
    count_timer->start(count_delay_ms);
}

void console_status::count_mails_when_idle()
{
    if (busy())
        return count_mails_soon();
    count_mails();
}

void console_status::count_mails()
{
    count_timer->stop();
    const bool counted = guarded("menuFrm.frm", "count_mails", [this] {
        const qint64 mails = intake::count_unprocessed_mails();
        unprocessed_b->setText(QString::number(mails) + " unprocessed");
        unprocessed_b->setToolTip(unprocessed_words(mails) + ". A click opens the Mail Auditor" +
                                  (mails == 0 ? "." : ", which says why."));
        unprocessed_b->setAccessibleName(unprocessed_words(mails));
    });
    unprocessed_b->setVisible(counted);
    show_last_fetch();
}

void console_status::show_last_fetch()
{
    const fetch_words words = last_fetch_words();
    fetched_l->setVisible(!words.line.isEmpty());
    fetched_l->setText(words.line);
    fetched_l->setToolTip(words.whole);
    fetched_l->setAccessibleName(words.whole.simplified());
}
