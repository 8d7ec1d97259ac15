// The parser at its limits: the ceiling of 32767, long values, thousands of mails, and passes that fail.
#include "frame/session.h"
#include "intake/map_parser.h"
#include "support/intake_site.h"

#include <QtTest/QTest>

namespace {

const QString unprocessed = "select message_id from orders where tsl_processed=no";
const QString overflow = "6|Overflow|mail_module.bas|parse_unprocessed_mails";

struct value_site : intake_site {
    value_site()
    {
        add_account("orders", "orders@example.org");
        add_map("names", 1, "Order", "Line", {{"full_name", "Line1", "", true}});
    }
    // A mail under a number of our own.
    void add_mail_numbered(int id, const QString &body)
    {
        run("insert into orders (message_id,tsl_subject,tsl_recdate,tsl_Email,tsl_body) values(" + QString::number(id) +
            ",'Order',now,'bob@example.net','" + body + "')");
    }
    QString only_value() const { return column("select full_name from names").value(0); }
};

}

class map_parser_limits_test : public QObject {
    Q_OBJECT
private slots:
    void values_as_they_are_stored_data();
    void values_as_they_are_stored();
    void a_mail_numbered_32768_ends_the_pass_with_an_overflow();
    void the_accounts_behind_it_are_not_reached();
    void a_status_line_tells_of_it();
    void a_later_pass_repeats_the_rows_and_marks_nothing();
    void above_the_ceiling_a_mail_that_does_not_fit_does_no_harm();
    void remapping_has_no_ceiling();
    void one_pass_over_3000_fitting_mails_marks_them_all();
    void a_failed_pass_keeps_its_rows_and_marks_nothing();
    void no_recordset_stays_open_behind_a_failure();
    void a_failed_remap_is_logged();
};

void map_parser_limits_test::values_as_they_are_stored_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("stored");
    const QString emoji = "\U0001F600";
    QTest::newRow("250 characters") << QString(250, u'x') << QString(250, u'x');
    QTest::newRow("255 characters are stored whole") << QString(255, u'x') << QString(255, u'x');
    QTest::newRow("256 are stored as 250") << QString(256, u'x') << QString(250, u'x');
    QTest::newRow("255 accented letters are stored whole") << QString(255, u'é') << QString(255, u'é');
    QTest::newRow("256 accented letters are stored as 250") << QString(256, u'é') << QString(250, u'é');
    QTest::newRow("a 250th character that is a blank leaves 249")
        << QString(249, u'x') + " " + QString(20, u'y') << QString(249, u'x');
    QTest::newRow("a letter and 128 emoji lose whole emoji") << "a" + emoji.repeated(128) << "a" + emoji.repeated(124);
    QTest::newRow("a single quote") << "O''Neil''s"
                                    << "O'Neil's"; // doubled in the statement that makes the mail
    QTest::newRow("a statement") << "''); drop table orders; --"
                                 << "'); drop table orders; --";
    QTest::newRow("a number keeps its noughts") << "0042"
                                                << "0042";
    QTest::newRow("a double quote, a question mark, brackets") << "\"a\" ? [b]"
                                                               << "\"a\" ? [b]";
}

void map_parser_limits_test::values_as_they_are_stored()
{
    QFETCH(QString, body);
    value_site site;
    site.add_mail_numbered(1, body);
    intake::parse_unprocessed_mails();
    QTEST(site.only_value(), "stored");
    QCOMPARE(site.column(unprocessed), QStringList());
    QCOMPARE(site.log_text(), QString());
}

void map_parser_limits_test::a_mail_numbered_32768_ends_the_pass_with_an_overflow()
{
    value_site site;
    site.add_mail_numbered(32767, "highest");
    intake::parse_unprocessed_mails();
    QCOMPARE(site.log_text(), QString());
    QCOMPARE(site.column(unprocessed), QStringList());
    site.add_mail_numbered(32768, "one above");
    intake::parse_unprocessed_mails();
    QCOMPARE(site.log_entries(), QStringList{overflow});
    QCOMPARE(site.column("select full_name from names"), (QStringList{"highest", "one above"})); // the row stays
    QCOMPARE(site.column(unprocessed), QStringList{"32768"});
}

void map_parser_limits_test::the_accounts_behind_it_are_not_reached()
{
    value_site site;
    site.add_account("contact", "contact@example.org");
    site.add_map("questions", 2, "Order", "Line", {{"full_name", "Line1", "", true}});
    site.add_mail_numbered(5, "marked too late");
    site.add_mail_numbered(32768, "one above");
    site.add_stored_mail("contact", "Order", "never reached");
    intake::parse_unprocessed_mails();
    QCOMPARE(site.column(unprocessed), (QStringList{"5", "32768"}));
    QCOMPARE(site.column("select full_name from questions"), QStringList());
}

void map_parser_limits_test::a_status_line_tells_of_it()
{
    value_site site;
    site.add_mail_numbered(32768, "one above");
    intake::parse_unprocessed_mails();
    QCOMPARE(site.status_lines.size(), 1);
    QVERIFY(site.status_lines[0].contains("orders"));
    QVERIFY(site.status_lines[0].contains("32768"));
}

void map_parser_limits_test::a_later_pass_repeats_the_rows_and_marks_nothing()
{
    value_site site;
    site.add_mail_numbered(5, "again");
    site.add_mail_numbered(32768, "one above");
    intake::parse_unprocessed_mails();
    intake::parse_unprocessed_mails();
    QCOMPARE(site.column("select full_name from names"), (QStringList{"again", "one above", "again", "one above"}));
    QCOMPARE(site.log_entries(), (QStringList{overflow, overflow}));
    QCOMPARE(site.column(unprocessed).size(), 2);
}

void map_parser_limits_test::above_the_ceiling_a_mail_that_does_not_fit_does_no_harm()
{
    value_site site;
    site.add_mail_numbered(5, "fits");
    site.run("insert into orders (message_id,tsl_subject,tsl_body) values(40000,'Other','x')");
    intake::parse_unprocessed_mails();
    QCOMPARE(site.log_text(), QString());
    QCOMPARE(site.column(unprocessed), QStringList{"40000"});
}

void map_parser_limits_test::remapping_has_no_ceiling()
{
    value_site site;
    site.add_mail_numbered(32768, "one above");
    site.add_mail_numbered(1000000, "far above");
    intake::remap_account_mails("orders", "names");
    QCOMPARE(site.log_text(), QString());
    QCOMPARE(site.column("select full_name from names"), (QStringList{"one above", "far above"}));
    QCOMPARE(site.column(unprocessed), QStringList());
}

void map_parser_limits_test::one_pass_over_3000_fitting_mails_marks_them_all()
{
    value_site site;
    for (int number = 1; number <= 3000; ++number)
        site.add_mail_numbered(number, "mail " + QString::number(number));
    intake::parse_unprocessed_mails();
    QCOMPARE(site.log_text(), QString());
    QCOMPARE(site.column(unprocessed), QStringList());
    QCOMPARE(site.column("select count(*) from names"), QStringList{"3000"});
    QCOMPARE(site.column("select full_name from names where message_id=3000"), QStringList{"mail 3000"});
}

void map_parser_limits_test::a_failed_pass_keeps_its_rows_and_marks_nothing()
{
    value_site site;
    site.add_map("broken", 1, "Order", "Line", {{"full_name", "Line1", "", true}});
    site.run("drop table broken");
    site.add_mail_numbered(1, "kept");
    site.add_mail_numbered(2, "kept too");
    intake::parse_unprocessed_mails();
    QCOMPARE(site.column("select full_name from names"), (QStringList{"kept", "kept too"}));
    QCOMPARE(site.column(unprocessed), (QStringList{"1", "2"}));
    QCOMPARE(site.log_entries().size(), 1);
    QVERIFY(site.log_entries()[0].endsWith("|mail_module.bas|parse_unprocessed_mails"));
}

void map_parser_limits_test::no_recordset_stays_open_behind_a_failure()
{
    value_site site;
    site.add_map("broken", 1, "Order", "Line", {{"gone", "Line1", "", true}});
    site.run("alter table broken drop column gone");
    site.run("alter table broken add column gone text(3)");
    site.add_mail_numbered(1, "kept");
    intake::parse_unprocessed_mails();
    QCOMPARE(site.log_entries().size(), 1);
    for (const auto *recordset : {&session.shared_rs, &session.format_rs, &session.mail_rs, &session.map_rs})
        QCOMPARE((*recordset)->State(), 0);
    QCOMPARE(site.column("select message_id from broken"), QStringList{"1"}); // the half row stays
}

void map_parser_limits_test::a_failed_remap_is_logged()
{
    value_site site;
    intake::remap_account_mails("orders", "nowhere");
    QCOMPARE(site.log_entries().size(), 1);
    QVERIFY(site.log_entries()[0].endsWith("|mail_module.bas|remap_account_mails"));
}

QTEST_GUILESS_MAIN(map_parser_limits_test)
#include "map_parser_limits_test.moc"
