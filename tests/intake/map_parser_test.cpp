// Stored mails become rows of map tables. The ceiling, long values and failures: map_parser_limits_test.cpp.
#include "frame/session.h"
#include "intake/map_parser.h"
#include "support/intake_site.h"

#include <QtTest/QTest>

namespace {

const QString unprocessed = "select message_id from orders where tsl_processed=no";

struct parser_site : intake_site {
    parser_site() { add_account("orders", "orders@example.org"); }
    void add_name_map(const QString &name, const QString &subject = "Order")
    {
        add_map(name, 1, subject, "Line", {{"full_name", "Line1", ":"}, {"city", "Line2", ":"}});
    }
};

const QString good_body = "full_name: Bob\r\ncity: Rome\r\n";

}

class map_parser_test : public QObject {
    Q_OBJECT
private slots:
    void a_fitting_mail_becomes_a_row_and_is_marked();
    void subjects_are_compared_mail_by_mail();
    void a_mail_one_line_too_short_stays_unprocessed();
    void a_mail_that_fits_two_maps_yields_a_row_in_each();
    void an_account_with_no_maps_leaves_its_mails_and_gives_no_error();
    void a_map_of_another_account_is_not_tried();
    void a_map_without_fields_takes_nothing();
    void an_empty_or_missing_body_fits_no_map();
    void a_processed_mail_is_not_taken_again();
    void rows_come_in_the_order_of_the_mails_and_values_in_the_order_of_the_fields();
    void a_tab_map_fits_no_tab_separated_mail();
    void other_separators_data();
    void other_separators();
    void a_mail_with_its_own_carriage_returns_is_cut_cleanly();
    void labels_and_supporting_texts();
    void words_as_field_names();
    void words_and_odd_names_as_map_names_data();
    void words_and_odd_names_as_map_names();
    void remapping_takes_processed_mails_too();
    void remapping_then_parsing_stores_a_mail_once_a_pass();
    void remapping_leaves_mails_that_do_not_fit();
    void a_mail_waits_until_a_map_fits_it();
    void a_map_of_no_account_is_never_filled();
};

void map_parser_test::a_fitting_mail_becomes_a_row_and_is_marked()
{
    parser_site site;
    site.add_name_map("names");
    site.run("insert into orders (tsl_subject,tsl_recdate,tsl_Email,tsl_Status,tsl_body) values('Order',"
             "'8/13/2026 1:02:03 PM','bob@example.net','seen','" +
             good_body + "')");
    intake::parse_unprocessed_mails();
    QCOMPARE(site.rows("select * from names"),
             QStringList{"1|Order|8/13/2026 1:02:03 PM|bob@example.net|new|Bob|Rome"});
    QCOMPARE(site.column(unprocessed), QStringList());
    QCOMPARE(site.column("select tsl_Status from orders"), QStringList{"seen"});
    QCOMPARE(site.log_text(), QString());
}

void map_parser_test::subjects_are_compared_mail_by_mail()
{
    parser_site site;
    site.add_name_map("names", " Order form ");
    site.add_stored_mail("orders", "ORDER FORM", good_body);
    site.add_stored_mail("orders", "Re: Order form", good_body);
    site.run("insert into orders (tsl_subject,tsl_body) values(\"  order form  \",'" + good_body + "')");
    site.add_stored_mail("orders", "", good_body);
    intake::parse_unprocessed_mails();
    QCOMPARE(site.column("select message_id from names"), (QStringList{"1", "2"}));
    QCOMPARE(site.column(unprocessed), (QStringList{"2", "4"}));
}

void map_parser_test::a_mail_one_line_too_short_stays_unprocessed()
{
    parser_site site;
    site.add_map("names", 1, "Order", "Line", {{"full_name", "Line1", ":"}, {"city", "Line3", "", true}});
    site.add_stored_mail("orders", "Order", "full_name: Bob\r\nmiddle");
    site.add_stored_mail("orders", "Order", "full_name: Zoe\r\nmiddle\r\n"); // an empty last line counts
    intake::parse_unprocessed_mails();
    QCOMPARE(site.rows("select full_name,city from names"), QStringList{"Zoe|"});
    QCOMPARE(site.column(unprocessed), QStringList{"1"});
    QCOMPARE(site.log_text(), QString());
}

void map_parser_test::a_mail_that_fits_two_maps_yields_a_row_in_each()
{
    parser_site site;
    site.add_name_map("first_map");
    site.add_name_map("second_map");
    site.add_stored_mail("orders", "Order", good_body);
    site.add_stored_mail("orders", "Order", "full_name: Zoe\r\ncity: Oslo");
    intake::parse_unprocessed_mails();
    QCOMPARE(site.column("select full_name from first_map"), (QStringList{"Bob", "Zoe"}));
    QCOMPARE(site.column("select full_name from second_map"), (QStringList{"Bob", "Zoe"}));
    QCOMPARE(site.column(unprocessed), QStringList());
}

void map_parser_test::an_account_with_no_maps_leaves_its_mails_and_gives_no_error()
{
    parser_site site;
    site.add_account("contact", "contact@example.org");
    site.add_map("names", 2, "Order", "Line", {{"full_name", "Line1", ":"}});
    site.add_stored_mail("orders", "Order", good_body);
    site.add_stored_mail("contact", "Order", good_body);
    intake::parse_unprocessed_mails();
    QCOMPARE(site.column(unprocessed), QStringList{"1"});
    QCOMPARE(site.column("select full_name from names"), QStringList{"Bob"}); // the next account is reached
    QCOMPARE(site.log_text(), QString());
}

void map_parser_test::a_map_of_another_account_is_not_tried()
{
    parser_site site;
    site.add_account("contact", "contact@example.org");
    site.add_map("names", 2, "Order", "Line", {{"full_name", "Line1", ":"}});
    site.add_stored_mail("orders", "Order", good_body);
    intake::parse_unprocessed_mails();
    QCOMPARE(site.column("select full_name from names"), QStringList());
}

void map_parser_test::a_map_without_fields_takes_nothing()
{
    parser_site site;
    site.add_map("names", 1, "Order", "Line", {});
    site.add_stored_mail("orders", "Order", good_body);
    intake::parse_unprocessed_mails();
    QCOMPARE(site.column("select message_id from names"), QStringList());
    QCOMPARE(site.column(unprocessed), QStringList{"1"});
}

void map_parser_test::an_empty_or_missing_body_fits_no_map()
{
    parser_site site;
    site.add_map("names", 1, "Order", "Line", {{"full_name", "Line1", "", true}});
    site.add_stored_mail("orders", "Order", "");
    site.run("insert into orders (tsl_subject) values('Order')");
    site.run("insert into orders (tsl_body) values('x')"); // no subject at all
    intake::parse_unprocessed_mails();
    QCOMPARE(site.column("select message_id from names"), QStringList());
    QCOMPARE(site.column(unprocessed), (QStringList{"1", "2", "3"}));
    QCOMPARE(site.log_text(), QString());
}

void map_parser_test::a_processed_mail_is_not_taken_again()
{
    parser_site site;
    site.add_name_map("names");
    site.add_stored_mail("orders", "Order", good_body);
    intake::parse_unprocessed_mails();
    intake::parse_unprocessed_mails();
    QCOMPARE(site.column("select message_id from names"), QStringList{"1"});
}

void map_parser_test::rows_come_in_the_order_of_the_mails_and_values_in_the_order_of_the_fields()
{
    parser_site site;
    site.add_map("names", 1, "Order", "|",
                 {{"b", "Line2", "", true}, {"a", "Line1", "", true}, {"c", "Line2", "", true}});
    for (const char *body : {"1|one", "2|two", "3|three"})
        site.add_stored_mail("orders", "Order", body);
    intake::parse_unprocessed_mails();
    QCOMPARE(site.rows("select message_id,b,a,c from names"),
             (QStringList{"1|one|1|one", "2|two|2|two", "3|three|3|three"}));
}

void map_parser_test::a_tab_map_fits_no_tab_separated_mail()
{
    parser_site site;
    site.add_map("names", 1, "Order", "Tab", {{"a", "Line1", "", true}, {"b", "Line2", "", true}});
    site.add_stored_mail("orders", "Order", "x\ty");
    site.add_stored_mail("orders", "Order", "xTaby");
    site.add_stored_mail("orders", "Order", "xtaby");
    intake::parse_unprocessed_mails();
    QCOMPARE(site.rows("select a,b from names"), QStringList{"x|y"});
    QCOMPARE(site.column(unprocessed), (QStringList{"1", "3"}));
}

void map_parser_test::other_separators_data()
{
    QTest::addColumn<QString>("separator");
    for (const char *separator : {".", "-", "*", "%", "[", "'", "::", "LINES", "(", "\\", "^", "|"})
        QTest::newRow(separator) << QString(separator);
}

void map_parser_test::other_separators()
{
    QFETCH(QString, separator);
    parser_site site;
    site.add_map("names", 1, "Order", separator, {{"a", "Line1", "", true}, {"b", "Line3", "", true}});
    site.add_stored_mail("orders", "Order", "x" + separator + separator + "z");
    intake::parse_unprocessed_mails();
    QCOMPARE(site.rows("select a,b from names"), QStringList{"x|z"});
}

void map_parser_test::a_mail_with_its_own_carriage_returns_is_cut_cleanly()
{
    parser_site site;
    site.add_name_map("names");
    site.add_stored_mail("orders", "Order", "full_name: Bob\r\r\ncity: Rome\r\r\n");
    intake::parse_unprocessed_mails();
    QCOMPARE(site.rows("select full_name,city from names"), QStringList{"Bob|Rome"});
}

void map_parser_test::labels_and_supporting_texts()
{
    parser_site site;
    site.add_map("names", 1, "Order", "Line",
                 {{"Name", "Line1", ":"}, {"City", "Line2", "=@@@(town)"}, {"Note", "Line3", "", true}});
    site.add_stored_mail("orders", "Order",
                         "NAME: my name: Bob\r\n  city = Rome = (TOWN) x(town)\r\n  Note: as it is  ");
    site.add_stored_mail("orders", "Order", "Name: Zoe\r\nCity = Oslo\r\nx"); // "(town)" is missing
    intake::parse_unprocessed_mails();
    QCOMPARE(site.rows("select Name,City,Note from names"), QStringList{"my name Bob|Rome   x|Note: as it is"});
    QCOMPARE(site.column(unprocessed), QStringList{"2"});
}

void map_parser_test::words_as_field_names()
{
    parser_site site;
    std::vector<site_field> fields;
    QString body;
    const QStringList words{"CASE",   "CHECK",     "COLLATE", "COMMIT",  "DEFAULT", "ESCAPE",
                            "EXCEPT", "INTERSECT", "LIMIT",   "NOTHING", "THEN",    "RETURNING",
                            "USING",  "WHEN",      "query",   "now2",    "rowid",   "TRANSACTION"};
    for (const QString &word : words) {
        fields.push_back({word, "Line" + QString::number(fields.size() + 1), "", true});
        body += word.toLower() + "\r\n";
    }
    site.add_map("names", 1, "Order", "Line", fields);
    site.add_stored_mail("orders", "Order", body);
    intake::parse_unprocessed_mails();
    QCOMPARE(site.log_text(), QString());
    QCOMPARE(site.rows("select * from names").value(0).section(u'|', 5), body.chopped(2).replace("\r\n", "|"));
}

void map_parser_test::words_and_odd_names_as_map_names_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"Where", "Set", "Values", "Into", "Like", "sqlite_orders", "Transaction", "Limit", "Case",
                             "web-orders.de", "a--b"})
        QTest::newRow(name) << QString(name);
}

void map_parser_test::words_and_odd_names_as_map_names()
{
    QFETCH(QString, name);
    parser_site site;
    site.add_name_map(name);
    site.add_stored_mail("orders", "Order", good_body);
    intake::parse_unprocessed_mails();
    intake::remap_account_mails("orders", name);
    QCOMPARE(site.log_text(), QString());
    QCOMPARE(site.column("select full_name from [" + name + "]"), QStringList({"Bob", "Bob"}));
}

void map_parser_test::remapping_takes_processed_mails_too()
{
    parser_site site;
    site.add_name_map("names");
    site.add_stored_mail("orders", "Order", good_body);
    site.add_stored_mail("orders", "Order", "full_name: Zoe\r\ncity: Oslo");
    site.run("update orders set tsl_processed=yes where message_id=1");
    intake::remap_account_mails("orders", "names");
    QCOMPARE(site.column("select full_name from names"), (QStringList{"Bob", "Zoe"}));
    QCOMPARE(site.column(unprocessed), QStringList());
    QCOMPARE(site.log_text(), QString());
}

void map_parser_test::remapping_then_parsing_stores_a_mail_once_a_pass()
{
    parser_site site;
    site.add_name_map("names");
    site.add_stored_mail("orders", "Order", good_body);
    intake::remap_account_mails("orders", "names");
    intake::parse_unprocessed_mails();
    QCOMPARE(site.column("select full_name from names"), QStringList{"Bob"});
    intake::remap_account_mails("orders", "names"); // no check for a row already there
    QCOMPARE(site.column("select full_name from names"), (QStringList{"Bob", "Bob"}));
}

void map_parser_test::remapping_leaves_mails_that_do_not_fit()
{
    parser_site site;
    site.add_name_map("names");
    site.add_stored_mail("orders", "Other", good_body);
    site.add_stored_mail("orders", "Order", "city: Rome");
    intake::remap_account_mails("orders", "names");
    QCOMPARE(site.column("select message_id from names"), QStringList());
    QCOMPARE(site.column(unprocessed), (QStringList{"1", "2"}));
}

void map_parser_test::a_mail_waits_until_a_map_fits_it()
{
    parser_site site;
    site.add_stored_mail("orders", "Order", good_body);
    intake::parse_unprocessed_mails();
    QCOMPARE(site.column(unprocessed), QStringList{"1"});
    site.add_name_map("names");
    intake::parse_unprocessed_mails();
    QCOMPARE(site.column("select full_name from names"), QStringList{"Bob"});
}

// A merged table has query_id 0.
void map_parser_test::a_map_of_no_account_is_never_filled()
{
    parser_site site;
    site.add_name_map("names");
    site.run("update table_list_tbl set query_id=0");
    site.add_stored_mail("orders", "Order", good_body);
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(site.column("select message_id from names"), QStringList());
    QCOMPARE(site.column(unprocessed), QStringList{"1"});
    QCOMPARE(site.log_text(), QString());
}

QTEST_GUILESS_MAIN(map_parser_test)
#include "map_parser_test.moc"
