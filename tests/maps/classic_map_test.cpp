// The fields of the screen MapMail: separators, codes, and the tests of its "next" in their order.
#include "maps/classic_map.h"
#include "maps/field_entry.h"

#include <QtTest/QTest>

using maps::classic_code;
using maps::stored_field;

namespace {

const QString odd_name = "Please define field names without the following characters -, +, %, !, (, ),*,/";
const QString no_values = "Add code values";
const QString known_name = "This field has been added earlier.";
const QString known_position = "This position has been selected earlier.";

std::vector<stored_field> two_fields()
{
    stored_field city;
    city.fname = "City";
    city.fposition = "Line1";
    stored_field zip;
    zip.fname = "zip";
    zip.fposition = "Line2";
    return {city, zip};
}

QString message_for(const QString &typed, const QString &position, int shown, bool wants_code = false,
                    const classic_code &code = {})
{
    QString name = typed;
    return maps::why_not_next(name, position, wants_code, code, two_fields(), shown);
}

}

class classic_map_test : public QObject {
    Q_OBJECT
private slots:
    void the_separators_offered();
    void the_codes_ask_data();
    void the_codes_ask();
    void entries_of_pieces();
    void a_field_is_refused_data();
    void a_field_is_refused();
    void the_tests_come_in_their_order();
    void code_values_are_asked_for_data();
    void code_values_are_asked_for();
    void the_test_of_positions_is_live_here_and_not_in_the_wizard();
    void codes_as_the_screen_keeps_them();
    void the_code_field_is_the_last_one_with_code_values();
};

void classic_map_test::the_separators_offered()
{
    QStringList offered;
    for (const auto &choice : maps::classic_separators())
        offered += choice.caption + u'|' + choice.stored;
    QCOMPARE(offered, (QStringList{"Line|Line", "Colon(:)|:", "Comma(,)|,", "Semi-colon(;)|;"}));
}

void classic_map_test::entries_of_pieces()
{
    QCOMPARE(maps::line_entry(1), QString("Line1"));
    QCOMPARE(maps::line_entry(12), QString("Line12"));
}

void classic_map_test::a_field_is_refused_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("position");
    QTest::addColumn<int>("shown");
    QTest::addColumn<QString>("message");
    QTest::newRow("a new field") << "town"
                                 << "Line3" << 2 << "";
    QTest::newRow("an empty name has no message of its own here") << ""
                                                                  << "Line3" << 2 << odd_name;
    QTest::newRow("a blank inside") << "my town"
                                    << "Line3" << 2 << odd_name;
    QTest::newRow("blanks around are trimmed") << " town "
                                               << "Line3" << 2 << "";
    QTest::newRow("a reserved word passes here") << "Name"
                                                 << "Line3" << 2 << "";
    QTest::newRow("a known name") << "CITY"
                                  << "Line3" << 2 << known_name;
    QTest::newRow("a known position") << "town"
                                      << "Line2" << 2 << known_position;
    QTest::newRow("the field on screen does not stand in its own way") << "city"
                                                                       << "Line1" << 0 << "";
    QTest::newRow("but others do: name") << "zip"
                                         << "Line1" << 0 << known_name;
    QTest::newRow("but others do: position") << "city"
                                             << "Line2" << 0 << known_position;
}

void classic_map_test::a_field_is_refused()
{
    QFETCH(QString, name);
    QFETCH(QString, position);
    QFETCH(int, shown);
    QTEST(message_for(name, position, shown), "message");
}

void classic_map_test::the_tests_come_in_their_order()
{
    QCOMPARE(message_for("ci ty", "Line1", 2, true), odd_name);
    QCOMPARE(message_for("city", "Line1", 2, true), no_values);
    QCOMPARE(message_for("city", "Line1", 2), known_name);
    QCOMPARE(message_for("town", "Line1", 2), known_position);
}

void classic_map_test::code_values_are_asked_for_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QStringList>("codes");
    QTest::addColumn<QString>("message");
    QTest::newRow("no kind") << "" << QStringList{} << no_values;
    QTest::newRow("fixed without values") << "fixed" << QStringList{} << no_values;
    QTest::newRow("fixed with values") << "fixed" << QStringList{"r"} << "";
    QTest::newRow("dynamic needs none") << "dynamic" << QStringList{} << "";
    QTest::newRow("in other capitals") << "FIXED" << QStringList{"r"} << "";
}

void classic_map_test::code_values_are_asked_for()
{
    QFETCH(QString, type);
    QFETCH(QStringList, codes);
    QTEST(message_for("town", "Line3", 2, true, {type, codes, codes}), "message");
}

void classic_map_test::the_test_of_positions_is_live_here_and_not_in_the_wizard()
{
    QCOMPARE(message_for("town", maps::line_entry(1), 2), known_position);
    maps::map_wizard = {};
    maps::keep_field("city", maps::separator_entry(1), {}, {}, {}, false);
    QString name = "town";
    QVERIFY(!maps::why_not_addable(name, maps::separator_entry(1), {}, false));
    maps::map_wizard = {};
}

void classic_map_test::codes_as_the_screen_keeps_them()
{
    stored_field field;
    QCOMPARE(maps::code_of(field).type, QString());
    field.fcodegen = 2;
    QCOMPARE(maps::code_of(field).type, QString("dynamic"));
    field.fcodegen = 1;
    field.descriptions = QStringList{"red"};
    field.codes = QStringList{"r"};
    QCOMPARE(maps::code_of(field).type, QString("fixed"));
    QCOMPARE(maps::code_of(field).descriptions, QStringList{"red"});
    QCOMPARE(maps::code_of(field).codes, QStringList{"r"});
}

void classic_map_test::the_code_field_is_the_last_one_with_code_values()
{
    std::vector<stored_field> fields(4);
    QCOMPARE(maps::code_field_of(fields), -1);
    fields[0].fcodegen = 2;
    QCOMPARE(maps::code_field_of(fields), 0);
    fields[2].fcodegen = 1;
    fields[2].codes = QStringList{"r"};
    QCOMPARE(maps::code_field_of(fields), 2);
    fields[3].fcodegen = 1; // no values
    QCOMPARE(maps::code_field_of(fields), 2);
}

void classic_map_test::the_codes_ask_data()
{
    QTest::addColumn<bool>("fixed");
    QTest::addColumn<bool>("dynamic");
    QTest::addColumn<bool>("has_values");
    QTest::addColumn<QString>("message");
    QTest::newRow("neither option") << false << false << true << "Please select any one of the type";
    QTest::newRow("fixed without values") << true << false << false << "Please enter values";
    QTest::newRow("fixed with values") << true << false << true << "";
    QTest::newRow("dynamic needs none") << false << true << false << "";
}

void classic_map_test::the_codes_ask()
{
    QFETCH(bool, fixed);
    QFETCH(bool, dynamic);
    QFETCH(bool, has_values);
    QTEST(maps::why_no_classic_code(fixed, dynamic, has_values), "message");
}

QTEST_GUILESS_MAIN(classic_map_test)
#include "classic_map_test.moc"
