// Why a stored mail is not taken: the first condition that fails, and always the parser's own opinion.
#include "intake/fit_reasons.h"
#include "intake/map_parser.h"
#include "support/intake_site.h"

#include <QtTest/QTest>

class fit_reasons_test : public QObject {
    Q_OBJECT
private slots:
    void the_first_condition_that_fails_data();
    void the_first_condition_that_fails();
    void maps_come_in_the_parsers_order();
    void maps_of_other_accounts_are_not_asked();
    void accounts_that_share_a_table_are_all_asked();
    void an_account_without_maps_gives_no_reasons();
    void a_field_without_its_column();
    void a_mail_that_is_gone_is_a_failure();
};

void fit_reasons_test::the_first_condition_that_fails_data()
{
    QTest::addColumn<QString>("subject");
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("reason");
    const QString fitting = "Name: Bob\r\n\r\nCity: Rome (town)";
    QTest::newRow("it fits") << "Order form" << fitting << "";
    QTest::newRow("in other capitals too") << " ORDER FORM" << fitting.toUpper() << "";
    QTest::newRow("another subject") << "Re: Order form" << fitting << "The subject is not \"Order form\".";
    QTest::newRow("no subject, and all else wrong too") << ""
                                                        << ""
                                                        << "The subject is not \"Order form\".";
    QTest::newRow("no text") << "Order form"
                             << ""
                             << "There is no piece 1: the number of pieces is 0.";
    QTest::newRow("the label") << "Order form"
                               << "Town: Bob\r\n\r\nCity: Rome (town)"
                               << "Piece 1 does not start with the label \"Name\".";
    QTest::newRow("a supporting text") << "Order form"
                                       << "Name Bob\r\n\r\nCity: Rome (town)"
                                       << "Piece 1 lacks the text \":\".";
    QTest::newRow("the label comes before the text") << "Order form"
                                                     << "Town\r\n\r\nCity: Rome (town)"
                                                     << "Piece 1 does not start with the label \"Name\".";
    QTest::newRow("too few pieces") << "Order form"
                                    << "Name: Bob\r\nCity: Rome (town)"
                                    << "There is no piece 3: the number of pieces is 2.";
    QTest::newRow("the first field's text comes before the second's piece") << "Order form"
                                                                            << "Name Bob"
                                                                            << "Piece 1 lacks the text \":\".";
    QTest::newRow("the second text of a field") << "Order form"
                                                << "Name: Bob\r\n\r\nCity: Rome"
                                                << "Piece 3 lacks the text \"(town)\".";
}

void fit_reasons_test::the_first_condition_that_fails()
{
    QFETCH(QString, subject);
    QFETCH(QString, body);
    QFETCH(QString, reason);
    intake_site site;
    site.add_account("orders", "orders@example.org");
    site.add_map("customers", 1, "Order form", "Line",
                 {{"Name", "Line1", ":"}, {"city", "Line3", "City:@@@(town)", true}});
    const qint64 id = site.add_stored_mail("orders", subject, body);
    const auto reasons = intake::fit_reasons("orders", id);
    QCOMPARE(reasons.size(), size_t(1));
    QCOMPARE(reasons[0].map, QString("customers"));
    QCOMPARE(reasons[0].reason, reason);
    intake::parse_unprocessed_mails();
    QCOMPARE(site.column("select count(*) from customers"), QStringList{reason.isEmpty() ? "1" : "0"});
}

void fit_reasons_test::maps_come_in_the_parsers_order()
{
    intake_site site;
    site.add_account("orders", "orders@example.org");
    site.add_map("zebra", 1, "Order", "Line", {{"a", "Line1", "", true}});
    site.add_map("ant", 1, "Order", "Line", {{"a", "Line2", "", true}});
    site.add_map("empty_map", 1, "Order", "Line", {});
    const qint64 id = site.add_stored_mail("orders", "Order", "x");
    QStringList told;
    for (const auto &each : intake::fit_reasons("orders", id))
        told += each.map + u'|' + each.reason;
    QCOMPARE(told, (QStringList{"zebra|", "ant|There is no piece 2: the number of pieces is 1.",
                                "empty_map|The map has no fields."}));
}

void fit_reasons_test::maps_of_other_accounts_are_not_asked()
{
    intake_site site;
    site.add_account("orders", "orders@example.org");
    site.add_account("shop", "shop@example.org");
    site.add_map("sales", 2, "Order", "Line", {{"a", "Line1", "", true}});
    const qint64 id = site.add_stored_mail("orders", "Order", "x");
    QVERIFY(intake::fit_reasons("orders", id).empty());
}

void fit_reasons_test::accounts_that_share_a_table_are_all_asked()
{
    intake_site site;
    site.add_account("orders", "orders@example.org");
    site.run("insert into email_tbl(query,email,table_name) values('second','second@example.org','orders')");
    site.add_map("of_second", 2, "Order", "Line", {{"a", "Line1", "", true}});
    site.add_map("of_first", 1, "Order", "Line", {{"a", "Line1", "", true}});
    const qint64 id = site.add_stored_mail("orders", "Order", "x");
    const auto reasons = intake::fit_reasons("orders", id);
    QCOMPARE(reasons.size(), size_t(2));
    QCOMPARE(reasons[0].map, QString("of_first"));
    QCOMPARE(reasons[1].map, QString("of_second"));
}

void fit_reasons_test::an_account_without_maps_gives_no_reasons()
{
    intake_site site;
    site.add_account("orders", "orders@example.org");
    const qint64 id = site.add_stored_mail("orders", "Order", "x");
    QVERIFY(intake::fit_reasons("orders", id).empty());
}

void fit_reasons_test::a_field_without_its_column()
{
    intake_site site;
    site.add_account("orders", "orders@example.org");
    site.add_map("customers", 1, "Order", "Line", {{"city", "Line1", "", true}});
    site.run("update format_tbl set fname='tsl_email'");
    const qint64 id = site.add_stored_mail("orders", "Order", "x");
    QCOMPARE(intake::fit_reasons("orders", id)[0].reason,
             QString("The map was not saved whole: the field tsl_email has no column of its own."));
}

void fit_reasons_test::a_mail_that_is_gone_is_a_failure()
{
    intake_site site;
    site.add_account("orders", "orders@example.org");
    QVERIFY_EXCEPTION_THROWN(intake::fit_reasons("orders", 7), run_time_error);
}

QTEST_GUILESS_MAIN(fit_reasons_test)
#include "fit_reasons_test.moc"
