#include "screens/wait_screen.h"
#include "frame/error_log.h"
#include "frame/session.h"
#include "frame/status.h"
#include "platform/widgets/picture_page.h"

#include <QCoreApplication>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QTimer>
#include <QVBoxLayout>
#include <limits>

namespace {

constexpr int paint_pause_ms = 50; // counts come thousands a second; the eye needs twenty

int bar_value(qint64 value)
{
    return int(qMin<qint64>(value, std::numeric_limits<int>::max()));
}

}

wait_screen::wait_screen(const QString &name, const QString &title, QWidget *parent)
    : screen(parent),
      WebBrowser1(new picture_page(this)),
      what_l(new QLabel(title, this)),
      progress_bar(new QProgressBar(this)),
      Timer1(new QTimer(this))
{
    setObjectName(name);
    setWindowTitle("Tessaly");
    WebBrowser1->setObjectName("WebBrowser1");
    WebBrowser1->setAccessibleName("Animation");
    WebBrowser1->setMinimumSize(360, 96);
    what_l->setObjectName("what_l");
    what_l->setTextFormat(Qt::PlainText);
    progress_bar->setObjectName("progress_bar");
    progress_bar->setAccessibleName("Progress");
    progress_bar->setRange(0, 0);
    Timer1->setObjectName("Timer1");
    Timer1->setInterval(10);

    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(24, 20, 24, 20);
    rows->setSpacing(12);
    rows->addWidget(WebBrowser1, 1);
    rows->addWidget(what_l);
    rows->addWidget(progress_bar);

    connect(Timer1, &QTimer::timeout, this, &wait_screen::Timer1_Timer);
}

wait_screen::~wait_screen() = default;

void wait_screen::Load()
{
    // The work goes on without its animation.
    guarded(qPrintable(objectName() + ".frm"), "Form_Load", [this] { WebBrowser1->Navigate(session.animation_file); });
}

void wait_screen::paintEvent(QPaintEvent *event)
{
    screen::paintEvent(event);
    if (painted)
        return;
    painted = true;
    Timer1->start();
}

void wait_screen::Timer1_Timer()
{
    Timer1->stop();
    const QPointer<wait_screen> self(this);
    since_shown.start();
    set_progress_sink([self](const QString &what, qint64 done, qint64 total) {
        if (self)
            self->show_progress(what, done, total);
    });
    work();
    set_progress_sink({});
}

void wait_screen::show_progress(const QString &what, qint64 done, qint64 total)
{
    if (since_shown.elapsed() < paint_pause_ms && done < total)
        return;
    what_l->setText(total > 0 ? QStringLiteral("%1: %2 of %3").arg(what).arg(done).arg(total) : what);
    progress_bar->setRange(0, bar_value(total));
    progress_bar->setValue(bar_value(done));
    // Lets the animation go on. No keys and clicks: the work must not be entered a second time.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    since_shown.restart();
}
