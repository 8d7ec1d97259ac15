// Step 3 (B) of the Mail Mapping Wizard: naming fields, every message in its order, the supporting texts, and taking a
// field back for changing. The codes: map_wizard_code_test.cpp.
#include "screens/exact_text.h"
#include "screens/list_view.h"
#include "screens/maps/MapWStep4_Add_frm.h"
#include "screens/maps/MapWizardPView_frm.h"
#include "screens/maps/MapWizardStep4_frm.h"
#include "support/failing_messages.h"
#include "support/screens_map_wizard.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>
#include <QTextBlock>

namespace {

using step4 = MapWizardStep4_frm;

const QString no_name = "Please enter a field name and then click Add this field";
const QString reserved = "This name has been reserved for Microsoft Access. Kindly use another name.";
const QString bad_letters = "Please define field names without the following characters -, +, %, !, (, ),*,/";
const QString twice = "You have already added a field by this name";

QLineEdit &field()
{
    return control<QLineEdit>(the<step4>(), "field_t");
}

QComboBox &position()
{
    return control<QComboBox>(the<step4>(), "Line_c");
}

exact_text &mail_text()
{
    return control<exact_text>(the<step4>(), "body_t");
}

bool is_enabled(const char *name)
{
    return control<QWidget>(the<step4>(), name).isEnabled();
}

// The first order, cut by lines.
struct marking_site : map_wizard_site {
    marking_site()
    {
        open_cutting(*this, "orders", 1);
        cut_by_lines();
    }
};

// Takes the named row of the preview back for changing.
void open_for_changing(int row)
{
    in_modal<MapWizardPView_frm>([row](MapWizardPView_frm &preview) {
        auto &list = control<list_view>(preview, "inbox_lv");
        list.setCurrentIndex(list.model()->index(row, 0));
        control<QPushButton>(preview, "Open_b").click();
    });
    press<step4>("pfields_b");
}

QString stored(const MapWStep4_Add_frm &screen)
{
    return control<exact_text>(screen, "stored_t").text();
}

QString value_left(const MapWStep4_Add_frm &screen)
{
    return control<exact_text>(screen, "fieldval_t").text();
}

QStringList ignored(const MapWStep4_Add_frm &screen)
{
    const auto &list = control<QListWidget>(screen, "ignore_l");
    QStringList texts;
    for (int row = 0; row < list.count(); ++row)
        texts += list.item(row)->text();
    return texts;
}

void ignore_by_place(MapWStep4_Add_frm &screen, qsizetype from, qsizetype length)
{
    control<exact_text>(screen, "fieldval_t").select({from, length});
    control<QPushButton>(screen, "ignore_b").click();
}

}

class map_wizard_fields_test : public QObject {
    Q_OBJECT
private slots:
    void a_bad_name_is_refused_and_the_box_has_the_focus_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("message");
        QTest::newRow("empty") << "" << no_name;
        QTest::newRow("a blank is not empty, but no name") << " " << bad_letters;
        QTest::newRow("reserved") << "Name" << reserved;
        QTest::newRow("reserved in other capitals") << "nAmE" << reserved;
        QTest::newRow("a blank inside") << "First Name" << bad_letters;
        QTest::newRow("a hyphen") << "first-name" << bad_letters;
        QTest::newRow("a digit first") << "1st" << bad_letters;
        QTest::newRow("an underscore first") << "_first" << bad_letters;
        QTest::newRow("an accent") << QString::fromUtf8("caf\xc3\xa9") << bad_letters;
    }

    void a_bad_name_is_refused_and_the_box_has_the_focus()
    {
        QFETCH(QString, name);
        QFETCH(QString, message);
        marking_site site;
        type(the<step4>(), "field_t", name);
        position().setFocus();
        press<step4>("next_b");
        QCOMPARE(site.boxes.shown, QStringList{message});
        QCOMPARE(the<step4>().focusWidget(), &field());
        QCOMPARE(added_fields(), QStringList());
    }

    void first_name_with_an_underscore_passes()
    {
        marking_site site;
        add_field("first_name", 1);
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(added_fields(), QStringList{"first_name|Line1||0|Name: Ann Moss"});
    }

    void a_name_is_added_once_in_whatever_capitals()
    {
        marking_site site;
        add_field("city", 2);
        type(the<step4>(), "field_t", "CITY");
        press<step4>("next_b");
        QCOMPARE(site.boxes.shown, QStringList{twice});
        QCOMPARE(added_fields().size(), 1);
    }

    void two_fields_on_one_piece_both_get_its_value()
    {
        marking_site site;
        add_field("city", 2);
        add_field("town", 2);
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(added_fields(), (QStringList{"city|Line2||0|City: Bath", "town|Line2||0|City: Bath"}));
    }

    void after_each_field_the_next_piece_is_at_hand()
    {
        marking_site site;
        add_field("person");
        QCOMPARE(position().currentText(), "Separator2");
        QCOMPARE(field().text(), "");
        QCOMPARE(the<step4>().focusWidget(), &field());
        add_field("last", 5);
        QCOMPARE(position().currentText(), "Separator5"); // there is no further one
    }

    void the_name_and_the_piece_are_on_the_screen_that_adds_them()
    {
        marking_site site;
        type(the<step4>(), "field_t", "town");
        position().setCurrentIndex(1);
        in_modal<MapWStep4_Add_frm>([](MapWStep4_Add_frm &screen) {
            QCOMPARE(screen.windowTitle(), "Map mails wizard - Add this field");
            QCOMPARE(control<QLabel>(screen, "field_lb").text(), "town");
            QCOMPARE(control<QLabel>(screen, "position_lb").text(), "Separator2");
            QCOMPARE(value_left(screen), "City: Bath");
            QCOMPARE(stored(screen), "City: Bath");
            QVERIFY(!control<QListWidget>(screen, "ignore_l").isVisible());
            QVERIFY(!control<QPushButton>(screen, "ignore_b").isEnabled());
            control<QPushButton>(screen, "cancel_b").click();
        });
        press<step4>("next_b");
        QCOMPARE(added_fields(), QStringList());
        QCOMPARE(field().text(), "town"); // nothing is lost by Cancel
        QCOMPARE(position().currentIndex(), 1);
    }

    void ignoring_a_text_takes_every_occurrence_minding_case()
    {
        map_wizard_site site;
        site.store_mail("orders", "Order", "xy XY xy: 1 xy\r\n");
        open_cutting(site, "orders", 5);
        cut_by_lines();
        type(the<step4>(), "field_t", "letters");
        in_modal<MapWStep4_Add_frm>([](MapWStep4_Add_frm &screen) {
            ignore_by_place(screen, 0, 2);
            QCOMPARE(value_left(screen), " XY : 1 ");
            QCOMPARE(ignored(screen), QStringList{"“xy”"});
            QVERIFY(control<QListWidget>(screen, "ignore_l").isVisible());
            QCOMPARE(stored(screen), ": 1"); // the parser minds no case
            control<QPushButton>(screen, "save_b").click();
        });
        press<step4>("next_b");
        QCOMPARE(added_fields(), QStringList{"letters|Line1|xy|0| XY : 1 "});
    }

    void several_texts_are_joined()
    {
        marking_site site;
        add_field("item", 3, {"Item: ", ", blue"});
        QCOMPARE(added_fields(), QStringList{"item|Line3|Item: @@@, blue|0|Lavender"});
    }

    void what_will_be_stored_is_shown_live()
    {
        marking_site site;
        type(the<step4>(), "field_t", "item");
        position().setCurrentIndex(2);
        in_modal<MapWStep4_Add_frm>([](MapWStep4_Add_frm &screen) {
            QCOMPARE(stored(screen), "Item: Lavender, blue");
            ignore_by_place(screen, 0, 6); // "Item: " loses its blank on the way into the store
            QCOMPARE(value_left(screen), "Lavender, blue");
            QCOMPARE(stored(screen), "Lavender, blue");
            control<QPushButton>(screen, "save_b").click();
        });
        press<step4>("next_b");
    }

    void a_name_is_no_longer_than_a_column_takes()
    {
        marking_site site;
        type(the<step4>(), "field_t", QString(256, u'a'));
        QCOMPARE(control<QLineEdit>(the<step4>(), "field_t").text(), QString(255, u'a'));
    }

    void a_long_value_says_what_is_kept()
    {
        map_wizard_site site;
        site.store_mail("orders", "Order", QString("x").repeated(256) + "\r\n");
        open_cutting(site, "orders", 5);
        cut_by_lines();
        type(the<step4>(), "field_t", "letters");
        in_modal<MapWStep4_Add_frm>([](MapWStep4_Add_frm &screen) {
            QCOMPARE(stored(screen), QString("x").repeated(250));
            QCOMPARE(control<QLabel>(screen, "stored_note_l").text(),
                     "The value is longer than 255 characters, so its first 250 are stored.");
            QVERIFY(control<QLabel>(screen, "stored_note_l").isVisible());
            control<QPushButton>(screen, "save_b").click();
        });
        press<step4>("next_b");
        QCOMPARE(maps::map_wizard.MapWHiddenA_frm[0].value.size(), 256);
    }

    void whether_it_is_cut_is_said_of_what_will_be_stored_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("kept");
        QTest::addColumn<bool>("is_cut");
        QTest::newRow("a single blank is no text in the store, so 257 letters stay")
            << QString("x ").repeated(128) + "x" << QString("x ").repeated(125) << true;
        QTest::newRow("the store ignores the other capitals too") << "b" + QString("A").repeated(300) + "a"
                                                                  << "b" << false;
    }

    void whether_it_is_cut_is_said_of_what_will_be_stored()
    {
        QFETCH(QString, value);
        QFETCH(QString, kept);
        QFETCH(bool, is_cut);
        map_wizard_site site;
        site.store_mail("orders", "Order", value + "\r\n");
        open_cutting(site, "orders", 5);
        cut_by_lines();
        type(the<step4>(), "field_t", "letters");
        in_modal<MapWStep4_Add_frm>([&](MapWStep4_Add_frm &screen) {
            const int text = value.indexOf(value.endsWith("a") ? u'a' : u' ');
            control<exact_text>(screen, "fieldval_t").select({text, 1});
            control<QPushButton>(screen, "ignore_b").click();
            QCOMPARE(stored(screen), kept);
            QCOMPARE(control<QLabel>(screen, "stored_note_l").isVisible(), is_cut);
            control<QPushButton>(screen, "save_b").click();
        });
        press<step4>("next_b");
    }

    void a_value_taken_away_whole_says_so()
    {
        marking_site site;
        type(the<step4>(), "field_t", "town");
        in_modal<MapWStep4_Add_frm>([](MapWStep4_Add_frm &screen) {
            control<exact_text>(screen, "fieldval_t").selectAll();
            control<QPushButton>(screen, "ignore_b").click();
            QCOMPARE(stored(screen), "");
            QCOMPARE(control<QLabel>(screen, "stored_note_l").text(), "Nothing is left of the value of this mail.");
            control<QPushButton>(screen, "save_b").click();
        });
        press<step4>("next_b");
        QCOMPARE(added_fields(), QStringList{"town|Line1|Name: Ann Moss|0|"});
    }

    void an_ignored_text_is_the_part_itself_data()
    {
        QTest::addColumn<QString>("piece");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("length");
        QTest::newRow("a no-break blank") << QString("City:\u00a0Bath") << 0 << 6;
        QTest::newRow("a line separator") << QString("City\u2028Bath") << 2 << 4;
        QTest::newRow("a surrogate pair") << QString::fromUtf8("\xf0\x9f\x8c\xb9 Bath") << 0 << 2;
        QTest::newRow("outer blanks") << "City : Bath" << 4 << 3;
    }

    void an_ignored_text_is_the_part_itself()
    {
        QFETCH(QString, piece);
        QFETCH(int, from);
        QFETCH(int, length);
        map_wizard_site site;
        site.store_mail("orders", "Order", "x\r\n" + piece + "\r\n");
        open_cutting(site, "orders", 5);
        cut_by_lines();
        type(the<step4>(), "field_t", "town");
        position().setCurrentIndex(1);
        in_modal<MapWStep4_Add_frm>([from, length](MapWStep4_Add_frm &screen) {
            ignore_by_place(screen, from, length);
            control<QPushButton>(screen, "save_b").click();
        });
        press<step4>("next_b");
        QCOMPARE(maps::map_wizard.MapWHiddenA_frm[0].ignore, piece.mid(from, length));
        QCOMPARE(maps::map_wizard.MapWHiddenA_frm[0].value, QString(piece).remove(from, length));
    }

    void supporting_texts_come_back_for_a_field_of_exactly_this_name()
    {
        marking_site site;
        add_field("item", 3, {"Item: ", ", blue"});
        open_for_changing(0);
        in_modal<MapWStep4_Add_frm>([](MapWStep4_Add_frm &screen) {
            QCOMPARE(ignored(screen), (QStringList{"“Item: ”", "“, blue”"}));
            QVERIFY(control<QListWidget>(screen, "ignore_l").isVisible());
            QCOMPARE(value_left(screen), "Lavender");
            control<QPushButton>(screen, "save_b").click();
        });
        press<step4>("next_b");
        QCOMPARE(added_fields(), QStringList{"item|Line3|Item: @@@, blue|0|Lavender"});
    }

    void a_changed_field_is_taken_out_and_added_at_the_end()
    {
        marking_site site;
        add_field("person", 1);
        add_field("town", 2);
        add_field("item", 3);
        open_for_changing(0);
        QCOMPARE(field().text(), "person");
        QCOMPARE(position().currentText(), "Separator1");
        QCOMPARE(control<QGroupBox>(the<step4>(), "Frame2").title(), "Changing person");
        in_modal<MapWStep4_Add_frm>([](MapWStep4_Add_frm &screen) { control<QPushButton>(screen, "save_b").click(); });
        press<step4>("next_b");
        QCOMPARE(site.boxes.shown, QStringList()); // its own name is no duplicate
        QCOMPARE(added_fields(), (QStringList{"town|Line2||0|City: Bath", "item|Line3||0|Item: Lavender, blue",
                                              "person|Line1||0|Name: Ann Moss"}));
        QCOMPARE(position().currentText(), "Separator2");
        QCOMPARE(control<QGroupBox>(the<step4>(), "Frame2").title(), "The next field");
    }

    void a_changed_field_may_get_another_name_and_piece()
    {
        marking_site site;
        add_field("person", 1);
        add_field("town", 2);
        open_for_changing(1);
        add_field("amount", 4);
        QCOMPARE(added_fields(), (QStringList{"person|Line1||0|Name: Ann Moss", "amount|Line4||0|Quantity: 12"}));
    }

    void a_changed_field_cannot_take_the_name_of_another()
    {
        marking_site site;
        add_field("person", 1);
        add_field("town", 2);
        open_for_changing(1);
        type(the<step4>(), "field_t", "Person");
        press<step4>("next_b");
        QCOMPARE(site.boxes.shown, QStringList{twice});
        QCOMPARE(added_fields().size(), 2);
    }

    void the_preview_shows_the_fields_in_the_order_of_adding()
    {
        marking_site site;
        add_field("item", 3, {"Item: "});
        add_field("person", 1);
        in_modal<MapWizardPView_frm>([](MapWizardPView_frm &preview) {
            QCOMPARE(preview.windowTitle(), "Preview Fields");
            QCOMPARE(control<QLabel>(preview, "mapAcount_lb").text(), "orders@shop.example");
            const QAbstractItemModel &rows = *control<list_view>(preview, "inbox_lv").model();
            QStringList cells;
            for (int column = 0; column < rows.columnCount(); ++column)
                cells += rows.headerData(column, Qt::Horizontal).toString();
            for (int row = 0; row < rows.rowCount(); ++row)
                for (int column = 0; column < rows.columnCount(); ++column)
                    cells += rows.index(row, column).data().toString();
            QCOMPARE(cells,
                     (QStringList{"Field number", "Field name", "Field Value", "Reference code", "Separator3", "item",
                                  "Lavender, blue", "None", "Separator1", "person", "Name: Ann Moss", "None"}));
            for (const char *hidden : {"save_b", "cancel_b", "fit_l"})
                QVERIFY(!control<QWidget>(preview, hidden).isVisible());
            control<QPushButton>(preview, "ok_b").click();
        });
        press<step4>("pfields_b");
        QCOMPARE(field().text(), "");
        QVERIFY(!maps::map_wizard.finish_mode);
    }

    void opening_wants_a_field()
    {
        marking_site site;
        in_modal<MapWizardPView_frm>([](MapWizardPView_frm &preview) {
            control<QPushButton>(preview, "Open_b").click();
            QVERIFY(preview.shown());
            control<QPushButton>(preview, "ok_b").click();
        });
        press<step4>("pfields_b");
        QCOMPARE(site.boxes.shown, QStringList{"No fields added yet."});
        QCOMPARE(field().text(), "");
    }

    void copy_and_paste_take_what_is_selected()
    {
        marking_site site;
        QVERIFY(!is_enabled("copy_b"));
        QVERIFY(!is_enabled("paste_b"));
        mail_text().select({0, 4});
        QVERIFY(is_enabled("copy_b"));
        press<step4>("copy_b");
        QCOMPARE(QGuiApplication::clipboard()->text(), "Name");
        QVERIFY(!is_enabled("copy_b"));
        QVERIFY(is_enabled("paste_b"));
        press<step4>("paste_b");
        QCOMPARE(field().text(), "Name");
        QVERIFY(!is_enabled("paste_b"));
        mail_text().select({6, 3});
        QVERIFY(is_enabled("copy_b"));
        mail_text().select({6, 0});
        QVERIFY(!is_enabled("copy_b"));
    }

    void a_copy_holds_the_letters_themselves()
    {
        map_wizard_site site;
        site.store_mail("orders", "Order", QString("City:\u00a0Bath\r\n"));
        open_cutting(site, "orders", 5);
        cut_by_lines();
        mail_text().select({0, 6});
        press<step4>("copy_b");
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("City:\u00a0"));
    }

    void a_double_click_on_a_word_fills_the_name()
    {
        marking_site site;
        QTextCursor in_city(mail_text().document()->findBlockByNumber(1));
        in_city.movePosition(QTextCursor::Right);
        QTest::mouseDClick(mail_text().viewport(), Qt::LeftButton, {}, mail_text().cursorRect(in_city).center());
        QCOMPARE(field().text(), "City");
    }

    void finish_without_a_field_says_so()
    {
        marking_site site;
        in_modal<MapWizardPView_frm>([](MapWizardPView_frm &preview) {
            QCOMPARE(preview.windowTitle(), "Save Map");
            for (const char *hidden : {"ok_b", "Open_b"})
                QVERIFY(!control<QWidget>(preview, hidden).isVisible());
            control<QPushButton>(preview, "save_b").click();
            QVERIFY(preview.shown());
            control<QPushButton>(preview, "cancel_b").click();
        });
        press<step4>("finish_b");
        QCOMPARE(site.boxes.shown, QStringList{"No fields added yet."});
        QVERIFY(is_visible<step4>());
    }

    void before_the_save_it_tells_how_many_mails_fit()
    {
        marking_site site;
        add_field("town", 2, {"City: "});
        in_modal<MapWizardPView_frm>([](MapWizardPView_frm &preview) {
            QCOMPARE(control<QLabel>(preview, "fit_l").text(), "fits 3 of the 4 stored mails of this account");
            QVERIFY(control<QLabel>(preview, "fit_l").isVisible());
            QTest::keyClick(&preview, Qt::Key_Escape);
        });
        press<step4>("finish_b");
        QVERIFY(is_visible<step4>());
        QVERIFY(maps::map_wizard.finish_mode);
        QCOMPARE(site.rows_of("table_list_tbl"), 0);
    }

    void the_count_of_fields_is_always_in_sight()
    {
        marking_site site;
        const auto &count = control<QLabel>(the<step4>(), "fields_l");
        QCOMPARE(count.text(), "No field is added yet.");
        add_field("person", 1);
        QCOMPARE(count.text(), "1 field is added: person");
        add_field("town", 2);
        QCOMPARE(count.text(), "2 fields are added, last town");
    }

    void an_account_that_cannot_be_read_opens_no_preview()
    {
        marking_site site;
        site.store.run("drop table email_tbl");
        press<step4>("finish_b");
        QCOMPARE(session.err_form, "mapwizardstep45.frm");
        QCOMPARE(session.err_routine, "Command17");
        QVERIFY(site.status_lines.last().startsWith("The fields cannot be shown: "));
        QVERIFY(!is_loaded<MapWizardPView_frm>());
        press<step4>("pfields_b");
        QCOMPARE(session.err_routine, "pfieldsb click");
        QCOMPARE(site.status_lines.size(), 2);
    }

    void mails_that_cannot_be_counted_are_logged_and_said()
    {
        marking_site site;
        add_field("town", 2);
        site.store.run("drop table orders");
        in_modal<MapWizardPView_frm>([](MapWizardPView_frm &preview) {
            QCOMPARE(session.err_form, "mapwizardpview.frm");
            QCOMPARE(session.err_routine, "formload");
            QCOMPARE(control<QLabel>(preview, "fit_l").text(), "");
            control<QPushButton>(preview, "cancel_b").click();
        });
        press<step4>("finish_b");
        QVERIFY(site.status_lines.last().startsWith("How many mails fit cannot be told: "));
    }

    void a_failing_routine_is_logged_under_its_words()
    {
        marking_site site;
        {
            const failing_messages no_boxes(site.boxes);
            press<step4>("next_b"); // without a name it speaks
            QCOMPARE(session.err_form + "|" + session.err_routine, "mapwizardstep4.frm|nextb click");
            in_modal<MapWizardPView_frm>([](MapWizardPView_frm &preview) {
                control<QPushButton>(preview, "Open_b").click();
                QCOMPARE(session.err_form + "|" + session.err_routine, "mapwizarpvuew|open b click");
                control<QPushButton>(preview, "ok_b").click();
            });
            press<step4>("pfields_b");
        }
        QCOMPARE(added_fields(), QStringList());
    }

    void a_field_is_not_added_without_a_store_to_save_it_in()
    {
        marking_site site;
        type(the<step4>(), "field_t", "town");
        site.spoil_store();
        in_modal<MapWStep4_Add_frm>([](MapWStep4_Add_frm &addition) {
            control<QPushButton>(addition, "save_b").click();
            QVERIFY(addition.shown()); // what was typed is still there
            control<QPushButton>(addition, "cancel_b").click();
        });
        press<step4>("next_b");
        QCOMPARE(site.last_logged(), "MapWizardStep4_add_frm.frm|save_b");
        QVERIFY(site.status_lines.last().startsWith("The field cannot be added: "));
        QCOMPARE(added_fields(), QStringList());
        QCOMPARE(control<QLineEdit>(the<step4>(), "field_t").text(), "town");
    }

    void a_lone_carriage_return_is_no_part_of_a_value()
    {
        map_wizard_site site;
        site.store_mail("orders", "Order", "City: Ba\rth\r\nend\r\n");
        open_cutting(site, "orders", 5);
        cut_by_lines();
        add_field("town", 1, {"City: "});
        QCOMPARE(added_fields(), QStringList{"town|Line1|City: |0|Bath"});
    }
};

QTEST_MAIN(map_wizard_fields_test)
#include "map_wizard_fields_test.moc"
