// After a save: the account's mails come into the new map, then everything that is still unprocessed.
#include "frame/status.h"
#include "maps/map_writing.h"
#include "support/wizard_site.h"

#include <QtTest/QTest>

namespace {

const QString unprocessed = "select message_id from orders where tsl_processed=no";

struct told_progress { // what long work told while it lives
    told_progress()
    {
        set_progress_sink([this](const QString &, qint64 done, qint64 total) {
            lines += QString::number(done) + u'/' + QString::number(total);
        });
    }
    ~told_progress() { set_progress_sink({}); }
    QStringList lines;
};

}

class bringing_mails_over_test : public QObject {
    Q_OBJECT
private slots:
    void mails_of_the_format_come_in_taken_before_or_not();
    void a_mail_stands_in_the_new_map_once();
    void what_others_left_is_parsed_too();
    void other_accounts_mails_stay_out_of_the_map();
    void both_passes_tell_their_progress();
    void two_fields_on_one_piece_both_get_the_value();
    void an_empty_first_line_is_a_value();
    void a_value_of_256_characters_is_stored_with_250();
    void a_tab_map_takes_nothing_though_it_was_marked_by_hand();
    void a_mail_of_two_maps_is_marked_once_and_stands_in_both();
    void a_pass_that_fails_is_told_of();
    void an_account_that_is_gone_is_a_failure();
    void a_renamed_account_keeps_its_table();
};

void bringing_mails_over_test::mails_of_the_format_come_in_taken_before_or_not()
{
    wizard_site site;
    site.add_map("older", 1, "Order", "Line", {{"city", "Line1", "", true}});
    site.add_stored_mail("orders", "Order", "Rome");
    site.add_stored_mail("orders", "Other", "Oslo");
    site.run("update orders set tsl_processed=yes where message_id=1");
    site.add_stored_mail("orders", " ORDER ", "Lima");
    site.add_field("town", 1);
    maps::write_map("newer");
    maps::bring_mails_over("newer");
    QCOMPARE(site.column("select town from newer"), (QStringList{"Rome", "Lima"}));
    QCOMPARE(site.column(unprocessed), QStringList{"2"});
    QCOMPARE(site.log_text(), QString());
}

// The other way round the parser would have taken it first, with an answer, and the new map a second time.
void bringing_mails_over_test::a_mail_stands_in_the_new_map_once()
{
    wizard_site site;
    site.add_stored_mail("orders", "Order", "Rome");
    site.add_field("town", 1);
    maps::write_map("newer");
    maps::bring_mails_over("newer");
    QCOMPARE(site.column("select town from newer"), QStringList{"Rome"});
}

void bringing_mails_over_test::what_others_left_is_parsed_too()
{
    wizard_site site;
    site.add_account("shop", "shop@example.org");
    site.add_map("sales", 2, "Sale", "Line", {{"city", "Line1", "", true}});
    site.add_stored_mail("shop", "Sale", "Bonn");
    site.add_field("town", 1);
    maps::write_map("newer");
    maps::bring_mails_over("newer");
    QCOMPARE(site.column("select city from sales"), QStringList{"Bonn"});
}

void bringing_mails_over_test::other_accounts_mails_stay_out_of_the_map()
{
    wizard_site site;
    site.add_account("shop", "shop@example.org");
    site.add_stored_mail("shop", "Order", "Bonn");
    site.add_stored_mail("orders", "Order", "Rome");
    site.add_field("town", 1);
    maps::write_map("newer");
    maps::bring_mails_over("newer");
    QCOMPARE(site.column("select town from newer"), QStringList{"Rome"});
    QCOMPARE(site.column("select message_id from shop where tsl_processed=no"), QStringList{"1"});
}

void bringing_mails_over_test::both_passes_tell_their_progress()
{
    wizard_site site;
    for (const char *subject : {"Order", "Order", "Other"})
        site.add_stored_mail("orders", subject, "Rome");
    site.add_field("town", 1);
    maps::write_map("newer");
    const told_progress progress;
    maps::bring_mails_over("newer");
    QCOMPARE(progress.lines, (QStringList{"1/3", "2/3", "3/3", "1/1"})); // all mails, then the one left
}

void bringing_mails_over_test::two_fields_on_one_piece_both_get_the_value()
{
    wizard_site site;
    site.add_field("town", 1, {"City:"});
    site.add_field("city", 1);
    maps::write_map("newer");
    site.add_stored_mail("orders", "Order", "City: Rome");
    maps::bring_mails_over("newer");
    QCOMPARE(site.rows("select town,city from newer"), QStringList{"Rome|City: Rome"});
}

void bringing_mails_over_test::an_empty_first_line_is_a_value()
{
    wizard_site site;
    site.add_field("first_line", 1);
    site.add_field("city", 2);
    maps::write_map("newer");
    site.add_stored_mail("orders", "Order", "\r\nRome");
    maps::bring_mails_over("newer");
    QCOMPARE(site.rows("select first_line,city from newer"), QStringList{"|Rome"});
}

void bringing_mails_over_test::a_value_of_256_characters_is_stored_with_250()
{
    wizard_site site;
    site.add_field("note", 1);
    maps::write_map("newer");
    for (const int length : {255, 256})
        site.add_stored_mail("orders", "Order", QString(length, u'x'));
    maps::bring_mails_over("newer");
    QCOMPARE(site.column("select note from newer"), (QStringList{QString(255, u'x'), QString(250, u'x')}));
}

void bringing_mails_over_test::a_tab_map_takes_nothing_though_it_was_marked_by_hand()
{
    wizard_site site("Tab");
    site.add_field("city", 2);
    maps::write_map("newer");
    site.add_stored_mail("orders", "Order", "Ann\tRome");
    maps::bring_mails_over("newer");
    QCOMPARE(site.column("select city from newer"), QStringList());
    QCOMPARE(site.column(unprocessed), QStringList{"1"});
}

void bringing_mails_over_test::a_mail_of_two_maps_is_marked_once_and_stands_in_both()
{
    wizard_site site;
    site.add_field("city", 1);
    maps::write_map("first_map");
    maps::write_map("second_map");
    site.add_stored_mail("orders", "Order", "Rome");
    maps::bring_mails_over("second_map");
    QCOMPARE(site.column("select city from second_map"), QStringList{"Rome"});
    QCOMPARE(site.column("select city from first_map"), QStringList()); // taken before the parser looked
    site.add_stored_mail("orders", "Order", "Oslo");
    maps::bring_mails_over("first_map");
    QCOMPARE(site.column("select city from first_map"), (QStringList{"Rome", "Oslo"}));
    site.run("update orders set tsl_processed=no where message_id=2");
    maps::bring_mails_over("second_map");
    QCOMPARE(site.column("select city from second_map"), (QStringList{"Rome", "Rome", "Oslo"}));
    QCOMPARE(site.column(unprocessed), QStringList());
}

void bringing_mails_over_test::a_pass_that_fails_is_told_of()
{
    wizard_site site;
    site.add_account("shop", "shop@example.org");
    site.add_stored_mail("orders", "Order", "Rome");
    site.add_field("town", 1);
    maps::write_map("newer");
    QVERIFY(maps::bring_mails_over("newer"));
    QVERIFY(!maps::bring_mails_over("nowhere")); // the first pass
    site.run("drop table shop");
    QVERIFY(!maps::bring_mails_over("newer")); // the second one
    QCOMPARE(site.log_entries().size(), 2);
}

void bringing_mails_over_test::an_account_that_is_gone_is_a_failure()
{
    wizard_site site;
    site.add_field("city", 1);
    maps::write_map("newer");
    site.run("delete from email_tbl");
    QVERIFY_EXCEPTION_THROWN(maps::bring_mails_over("newer"), run_time_error);
}

void bringing_mails_over_test::a_renamed_account_keeps_its_table()
{
    wizard_site site;
    site.run("update email_tbl set query='renamed' where id=1");
    site.add_stored_mail("orders", "Order", "Rome");
    site.add_field("city", 1);
    maps::write_map("newer");
    maps::bring_mails_over("newer");
    QCOMPARE(site.column("select city from newer"), QStringList{"Rome"});
}

QTEST_GUILESS_MAIN(bringing_mails_over_test)
#include "bringing_mails_over_test.moc"
