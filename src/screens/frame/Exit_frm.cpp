#include "screens/frame/Exit_frm.h"
#include "frame/back_up.h"
#include "frame/error_log.h"
#include "screens/frame/closing.h"
#include "screens/icons.h"
#include "ui_Exit_frm.h"

#include <QTimer>

Exit_frm::Exit_frm(QWidget *parent) : screen(parent), ui(std::make_unique<Ui::Exit_frm>()), Timer1(new QTimer(this))
{
    ui->setupUi(this);
    ui->Picture1->setPixmap(drawn_picture("tessaly", 64));
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
    guarded("Exit_frm.frm", "Timer1", [] { run_backup(); });
    end_program();
}
