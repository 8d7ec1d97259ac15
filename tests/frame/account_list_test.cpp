// The accounts in memory.
#include "frame/account_list.h"
#include "frame/session.h"
#include "support/intake_site.h"

#include <QtTest/QTest>

class account_list_test : public QObject {
    Q_OBJECT
private slots:
    void no_accounts_are_told_and_leave_the_list_empty();
    void accounts_stand_from_column_one_in_the_tables_order();
    void the_last_column_is_spare_and_empty();
    void loading_again_shows_what_changed();
    void missing_texts_are_empty();
};

void account_list_test::no_accounts_are_told_and_leave_the_list_empty()
{
    const intake_site site;
    load_accounts();
    QCOMPARE(site.boxes.shown, QStringList{"Mail ids not yet configured"});
    QVERIFY(session.account_ids.empty());
    QCOMPARE(account_upper_bound(), 1); // a loop from 1 to below it does nothing
}

void account_list_test::accounts_stand_from_column_one_in_the_tables_order()
{
    intake_site site;
    site.add_account("zebra", "z@example.org");
    site.add_account("alpha", "a@example.org");
    load_accounts();
    QCOMPARE(site.boxes.shown, QStringList());
    QCOMPARE(account_upper_bound(), 3);
    QCOMPARE(session.account_ids[1].email, QString("z@example.org"));
    QCOMPARE(session.account_ids[1].table_name, QString("zebra"));
    QCOMPARE(session.account_ids[1].id, QString("1"));
    QCOMPARE(session.account_ids[2].email, QString("a@example.org"));
    QCOMPARE(session.account_ids[2].id, QString("2"));
}

void account_list_test::the_last_column_is_spare_and_empty()
{
    intake_site site;
    site.add_account("orders", "orders@example.org");
    load_accounts();
    QCOMPARE(int(session.account_ids.size()), 3); // column 0 is not used
    QCOMPARE(account_upper_bound(), 2);
    QCOMPARE(session.account_ids[2].email, QString());
    QCOMPARE(session.account_ids[2].table_name, QString());
    QCOMPARE(session.account_ids[2].id, QString());
}

void account_list_test::loading_again_shows_what_changed()
{
    intake_site site;
    site.add_account("orders", "orders@example.org");
    site.add_account("contact", "contact@example.org");
    load_accounts();
    site.run("delete from email_tbl where query='orders'");
    load_accounts();
    QCOMPARE(account_upper_bound(), 2);
    QCOMPARE(session.account_ids[1].table_name, QString("contact"));
    QCOMPARE(session.account_ids[2].email, QString());
    site.run("delete from email_tbl");
    load_accounts();
    QVERIFY(session.account_ids.empty());
}

void account_list_test::missing_texts_are_empty()
{
    intake_site site;
    site.run("insert into email_tbl(query) values('half')");
    load_accounts();
    QCOMPARE(session.account_ids[1].email, QString());
    QCOMPARE(session.account_ids[1].table_name, QString());
}

QTEST_GUILESS_MAIN(account_list_test)
#include "account_list_test.moc"
