// Account and map tables go into statements as they are named, without brackets: brackets stand only where a table is
// made. So a table that could be made, but whose name needs brackets, fails where it is read or written.
#include "frame/account_list.h"
#include "frame/setup.h"
#include "frame/setup_pages.h"
#include "intake/map_parser.h"
#include "intake/stored_mail.h"
#include "support/intake_site.h"
#include "support/test_store.h"

#include <QtTest/QTest>

class bare_table_names_test : public QObject {
    Q_OBJECT
private slots:
    void table_names_are_put_in_brackets_only_where_a_table_is_made()
    {
        intake_site site;
        site.add_account("web orders", "orders@example.org"); // "select * into [web orders] ..."
        QCOMPARE(site.column("select count(*) from [web orders]"), QStringList{"0"});
        QVERIFY(error_number_of([&] { site.run("select * into more orders from model_for_first"); }) != 0);
    }

    void the_statements_on_an_account_table_go_bare()
    {
        intake_site site;
        site.add_account("web orders", "orders@example.org");
        site.put({"orders@example.org", "bob@example.net", "Order", "Text\n"});
        QVERIFY(site.fetch());
        QCOMPARE(site.inbox().size(), 1);
        QCOMPARE(site.column("select count(*) from [web orders]"), QStringList{"0"});
        QCOMPARE(routines_logged(site), (QStringList{"write_data", "parse_unprocessed_mails"}));
        QVERIFY(!intake::duplicate_test("web orders", {}).contains(u'['));
    }

    void the_statements_on_a_map_table_go_bare()
    {
        intake_site site;
        site.add_account("orders", "orders@example.org");
        site.add_map("names", 1, "Order", "Line", {{"full_name", "Line1", "", true}});
        site.add_stored_mail("orders", "Order", "Bob\r\n");
        site.run("select * into [web names] from names");
        site.run("update table_list_tbl set table_name='web names'");
        intake::parse_unprocessed_mails();
        QCOMPARE(routines_logged(site), QStringList{"parse_unprocessed_mails"});
        QCOMPARE(site.column("select count(*) from [web names]"), QStringList{"0"});
        site.run("update table_list_tbl set table_name='names'"); // it was the name alone
        intake::parse_unprocessed_mails();
        QCOMPARE(site.column("select full_name from names"), QStringList{"Bob"});
    }

    void accounts_named_like_words_of_statements_are_fetched_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("Form") << "Form";
        QTest::newRow("Group") << "Group";
    }

    void accounts_named_like_words_of_statements_are_fetched()
    {
        QFETCH(QString, name);
        intake_site site;
        site.run("update install_tbl set install=no");
        QCOMPARE(setup_pages::why_not_addable(name, "orders@example.org", {}), "");
        add_account_row(name, "orders@example.org");
        finish_setup();
        site.add_map("names", 1, "Order", "Line", {{"full_name", "Line1", "", true}});
        site.put({"orders@example.org", "bob@example.net", "Order", "Bob\n"});
        site.put({"orders@example.org", "bob@example.net", "Other", "Text\n"});
        QVERIFY(site.fetch());
        QCOMPARE(site.log_entries(), QStringList());
        QCOMPARE(site.inbox().size(), 0);
        QCOMPARE(site.column("select tsl_subject from [" + name + "] order by message_id"),
                 (QStringList{"Order", "Other"}));
        QCOMPARE(site.column("select full_name from names"), QStringList{"Bob"});
        site.put_back();
        QVERIFY(site.fetch()); // all of them are known by now
        QCOMPARE(site.column("select count(*) from [" + name + "]"), QStringList{"2"});
    }

private:
    static QStringList routines_logged(const intake_site &site)
    {
        QStringList routines;
        for (const QString &entry : site.log_entries())
            routines += entry.section(u'|', 3);
        return routines;
    }
};

QTEST_GUILESS_MAIN(bare_table_names_test)
#include "bare_table_names_test.moc"
