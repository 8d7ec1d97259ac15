#include "screens/frame/Exit_frm.h"
#include "frame/back_up.h"
#include "frame/error_log.h"
#include "frame/say_surely.h"
#include "frame/session.h"
#include "frame/status.h"
#include "screens/frame/closing.h"
#include "screens/icons.h"
#include "ui_Exit_frm.h"

#include <QCoreApplication>
#include <QTimer>
#include <limits>

namespace {

constexpr int between_paints_ms = 50;
constexpr int lines_of_a_path = 3;

int bar_value(qint64 value)
{
    return int(qMin<qint64>(value, std::numeric_limits<int>::max()));
}

}

Exit_frm::Exit_frm(QWidget *parent) : screen(parent), ui(std::make_unique<Ui::Exit_frm>()), Timer1(new QTimer(this))
{
    ui->setupUi(this);
    ui->Picture1->setPixmap(drawn_picture("tessaly", 64));
    ui->what_l->setMinimumHeight(fontMetrics().lineSpacing() * lines_of_a_path); // the window does not grow any more
    Timer1->setObjectName("Timer1");
    Timer1->setInterval(10);

    connect(Timer1, &QTimer::timeout, this, &Exit_frm::Timer1_Timer);
}

Exit_frm::~Exit_frm() = default;

// The timer lets the screen paint before the copying blocks the program.
void Exit_frm::paintEvent(QPaintEvent *event)
{
    screen::paintEvent(event);
    if (painted)
        return;
    painted = true;
    Timer1->start();
}

void Exit_frm::Timer1_Timer()
{
    Timer1->stop(); // the back-up may open a dialog, and timers fire inside it
    set_progress_sink([this](const QString &what, qint64 done, qint64 total) { show_progress(what, done, total); });
    const bool whole = guarded("Exit_frm.frm", "Timer1", [] { run_backup(); });
    set_progress_sink({});
    if (!whole) // nobody else would tell before the day when the back-up is wanted
        say_surely("Exit_frm.frm", "Timer1",
                   "The back-up is not complete. " + session.err_description + "\n\nTessaly closes now.", "Tessaly",
                   message_icon::exclamation);
    end_program();
}

void Exit_frm::show_progress(const QString &what, qint64 done, qint64 total)
{
    if (since_shown.isValid() && since_shown.elapsed() < between_paints_ms && done < total)
        return;
    ui->what_l->setText(what + " ...");
    ui->progress_bar->setRange(0, bar_value(total));
    ui->progress_bar->setValue(bar_value(done));
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    since_shown.start();
}
