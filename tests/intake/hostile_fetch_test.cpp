// A hundred hostile mails in the Inbox with good ones between them: every good one arrives, and nothing ends.
#include "intake/fetch.h"
#include "support/hostile_mails.h"
#include "support/intake_site.h"

#include <QtTest/QTest>

namespace {

const QString account = "orders@example.org";

struct hostile_site : intake_site {
    hostile_site()
    {
        add_account("orders", account);
        add_map("names", 1, "Good order", "Line", {{"full_name", "Line1", ":"}, {"city", "Line2", ":"}});
        enable_unsubscribing();
    }
    // A good one in front of each hostile one, and one behind the last; the names in the good ones.
    QStringList fill()
    {
        QStringList names;
        for (const hostile_mail &hostile : hostile_mails(account.toUtf8())) {
            names += put_good();
            deliver(maildir(), hostile.bytes, next_delivery++);
        }
        return names += put_good();
    }
    QString put_good()
    {
        const QString name = QString("Customer %1").arg(next_delivery);
        put({account, "bob@example.net", "Good order", "full_name: " + name + "\ncity: Rome\n"});
        return name;
    }
};

}

class hostile_fetch_test : public QObject {
    Q_OBJECT
private slots:
    void every_good_mail_arrives();
    void fetching_them_again_stores_nothing_twice();
    void the_tables_are_all_still_there();
};

void hostile_fetch_test::every_good_mail_arrives()
{
    hostile_site site;
    QVERIFY(hostile_mails(account.toUtf8()).size() >= 100);
    const QStringList names = site.fill();
    QVERIFY(site.fetch());
    QCOMPARE(site.column("select full_name from names where city='Rome'"), names);
    QCOMPARE(site.log_text(), QString());
    QCOMPARE(site.inbox().size() + site.moved().size(), int(2 * names.size() - 1));
    const QString orders = site.column("select count(*) from orders").value(0);
    QVERIFY2(orders.toInt() > int(names.size()), qPrintable(orders)); // hostile ones to the account are mails too
    QVERIFY(site.moved().size() >= orders.toInt());
}

void hostile_fetch_test::fetching_them_again_stores_nothing_twice()
{
    hostile_site site;
    site.fill();
    QVERIFY(site.fetch());
    const QStringList before = site.rows("select message_id,tsl_subject,tsl_recdate,tsl_Email from orders");
    site.put_back();
    QVERIFY(site.fetch());
    QCOMPARE(site.rows("select message_id,tsl_subject,tsl_recdate,tsl_Email from orders"), before);
    QVERIFY(intake::fetch_summary().startsWith("0 of "));
}

void hostile_fetch_test::the_tables_are_all_still_there()
{
    hostile_site site;
    const QStringList before = site.rows("select * from email_tbl");
    site.fill();
    QVERIFY(site.fetch());
    QCOMPARE(site.rows("select * from email_tbl"), before);
    QCOMPARE(site.column("select entryno from unsub_entryno"), QStringList{"1037"});
    QCOMPARE(site.column("select count(*) from table_list_tbl"), QStringList{"1"});
}

QTEST_GUILESS_MAIN(hostile_fetch_test)
#include "hostile_fetch_test.moc"
