// The reference code of a field: what its screen opens with, asks for and keeps.
#include "maps/field_entry.h"
#include "maps/reference_codes.h"

#include <QtTest/QTest>

using maps::map_wizard;

class reference_codes_test : public QObject {
    Q_OBJECT
private slots:
    void init() { map_wizard = {}; }
    void a_new_field_opens_with_nothing();
    void a_changed_field_opens_with_its_code();
    void pairs_are_found_by_the_name_in_any_capitals();
    void a_pair_is_asked_for_data();
    void a_pair_is_asked_for();
    void submitting_data();
    void submitting();
    void fixed_values_without_a_pair_are_kept_as_such();
    void cancelling_leaves_the_kind();
};

void reference_codes_test::a_new_field_opens_with_nothing()
{
    map_wizard.MapWHiddenA_frm = {{"colour", "Line1", {}, maps::fixed_values, {}}};
    map_wizard.MapWHiddenR_frm = {{"colour", "red", "r"}};
    QCOMPARE(maps::choice_of("").kind, 0);
    QCOMPARE(maps::choice_of("").codes, QStringList());
    QCOMPARE(maps::choice_of("unknown").kind, 0);
}

void reference_codes_test::a_changed_field_opens_with_its_code()
{
    map_wizard.MapWHiddenA_frm = {{"colour", "Line1", {}, maps::fixed_values, {}},
                                  {"ticket", "Line2", {}, maps::generated_dynamically, {}},
                                  {"city", "Line3", {}, maps::no_code, {}}};
    map_wizard.MapWHiddenR_frm = {{"colour", "red", "r"}, {"other", "green", "g"}, {"colour", "blue", "b"}};
    const maps::code_choice fixed = maps::choice_of("colour");
    QCOMPARE(fixed.kind, int(maps::fixed_values));
    QCOMPARE(fixed.descriptions, (QStringList{"red", "blue"}));
    QCOMPARE(fixed.codes, (QStringList{"r", "b"}));
    QCOMPARE(maps::choice_of("ticket").kind, int(maps::generated_dynamically));
    QCOMPARE(maps::choice_of("city").kind, int(maps::generated_dynamically)); // any other kind than fixed
    QCOMPARE(maps::choice_of("city").codes, QStringList());
}

void reference_codes_test::pairs_are_found_by_the_name_in_any_capitals()
{
    map_wizard.MapWHiddenA_frm = {{"Colour", "Line1", {}, maps::fixed_values, {}}};
    map_wizard.MapWHiddenR_frm = {{"Colour", "red", "r"}};
    QCOMPARE(maps::choice_of("COLOUR").kind, int(maps::fixed_values));
    QCOMPARE(maps::choice_of("COLOUR").codes, QStringList{"r"});
}

void reference_codes_test::a_pair_is_asked_for_data()
{
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("message");
    QTest::newRow("both") << "red"
                          << "r"
                          << "";
    QTest::newRow("no description") << ""
                                    << "r"
                                    << "Please enter description";
    QTest::newRow("neither: only the first speaks") << ""
                                                    << ""
                                                    << "Please enter description";
    QTest::newRow("no code") << "red"
                             << ""
                             << "Please enter code";
    QTest::newRow("a code of blanks is none") << "red"
                                              << "  "
                                              << "Please enter code";
    QTest::newRow("a description of blanks is one") << " "
                                                    << "r"
                                                    << "";
}

void reference_codes_test::a_pair_is_asked_for()
{
    QFETCH(QString, description);
    QFETCH(QString, code);
    QTEST(maps::why_no_code_value(description, code), "message");
}

void reference_codes_test::submitting_data()
{
    QTest::addColumn<bool>("fixed");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QStringList>("kept");
    QTest::newRow("fixed values") << true << int(maps::fixed_values) << QStringList{"r", "r"};
    QTest::newRow("anything else is dynamic") << false << int(maps::generated_dynamically) << QStringList{"before"};
}

void reference_codes_test::submitting()
{
    QFETCH(bool, fixed);
    map_wizard.code_codes = QStringList{"before"};
    maps::submit_code(fixed, {"red", "red"}, {"r", "r"}); // the same description twice is allowed
    QTEST(map_wizard.code_kind, "kind");
    QTEST(map_wizard.code_codes, "kept");
    QVERIFY(map_wizard.code_values_set);
}

void reference_codes_test::fixed_values_without_a_pair_are_kept_as_such()
{
    map_wizard.code_codes = QStringList{"before"};
    maps::submit_code(true, {}, {});
    QCOMPARE(map_wizard.code_kind, int(maps::fixed_values));
    QCOMPARE(map_wizard.code_codes, QStringList());
    QVERIFY(map_wizard.code_values_set);
}

void reference_codes_test::cancelling_leaves_the_kind()
{
    maps::submit_code(true, {"red"}, {"r"});
    maps::cancel_code();
    QVERIFY(!map_wizard.code_values_set);
    maps::keep_field("colour", "Separator1", {}, {}, {}, false);
    QCOMPARE(map_wizard.MapWHiddenA_frm[0].code, int(maps::fixed_values));
    QVERIFY(map_wizard.MapWHiddenR_frm.empty());
}

QTEST_GUILESS_MAIN(reference_codes_test)
#include "reference_codes_test.moc"
