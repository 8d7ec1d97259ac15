#include "screens/frame/menuFrm.h"
#include "frame/auto_fetch.h"
#include "frame/error_log.h"
#include "frame/help.h"
#include "frame/messages.h"
#include "frame/restore.h"
#include "frame/session.h"
#include "frame/status.h"
#include "frame/store.h"
#include "intake/progress_page.h"
#include "platform/mail_delivery.h"
#include "platform/network.h"
#include "screens/frame/Exit_frm.h"
#include "screens/frame/backup_frm.h"
#include "screens/frame/closing.h"
#include "screens/frame/console_area.h"
#include "screens/frame/console_place.h"
#include "screens/frame/frmAbout.h"
#include "screens/frame/frmSplash.h"
#include "screens/frame/menu_tree.h"
#include "screens/frame/outbox_frm.h"
#include "screens/frame/status_text.h"
#include "screens/icons.h"
#include "screens/intake/mailfrm.h"
#include "screens/intake/mfetchinprogress_frm.h"
#include "screens/preferences/page_list.h"
#include "screens/screen.h"

#include <QAction>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

namespace {

constexpr int tick_ms = 10000;
constexpr int tick_waits_ms = 5000; // the window stands still meanwhile

}

menuFrm::menuFrm(QWidget *parent)
    : QMainWindow(parent),
      area(new console_area(this)),
      Timer1(new QTimer(this)),
      lasting_line(new status_text(this)),
      outbox_b(new QToolButton(this))
{
    setObjectName("menuFrm");
    setWindowTitle("Tessaly");
    setWindowIcon(drawn_icon("tessaly"));
    setMinimumSize(640, 480);
    resize(1120, 720);
    restore_console_place(*this);
    setCentralWidget(area);
    area->setObjectName("area");
    statusBar()->setObjectName("StatusBar1");
    lasting_line->setObjectName("status_l");
    statusBar()->addPermanentWidget(lasting_line);
    lasting_line->hide(); // adding has shown it
    outbox_b->setObjectName("outbox_b");
    outbox_b->setAutoRaise(true);
    outbox_b->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    outbox_b->setIcon(drawn_icon("sent"));
    statusBar()->addPermanentWidget(outbox_b);
    outbox_b->hide();
    Timer1->setObjectName("Timer1");
    Timer1->setInterval(tick_ms);
    build_menu();
    works("bkp_folder_mnu", &menuFrm::bkp_folder_mnu_Click);
    works("rst_bkp", &menuFrm::rst_bkp_Click);
    works("fetchmail", &menuFrm::fetchmail_Click);
    works("mauditor_mnu", &menuFrm::mauditor_mnu_Click);
    works("outbox_mnu", &menuFrm::outbox_mnu_Click);
    works("account", &menuFrm::account_Click);
    works("mail_client_mnu", &menuFrm::mail_client_mnu_Click);
    works("exit", &menuFrm::exit_Click);
    works("contents", &menuFrm::contents_Click);
    works("showtips", &menuFrm::showtips_Click);
    works("about", &menuFrm::about_Click);
    build_toolbar();
    give_spoken_names(*this);

    connect(Timer1, &QTimer::timeout, this, &menuFrm::Timer1_Timer);
    connect(outbox_b, &QToolButton::clicked, this, &menuFrm::outbox_mnu_Click);
    set_screen_area(area);
    set_status_sink([line = QPointer<status_text>(lasting_line)](const QString &text) {
        if (line)
            line->set_whole_text(text);
    });
}

menuFrm::~menuFrm()
{
    set_status_sink({});
}

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

QAction *menuFrm::command(const char *name) const
{
    return findChild<QAction *>(name);
}

void menuFrm::works(const char *name, void (menuFrm::*handler)())
{
    command(name)->setEnabled(true);
    connect(command(name), &QAction::triggered, this, handler);
}

void menuFrm::build_toolbar()
{
    command("fetchmail")->setIcon(drawn_icon("fetchmail"));
    command("mauditor_mnu")->setIcon(drawn_icon("mauditor_mnu"));
    command("showtips")->setIcon(drawn_icon("tips"));
    command("contents")->setIcon(drawn_icon("help"));
    command("contents")->setIconText("Help");
    command("fetchmail")->setStatusTip("Takes the form mails of your accounts out of your Inbox");
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
    if (!Timer1->isActive())
        Timer1->start();
}

// The rest is for the tips of the menu.
void menuFrm::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    lasting_line->setMaximumWidth(width() * 2 / 3);
}

void menuFrm::Timer1_Timer()
{
    if (busy()) // timers fire inside message boxes and while long work lets the screen paint
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

// As the platform gives a colour: blue, green, red from the highest byte down.
quint32 menuFrm::GetBkColor() const
{
    const QColor colour = palette().color(QPalette::Window);
    return quint32(colour.blue() << 16 | colour.green() << 8 | colour.red());
}

void menuFrm::fetchmail_Click()
{
    session.no_fetch = false;
    setCursor(Qt::WaitCursor);
    const bool page_written =
        guarded("menuFrm.frm", "fetchmail", [this] { intake::write_fetch_animation(GetBkColor()); });
    if (page_written)
        the<mfetchinprogress_frm>().show_modal();
    unsetCursor();
}

void menuFrm::bkp_folder_mnu_Click()
{
    the<backup_frm>().show();
}

void menuFrm::rst_bkp_Click()
{
    bool restored = false;
    setCursor(Qt::WaitCursor); // looking at a large file takes its time
    const bool good = guarded("menuFrm.frm", "rst_bkp", [&] { restored = restore_backup(); });
    unsetCursor();
    if (!good) {
        say("The back-up was not restored. " + session.err_description, "Tessaly", message_icon::exclamation);
        guarded("menuFrm.frm", "rst_bkp", open_store_if_closed);
    }
    if (!restored)
        return;
    closing = true;
    end_program();
}

void menuFrm::mauditor_mnu_Click()
{
    session.no_fetch = true;
    the<mailfrm>().show();
}

void menuFrm::outbox_mnu_Click()
{
    the<outbox_frm>().show();
}

void menuFrm::account_Click()
{
    open_page(preference_page::accounts);
}

void menuFrm::mail_client_mnu_Click()
{
    open_page(preference_page::mail_client);
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
    const QString line = told.line.simplified();
    outbox_b->setText(fontMetrics().elidedText(line, Qt::ElideRight, width() / 3));
    outbox_b->setToolTip("<qt>" + line.toHtmlEscaped() + "</qt>");
    outbox_b->setAccessibleName("Outbox: " + line);
    outbox_b->setVisible(!line.isEmpty());
    if (is_visible<outbox_frm>())
        the<outbox_frm>().delivery_told(told);
}

void menuFrm::exit_Click()
{
    close();
}

void menuFrm::contents_Click()
{
    if (!show_help({}))
        statusBar()->showMessage("There is no help file beside the program."); // passes with the next tip
}

void menuFrm::showtips_Click()
{
    the<frmSplash>().show_tips();
}

void menuFrm::about_Click()
{
    the<frmAbout>().show_modal();
}

void menuFrm::closeEvent(QCloseEvent *event)
{
    event->ignore(); // the process ends from here or from Exit_frm, never by a window that vanished
    if (closing || busy())
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
        contents_Click();
    else
        QMainWindow::keyPressEvent(event);
}
