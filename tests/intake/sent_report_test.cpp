// The report on the sent mails: what lies in the store afterwards, and what the page says.
#include "frame/session.h"
#include "frame/status.h"
#include "intake/printed_report.h"
#include "intake/sent_report.h"
#include "platform/outside_effects.h"
#include "support/raw_store.h"
#include "support/report_site.h"
#include "support/test_store.h"

#include <QTest>

namespace {

const auto never = [] { return false; };

QStringList subjects(const std::vector<intake::mail_line> &lines)
{
    QStringList found;
    for (const intake::mail_line &line : lines)
        found += line.subject;
    return found;
}

QStringList run_report(const intake::report_request &request)
{
    const auto select = intake::report_select(request);
    return select ? subjects(intake::write_report(request, *select, never).value()) : QStringList{"no select"};
}

}

class sent_report_test : public QObject {
    Q_OBJECT
private slots:
    void the_table_is_emptied();
    void the_mails_of_the_account_and_the_days_are_reported();
    void per_cent_signs_in_the_words_are_wildcards();
    void a_row_holds_what_the_report_says();
    void what_is_not_in_use_is_none();
    void the_kinds_are_told_apart();
    void quotes_and_hostile_subjects_arrive_whole();
    void giving_up_leaves_an_empty_table_data();
    void giving_up_leaves_an_empty_table();
    void nothing_of_a_run_is_committed_before_its_end();
    void a_failing_row_leaves_an_empty_table();
    void progress_is_told();
    void the_last_date_data();
    void the_last_date();
    void the_date_is_recorded_in_its_row_only();
    void the_fields_are_those_of_the_current_map();
    void an_account_without_a_map_has_no_fields();
    void the_accounts_are_listed();
    void a_mail_without_a_date_is_named_in_its_account_alone();
    void the_page_has_the_head_and_the_newest_first();
    void no_report_no_page();
};

void sent_report_test::the_table_is_emptied()
{
    const report_site site;
    site.run("insert into printreport_tbl (sentaccount) values('old')");
    intake::empty_report();
    QCOMPARE(site.column("select count(*) from printreport_tbl"), QStringList{"0"});
}

void sent_report_test::the_mails_of_the_account_and_the_days_are_reported()
{
    const report_site site;
    site.add_sent("a@b.org", "the day before", "10/31/2026 11:59:59 PM");
    site.add_sent("a@b.org", "the first day", "11/1/2026");
    site.add_sent("a@b.org", "another account", "11/2/2026 1:02:03 AM", "''", "0", "contact");
    site.add_sent("a@b.org", "the last day", "11/30/2026 11:59:59 PM");
    site.add_sent("a@b.org", "the day after", "12/1/2026");
    QCOMPARE(run_report(november()), (QStringList{"the last day", "the first day"}));
    QCOMPARE(site.column("select sentsubject from printreport_tbl"), (QStringList{"the last day", "the first day"}));
}

void sent_report_test::per_cent_signs_in_the_words_are_wildcards()
{
    const report_site site;
    site.add_sent("a@b.org", "Spring offer", "11/2/2026");
    site.add_sent("a@b.org", "Offer of spring", "11/3/2026");
    intake::report_request request = november();
    request.subject_words = "SPRING%offer";
    QCOMPARE(run_report(request), QStringList{"Spring offer"});
}

void sent_report_test::a_row_holds_what_the_report_says()
{
    const report_site site;
    site.add_mailing("orders", "name", "'city','','age','','Par','','3',''");
    site.add_sent("zoe@home.example", "Dear Zoë", "11/20/2026 1:02:03 PM", "'name'", "1");
    site.add_sent("bob@home.example", "Dear Bob", "11/20/2026 1:02:04 PM", "'name'", "1");
    intake::report_request request = november();
    request.subject_words = " dear ";
    request.subject_field = "name";
    request.filters[0] = {"city", "Par"};
    request.filters[2] = {"age", "3"};
    QCOMPARE(run_report(request), (QStringList{"Dear Bob", "Dear Zoë"}));
    const QString shared = "orders|11/1/2026 and 11/30/2026|,Filter1:city=Par,Filter3:age=3|name|dear|2|mailings 2|";
    QCOMPARE(site.rows("select sentaccount,between1,filtersused,dynsubjectfield,subjectcontains,mailgen,matching,"
                       "sentto,sentsubject,sentdate,gendate from printreport_tbl"),
             (QStringList{shared + "bob@home.example|Dear Bob|11/20/2026 1:02:04 PM|11/21/2026",
                          shared + "zoe@home.example|Dear Zoë|11/20/2026 1:02:03 PM|11/21/2026"}));
}

void sent_report_test::what_is_not_in_use_is_none()
{
    const report_site site;
    site.add_sent("zoe@home.example", "Hello", "11/20/2026 1:02:03 PM");
    run_report(november());
    QCOMPARE(site.rows("select filtersused,dynsubjectfield,subjectcontains from printreport_tbl"),
             QStringList{"None|None|None"});
}

void sent_report_test::the_kinds_are_told_apart()
{
    const report_site site;
    site.add_sent("a@b.org", "a single mail", "11/2/2026", "''", "0");
    site.add_sent("a@b.org", "a reply", "11/2/2026", "null", "null");
    site.add_sent("a@b.org", "of a mailing", "11/2/2026", "''", "4");
    site.add_sent("a@b.org", "of another one", "11/2/2026", "'city'", "5");
    site.add_sent("a@b.org", "of a mailing without a number", "11/2/2026", "''", "null");
    run_report(november());
    QCOMPARE(site.column("select matching from printreport_tbl where id=1"),
             QStringList{"mailings 3, single mails 1, replies 1"});
}

void sent_report_test::quotes_and_hostile_subjects_arrive_whole()
{
    const report_site site;
    const QString hostile = "'); delete from email_tbl; -- \r\n \" % <b>\u202E\U0001F339";
    site.add_sent("o''neil@home.example", QString(hostile).replace("'", "''"), "11/20/2026");
    QCOMPARE(run_report(november()), QStringList{hostile});
    QCOMPARE(site.column("select sentsubject from printreport_tbl"), QStringList{hostile});
    QCOMPARE(site.column("select sentto from printreport_tbl"), QStringList{"o'neil@home.example"});
    QCOMPARE(site.column("select count(*) from email_tbl"), QStringList{"1"});
}

void sent_report_test::giving_up_leaves_an_empty_table_data()
{
    QTest::addColumn<int>("asked_before");
    QTest::newRow("at once") << 0;
    QTest::newRow("while the mails are looked at") << 2;
    QTest::newRow("while the rows are written") << 4;
}

void sent_report_test::giving_up_leaves_an_empty_table()
{
    QFETCH(int, asked_before);
    const report_site site;
    for (const char *subject : {"one", "two", "three"})
        site.add_sent("a@b.org", subject, "11/20/2026");
    int asked = 0;
    const QString select = intake::report_select(november()).value();
    QVERIFY(!intake::write_report(november(), select, [&] { return asked++ >= asked_before; }));
    QCOMPARE(asked, asked_before + 1);
    QCOMPARE(site.column("select count(*) from printreport_tbl"), QStringList{"0"});
}

void sent_report_test::nothing_of_a_run_is_committed_before_its_end()
{
    const report_site site;
    for (const char *to : {"one@mail.example", "two@mail.example", "three@mail.example"})
        site.add_sent(to, "Offer", "11/9/2026 8:00:00 AM");
    QList<bool> held;
    const auto select = intake::report_select(november());
    intake::write_report(november(), *select, [&held] {
        held += commits_are_held();
        return false;
    });
    QCOMPARE(held, (QList<bool>{false, false, false, true, true, true})); // read first, then written
    QVERIFY(!commits_are_held());
    QCOMPARE(raw_store(site.folder.filePath("mailapp.mdb")).text("select sentto from printreport_tbl"),
             "one@mail.example two@mail.example three@mail.example"); // on disk, all of it
}

void sent_report_test::a_failing_row_leaves_an_empty_table()
{
    const report_site site;
    site.add_sent("one@mail.example", "Offer", "11/9/2026 8:00:00 AM");
    site.add_sent("two@mail.example", "Offer", "11/9/2026 8:00:00 AM");
    before_outside_effect();
    raw_store(site.folder.filePath("mailapp.mdb"))
        .run("create trigger second before insert on printreport_tbl when new.sentto like 'two%' begin select "
             "raise(abort,'the second row'); end");
    const auto select = intake::report_select(november());
    const quint32 number = error_number_of([&] { intake::write_report(november(), *select, never); });
    QCOMPARE(number, quint32(ado::store_failure));
    QCOMPARE(site.column("select count(*) from printreport_tbl"), QStringList{"0"});
}

void sent_report_test::progress_is_told()
{
    const report_site site;
    site.add_sent("a@b.org", "one", "11/20/2026");
    site.add_sent("a@b.org", "two", "11/20/2026");
    QStringList told;
    set_progress_sink([&told](const QString &what, qint64 done, qint64 total) {
        told += what + QStringLiteral(" %1/%2").arg(done).arg(total);
    });
    run_report(november());
    set_progress_sink({});
    QCOMPARE(told, (QStringList{"Looking at the sent mails 1/2", "Looking at the sent mails 2/2",
                                "Writing the report 1/2", "Writing the report 2/2"}));
}

void sent_report_test::the_last_date_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QDate>("date");
    QTest::newRow("never") << "8/13/1976" << QDate();
    QTest::newRow("a day") << "11/9/2026" << QDate(2026, 11, 9);
    QTest::newRow("no day at all") << "soon" << QDate();
}

void sent_report_test::the_last_date()
{
    QFETCH(QString, stored);
    QFETCH(QDate, date);
    const report_site site;
    site.run("update lastdate set gendate='" + stored + "' where id=3");
    QCOMPARE(intake::last_report_date(), date);
}

void sent_report_test::the_date_is_recorded_in_its_row_only()
{
    const report_site site;
    intake::record_report_date(QDate(2026, 11, 21));
    QCOMPARE(site.rows("select id,gendate from lastdate"), (QStringList{"1|8/13/1976", "2|8/13/1976", "3|11/21/2026"}));
}

void sent_report_test::the_fields_are_those_of_the_current_map()
{
    report_site site;
    site.add_map("former", 1, "Order", "Line", {{"street", "Line1"}});
    site.add_map("clients", 1, "Order", "Line", {{"first_name", "Line1"}, {"city", "Line2"}});
    site.run("update table_list_tbl set lastformat=no");
    site.run("update table_list_tbl set lastformat=yes where table_name='clients'");
    QCOMPARE(intake::report_fields("1"), (QStringList{"tsl_subject", "tsl_Email", "first_name", "city"}));
}

void sent_report_test::an_account_without_a_map_has_no_fields()
{
    const report_site site;
    QCOMPARE(intake::report_fields("1"), QStringList());
}

void sent_report_test::the_accounts_are_listed()
{
    report_site site;
    site.add_account("contact", "hello@shop.example");
    QStringList listed;
    for (const intake::report_account &account : intake::report_accounts())
        listed += account.id + " " + account.name;
    QCOMPARE(listed, (QStringList{"1 orders", "2 contact"}));
}

void sent_report_test::a_mail_without_a_date_is_named_in_its_account_alone()
{
    report_site site;
    site.add_account("contact", "hello@shop.example");
    site.add_sent("ann@example.net", "Good", "11/6/2026 1:02:03 PM");
    site.add_sent("bob@example.net", "A day", "11/6/2026");
    site.run(
        "insert into sentitems_tbl (tsl_to,tsl_sentaccount) values('eva@example.net','orders')"); // Null is no text
    QCOMPARE(intake::undated_mail_words("orders"), "");
    site.add_sent("zoe@example.net", "Bad", "2/30/2026 1:00:00 PM");
    QCOMPARE(intake::undated_mail_words("ORDERS"),
             "the mail to zoe@example.net, \"Bad\", is stored with a date that is none: \"2/30/2026 1:00:00 PM\". "
             "Delete it under Sent Item.");
    QCOMPARE(intake::undated_mail_words("contact"), "");
}

void sent_report_test::the_page_has_the_head_and_the_newest_first()
{
    const report_site site;
    site.add_mailing("orders", "", "'city','','','','Par','','',''");
    site.add_sent("a@b.org", "the older", "11/9/2026 8:00:00 AM", "''", "1");
    site.add_sent("c@d.org", "the newer", "11/20/2026 1:02:03 PM", "''", "1");
    intake::report_request request = november();
    request.filters[0] = {"city", "Par"};
    QCOMPARE(run_report(request), (QStringList{"the older", "the newer"})); // 9 is above 2
    const auto page = intake::report_to_print();
    QVERIFY(page.has_value());
    QStringList head, rows;
    for (const auto &line : page->head)
        head += line.caption + line.value;
    for (const auto &row : page->rows)
        rows += row.to + "|" + row.subject + "|" + row.date;
    QCOMPARE(head, (QStringList{"Emails sent from Account: orders", "Between: 11/1/2026 and 11/30/2026",
                                "Filters used: Filter1:city=Par", "Dynamic subject fields: None",
                                "Subject contains words: None", "Mails generated: 2", "Matching kinds: mailings 2"}));
    QCOMPARE(rows, (QStringList{"c@d.org|the newer|11/20/2026 1:02:03 PM", "a@b.org|the older|11/9/2026 8:00:00 AM"}));
    QCOMPARE(page->day, "11/21/2026");
}

void sent_report_test::no_report_no_page()
{
    const report_site site;
    QVERIFY(!intake::report_to_print());
}

QTEST_GUILESS_MAIN(sent_report_test)
#include "sent_report_test.moc"
