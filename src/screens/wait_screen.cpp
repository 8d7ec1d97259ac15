#include "screens/wait_screen.h"
#include "frame/error_log.h"
#include "frame/session.h"
#include "frame/status.h"
#include "platform/widgets/picture_page.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <limits>

namespace {

constexpr int paint_pause_ms = 50; // counts come thousands a second; the eye needs twenty

bool comes_from_the_user(const QEvent &event)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::Close:
        return true;
    default:
        return false;
    }
}

// While it lives, keys and clicks reach one window only: the work must not be entered a second time from another one.
class only_this_window : public QObject {
public:
    explicit only_this_window(const QWidget &open) : window(open)
    {
        QCoreApplication::instance()->installEventFilter(this);
    }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (!comes_from_the_user(*event))
            return false;
        const auto *widget = qobject_cast<QWidget *>(watched); // windows of the platform hand on to their widgets
        return widget && widget->window() != &window;
    }

private:
    const QWidget &window;
};

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
      cancel_b(new QPushButton("&Cancel", this)),
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
    cancel_b->setObjectName("cancel_b");
    cancel_b->hide();
    Timer1->setObjectName("Timer1");
    Timer1->setInterval(10);

    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(24, 20, 24, 20);
    rows->setSpacing(12);
    rows->addWidget(WebBrowser1, 1);
    rows->addWidget(what_l);
    rows->addWidget(progress_bar);
    rows->addWidget(cancel_b, 0, Qt::AlignRight);

    connect(cancel_b, &QPushButton::clicked, this, &wait_screen::cancel_b_Click);
    connect(Timer1, &QTimer::timeout, this, &wait_screen::Timer1_Timer);
}

wait_screen::~wait_screen() = default;

void wait_screen::Load()
{
    WebBrowser1->setVisible(!session.animation_file.isEmpty());
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
    if (!cancelled)
        what_l->setText(total > 0 ? QStringLiteral("%1: %2 of %3").arg(what).arg(done).arg(total) : what);
    progress_bar->setRange(0, bar_value(total));
    progress_bar->setValue(bar_value(done));
    let_paint();
    since_shown.restart();
}

// Lets the animation go on. Keys and clicks only where there is something to press.
void wait_screen::let_paint()
{
    if (cancel_b->isHidden()) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        return;
    }
    const only_this_window filter(*window());
    QCoreApplication::processEvents();
    since_listened.restart();
}

void wait_screen::offer_cancel()
{
    cancel_b->show();
    cancel_b->setFocus();
    since_listened.start();
}

bool wait_screen::cancel_wanted()
{
    if (!cancelled && since_listened.elapsed() >= paint_pause_ms)
        let_paint();
    return cancelled;
}

void wait_screen::cancel_b_Click()
{
    cancelled = true;
    cancel_b->setEnabled(false);
    what_l->setText("Cancelling ...");
}

void wait_screen::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && !cancel_b->isHidden() && cancel_b->isEnabled())
        cancel_b_Click();
    else
        screen::keyPressEvent(event);
}
