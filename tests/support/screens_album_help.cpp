// Pictures of the help, and of screens at the width of its pages, which tools/help_pictures takes.
#include "frame/help.h"
#include "frame/session.h"
#include "frame/store.h"
#include "platform/app_folder.h"
#include "platform/mail_delivery.h"
#include "platform/settings.h"
#include "screens/directmail/Signature.h"
#include "screens/frame/help_frm.h"
#include "screens/frame/help_page.h"
#include "screens/frame/menuFrm.h"
#include "screens/intake/Showdetails.h"
#include "screens/intake/mailfrm.h"
#include "screens/list_view.h"
#include "screens/preferences/Accounts.h"
#include "screens/preferences/Format_mail_frm.h"
#include "screens/preferences/Preference.h"
#include "screens/preferences/autoresponder.h"
#include "screens/preferences/mail_client_frm.h"
#include "support/screens_album.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTest>
#include <QToolButton>

namespace {

// A line of a list that is empty makes a picture of nothing.
void select_line(QWidget &screen, const char *list_name, int row)
{
    auto &list = control<list_view>(screen, list_name);
    const QModelIndex index = list.model()->index(row, 0);
    if (!index.isValid())
        qFatal("%s has no line %d to be pictured", list_name, row);
    list.setCurrentIndex(index);
}

// The screen's own window, as large as the page has room for: nothing of it cut off, nothing made smaller.
void keep_window(const album &pictures, screen &shown)
{
    QWidget &frame = *shown.parentWidget();
    constexpr QSize room(640, 480);
    frame.resize(frame.size().boundedTo(room).expandedTo(frame.minimumSizeHint()));
    pictures.keep(frame, "help-" + shown.objectName());
    shown.unload();
}

void picture_search(const album &pictures)
{
    auto &words = control<QLineEdit>(the<help_frm>(), "search_t");
    QTest::keyClicks(&words, "mail folder");
    control<QListWidget>(the<help_frm>(), "results_li").setCurrentRow(1);
    pictures.keep(the<help_frm>(), "help_frm-search");
    words.clear();
    QTest::keyClicks(&words, "zzz");
    pictures.keep(the<help_frm>(), "help_frm-nothing-found");
    words.clear();
}

void picture_finding(const album &pictures)
{
    control<QToolButton>(the<help_frm>(), "find_b").click();
    QTest::keyClicks(&control<QLineEdit>(the<help_frm>(), "find_t"), "server");
    pictures.keep(the<help_frm>(), "help_frm-find");
    QTest::keyClicks(&control<QLineEdit>(the<help_frm>(), "find_t"), "s without end");
    pictures.keep(the<help_frm>(), "help_frm-not-found");
    the<help_frm>().unload();
}

void picture_answer(const album &pictures)
{
    run_sql("insert into spring_orders (full_name,city) values('Zo\u00eb Kr\u00e4mer','Bath')");
    the<autoresponder>().show();
    control<QComboBox>(the<autoresponder>(), "mapname_c").setCurrentText("spring_orders");
    control<QLineEdit>(the<autoresponder>(), "subject_t").setText("Thank you for your order");
    control<QComboBox>(the<autoresponder>(), "greetfield_c").setCurrentText("full_name");
    control<QPlainTextEdit>(the<autoresponder>(), "autocontent_t").setPlainText("We pack it within two days.");
    keep_window(pictures, the<autoresponder>());
}

void picture_mail_page(const album &pictures, menuFrm &console)
{
    const std::vector<std::pair<const char *, const char *>> settings{
        {"kind", "imap"}, {"host", "imap.rosecottage.example"},      {"user", "zoe@rosecottage.example"},
        {"send", "smtp"}, {"smtp_host", "smtp.rosecottage.example"}, {"from", "zoe@rosecottage.example"}};
    for (const auto &[key, value] : settings)
        SaveSetting("mail_client", key, value);
    const QSize usual = console.size();
    console.resize(680, 520);
    the<mail_client_frm>().show();
    pictures.keep(console, "help-mail_client_frm");
    the<mail_client_frm>().unload();
    console.resize(usual);
    for (const auto &[key, value] : settings)
        SaveSetting("mail_client", key, {});
}

void picture_auditor_page(const album &pictures, menuFrm &console)
{
    const QSize usual = console.size();
    console.resize(760, 600);
    session.no_fetch = true;
    the<mailfrm>().show();
    the<mailfrm>().parentWidget()->showMaximized();
    select_line(the<mailfrm>(), "LV_sub", 3);
    pictures.keep(console, "help-mailfrm");
    the<mailfrm>().unload();
    console.resize(usual);
}

void picture_console_page(const album &pictures, menuFrm &console)
{
    const QSize usual = console.size();
    console.resize(console.minimumSize());
    delivery::report told;
    told.line = "2 mails wait in the Outbox";
    console.delivery_told(told);
    QTest::qWait(200); // the mails are counted a little later
    pictures.keep(console, "help-menuFrm");
    console.delivery_told({});
    console.resize(usual);
}

void picture_reply_page(const album &pictures)
{
    Showdetails reply;
    reply.set_mails({{"orders", 1, {}, {}, {}}});
    reply.load();
    control<QComboBox>(reply, "account_c").setCurrentText("orders");
    reply.resize(520, 360);
    pictures.keep(reply, "help-Showdetails");
}

void picture_general_page(const album &pictures)
{
    run_sql("insert into sign values( 'Shop','Kind regards\nZo\u00eb Kr\u00e4mer\nRose Cottage Nursery','Yes' )");
    run_sql("insert into sign values( 'Private','Yours, Zo\u00eb','No' )");
    the<Preference>().show();
    keep_window(pictures, the<Preference>());
    the<Signature>().show();
    control<QListWidget>(the<Signature>(), "List1").setCurrentRow(0);
    keep_window(pictures, the<Signature>());
}

void open_help(const QString &topic)
{
    the<help_frm>().open_help(app_path(u"\\tslhlp.chm"), topic);
}

}

void picture_help(const album &pictures)
{
    if (!QFile::exists(app_path(u"\\tslhlp.chm")) &&
        !QFile::copy(qEnvironmentVariable("HELP_FILE"), app_path(u"\\tslhlp.chm")))
        qFatal("HELP_FILE names no help file");
    open_help({});
    pictures.keep(the<help_frm>(), "help_frm");
    open_help("outbox_frm");
    pictures.keep(the<help_frm>(), "help_frm-page");
    open_help("mail_client_frm");
    picture_search(pictures);
    the<help_frm>().resize(the<help_frm>().minimumSize());
    pictures.keep(the<help_frm>(), "help_frm-smallest");
    the<help_frm>().unload();
    open_help("connecting");
    picture_finding(pictures);
    the<help_frm>().open_help("/no/such/file", {});
    pictures.keep(the<help_frm>(), "help_frm-damaged");
    the<help_frm>().unload();
}

void picture_for_help(const album &pictures, menuFrm &console, screens_site &site)
{
    the<mailfrm>().show(); // fetches what the other pictures show
    the<mailfrm>().unload();
    picture_console_page(pictures, console);
    picture_reply_page(pictures);
    the<Accounts>().show();
    control<QComboBox>(the<Accounts>(), "query_c").setCurrentText("orders");
    keep_window(pictures, the<Accounts>());
    the<Format_mail_frm>().show();
    control<QComboBox>(the<Format_mail_frm>(), "query_c").setCurrentText("orders");
    select_line(the<Format_mail_frm>(), "inbox_lv", 1);
    keep_window(pictures, the<Format_mail_frm>());
    picture_general_page(pictures);
    site.store.add_map("spring_orders", 1, "Order", {{"full_name"}, {"city"}});
    picture_answer(pictures);
    picture_mail_page(pictures, console);
    picture_auditor_page(pictures, console);
}
