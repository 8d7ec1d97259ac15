// Pictures of the help, and of screens at the width of its pages, which tools/help_pictures takes.
#include "frame/help.h"
#include "frame/session.h"
#include "platform/app_folder.h"
#include "platform/settings.h"
#include "screens/frame/help_frm.h"
#include "screens/frame/help_page.h"
#include "screens/frame/menuFrm.h"
#include "screens/intake/mailfrm.h"
#include "screens/list_view.h"
#include "screens/preferences/Accounts.h"
#include "screens/preferences/Format_mail_frm.h"
#include "screens/preferences/autoresponder.h"
#include "screens/preferences/mail_client_frm.h"
#include "support/screens_album.h"
#include "support/screens_driver.h"

#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTest>
#include <QToolButton>

namespace {

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

void picture_answer(const album &pictures, menuFrm &console)
{
    the<autoresponder>().show();
    control<QComboBox>(the<autoresponder>(), "mapname_c").setCurrentIndex(1);
    control<QLineEdit>(the<autoresponder>(), "subject_t").setText("Thank you for your order");
    control<QPlainTextEdit>(the<autoresponder>(), "autocontent_t").setPlainText("We pack it within two days.");
    pictures.keep(console, "help-autoresponder");
    the<autoresponder>().unload();
}

void picture_mail_page(const album &pictures, menuFrm &console)
{
    const std::vector<std::pair<const char *, const char *>> settings{
        {"kind", "imap"}, {"host", "imap.rosecottage.example"},      {"user", "zoe@rosecottage.example"},
        {"send", "smtp"}, {"smtp_host", "smtp.rosecottage.example"}, {"from", "zoe@rosecottage.example"}};
    for (const auto &[key, value] : settings)
        SaveSetting("mail_client", key, value);
    the<mail_client_frm>().show();
    pictures.keep(console, "help-mail_client_frm");
    the<mail_client_frm>().unload();
    for (const auto &[key, value] : settings)
        SaveSetting("mail_client", key, {});
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

void picture_for_help(const album &pictures, menuFrm &console)
{
    const QSize usual = console.size();
    console.resize(680, 520);
    session.no_fetch = true;
    the<mailfrm>().show();
    auto &list = control<list_view>(the<mailfrm>(), "LV_sub");
    list.setCurrentIndex(list.model()->index(3, 0));
    pictures.keep(console, "help-mailfrm");
    the<mailfrm>().unload();
    the<Accounts>().show();
    control<QComboBox>(the<Accounts>(), "query_c").setCurrentIndex(1);
    pictures.keep(console, "help-Accounts");
    the<Accounts>().unload();
    the<Format_mail_frm>().show();
    control<QComboBox>(the<Format_mail_frm>(), "query_c").setCurrentIndex(1);
    auto &mails = control<list_view>(the<Format_mail_frm>(), "inbox_lv");
    mails.setCurrentIndex(mails.model()->index(1, 0));
    pictures.keep(console, "help-Format_mail_frm");
    the<Format_mail_frm>().unload();
    picture_mail_page(pictures, console);
    picture_answer(pictures, console);
    console.resize(usual);
}
