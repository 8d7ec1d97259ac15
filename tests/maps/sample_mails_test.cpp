// The mails that a map can be made from, and deleting raw ones.
#include "maps/map_writing.h"
#include "maps/sample_mails.h"
#include "support/wizard_site.h"

#include <QtTest/QTest>

class sample_mails_test : public QObject {
    Q_OBJECT
private slots:
    void all_mails_of_all_accounts_stand_in_one_list();
    void processed_mails_are_samples_too();
    void without_accounts_there_are_none();
    void missing_values_are_empty();
    void the_raw_mails_of_one_account();
    void two_accounts_on_one_table_show_it_twice();
    void a_body_comes_back_letter_for_letter();
    void a_body_that_is_gone_is_empty();
    void chosen_mails_are_deleted_and_no_others();
    void no_mail_chosen_deletes_none();
    void rows_of_map_tables_stay();
    void an_accounts_id_is_found_by_its_table();
    void a_table_that_is_gone_leaves_its_account_out_and_no_other();
    void without_the_list_of_accounts_it_fails();
};

void sample_mails_test::all_mails_of_all_accounts_stand_in_one_list()
{
    wizard_site site;
    site.add_account("shop", "shop@example.org");
    site.run("insert into shop (tsl_subject,tsl_recdate,tsl_Email,tsl_body) values('Sale','8/13/2026 1:02:03 PM',"
             "'ann@example.net','x')");
    site.add_stored_mail("orders", "One", "x");
    site.add_stored_mail("orders", "Two", "x");
    const auto mails = maps::all_sample_mails().mails;
    QStringList lines;
    for (const auto &mail : mails)
        lines += (QStringList{mail.to, mail.subject, mail.from, mail.message_id, mail.table_name, mail.account_id})
                     .join(u'|');
    QCOMPARE(lines, (QStringList{"orders@example.org|One|bob@example.net|1|orders|1",
                                 "orders@example.org|Two|bob@example.net|2|orders|1",
                                 "shop@example.org|Sale|ann@example.net|1|shop|2"}));
    QCOMPARE(mails[2].received.toString("yyyy-MM-dd HH:mm:ss"), QString("2026-08-13 13:02:03"));
}

void sample_mails_test::processed_mails_are_samples_too()
{
    wizard_site site;
    site.add_stored_mail("orders", "One", "x");
    site.run("update orders set tsl_processed=yes");
    QCOMPARE(maps::all_sample_mails().mails.size(), size_t(1));
}

void sample_mails_test::without_accounts_there_are_none()
{
    intake_site site;
    QVERIFY(maps::all_sample_mails().mails.empty());
}

void sample_mails_test::missing_values_are_empty()
{
    wizard_site site;
    site.run("insert into orders (tsl_body) values('x')");
    const auto mails = maps::all_sample_mails().mails;
    QCOMPARE(mails.size(), size_t(1));
    QCOMPARE(mails[0].subject, QString());
    QCOMPARE(mails[0].from, QString());
    QVERIFY(!mails[0].received.isValid());
}

void sample_mails_test::the_raw_mails_of_one_account()
{
    wizard_site site;
    site.add_account("my-shop.de", "shop@example.org");
    site.add_stored_mail("orders", "One", "x");
    site.add_stored_mail("my-shop.de", "Sale", "x");
    const auto mails = maps::raw_mails("my-shop.de");
    QCOMPARE(mails.size(), size_t(1));
    QCOMPARE(mails[0].subject, QString("Sale"));
    QCOMPARE(mails[0].table_name, QString("my-shop.de"));
}

void sample_mails_test::two_accounts_on_one_table_show_it_twice()
{
    wizard_site site;
    site.run("insert into email_tbl(query,email,table_name) values('second','second@example.org','orders')");
    site.add_stored_mail("orders", "One", "x");
    const auto mails = maps::all_sample_mails().mails;
    QCOMPARE(mails.size(), size_t(2));
    QCOMPARE(mails[0].account_id, QString("1"));
    QCOMPARE(mails[1].account_id, QString("2"));
}

void sample_mails_test::a_body_comes_back_letter_for_letter()
{
    wizard_site site;
    const QString body = QString("a%1b\rc%2d\r\ne \U0001F600\t'").arg(QChar(0xa0)).arg(QChar(0x2028));
    const qint64 id = site.add_stored_mail("orders", "One", body);
    QCOMPARE(maps::stored_body("orders", QString::number(id)), body);
}

void sample_mails_test::a_body_that_is_gone_is_empty()
{
    wizard_site site;
    site.run("insert into orders (tsl_subject) values('no body')");
    QCOMPARE(maps::stored_body("orders", "1"), QString());
    QCOMPARE(maps::stored_body("orders", "7"), QString());
}

void sample_mails_test::chosen_mails_are_deleted_and_no_others()
{
    wizard_site site;
    for (const char *subject : {"One", "Two", "Three"})
        site.add_stored_mail("orders", subject, "x");
    maps::delete_raw_mails("orders", {"1", "3"});
    QCOMPARE(site.column("select tsl_subject from orders"), QStringList{"Two"});
    maps::delete_raw_mails("orders", {"2"});
    QCOMPARE(site.column("select tsl_subject from orders"), QStringList());
}

void sample_mails_test::no_mail_chosen_deletes_none()
{
    wizard_site site;
    site.add_stored_mail("orders", "One", "x");
    maps::delete_raw_mails("orders", {});
    QCOMPARE(site.column("select tsl_subject from orders"), QStringList{"One"});
}

void sample_mails_test::rows_of_map_tables_stay()
{
    wizard_site site;
    site.add_field("city", 1);
    site.add_stored_mail("orders", "Order", "Rome");
    maps::write_map("customers");
    maps::bring_mails_over("customers");
    maps::delete_raw_mails("orders", {"1"});
    QCOMPARE(site.column("select city from customers"), QStringList{"Rome"});
    QCOMPARE(site.column("select message_id from orders"), QStringList());
}

void sample_mails_test::an_accounts_id_is_found_by_its_table()
{
    wizard_site site;
    site.add_account("o'shop", "shop@example.org");
    QCOMPARE(maps::account_id_of("orders"), QString("1"));
    QCOMPARE(maps::account_id_of("ORDERS"), QString("1"));
    QCOMPARE(maps::account_id_of("o'shop"), QString("2"));
    QCOMPARE(maps::account_id_of("nowhere"), QString());
}

void sample_mails_test::a_table_that_is_gone_leaves_its_account_out_and_no_other()
{
    wizard_site site;
    site.add_account("shop", "shop@example.org");
    site.add_account("contact", "contact@example.org");
    site.add_stored_mail("orders", "One", "x");
    site.add_stored_mail("contact", "Hello", "x");
    site.run("drop table shop");
    const maps::sample_mails all = maps::all_sample_mails();
    QCOMPARE(all.accounts_left_out, 1);
    QCOMPARE(all.mails.size(), size_t(2));
    QCOMPARE(all.mails[0].subject, QString("One"));
    QCOMPARE(all.mails[1].subject, QString("Hello"));
    QCOMPARE(site.log_entries().size(), 1);
    QVERIFY(site.log_entries()[0].endsWith("|mapwizardstep3.frm|form load"));
}

void sample_mails_test::without_the_list_of_accounts_it_fails()
{
    wizard_site site;
    site.run("drop table email_tbl");
    QVERIFY_EXCEPTION_THROWN(maps::all_sample_mails(), run_time_error);
}

QTEST_GUILESS_MAIN(sample_mails_test)
#include "sample_mails_test.moc"
