// The end of the first-run setup.
#include "frame/error_log.h"
#include "frame/session.h"
#include "frame/setup.h"
#include "frame/start_up.h"
#include "support/intake_site.h"

#include <QtTest/QTest>

namespace {

// A store as a new user has it, with accounts that have no table yet.
struct fresh_site : intake_site {
    fresh_site() { run("update install_tbl set install=no"); }
    void configure(const QString &name, const QString &address)
    {
        run("insert into email_tbl(query,email,table_name) values('" + name + "','" + address + "','" + name + "')");
    }
    bool finish() { return guarded("Stage5b.frm", "finish_b", finish_setup); }
    QString count_of(const QString &table) { return rows("select count(*) from [" + table + "]").join(','); }
};

}

class setup_test : public QObject {
    Q_OBJECT
private slots:
    void every_account_gets_an_empty_table_of_the_model();
    void names_with_hyphens_dots_and_reserved_words_get_their_table();
    void the_store_then_counts_as_installed_and_the_console_comes_next();
    void a_table_that_is_there_already_keeps_its_mails();
    void finishing_twice_changes_nothing();
    void a_table_of_another_kind_stops_the_setup_and_says_so();
    void accounts_before_the_one_that_fails_have_their_table();
    void a_name_that_no_table_can_have_stops_the_setup();
};

void setup_test::every_account_gets_an_empty_table_of_the_model()
{
    fresh_site site;
    site.configure("orders", "orders@shop.example");
    site.configure("contact", "hello@shop.example");
    QVERIFY(site.finish());
    for (const QString table : {"orders", "contact"}) {
        QCOMPARE(site.count_of(table), "0");
        ado::Recordset made;
        made.Open("select * from " + table, *session.store_connection);
        QStringList names;
        for (int column = 0; column < made.field_count(); ++column)
            names += made.Fields(column).Name();
        QCOMPARE(names.join(' '), "message_id tsl_subject tsl_recdate tsl_Email tsl_Status tsl_body tsl_processed");
    }
}

void setup_test::names_with_hyphens_dots_and_reserved_words_get_their_table()
{
    fresh_site site;
    for (const QString name : {"my-shop", "my.shop", "Form", "Group", "Query"})
        site.configure(name, name + "@shop.example");
    QVERIFY(site.finish());
    for (const QString name : {"my-shop", "my.shop", "Form", "Group", "Query"})
        QCOMPARE(site.count_of(name), "0");
}

void setup_test::the_store_then_counts_as_installed_and_the_console_comes_next()
{
    fresh_site site;
    site.configure("orders", "orders@shop.example");
    QVERIFY(!is_installed());
    QVERIFY(site.finish());
    QVERIFY(is_installed());
    QVERIFY(start_up() == start::console);
    QCOMPARE(site.boxes.shown, QStringList());
}

// A kill between the making of the tables and the mark must not lock the user out.
void setup_test::a_table_that_is_there_already_keeps_its_mails()
{
    fresh_site site;
    site.add_account("orders", "orders@shop.example");
    site.add_stored_mail("orders", "Order 1", "Name: Ann");
    site.configure("contact", "hello@shop.example");
    QVERIFY(site.finish());
    QCOMPARE(site.count_of("orders"), "1");
    QCOMPARE(site.count_of("contact"), "0");
    QVERIFY(is_installed());
    QCOMPARE(site.log_entries(), QStringList());
}

void setup_test::finishing_twice_changes_nothing()
{
    fresh_site site;
    site.configure("orders", "orders@shop.example");
    QVERIFY(site.finish());
    site.add_stored_mail("orders", "Order 1", "Name: Ann");
    QVERIFY(site.finish());
    QCOMPARE(site.count_of("orders"), "1");
}

void setup_test::a_table_of_another_kind_stops_the_setup_and_says_so()
{
    fresh_site site;
    site.run("select * into roses from model_tbl");
    site.configure("roses", "roses@shop.example");
    QVERIFY(!site.finish());
    QVERIFY(!is_installed());
    QCOMPARE(site.log_entries(), QStringList{"-2147217900|Table 'roses' already exists.|Stage5b.frm|finish_b"});
    QCOMPARE(site.boxes.shown, QStringList());
}

void setup_test::accounts_before_the_one_that_fails_have_their_table()
{
    fresh_site site;
    site.configure("orders", "orders@shop.example");
    site.configure("format_tbl", "format@shop.example");
    QVERIFY(!site.finish());
    QCOMPARE(site.count_of("orders"), "0");
    QVERIFY(!is_installed());
}

void setup_test::a_name_that_no_table_can_have_stops_the_setup()
{
    fresh_site site;
    site.configure("", "nobody@shop.example");
    QVERIFY(!site.finish());
    QVERIFY(!is_installed());
    QCOMPARE(site.log_entries().size(), 1);
}

QTEST_GUILESS_MAIN(setup_test)
#include "setup_test.moc"
