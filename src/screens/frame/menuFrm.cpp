#include "screens/frame/menuFrm.h"
#include "frame/auto_fetch.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/status.h"
#include "platform/mail_delivery.h"
#include "platform/network.h"
#include "screens/frame/Exit_frm.h"
#include "screens/frame/closing.h"
#include "screens/frame/console_area.h"
#include "screens/frame/console_place.h"
#include "screens/frame/console_status.h"
#include "screens/frame/menu_tree.h"
#include "screens/frame/outbox_frm.h"
#include "screens/icons.h"
#include "screens/intake/mailfrm.h"
#include "screens/screen.h"
#include "screens/spoken_names.h"

#include <QAction>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QTimer>
#include <QToolBar>

namespace {

constexpr int tick_ms = 10000;
constexpr int tick_waits_ms = 5000; // the window stands still meanwhile

}

menuFrm::menuFrm(QWidget *parent)
    : QMainWindow(parent), area(new console_area(this)), Timer1(new QTimer(this)), status(new console_status(*this))
{
    setObjectName("menuFrm");
    setWindowTitle("Tessaly");
    setWindowIcon(drawn_icon("tessaly"));
    setMinimumSize(640, 480);
    resize(1120, 720);
    restore_console_place(*this);
    setCentralWidget(area);
    area->setObjectName("area");
    Timer1->setObjectName("Timer1");
    Timer1->setInterval(tick_ms);
    build_menu();
    connect_commands();
    build_toolbar();
    give_spoken_names(*this);

    connect(Timer1, &QTimer::timeout, this, &menuFrm::Timer1_Timer);
    connect(status, &console_status::outbox_clicked, this, &menuFrm::outbox_mnu_Click);
    connect(status, &console_status::unprocessed_clicked, this, &menuFrm::mauditor_mnu_Click);
    set_screen_area(area);
}

menuFrm::~menuFrm() = default;

void menuFrm::build_menu()
{
    std::vector<QMenu *> open_menus; // one a depth
    for (const menu_entry &entry : menu_tree()) {
        open_menus.resize(size_t(entry.depth));
        if (entry.is_menu) {
            QMenu *menu =
                open_menus.empty() ? menuBar()->addMenu(entry.caption) : open_menus.back()->addMenu(entry.caption);
            menu->setObjectName(entry.name);
            open_menus.push_back(menu);
        } else {
            QAction *action = open_menus.back()->addAction(entry.caption);
            action->setObjectName(entry.name);
            action->setEnabled(false); // until works() says otherwise: its screen does not exist yet
        }
    }
    findChild<QMenu *>("composer_mnu")->menuAction()->setVisible(false); // the composer shows it while it is open
}

void menuFrm::build_toolbar()
{
    command("fetchmail")->setIcon(drawn_icon("fetchmail"));
    command("mauditor_mnu")->setIcon(drawn_icon("mauditor_mnu"));
    command("showtips")->setIcon(drawn_icon("tips"));
    command("contents")->setIcon(drawn_icon("help"));
    command("contents")->setIconText("Help");
    command("fetchmail")->setStatusTip("Gathers the form mails of your accounts");
    command("mauditor_mnu")->setStatusTip("Shows the mails that are stored");
    auto *bar = addToolBar("Toolbar");
    bar->setObjectName("toolbar");
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->addAction(command("fetchmail"));
    bar->addAction(command("mauditor_mnu"));
    bar->addSeparator();
    bar->addAction(command("showtips"));
    bar->addAction(command("contents"));
}

void menuFrm::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    if (Timer1->isActive())
        return;
    Timer1->start();
    mails_changed(); // to be counted when the window stands
}

void menuFrm::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    status->fit(width());
}

void menuFrm::Timer1_Timer()
{
    status->show_last_fetch(); // midnight makes its time one of yesterday
    if (busy())                // timers fire inside message boxes and while long work lets the screen paint
        return;
    guarded("menuFrm.frm", "Timer1", [] {
        if (!auto_fetch_due())
            return;
        const bool was_visible = is_visible<mailfrm>();
        session.no_fetch = false;
        const net::patience_scope waiting(
            {.connect_ms = tick_waits_ms, .answer_ms = tick_waits_ms, .is_tick = true, .give_up = {}});
        the<mailfrm>().load(); // an open one stays as it is: nothing is fetched
        if (!was_visible)
            the<mailfrm>().unload();
    });
}

void menuFrm::start_delivery_when_painted()
{
    delivery_is_due = true;
    update();
}

void menuFrm::paintEvent(QPaintEvent *event)
{
    QMainWindow::paintEvent(event);
    if (std::exchange(delivery_is_due, false))
        QTimer::singleShot(0, this, &menuFrm::start_delivery);
}

void menuFrm::start_delivery()
{
    guarded("menuFrm.frm", "start_delivery", [this] {
        delivery::start([self = QPointer<menuFrm>(this)](const delivery::report &told) {
            if (self)
                self->delivery_told(told);
        });
        delivery_told(delivery::present());
    });
}

void menuFrm::delivery_told(const delivery::report &told)
{
    status->show_delivery(told);
    if (is_visible<outbox_frm>())
        the<outbox_frm>().delivery_told(told);
}

void menuFrm::closeEvent(QCloseEvent *event)
{
    event->ignore(); // the process ends from here or from Exit_frm, never by a window that vanished
    if (closing || busy() || !all_screens_may_be_left())
        return;
    closing = true;
    Timer1->stop();
    bool backs_up = false;
    if (!guarded("menuFrm.frm", "Form_QueryUnload",
                 [&] { backs_up = yes_no("Would you like to backup your data?"); })) {
        closing = false; // what was written last could not be kept; the user hears of it before the program goes
        Timer1->start();
        return status_line("The store cannot be written: " + session.err_description);
    }
    guarded("menuFrm.frm", "keep_console_place", [this] { keep_console_place(*this); });
    if (!backs_up)
        return end_program();
    if (isMinimized()) // the last screen begins its work when it has painted, and an icon paints nothing
        showNormal();
    the<Exit_frm>().show();
}

void menuFrm::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_F1)
        open_help("menuFrm");
    else
        QMainWindow::keyPressEvent(event);
}
