// A saved map looked at again, and its summary to the character.
#include "maps/classic_map.h"
#include "maps/map_writing.h"
#include "support/wizard_site.h"

#include <QtTest/QTest>

using maps::stored_field;

namespace {

const QString heads = "Enclosed are the set of fields mapped to account query orders\r\n"
                      "Line no     Field name      Doesnt include     Ignore       Code field\r\n"
                      "                                  field name \r\n"
                      "**************************************************************************\r\n";

stored_field field(const QString &name, const QString &position, const QString &texts, bool does_not_include = true)
{
    stored_field made;
    made.fname = name;
    made.fposition = position;
    made.fignore = texts;
    made.finclude = does_not_include;
    return made;
}

}

Q_DECLARE_METATYPE(maps::stored_field)

class stored_map_test : public QObject {
    Q_OBJECT
private slots:
    void the_maps_of_an_account();
    void a_map_is_read();
    void fixed_values_are_read_with_their_field();
    void a_map_that_does_not_exist();
    void an_imported_map_without_separator();
    void a_line_of_the_summary_data();
    void a_line_of_the_summary();
    void a_whole_summary();
    void the_heads_alone();
};

void stored_map_test::the_maps_of_an_account()
{
    wizard_site site;
    site.add_account("shop", "shop@example.org");
    site.add_map("first_map", 1, "Order", "Line", {});
    site.add_map("sales", 2, "Order", "Line", {});
    site.add_map("second_map", 1, "Order", "Line", {});
    QCOMPARE(maps::maps_of_account("orders"), (QStringList{"first_map", "second_map"}));
    QCOMPARE(maps::maps_of_account("shop"), QStringList{"sales"});
    QCOMPARE(maps::maps_of_account("nowhere"), QStringList());
}

void stored_map_test::a_map_is_read()
{
    wizard_site site(";", "Order form");
    site.add_field("city", 2, {"City:", "(town)"});
    site.add_field("zip", 1);
    maps::write_map("Customers");
    site.run("update format_tbl set finclude=no where fname='city'");
    const maps::stored_map map = maps::read_map("customers");
    QCOMPARE(map.seperator, QString(";"));
    QCOMPARE(map.fields.size(), size_t(2));
    QCOMPARE(map.fields[0].fname, QString("zip"));
    QCOMPARE(map.fields[0].fposition, QString("Line1"));
    QCOMPARE(map.fields[0].fignore, QString());
    QVERIFY(map.fields[0].finclude);
    QCOMPARE(map.fields[1].fname, QString("city"));
    QCOMPARE(map.fields[1].fignore, QString("City:@@@(town)"));
    QVERIFY(!map.fields[1].finclude);
}

void stored_map_test::fixed_values_are_read_with_their_field()
{
    wizard_site site;
    site.add_coded_field("colour", 1, {"red", "blue"}, {"r", "b"});
    site.add_coded_field("size", 2, {"big"}, {"x"});
    maps::map_wizard.code_kind = maps::generated_dynamically;
    site.add_field("ticket", 3);
    maps::write_map("customers");
    const maps::stored_map map = maps::read_map("customers");
    QCOMPARE(map.fields.size(), size_t(3));
    QCOMPARE(map.fields[0].fcodegen, 2);
    QCOMPARE(map.fields[0].codes, QStringList());
    QCOMPARE(map.fields[1].descriptions, QStringList{"big"});
    QCOMPARE(map.fields[2].descriptions, (QStringList{"red", "blue"}));
    QCOMPARE(map.fields[2].codes, (QStringList{"r", "b"}));
    QCOMPARE(map.fields[2].fcodegen, 1);
}

void stored_map_test::a_map_that_does_not_exist()
{
    wizard_site site;
    const maps::stored_map map = maps::read_map("nowhere");
    QCOMPARE(map.seperator, QString());
    QVERIFY(map.fields.empty());
}

void stored_map_test::an_imported_map_without_separator()
{
    wizard_site site;
    site.run("insert into table_list_tbl (table_name,date_created,query_id,lastformat) values('merged',date(),0,no)");
    QCOMPARE(maps::read_map("merged").seperator, QString());
    QVERIFY(maps::read_map("merged").fields.empty());
}

void stored_map_test::a_line_of_the_summary_data()
{
    QTest::addColumn<stored_field>("shown");
    QTest::addColumn<bool>("has_code");
    QTest::addColumn<QString>("line");
    const auto blanks = [](int count) { return QString(count, u' '); };
    QTest::newRow("no supporting texts") << field("city", "Line1", "") << false
                                         << "Line1" + blanks(7) + "city" + blanks(13) + "Yes" + blanks(16) +
                                                blanks(17) + "No";
    QTest::newRow("the piece includes the name")
        << field("city", "Line1", "", false) << false
        << "Line1" + blanks(7) + "city" + blanks(13) + "No" + blanks(17) + blanks(17) + "No";
    QTest::newRow("the code field") << field("city", "Line12", "") << true
                                    << "Line12" + blanks(6) + "city" + blanks(13) + "Yes" + blanks(16) + blanks(17) +
                                           "Yes";
    QTest::newRow("supporting texts with commas")
        << field("city", "Line1", "City:@@@(town)") << false
        << "Line1" + blanks(7) + "city" + blanks(13) + "Yes" + blanks(16) + "City:,(town)" + blanks(5) + "No";
    QTest::newRow("a name of 16 characters")
        << field(QString(16, u'n'), "Line1", "") << false
        << "Line1" + blanks(7) + QString(16, u'n') + blanks(1) + "Yes" + blanks(16) + blanks(17) + "No";
    QTest::newRow("a name of 17 is followed by one blank")
        << field(QString(17, u'n'), "Line1", "") << false
        << "Line1" + blanks(7) + QString(17, u'n') + blanks(1) + "Yes" + blanks(16) + blanks(17) + "No";
    QTest::newRow("so is one of 40") << field(QString(40, u'n'), "Line1", "") << false
                                     << "Line1" + blanks(7) + QString(40, u'n') + blanks(1) + "Yes" + blanks(16) +
                                            blanks(17) + "No";
    QTest::newRow("texts of 16 characters")
        << field("a", "Line1", QString(16, u't')) << false
        << "Line1" + blanks(7) + "a" + blanks(16) + "Yes" + blanks(16) + QString(16, u't') + blanks(1) + "No";
    QTest::newRow("texts of 30 are followed by one blank")
        << field("a", "Line1", QString(30, u't')) << false
        << "Line1" + blanks(7) + "a" + blanks(16) + "Yes" + blanks(16) + QString(30, u't') + blanks(1) + "No";
    QTest::newRow("a position of 12 characters has no blank")
        << field("a", "Line12345678", "") << false
        << "Line12345678a" + blanks(16) + "Yes" + blanks(16) + blanks(17) + "No";
}

void stored_map_test::a_line_of_the_summary()
{
    QFETCH(stored_field, shown);
    QFETCH(bool, has_code);
    QFETCH(QString, line);
    QCOMPARE(maps::map_summary("orders", {shown}, has_code ? 0 : -1), heads + line + "\r\n");
}

void stored_map_test::a_whole_summary()
{
    QCOMPARE(maps::map_summary("orders",
                               {field("first_name", "Line1", "Name:@@@(yours)"), field("colour", "Line10", "", false),
                                field("zip", "Line3", ":")},
                               1),
             heads + "Line1       first_name       Yes                Name:,(yours)    No\r\n"
                     "Line10      colour           No                                  Yes\r\n"
                     "Line3       zip              Yes                :                No\r\n");
}

void stored_map_test::the_heads_alone()
{
    QCOMPARE(maps::map_summary("orders", {}, -1), heads);
    QCOMPARE(heads.section("\r\n", 3, 3).size(), 74);
}

QTEST_GUILESS_MAIN(stored_map_test)
#include "stored_map_test.moc"
