// Adding fields to the wizard's list: names, the tests of "Add this field" in their order, supporting texts, the list.
#include "frame/checks.h"
#include "maps/field_entry.h"

#include <QtTest/QTest>

using maps::map_wizard;

namespace {

const QString empty_name = "Please enter a field name and then click Add this field";
const QString reserved_name = "This name has been reserved for Microsoft Access. Kindly use another name.";
const QString odd_name = "Please define field names without the following characters -, +, %, !, (, ),*,/";
const QString known_name = "You have already added a field by this name";
const QString known_position = "You have already added a field for this position";
const QString no_values = "Though you selected to generate Reference code, you haven't specified the values. Please "
                          "specify values to generate code by clicking on the Values butoon.";

QString message_for(const QString &typed, const QString &entry = "Separator9", const QString &changed = {},
                    bool wants_code = false)
{
    QString name = typed;
    const auto fault = maps::why_not_addable(name, entry, changed, wants_code);
    return fault ? fault->message : QString();
}

QStringList field_names()
{
    QStringList names;
    for (const auto &field : map_wizard.MapWHiddenA_frm)
        names += field.fieldname;
    return names;
}

QStringList code_rows()
{
    QStringList rows;
    for (const auto &value : map_wizard.MapWHiddenR_frm)
        rows += value.fieldname + u'|' + value.description + u'|' + value.code;
    return rows;
}

void choose_fixed(const QStringList &descriptions, const QStringList &codes)
{
    map_wizard.code_kind = maps::fixed_values;
    map_wizard.code_values_set = true;
    map_wizard.code_descs = descriptions;
    map_wizard.code_codes = codes;
}

}

class field_entry_test : public QObject {
    Q_OBJECT
private slots:
    void init() { map_wizard = {}; }
    void names_data();
    void names();
    void a_name_is_trimmed_in_place();
    void three_rules_for_names();
    void a_field_is_refused_data();
    void a_field_is_refused();
    void the_tests_come_in_their_order();
    void where_the_focus_goes();
    void a_changed_field_does_not_stand_in_its_own_way();
    void two_fields_may_share_a_piece();
    void the_test_of_positions_stays_for_equal_words();
    void wanted_codes_need_values();
    void supporting_texts_come_back_for_the_exact_name();
    void supporting_texts_are_taken_out_data();
    void supporting_texts_are_taken_out();
    void a_marked_text_is_ignored_data();
    void a_marked_text_is_ignored();
    void a_field_is_kept();
    void a_marked_text_with_three_at_signs_is_cut_in_two_later();
    void fields_stand_in_the_order_of_adding();
    void a_changed_field_goes_to_the_end_of_both_lists();
    void a_change_of_the_name_takes_the_old_row_away();
    void fixed_values_are_kept_with_the_field();
    void fixed_values_without_pairs();
    void the_kind_is_kept_though_the_box_was_taken_off();
    void a_kept_field_forgets_the_pending_code();
    void a_code_is_taken_back_for_changing();
    void a_field_without_code_leaves_the_pending_one();
    void a_new_cut_forgets_all_fields();
    void captions_of_codes();
};

void field_entry_test::names_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("passes");
    QTest::newRow("letters, digits, underscores") << "first_name2" << true;
    QTest::newRow("one letter") << "x" << true;
    QTest::newRow("blanks around it are trimmed") << "  city " << true;
    QTest::newRow("a blank inside") << "first name" << false;
    QTest::newRow("nothing") << "" << false;
    QTest::newRow("blanks only") << "   " << false;
    QTest::newRow("a digit first") << "1st" << false;
    QTest::newRow("an underscore first") << "_name" << false;
    QTest::newRow("a hyphen, though an account may have one") << "my-map" << false;
    QTest::newRow("a full stop, though an account may have one") << "my.map" << false;
    QTest::newRow("an accented letter") << "Été" << false;
    QTest::newRow("an accented letter inside") << "Straße" << false;
    QTest::newRow("a tab is not trimmed") << "city\t" << false;
    QTest::newRow("a no-break space is not trimmed") << "city\u00a0" << false;
    QTest::newRow("a quote") << "o'neil" << false;
    for (const char *letter : {"-", "+", "%", "!", "(", ")", "*", "/"})
        QTest::addRow("the sign %s", letter) << QString("a") + letter << false;
    QTest::newRow("reserved words are no business of this test: Select") << "Select" << true;
    QTest::newRow("reserved words are no business of this test: Query") << "Query" << true;
    QTest::newRow("names of the fixed columns neither") << "tsl_email" << true;
}

void field_entry_test::names()
{
    QFETCH(QString, name);
    QTEST(name_passes(name), "passes");
}

void field_entry_test::a_name_is_trimmed_in_place()
{
    QString name = "  city ";
    QVERIFY(name_passes(name));
    QCOMPARE(name, QString("city"));
    QString refused = " first name ";
    QVERIFY(!name_passes(refused));
    QCOMPARE(refused, QString("first name"));
}

void field_entry_test::three_rules_for_names()
{
    QString with_blanks = " city ";
    QVERIFY(!valid_name(with_blanks));       // trims only to see emptiness
    QVERIFY(!valid_query_name(with_blanks)); // the same
    QVERIFY(name_passes(with_blanks));       // trims in place
    QString shop = "my-shop";
    QVERIFY(valid_query_name(shop));
    QVERIFY(!name_passes(shop));
    QString word = "Select";
    QVERIFY(!valid_query_name(word));
    QVERIFY(name_passes(word));
}

void field_entry_test::a_field_is_refused_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("message");
    QTest::newRow("empty") << "" << empty_name;
    QTest::newRow("blanks are not empty: the name's own test speaks") << "  " << odd_name;
    QTest::newRow("Name is reserved") << "Name" << reserved_name;
    QTest::newRow("in any capitals") << "sELECT" << reserved_name;
    QTest::newRow("a word of the short list") << "Position" << reserved_name;
    QTest::newRow("the list's own spelling lets this one pass") << "IEEESINGLE"
                                                                << "";
    QTest::newRow("and refuses this one") << "TEEESINGLE" << reserved_name;
    QTest::newRow("the reserved words are compared untrimmed, so blanks lead past them") << " Name "
                                                                                         << "";
    QTest::newRow("First Name has a blank") << "First Name" << odd_name;
    QTest::newRow("first_name passes") << "first_name"
                                       << "";
    QTest::newRow("the name of a fixed column passes, and fails at the save") << "tsl_email"
                                                                              << "";
    QTest::newRow("a known name") << "city" << known_name;
    QTest::newRow("a known name in other capitals") << "CITY" << known_name;
    QTest::newRow("a known name behind blanks") << " City " << known_name;
    QTest::newRow("the start of a known name") << "cit"
                                               << "";
}

void field_entry_test::a_field_is_refused()
{
    map_wizard.MapWHiddenA_frm = {{"City", "Line1", {}, 0, {}}};
    QFETCH(QString, name);
    QTEST(message_for(name), "message");
}

void field_entry_test::the_tests_come_in_their_order()
{
    map_wizard.MapWHiddenA_frm = {{"Select", "Line1", {}, 0, {}}, {"city", "Separator1", {}, 0, {}}};
    QCOMPARE(message_for("", "Separator1", {}, true), empty_name);
    QCOMPARE(message_for("Select", "Separator1", {}, true), reserved_name); // known as well
    QCOMPARE(message_for("ci ty", "Separator1", {}, true), odd_name);
    QCOMPARE(message_for("city", "Separator1", {}, true), known_name);
    QCOMPARE(message_for("town", "Separator1", {}, true), known_position);
    QCOMPARE(message_for("town", "Separator2", {}, true), no_values);
    QCOMPARE(message_for("town", "Separator2", {}, false), QString());
}

void field_entry_test::where_the_focus_goes()
{
    map_wizard.MapWHiddenA_frm = {{"city", "Separator1", {}, 0, {}}};
    const auto focus_for = [](QString name, const QString &entry, bool wants_code) {
        return maps::why_not_addable(name, entry, {}, wants_code)->goes_to;
    };
    QCOMPARE(focus_for("", "Separator2", false), maps::focus::field_t);
    QCOMPARE(focus_for("Name", "Separator2", false), maps::focus::field_t);
    QCOMPARE(focus_for("a b", "Separator2", false), maps::focus::field_t);
    QCOMPARE(focus_for("city", "Separator2", false), maps::focus::stays);
    QCOMPARE(focus_for("town", "Separator1", false), maps::focus::stays);
    QCOMPARE(focus_for("town", "Separator2", true), maps::focus::Values_b);
}

void field_entry_test::a_changed_field_does_not_stand_in_its_own_way()
{
    map_wizard.MapWHiddenA_frm = {{"City", "Separator1", {}, 0, {}}, {"Town", "Separator2", {}, 0, {}}};
    QCOMPARE(message_for("City", "Separator1", "City"), QString());
    QCOMPARE(message_for("CITY", "Separator1", "city"), QString());
    QCOMPARE(message_for("Town", "Separator1", "City"), known_name);
    QCOMPARE(message_for("City", "Separator2", "City"), known_position);
}

void field_entry_test::two_fields_may_share_a_piece()
{
    maps::keep_field("city", "Separator1", {}, "Rome", {}, false);
    QCOMPARE(message_for("town", "Separator1"), QString());
}

void field_entry_test::the_test_of_positions_stays_for_equal_words()
{
    maps::keep_field("city", "Separator1", {}, "Rome", {}, false);
    QCOMPARE(message_for("town", "Line1"), known_position);
}

void field_entry_test::wanted_codes_need_values()
{
    QCOMPARE(message_for("city", "Separator1", {}, true), no_values);
    map_wizard.code_values_set = true;
    QCOMPARE(message_for("city", "Separator1", {}, true), QString());
}

void field_entry_test::supporting_texts_come_back_for_the_exact_name()
{
    maps::keep_field("City", "Separator1", {"City:", "(town)"}, "Rome", {}, false);
    maps::keep_field("Zip", "Separator2", {}, "1", {}, false);
    QCOMPARE(maps::kept_supporting_texts("City"), (QStringList{"City:", "(town)"}));
    QCOMPARE(maps::kept_supporting_texts("city"), QStringList());
    QCOMPARE(maps::kept_supporting_texts("Zip"), QStringList());
    QCOMPARE(maps::kept_supporting_texts("Other"), QStringList());
}

void field_entry_test::supporting_texts_are_taken_out_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QString>("rest");
    QTest::newRow("every occurrence") << "a: b: c" << QStringList{":"} << "a b c";
    QTest::newRow("in other capitals") << "CITY: Rome" << QStringList{"city:"} << " Rome";
    QTest::newRow("one after another") << "x--y" << QStringList{"--", "xy"} << "";
    QTest::newRow("none") << "Rome" << QStringList{} << "Rome";
    QTest::newRow("an empty one finds nothing") << "Rome" << QStringList{""} << "Rome";
    QTest::newRow("no pattern") << "a.b" << QStringList{"."} << "ab";
}

void field_entry_test::supporting_texts_are_taken_out()
{
    QFETCH(QString, value);
    QFETCH(QStringList, texts);
    QTEST(maps::without_supporting_texts(value, texts), "rest");
}

void field_entry_test::a_marked_text_is_ignored_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("rest");
    QTest::newRow("every occurrence") << "a: b: c"
                                      << ":"
                                      << "a b c";
    QTest::newRow("minding case") << "City: CITY"
                                  << "City"
                                  << ": CITY";
    QTest::newRow("nothing marked") << "Rome"
                                    << ""
                                    << "Rome";
    QTest::newRow("a blank") << "a b c"
                             << " "
                             << "abc";
    QTest::newRow("a no-break space is another text than a blank")
        << QString("a%1b c").arg(QChar(0xa0)) << QString(QChar(0xa0)) << "ab c";
}

void field_entry_test::a_marked_text_is_ignored()
{
    QFETCH(QString, value);
    QFETCH(QString, text);
    QTEST(maps::ignoring(value, text), "rest");
}

void field_entry_test::a_field_is_kept()
{
    map_wizard.code_kind = maps::generated_dynamically;
    maps::keep_field("city", "Separator7", {"City:", " (town)"}, " Rome", {}, true);
    QCOMPARE(map_wizard.MapWHiddenA_frm.size(), size_t(1));
    const maps::added_field &field = map_wizard.MapWHiddenA_frm[0];
    QCOMPARE(field.fieldname, QString("city"));
    QCOMPARE(field.position, QString("Line7"));
    QCOMPARE(field.ignore, QString("City:@@@ (town)"));
    QCOMPARE(field.code, int(maps::generated_dynamically));
    QCOMPARE(field.value, QString(" Rome"));
    QCOMPARE(code_rows(), QStringList());
}

void field_entry_test::a_marked_text_with_three_at_signs_is_cut_in_two_later()
{
    maps::keep_field("city", "Separator1", {"a@@@b"}, "", {}, false);
    QCOMPARE(map_wizard.MapWHiddenA_frm[0].ignore, QString("a@@@b"));
    QCOMPARE(maps::kept_supporting_texts("city"), (QStringList{"a", "b"}));
}

void field_entry_test::fields_stand_in_the_order_of_adding()
{
    for (const char *name : {"one", "two", "three"})
        maps::keep_field(name, "Separator1", {}, {}, {}, false);
    QCOMPARE(field_names(), (QStringList{"one", "two", "three"}));
}

void field_entry_test::a_changed_field_goes_to_the_end_of_both_lists()
{
    for (const char *name : {"one", "two"}) {
        choose_fixed({"red"}, {name});
        maps::keep_field(name, "Separator1", {}, {}, {}, true);
    }
    choose_fixed({"blue"}, {"b"});
    maps::keep_field("one", "Separator3", {"x"}, "new", "ONE", true);
    QCOMPARE(field_names(), (QStringList{"two", "one"}));
    QCOMPARE(map_wizard.MapWHiddenA_frm[1].position, QString("Line3"));
    QCOMPARE(map_wizard.MapWHiddenA_frm[1].value, QString("new"));
    QCOMPARE(code_rows(), (QStringList{"two|red|two", "one|blue|b"}));
}

void field_entry_test::a_change_of_the_name_takes_the_old_row_away()
{
    choose_fixed({"red"}, {"r"});
    maps::keep_field("colour", "Separator1", {}, {}, {}, true);
    maps::keep_field("paint", "Separator1", {}, {}, "colour", false);
    QCOMPARE(field_names(), QStringList{"paint"});
    QCOMPARE(code_rows(), QStringList());
}

void field_entry_test::fixed_values_are_kept_with_the_field()
{
    choose_fixed({"red", "blue", "red"}, {"r", "b", "r2"});
    maps::keep_field("colour", "Separator1", {}, {}, {}, true);
    QCOMPARE(code_rows(), (QStringList{"colour|red|r", "colour|blue|b", "colour|red|r2"}));
    QCOMPARE(map_wizard.MapWHiddenA_frm[0].code, int(maps::fixed_values));
}

void field_entry_test::fixed_values_without_pairs()
{
    choose_fixed({}, {});
    maps::keep_field("colour", "Separator1", {}, {}, {}, true);
    QCOMPARE(map_wizard.MapWHiddenA_frm[0].code, int(maps::fixed_values));
    QCOMPARE(code_rows(), QStringList());
}

void field_entry_test::the_kind_is_kept_though_the_box_was_taken_off()
{
    choose_fixed({"red"}, {"r"});
    maps::keep_field("colour", "Separator1", {}, {}, {}, false);
    QCOMPARE(map_wizard.MapWHiddenA_frm[0].code, int(maps::fixed_values));
    QCOMPARE(code_rows(), QStringList());
}

void field_entry_test::a_kept_field_forgets_the_pending_code()
{
    choose_fixed({"red"}, {"r"});
    maps::keep_field("colour", "Separator1", {}, {}, {}, true);
    QCOMPARE(map_wizard.code_kind, int(maps::no_code));
    QVERIFY(!map_wizard.code_values_set);
    maps::keep_field("next", "Separator2", {}, {}, {}, false);
    QCOMPARE(map_wizard.MapWHiddenA_frm[1].code, int(maps::no_code));
}

void field_entry_test::a_code_is_taken_back_for_changing()
{
    choose_fixed({"red", "blue"}, {"r", "b"});
    maps::keep_field("colour", "Separator1", {}, {}, {}, true);
    map_wizard.code_kind = maps::generated_dynamically;
    maps::keep_field("ticket", "Separator2", {}, {}, {}, true);
    map_wizard.code_descs = map_wizard.code_codes = QStringList{"of another field"};

    QVERIFY(maps::take_back_code(map_wizard.MapWHiddenA_frm[0]));
    QCOMPARE(map_wizard.code_kind, int(maps::fixed_values));
    QVERIFY(map_wizard.code_values_set);
    QCOMPARE(map_wizard.code_descs, (QStringList{"red", "blue"}));
    QCOMPARE(map_wizard.code_codes, (QStringList{"r", "b"}));

    map_wizard.code_values_set = false;
    QVERIFY(maps::take_back_code(map_wizard.MapWHiddenA_frm[1]));
    QCOMPARE(map_wizard.code_kind, int(maps::generated_dynamically));
    QVERIFY(map_wizard.code_values_set);
}

void field_entry_test::a_field_without_code_leaves_the_pending_one()
{
    maps::keep_field("city", "Separator1", {}, {}, {}, false);
    choose_fixed({"red"}, {"r"});
    QVERIFY(!maps::take_back_code(map_wizard.MapWHiddenA_frm[0]));
    QCOMPARE(map_wizard.code_kind, int(maps::fixed_values));
}

void field_entry_test::a_new_cut_forgets_all_fields()
{
    choose_fixed({"red"}, {"r"});
    maps::keep_field("colour", "Separator1", {}, {}, {}, true);
    choose_fixed({"red"}, {"r"});
    maps::forget_fields();
    QCOMPARE(field_names(), QStringList());
    QCOMPARE(code_rows(), QStringList());
    QCOMPARE(map_wizard.code_kind, int(maps::no_code));
    QVERIFY(!map_wizard.code_values_set);
}

void field_entry_test::captions_of_codes()
{
    QCOMPARE(maps::code_caption(0), QString("None"));
    QCOMPARE(maps::code_caption(1), QString("Fixed values"));
    QCOMPARE(maps::code_caption(2), QString("Dynamically generated"));
}

QTEST_GUILESS_MAIN(field_entry_test)
#include "field_entry_test.moc"
