// The Mail Auditor's sent view in tests of its report, on 21 November 2026: the account orders with its map clients and
// three sent mails, the account contact with none.
#pragma once
#include "frame/session.h"
#include "platform/clock.h"
#include "screens/intake/mailfrm.h"
#include "screens/list_view.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

struct sent_site : screens_site {
    sent_site()
    {
        set_clock([] { return QDateTime(QDate(2026, 11, 21), QTime(9, 30), Qt::UTC); });
        const qint64 orders = store.add_account("orders", "orders@shop.example");
        store.add_account("contact", "hello@shop.example");
        store.add_map("clients", orders, "Order", {{"first_name"}, {"city"}});
        store.run("update table_list_tbl set lastformat=yes where table_name='clients'");
        add_sent("one@mail.example", "First", "11/9/2026 8:00:00 AM", "0");
        add_sent("two@mail.example", "Second", "11/20/2026 1:02:03 PM", "1");
        add_sent("three@mail.example", "Third", "11/21/2026 1:02:03 PM", "1");
        session.no_fetch = true;
    }
    ~sent_site() { set_clock({}); }

    void add_sent(const QString &to, const QString &subject, const QString &date, const QString &mailing)
    {
        store.run("insert into sentitems_tbl (tsl_to,tsl_subject,tsl_sentdate,tsl_body,tsl_sentaccount,"
                  "tsl_sentmailid,tsl_sentformat,matchid) values('" +
                  to + "','" + subject + "','" + date + "','body','orders','orders@shop.example',''," + mailing + ")");
    }
    void add_mailing_to_paris()
    {
        store.run("insert into match_tbl(ac_name,from_dt,to_dt,sub_contains,filter1,filter2,filter3,filter4,fval1,"
                  "fval2,fval3,fval4) values('orders','','','','city','','','','Paris','','','')");
    }
    int reported() { return store.cell("select count(*) from printreport_tbl").toInt(); }
};

template <typename T>
T &on_bar(const char *name)
{
    return control<T>(the<mailfrm>(), name);
}

inline void open_sent_view()
{
    the<mailfrm>().show();
    on_bar<QToolButton>("sentitems_b").click();
}

inline void choose_entry(const char *name, const QString &text)
{
    auto &list = on_bar<QComboBox>(name);
    const int index = list.findText(text);
    if (index < 0)
        qFatal("%s does not offer %s", name, qPrintable(text));
    list.setCurrentIndex(index);
}

inline void choose_november()
{
    choose_entry("account_c", "orders");
    on_bar<QDateEdit>("DTP1").setDate(QDate(2026, 11, 1));
    on_bar<QDateEdit>("DTP2").setDate(QDate(2026, 11, 30));
}

inline void generate()
{
    on_bar<QPushButton>("genrep_b").click();
}

inline QStringList entries(const char *name)
{
    QStringList texts;
    for (int index = 0; index < on_bar<QComboBox>(name).count(); ++index)
        texts += on_bar<QComboBox>(name).itemText(index);
    return texts;
}

inline QStringList listed()
{
    QStringList subjects;
    const QAbstractItemModel &rows = *on_bar<list_view>("LV_sub_si").model();
    for (int row = 0; row < rows.rowCount(); ++row)
        subjects += rows.index(row, 1).data().toString();
    return subjects;
}
