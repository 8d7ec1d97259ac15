// Reference codes in the Mail Mapping Wizard: the screen, what it keeps, and what becomes of it when the field is
// added.
#include "screens/list_view.h"
#include "screens/maps/MapWRefcode_frm.h"
#include "screens/maps/MapWStep4_Add_frm.h"
#include "screens/maps/MapWizardPView_frm.h"
#include "screens/maps/MapWizardStep4_frm.h"
#include "support/screens_map_wizard.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>
#include <QTest>

namespace {

using step4 = MapWizardStep4_frm;

QCheckBox &code_box()
{
    return control<QCheckBox>(the<step4>(), "code_ch");
}

QPushButton &values_button()
{
    return control<QPushButton>(the<step4>(), "Values_b");
}

QStringList texts(const MapWRefcode_frm &screen, const char *list)
{
    const auto &widget = control<QListWidget>(screen, list);
    QStringList found;
    for (int row = 0; row < widget.count(); ++row)
        found += widget.item(row)->text();
    return found;
}

void choose(MapWRefcode_frm &screen, const char *option)
{
    control<QRadioButton>(screen, option).click();
}

void add_pair(MapWRefcode_frm &screen, const QString &description, const QString &code)
{
    type(screen, "desc_t", description);
    type(screen, "code_t", code);
    control<QPushButton>(screen, "add_b").click();
}

// Sets code_ch and does this on the screen behind Values.
template <typename Deed>
void with_codes(Deed deed)
{
    code_box().setChecked(true);
    in_modal<MapWRefcode_frm>(deed);
    values_button().click();
}

void submit(MapWRefcode_frm &screen)
{
    control<QPushButton>(screen, "submit_b").click();
}

// One pair for the field that is being named.
void give_fixed_code()
{
    with_codes([](MapWRefcode_frm &screen) {
        choose(screen, "fixed_op");
        add_pair(screen, "Lavender", "L");
        submit(screen);
    });
}

QStringList kept_codes()
{
    QStringList rows;
    for (const maps::code_value &value : maps::map_wizard.MapWHiddenR_frm)
        rows += value.fieldname + "|" + value.description + "|" + value.code;
    return rows;
}

void open_for_changing(int row)
{
    in_modal<MapWizardPView_frm>([row](MapWizardPView_frm &preview) {
        auto &list = control<list_view>(preview, "inbox_lv");
        list.setCurrentIndex(list.model()->index(row, 0));
        control<QPushButton>(preview, "Open_b").click();
    });
    press<step4>("pfields_b");
}

struct marking_site : map_wizard_site {
    marking_site()
    {
        open_cutting(*this, "orders", 1);
        cut_by_lines();
    }
};

const char *const inputs[] = {"desc_t", "code_t", "add_b", "desc_l", "code_l"};

}

class map_wizard_code_test : public QObject {
    Q_OBJECT
private slots:
    void values_can_be_pressed_with_its_box_only()
    {
        marking_site site;
        QVERIFY(!values_button().isEnabled());
        code_box().click();
        QVERIFY(values_button().isEnabled());
        code_box().click();
        QVERIFY(!values_button().isEnabled());
    }

    void without_values_the_field_is_not_added()
    {
        marking_site site;
        code_box().setChecked(true);
        type(the<step4>(), "field_t", "item");
        press<step4>("next_b");
        QCOMPARE(site.boxes.shown,
                 QStringList{"Though you selected to generate Reference code, you haven't specified the values. Please "
                             "specify values to generate code by clicking on the Values butoon."});
        QCOMPARE(the<step4>().focusWidget(), &values_button());
        QCOMPARE(added_fields(), QStringList());
    }

    void a_duplicate_speaks_before_missing_values()
    {
        marking_site site;
        add_field("item", 3);
        code_box().setChecked(true);
        type(the<step4>(), "field_t", "item");
        press<step4>("next_b");
        QCOMPARE(site.boxes.shown, QStringList{"You have already added a field by this name"});
    }

    void a_new_field_opens_it_with_nothing_chosen()
    {
        marking_site site;
        with_codes([](MapWRefcode_frm &screen) {
            QCOMPARE(screen.windowTitle(), "Reference code");
            QVERIFY(!control<QRadioButton>(screen, "fixed_op").isChecked());
            QVERIFY(!control<QRadioButton>(screen, "dynamic_op").isChecked());
            QCOMPARE(control<QRadioButton>(screen, "fixed_op").text().remove('&'),
                     "generated from a set of fixed options");
            QCOMPARE(control<QRadioButton>(screen, "dynamic_op").text().remove('&'),
                     "generated dynamically(like a ticket)");
            for (const char *input : inputs)
                QVERIFY(!control<QWidget>(screen, input).isVisible());
            choose(screen, "fixed_op");
            for (const char *input : inputs)
                QVERIFY(control<QWidget>(screen, input).isVisible());
            choose(screen, "dynamic_op");
            for (const char *input : inputs)
                QVERIFY(!control<QWidget>(screen, input).isVisible());
            control<QPushButton>(screen, "cancel_b").click();
        });
    }

    void a_pair_wants_a_description_then_a_code()
    {
        marking_site site;
        with_codes([&site](MapWRefcode_frm &screen) {
            choose(screen, "fixed_op");
            add_pair(screen, "", "");
            QCOMPARE(site.boxes.shown, QStringList{"Please enter description"});
            QCOMPARE(screen.focusWidget(), &control<QLineEdit>(screen, "desc_t"));
            add_pair(screen, "Lavender", "  ");
            QCOMPARE(site.boxes.shown.last(), "Please enter code");
            QCOMPARE(screen.focusWidget(), &control<QLineEdit>(screen, "code_t"));
            QCOMPARE(control<QLineEdit>(screen, "desc_t").text(), "Lavender");
            QCOMPARE(texts(screen, "desc_l"), QStringList());
            control<QPushButton>(screen, "cancel_b").click();
        });
        QCOMPARE(site.boxes.shown.size(), 2);
    }

    void pairs_go_to_the_ends_and_may_repeat()
    {
        marking_site site;
        with_codes([](MapWRefcode_frm &screen) {
            choose(screen, "fixed_op");
            add_pair(screen, "Lavender", "L");
            add_pair(screen, " ", "S"); // a blank is a description
            add_pair(screen, "Lavender", "L");
            QCOMPARE(texts(screen, "desc_l"), (QStringList{"Lavender", " ", "Lavender"}));
            QCOMPARE(texts(screen, "code_l"), (QStringList{"L", "S", "L"}));
            QCOMPARE(control<QLineEdit>(screen, "desc_t").text(), "");
            QCOMPARE(control<QLineEdit>(screen, "code_t").text(), "");
            QCOMPARE(screen.focusWidget(), &control<QLineEdit>(screen, "desc_t"));
            submit(screen);
        });
        QCOMPARE(maps::map_wizard.code_kind, int(maps::fixed_values));
        QVERIFY(maps::map_wizard.code_values_set);
        QCOMPARE(maps::map_wizard.code_descs, (QStringList{"Lavender", " ", "Lavender"}));
        QVERIFY(code_box().isChecked());
    }

    void a_field_with_fixed_values_keeps_its_pairs()
    {
        marking_site site;
        with_codes([](MapWRefcode_frm &screen) {
            choose(screen, "fixed_op");
            add_pair(screen, "Lavender", "L");
            add_pair(screen, "Sage", "S");
            submit(screen);
        });
        add_field("item", 3);
        QCOMPARE(added_fields(), QStringList{"item|Line3||1|Item: Lavender, blue"});
        QCOMPARE(kept_codes(), (QStringList{"item|Lavender|L", "item|Sage|S"}));
        QVERIFY(!code_box().isChecked());
        QVERIFY(!values_button().isEnabled());
        QVERIFY(!maps::map_wizard.code_values_set);
        QCOMPARE(maps::map_wizard.code_kind, 0);
    }

    void fixed_without_a_pair_is_not_refused()
    {
        marking_site site;
        with_codes([](MapWRefcode_frm &screen) {
            choose(screen, "fixed_op");
            submit(screen);
        });
        add_field("item", 3);
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(added_fields(), QStringList{"item|Line3||1|Item: Lavender, blue"});
        QCOMPARE(kept_codes(), QStringList());
    }

    void without_a_choice_a_submit_is_dynamic()
    {
        marking_site site;
        with_codes(submit);
        QCOMPARE(maps::map_wizard.code_kind, int(maps::generated_dynamically));
        add_field("item", 3);
        QCOMPARE(added_fields(), QStringList{"item|Line3||2|Item: Lavender, blue"});
    }

    void cancel_unsets_the_box_data()
    {
        QTest::addColumn<QString>("way");
        for (const char *way : {"Cancel", "Escape", "the cross"})
            QTest::newRow(way) << way;
    }

    void cancel_unsets_the_box()
    {
        QFETCH(QString, way);
        marking_site site;
        with_codes(submit);
        with_codes([way](MapWRefcode_frm &screen) {
            if (way == "the cross")
                screen.window()->close();
            else if (way == "Escape")
                QTest::keyClick(screen.focusWidget(), Qt::Key_Escape);
            else
                control<QPushButton>(screen, "cancel_b").click();
        });
        QVERIFY(!code_box().isChecked());
        QVERIFY(!values_button().isEnabled());
        QVERIFY(!maps::map_wizard.code_values_set);
    }

    void the_kind_is_kept_though_the_box_was_unset_after_the_values()
    {
        marking_site site;
        give_fixed_code();
        code_box().setChecked(false);
        add_field("item", 3);
        QCOMPARE(added_fields(), QStringList{"item|Line3||1|Item: Lavender, blue"});
        QCOMPARE(kept_codes(), QStringList()); // the pairs want the box
    }

    void a_field_taken_back_brings_its_fixed_values()
    {
        marking_site site;
        give_fixed_code();
        add_field("item", 3);
        open_for_changing(0);
        QVERIFY(code_box().isChecked());
        QVERIFY(values_button().isEnabled());
        with_codes([](MapWRefcode_frm &screen) {
            QVERIFY(control<QRadioButton>(screen, "fixed_op").isChecked());
            QVERIFY(control<QListWidget>(screen, "desc_l").isVisible());
            QCOMPARE(texts(screen, "desc_l"), QStringList{"Lavender"});
            QCOMPARE(texts(screen, "code_l"), QStringList{"L"});
            add_pair(screen, "Sage", "S");
            submit(screen);
        });
        add_field("item", 3);
        QCOMPARE(kept_codes(), (QStringList{"item|Lavender|L", "item|Sage|S"}));
        QCOMPARE(added_fields().size(), 1);
    }

    void a_field_taken_back_keeps_its_codes_without_a_look_at_them()
    {
        marking_site site;
        give_fixed_code();
        add_field("item", 3);
        open_for_changing(0);
        add_field("goods", 3);
        QCOMPARE(added_fields(), QStringList{"goods|Line3||1|Item: Lavender, blue"});
        QCOMPARE(kept_codes(), QStringList{"goods|Lavender|L"});
    }

    void a_dynamic_field_taken_back_is_dynamic()
    {
        marking_site site;
        with_codes(submit);
        add_field("item", 3);
        open_for_changing(0);
        QVERIFY(code_box().isChecked());
        with_codes([](MapWRefcode_frm &screen) {
            QVERIFY(control<QRadioButton>(screen, "dynamic_op").isChecked());
            submit(screen);
        });
        add_field("item", 3);
        QCOMPARE(added_fields(), QStringList{"item|Line3||2|Item: Lavender, blue"});
    }

    void a_field_taken_back_without_a_code_unsets_the_box()
    {
        marking_site site;
        add_field("town", 2);
        code_box().setChecked(true);
        open_for_changing(0);
        QVERIFY(!code_box().isChecked());
    }

    void a_store_that_cannot_be_opened_is_logged_and_the_pairs_are_shown()
    {
        marking_site site;
        give_fixed_code();
        add_field("item", 3);
        open_for_changing(0);
        site.spoil_store();
        with_codes([&site](MapWRefcode_frm &screen) {
            QCOMPARE(site.last_logged(), "Mapwrefcode.frm|form load");
            QCOMPARE(texts(screen, "desc_l"), QStringList{"Lavender"});
            submit(screen);
        });
    }

    void enter_in_a_box_adds_the_pair()
    {
        marking_site site;
        with_codes([](MapWRefcode_frm &screen) {
            choose(screen, "fixed_op");
            type(screen, "desc_t", "Lavender");
            type(screen, "code_t", "L");
            QTest::keyClick(&control<QLineEdit>(screen, "code_t"), Qt::Key_Return);
            QCOMPARE(texts(screen, "code_l"), QStringList{"L"});
            QVERIFY(screen.shown());
            submit(screen);
        });
        QCOMPARE(maps::map_wizard.code_codes, QStringList{"L"});
    }
};

QTEST_MAIN(map_wizard_code_test)
#include "map_wizard_code_test.moc"
