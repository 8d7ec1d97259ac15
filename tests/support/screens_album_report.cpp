// Pictures of the report on sent mails: how it is asked for, and its pages.
#include "frame/session.h"
#include "screens/frame/menuFrm.h"
#include "screens/intake/PrintRpt.h"
#include "screens/intake/genrepwait_frm.h"
#include "screens/intake/mailfrm.h"
#include "support/screens_album.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

namespace {

void send_mailing(screens_site &site)
{
    site.store.add_map("bookings", 1, "Booking", {{"first_name"}, {"city"}});
    site.store.run("update table_list_tbl set lastformat=no");
    site.store.run("update table_list_tbl set lastformat=yes where table_name='bookings'");
    site.store.run("insert into match_tbl(ac_name,from_dt,to_dt,sub_contains,filter1,filter2,filter3,filter4,fval1,"
                   "fval2,fval3,fval4) values('orders','','','first_name','city','','','','Köln','','','')");
    for (int number = 1; number <= 130; ++number) {
        const QString subject = number % 9 == 0
                                    ? "Zoë, the nursery opens on Saturday, and everything that survived the "
                                      "winter costs half as much as it did"
                                    : "Zoë, the spring offer of the nursery";
        site.store.run(QStringLiteral("insert into sentitems_tbl (tsl_to,tsl_subject,tsl_sentdate,tsl_body,"
                                      "tsl_sentaccount,tsl_sentmailid,tsl_sentformat,matchid) values('visitor%1@"
                                      "mail.example','%2','3/%3/2026 9:%4:00 AM','Dear visitor','orders',"
                                      "'orders@rosecottage.example','first_name',1)")
                           .arg(number)
                           .arg(subject)
                           .arg(1 + number % 28)
                           .arg(number % 60, 2, 10, QLatin1Char('0')));
    }
}

void ask_for_march()
{
    const auto choose = [](const char *name, const QString &text) {
        control<QComboBox>(the<mailfrm>(), name).setCurrentText(text);
    };
    choose("account_c", "orders");
    choose("subject_field_c", "first_name");
    choose("field1_c", "city");
    control<QLineEdit>(the<mailfrm>(), "val1_t").setText("Köln");
    control<QLineEdit>(the<mailfrm>(), "subject_words_t").setText("nursery");
    control<QDateEdit>(the<mailfrm>(), "DTP1").setDate(QDate(2026, 3, 1));
    control<QDateEdit>(the<mailfrm>(), "DTP2").setDate(QDate(2026, 3, 31));
    control<QPushButton>(the<mailfrm>(), "genrep_b").click();
}

void picture_pages(const album &pictures, menuFrm &console)
{
    const auto press = [](const char *name) { control<QAbstractButton>(the<PrintRpt>(), name).click(); };
    control<QPushButton>(the<mailfrm>(), "prnrep_t").click();
    pictures.keep(console, "PrintRpt");
    QWidget &frame = *the<PrintRpt>().parentWidget();
    const QSize usual = frame.size();
    frame.resize(640, 460); // the room of the help's page
    pictures.keep(frame, "help-PrintRpt");
    frame.resize(usual);
    press("last_b");
    control<QComboBox>(the<PrintRpt>(), "zoom_c").setCurrentIndex(0);
    pictures.keep(console, "PrintRpt-last-page");
    the<PrintRpt>().unload();
}

void picture_smallest(const album &pictures, menuFrm &console)
{
    const QSize usual = console.size();
    console.resize(console.minimumSize());
    the<mailfrm>().show();
    control<QToolButton>(the<mailfrm>(), "sentitems_b").click();
    pictures.keep(console, "mailfrm-sent-report-smallest");
    the<mailfrm>().unload();
    console.resize(usual);
}

}

void picture_report(const album &pictures, menuFrm &console, screens_site &site)
{
    session.no_fetch = true;
    the<PrintRpt>().show();
    pictures.keep(console, "PrintRpt-empty");
    the<PrintRpt>().unload();
    send_mailing(site);
    the<mailfrm>().show();
    control<QToolButton>(the<mailfrm>(), "sentitems_b").click();
    pictures.keep(console, "mailfrm-sent-report");
    ask_for_march();
    pictures.keep(console, "mailfrm-sent-report-made");
    picture_pages(pictures, console);
    control<QToolButton>(the<mailfrm>(), "report_b").click();
    pictures.keep(console, "mailfrm-sent-report-folded");
    control<QToolButton>(the<mailfrm>(), "report_b").click();
    the<mailfrm>().unload();
    picture_smallest(pictures, console);
    genrepwait_frm waiting;
    waiting.Load();
    waiting.adjustSize();
    pictures.keep(waiting, "genrepwait_frm");
    session.no_fetch = false;
}
