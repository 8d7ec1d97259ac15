// Saves a picture of every screen, on a light and on a dark desktop: screens_pictures FOLDER. No test: for eyes.
#include "frame/back_up_folder.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "intake/progress_page.h"
#include "platform/settings.h"
#include "screens/desktop_style.h"
#include "screens/frame/Exit_frm.h"
#include "screens/frame/backup_frm.h"
#include "screens/frame/frmAbout.h"
#include "screens/frame/frmSplash.h"
#include "screens/frame/menuFrm.h"
#include "screens/intake/Showdetails.h"
#include "screens/intake/mailfrm.h"
#include "screens/intake/mapinprogress_frm.h"
#include "screens/intake/mfetchinprogress_frm.h"
#include "screens/list_view.h"
#include "screens/message_boxes.h"
#include "screens/screen.h"
#include "support/screens_album.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>

namespace {

QPalette dark_colours()
{
    QPalette colours(QColor(0x35, 0x37, 0x3a), QColor(0x2a, 0x2c, 0x2f));
    colours.setColor(QPalette::Base, QColor(0x1f, 0x21, 0x23));
    colours.setColor(QPalette::AlternateBase, QColor(0x27, 0x29, 0x2c));
    colours.setColor(QPalette::Highlight, QColor(0x2f, 0x6f, 0xb5));
    colours.setColor(QPalette::PlaceholderText, QColor(0x9a, 0x9d, 0xa1));
    return colours;
}

void fill_site(screens_site &site)
{
    for (const char *file : {"/delivered/tips.tip", "/delivered/mail_providers.tsv",
                             "/delivered/pictures/otl-to-tsl.gif", "/delivered/pictures/tsl-to-dtb.gif"}) {
        const QString from = QStringLiteral(SOURCE_ROOT) + file;
        QFile::copy(from, site.file(from.section('/', -1)));
    }
    site.store.add_account("orders", "orders@rosecottage.example");
    site.store.add_account("contact", "hello@rosecottage.example");
    for (int number = 1; number <= 24; ++number) {
        const bool order = number % 3 != 0;
        site.deliver_mail(order ? "orders@rosecottage.example" : "hello@rosecottage.example",
                          order ? "Order " + QString::number(1000 + number) : "Which roses grow in the shade?",
                          "Name: Zoë Krämer\nCity: Köln\nItem: Lavender, blue\nQuantity: 12");
    }
    site.deliver_mail("hello@rosecottage.example", QString("A subject that does not want to end ").repeated(60));
}

void picture_console(const album &pictures, menuFrm &console)
{
    pictures.keep(console, "menuFrm");
    for (const char *name : {"file", "mail", "preferences", "help"}) {
        auto &menu = control<QMenu>(console, name);
        menu.popup({});
        pictures.keep(menu, QString("menuFrm-") + name);
        menu.close();
    }
}

void picture_auditor(const album &pictures, menuFrm &console)
{
    session.no_fetch = true;
    the<mailfrm>().show();
    pictures.keep(console, "mailfrm-empty");
    the<mailfrm>().unload();
    session.no_fetch = false;
    the<mailfrm>().show();
    auto &list = control<list_view>(the<mailfrm>(), "LV_sub");
    list.setCurrentIndex(list.model()->index(3, 0));
    pictures.keep(console, "mailfrm");
    list.selectionModel()->select(list.model()->index(5, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    pictures.keep(console, "mailfrm-several");
    auto &inbox_search = control<QLineEdit>(the<mailfrm>(), "Insearch_t");
    inbox_search.setText("no such words");
    pictures.keep(console, "mailfrm-nothing-found");
    inbox_search.clear();
    control<QToolButton>(the<mailfrm>(), "sentitems_b").click();
    pictures.keep(console, "mailfrm-sent");
    the<mailfrm>().unload();
}

void picture_reply(const album &pictures)
{
    Showdetails reply;
    reply.set_mails({{"orders", 1, {}, {}, {}}, {"orders", 2, {}, {}, {}}});
    reply.load();
    reply.resize(reply.sizeHint());
    pictures.keep(reply, "Showdetails");
    reply.resize(reply.minimumSize());
    pictures.keep(reply, "Showdetails-smallest");
}

// The least that the console can be, and a mail whose subject does not want to end.
void picture_small_console(const album &pictures, menuFrm &console)
{
    const QSize usual = console.size();
    console.resize(console.minimumSize());
    pictures.keep(console, "menuFrm-smallest");
    session.no_fetch = true;
    the<mailfrm>().show();
    auto &list = control<list_view>(the<mailfrm>(), "LV_sub");
    list.setCurrentIndex(list.model()->index(list.model()->rowCount() - 1, 0));
    pictures.keep(console, "mailfrm-smallest");
    for (const QSize size : {QSize(640, 480), QSize(1280, 800)}) {
        console.resize(size);
        pictures.keep(console, QString("mailfrm-%1x%2").arg(size.width()).arg(size.height()));
    }
    console.resize(usual);
    pictures.keep(console, "mailfrm-long-subject");
    the<mailfrm>().unload();
}

void picture_waits(const album &pictures, const menuFrm &console)
{
    const QColor ground = console.palette().color(QPalette::Window);
    const auto platform_colour = quint32(ground.blue() << 16 | ground.green() << 8 | ground.red());
    intake::write_fetch_animation(platform_colour);
    mfetchinprogress_frm fetch;
    fetch.Load();
    fetch.adjustSize();
    pictures.keep(fetch, "mfetchinprogress_frm");
    intake::write_mapping_animation(platform_colour);
    mapinprogress_frm mapping;
    mapping.Load();
    mapping.adjustSize();
    pictures.keep(mapping, "mapinprogress_frm");
}

void picture_small_screens(const album &pictures)
{
    the<frmSplash>().show();
    pictures.keep(the<frmSplash>(), "frmSplash");
    the<frmSplash>().unload();
    the<frmAbout>().show();
    pictures.keep(the<frmAbout>(), "frmAbout");
    the<frmAbout>().unload();
    Exit_frm leaving;
    control<QTimer>(leaving, "Timer1").disconnect(); // it would back up, and end the program
    leaving.adjustSize();
    pictures.keep(leaving, "Exit_frm");
    control<QProgressBar>(leaving, "progress_bar").setRange(0, 7);
    control<QProgressBar>(leaving, "progress_bar").setValue(3);
    control<QLabel>(leaving, "what_l").setText("Copying your forms ...");
    pictures.keep(leaving, "Exit_frm-copying");
    control<QProgressBar>(leaving, "progress_bar").setRange(0, 0);
    control<QLabel>(leaving, "what_l")
        .setText("The folder for back-ups is not there (/media/zoe/A stick with a long name/Copies of my shop). "
                 "Please choose a file ...");
    pictures.keep(leaving, "Exit_frm-path");
}

// The box that this opens, which is then closed.
void picture_box(const album &pictures, const QString &name, const std::function<void()> &opening)
{
    QTimer::singleShot(100, [&pictures, name] {
        pictures.keep(*QApplication::activeModalWidget(), name);
        QApplication::activeModalWidget()->close();
    });
    opening();
}

void picture_back_up(const album &pictures, screens_site &site)
{
    QDir().mkpath(site.file("back-ups/data"));
    session.store_connection->copy_store(site.file("back-ups/data/Tessaly.mdb"));
    SaveSetting("main", "backup", "/home/zoe/Documents/back-ups");
    the<backup_frm>().show();
    pictures.keep(*the<backup_frm>().window(), "backup_frm");
    control<QLineEdit>(the<backup_frm>(), "Folder_t").setText(site.file("back-ups"));
    pictures.keep(*the<backup_frm>().window(), "backup_frm-former");
    the<backup_frm>().unload();
    site.store.run("update install_tbl set install=no");
    backup_frm last_step;
    last_step.show();
    last_step.adjustSize();
    pictures.keep(last_step, "backup_frm-setup");
    site.store.run("update install_tbl set install=yes");
}

void picture_boxes(const album &pictures, screens_site &site)
{
    message_boxes boxes;
    set_message_service(&boxes);
    picture_box(pictures, "question", [] { yes_no("Would you like to backup your data?"); });
    const QTemporaryDir stick; // the folder of the program takes no back-up
    QDir(stick.path()).mkpath("data");
    session.store_connection->copy_store(stick.filePath("data/Tessaly.mdb"));
    picture_box(pictures, "question-former", [&stick] { keep_back_up_folder(stick.path(), true); });
    QDir(stick.path()).mkpath("html/letters");
    QFile(stick.filePath("data/figures.csv")).open(QFile::WriteOnly);
    picture_box(pictures, "question-strangers", [&stick] { keep_back_up_folder(stick.path(), false); });
    picture_box(pictures, "box-beside", [] {
        say_with("Database will be restored once you restart the application. Click here to close the application.",
                 "Your previous data is kept in /home/zoe/Tessaly/mailapp 2026-11-21 15-30-12.mdb");
    });
    set_message_service(&site.boxes);
}

void take_pictures(const album &pictures)
{
    screens_site site;
    fill_site(site);
    picture_setup(pictures);
    menuFrm console;
    console.show();
    picture_console(pictures, console);
    picture_auditor(pictures, console);
    picture_reply(pictures);
    picture_small_console(pictures, console);
    picture_autoresponder(pictures, console); // nothing to answer yet
    picture_map_wizard(pictures, console);
    picture_classic_maps(pictures, console);
    picture_autoresponder(pictures, console);
    picture_report(pictures, console, site);
    picture_waits(pictures, console);
    picture_small_screens(pictures);
    picture_accounts(pictures, console);
    picture_preferences(pictures, console);
    picture_mail_client(pictures, console);
    picture_outbox(pictures, console);
    picture_back_up(pictures, site);
    picture_boxes(pictures, site);
    picture_help(pictures);
}

void take_pictures_for_help(const album &pictures)
{
    screens_site site;
    fill_site(site);
    menuFrm console;
    console.show();
    picture_for_help(pictures, console, site);
}

}

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (argc != 2)
        qFatal("screens_pictures FOLDER");
    const QString folder = QString::fromLocal8Bit(argv[1]);
    QDir().mkpath(folder);
    QApplication::setStyle(new desktop_style); // the application owns it
    take_pictures({folder, "light"});
    take_pictures_for_help({folder, "light"});
    QApplication::setPalette(dark_colours());
    take_pictures({folder, "dark"});
    return 0;
}
