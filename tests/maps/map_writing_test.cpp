// Saving a map: the tests of its name, and what stands in the store afterwards. Saves that fail: half_map_test.cpp.
#include "frame/text.h"
#include "maps/map_writing.h"
#include "platform/clock.h"
#include "support/wizard_site.h"

#include <QtTest/QTest>

using maps::map_wizard;

namespace {

const QString bad_name = "Invalid query name. Special characters, keywords not allowed";
const QString known_name =
    "This map already exists. Please provide another name. If you want to use the new map for this format of \r\n"
    "mail in the future, you need to delete the old map first from the database Manager. To do this, import\r\n"
    " the existing map's data into the new map before deleting, or you will loose all data stored in that map. ";

QString message_for(const QString &typed)
{
    QString name = typed;
    const auto fault = maps::why_no_map_name(name);
    return fault ? fault->message : QString();
}

}

class map_writing_test : public QObject {
    Q_OBJECT
private slots:
    void a_name_is_tested_data();
    void a_name_is_tested();
    void a_name_is_trimmed_in_place();
    void the_row_of_a_map_data();
    void the_row_of_a_map();
    void fields_and_columns_stand_in_the_reverse_of_adding();
    void the_fields_rows();
    void column_names_keep_their_capitals();
    void columns_hold_255_characters();
    void outer_blanks_of_the_first_and_last_supporting_text_are_lost();
    void quotes_are_stored_as_they_are();
    void reference_codes_are_written_with_their_field();
    void codes_belong_to_the_name_exactly_as_typed();
    void codes_are_tied_to_the_ids_of_their_own_map();
    void several_maps_carry_lastformat_at_once();
    void the_saved_name_is_kept_for_the_last_step();
    void a_deleted_maps_name_starts_anew();
    void what_the_store_will_refuse_is_known_before_data();
    void what_the_store_will_refuse_is_known_before();
};

void map_writing_test::a_name_is_tested_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("message");
    QTest::newRow("a new name") << "customers"
                                << "";
    QTest::newRow("nothing") << "" << bad_name;
    QTest::newRow("my-map") << "my-map" << bad_name;
    QTest::newRow("a blank inside") << "my map" << bad_name;
    QTest::newRow("a digit first") << "2nd" << bad_name;
    QTest::newRow("Select passes here, and fails at its table") << "Select"
                                                                << "";
    QTest::newRow("Query passes here, and fails at its table") << "Query"
                                                               << "";
    QTest::newRow("an account's table passes here, and fails at its own") << "orders"
                                                                          << "";
    QTest::newRow("a fixed table too") << "email_tbl"
                                       << "";
    QTest::newRow("a known map") << "Names" << known_name;
    QTest::newRow("in other capitals, with blanks") << "  nAMES " << known_name;
    QTest::newRow("a map of another account is known too") << "questions" << known_name;
}

void map_writing_test::a_name_is_tested()
{
    wizard_site site;
    site.add_account("contact", "contact@example.org");
    site.add_map("Names", 1, "Order", "Line", {{"city", "Line1"}});
    site.add_map("questions", 2, "Question", "Line", {{"city", "Line1"}});
    QFETCH(QString, name);
    QTEST(message_for(name), "message");
}

void map_writing_test::a_name_is_trimmed_in_place()
{
    wizard_site site;
    QString name = "  customers ";
    QVERIFY(!maps::why_no_map_name(name));
    QCOMPARE(name, QString("customers"));
}

void map_writing_test::the_row_of_a_map_data()
{
    QTest::addColumn<QString>("separator");
    for (const char *separator : {"Line", ",", "Tab", ".", "-", "_", ":", ";"})
        QTest::newRow(separator) << QString(separator);
}

void map_writing_test::the_row_of_a_map()
{
    QFETCH(QString, separator);
    wizard_site site(separator, "Order form");
    site.add_account("contact", "contact@example.org");
    map_wizard.account_id = "2";
    site.add_field("city", 1);
    maps::write_map("customers");
    QCOMPARE(site.rows("select * from table_list_tbl"),
             QStringList{"1|customers|" + us_date(now().date()) + "|2|True|" + separator + "|Order form"});
}

void map_writing_test::fields_and_columns_stand_in_the_reverse_of_adding()
{
    wizard_site site;
    site.add_field("first_added", 1);
    site.add_field("second", 2);
    site.add_field("last_added", 3);
    maps::write_map("customers");
    QCOMPARE(site.rows("select id,fname from format_tbl order by id"),
             (QStringList{"1|last_added", "2|second", "3|first_added"}));
    QCOMPARE(site.columns_of("customers"), (QStringList{"message_id", "tsl_subject", "tsl_RecDate", "tsl_Email",
                                                        "tsl_status", "last_added", "second", "first_added"}));
    QCOMPARE(site.column("select count(*) from customers"), QStringList{"0"});
}

void map_writing_test::the_fields_rows()
{
    wizard_site site;
    site.add_field("city", 12, {"City:", "(town)"});
    maps::write_map("customers");
    site.run("delete from format_tbl");
    map_wizard.MapWHiddenA_frm.clear();
    site.add_field("zip", 3);
    site.add_field("city", 12, {"City:", "(town)"});
    maps::write_map("second_map");
    QCOMPARE(site.rows("select fname,fposition,fignore,finclude,table_id,fcodegen from format_tbl"),
             (QStringList{"city|Line12|City:@@@(town)|True|2|0", "zip|Line3||True|2|0"}));
}

void map_writing_test::column_names_keep_their_capitals()
{
    wizard_site site;
    site.add_field("First_Name", 1);
    maps::write_map("Customers");
    QCOMPARE(site.columns_of("customers").last(), QString("First_Name"));
}

void map_writing_test::columns_hold_255_characters()
{
    wizard_site site;
    site.add_field("city", 1);
    maps::write_map("customers");
    site.run("insert into customers (city) values('" + QString(255, u'x') + "')");
    QVERIFY_EXCEPTION_THROWN(site.run("insert into customers (city) values('" + QString(256, u'x') + "')"),
                             run_time_error);
}

void map_writing_test::outer_blanks_of_the_first_and_last_supporting_text_are_lost()
{
    wizard_site site;
    site.add_field("only", 1, {"Name: "});
    site.add_field("several", 2, {" a ", " b ", " c "});
    maps::write_map("customers");
    QCOMPARE(site.column("select fignore from format_tbl where fname='only'"), QStringList{"Name:"});
    QCOMPARE(site.column("select fignore from format_tbl where fname='several'"), QStringList{"a @@@ b @@@ c"});
}

void map_writing_test::quotes_are_stored_as_they_are()
{
    wizard_site site("Line", "Bob's \"order\" 100% [x]");
    site.add_field("city", 1, {"'", "O'Neil's", "\""});
    maps::write_map("customers");
    QCOMPARE(site.column("select subject from table_list_tbl"), QStringList{"Bob's \"order\" 100% [x]"});
    QCOMPARE(site.column("select fignore from format_tbl"), QStringList{"'@@@O'Neil's@@@\""});
}

void map_writing_test::reference_codes_are_written_with_their_field()
{
    wizard_site site;
    site.add_coded_field("colour", 1, {"red", "O'Blue", "red"}, {"r", "b'1", "r2"});
    site.add_field("city", 2);
    map_wizard.code_kind = maps::generated_dynamically;
    site.add_field("ticket", 3);
    site.add_coded_field("empty_set", 4, {}, {});
    maps::write_map("customers");
    QCOMPARE(site.rows("select id,fname,fcodegen from format_tbl order by id"),
             (QStringList{"1|empty_set|1", "2|ticket|2", "3|city|0", "4|colour|1"}));
    QCOMPARE(site.rows("select fieldID,fielddesc,fieldCODE from fcodes_tbl"),
             (QStringList{"4|red|r", "4|O'Blue|b'1", "4|red|r2"})); // in the order of the list
}

void map_writing_test::codes_belong_to_the_name_exactly_as_typed()
{
    wizard_site site;
    site.add_coded_field("colour", 1, {"red"}, {"r"});
    map_wizard.MapWHiddenR_frm.push_back({"Colour", "green", "g"});
    maps::write_map("customers");
    QCOMPARE(site.rows("select fielddesc,fieldCODE from fcodes_tbl"), QStringList{"red|r"});
}

void map_writing_test::codes_are_tied_to_the_ids_of_their_own_map()
{
    wizard_site site;
    site.add_coded_field("colour", 1, {"red"}, {"r"});
    maps::write_map("first_map");
    site.add_coded_field("size", 2, {"big"}, {"b"});
    maps::write_map("second_map");
    QCOMPARE(site.rows("select id,fname,table_id from format_tbl order by id"),
             (QStringList{"1|colour|1", "2|size|2", "3|colour|2"}));
    QCOMPARE(site.rows("select fieldID,fieldCODE from fcodes_tbl"), (QStringList{"1|r", "2|b", "3|r"}));
}

void map_writing_test::several_maps_carry_lastformat_at_once()
{
    wizard_site site;
    site.add_field("city", 1);
    maps::write_map("first_map");
    maps::write_map("second_map");
    QCOMPARE(site.column("select lastformat from table_list_tbl"), (QStringList{"True", "True"}));
}

void map_writing_test::the_saved_name_is_kept_for_the_last_step()
{
    wizard_site site;
    site.add_field("city", 1);
    maps::write_map("Customers");
    QCOMPARE(map_wizard.map_name, QString("Customers"));
}

void map_writing_test::a_deleted_maps_name_starts_anew()
{
    wizard_site site;
    site.add_coded_field("colour", 1, {"red"}, {"r"});
    maps::write_map("customers");
    site.run("delete from table_list_tbl where table_name='customers'");
    site.run("drop table customers");
    map_wizard.MapWHiddenA_frm.clear();
    map_wizard.MapWHiddenR_frm.clear();
    site.add_field("city", 1);
    QCOMPARE(message_for("customers"), QString());
    maps::write_map("customers");
    QCOMPARE(site.column("select table_id from table_list_tbl"), QStringList{"2"});
    QCOMPARE(site.column("select fname from format_tbl where table_id=2"), QStringList{"city"});
    QCOMPARE(site.column("select id from format_tbl"), (QStringList{"1", "2"})); // the old row stays behind
    QCOMPARE(site.columns_of("customers").mid(5), QStringList{"city"});
    site.add_stored_mail("orders", "Order", "Rome");
    maps::bring_mails_over("customers");
    QCOMPARE(site.column("select city from customers"), QStringList{"Rome"});
    QCOMPARE(site.log_text(), QString());
}

void map_writing_test::what_the_store_will_refuse_is_known_before_data()
{
    QTest::addColumn<QString>("subject");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("description");
    QTest::addColumn<bool>("refused");
    const QString long_text(256, u'x');
    QTest::newRow("all is well") << "Order"
                                 << "city"
                                 << "red" << false;
    QTest::newRow("a subject of 255 characters") << long_text.chopped(1) << "city"
                                                 << "red" << false;
    QTest::newRow("of 256") << long_text << "city"
                            << "red" << true;
    QTest::newRow("of 255 and a blank, which is trimmed") << long_text.chopped(1) + " "
                                                          << "city"
                                                          << "red" << false;
    QTest::newRow("a field called like a column of every map") << "Order"
                                                               << "TSL_EMAIL"
                                                               << "red" << true;
    QTest::newRow("the key of every map") << "Order"
                                          << "message_id"
                                          << "red" << true;
    QTest::newRow("a field's name of 256 characters") << "Order" << long_text << "red" << true;
    QTest::newRow("a description of 256 characters") << "Order"
                                                     << "city" << long_text << true;
}

void map_writing_test::what_the_store_will_refuse_is_known_before()
{
    QFETCH(QString, subject);
    QFETCH(QString, field);
    QFETCH(QString, description);
    QFETCH(bool, refused);
    wizard_site site("Line", subject);
    site.add_coded_field(field, 1, {description}, {"r"});
    QCOMPARE(!maps::why_save_would_fail().isEmpty(), refused);
    bool failed = false;
    try {
        maps::write_map("customers");
    } catch (const run_time_error &) {
        failed = true;
    }
    QCOMPARE(failed, refused); // the store is of the same opinion
}

QTEST_GUILESS_MAIN(map_writing_test)
#include "map_writing_test.moc"
