// Step 3 (A) of the Mail Mapping Wizard: how the sample is cut, its numbered pieces, and the way back.
#include "screens/exact_text.h"
#include "screens/maps/MapWizardStep4_frm.h"
#include "screens/maps/mapWizardStep3_frm.h"
#include "screens/maps/textarea_frm.h"
#include "support/screens_map_wizard.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QElapsedTimer>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>

namespace {

using step4 = MapWizardStep4_frm;

QString body()
{
    return control<exact_text>(the<step4>(), "body_t").text();
}

QStringList entries(const char *combo)
{
    const auto &box = control<QComboBox>(the<step4>(), combo);
    QStringList texts;
    for (int index = 0; index < box.count(); ++index)
        texts += box.itemText(index);
    return texts;
}

bool is_shown(const char *name)
{
    return control<QWidget>(the<step4>(), name).isVisible();
}

QString caption(const char *button)
{
    return control<QPushButton>(the<step4>(), button).text().remove('&');
}

// A further mail with this text, opened in step 3 (A).
void open_mail(map_wizard_site &site, const QString &text)
{
    site.store_mail("orders", "Another", text);
    open_cutting(site, "orders", site.store.cell("select max(message_id) from orders").toLongLong());
}

const QString numbered_order = "Name: Ann Moss  <Separator1>\r\nCity: Bath  <Separator2>\r\n"
                               "Item: Lavender, blue  <Separator3>\r\nQuantity: 12  <Separator4>\r\n"
                               "  <Separator5>\r\n";

}

class map_wizard_cut_test : public QObject {
    Q_OBJECT
private slots:
    void it_begins_in_a()
    {
        map_wizard_site site;
        open_cutting(site, "orders", 1);
        QCOMPARE(the<step4>().windowTitle(), "Map mails Wizard-Step3(A)");
        QCOMPARE(body(), order_body);
        QCOMPARE(caption("next_b"), "Next»");
        QVERIFY(is_shown("Frame1"));
        for (const char *later : {"Frame2", "pfields_b", "finish_b"})
            QVERIFY(!is_shown(later));
        QCOMPARE(entries("allval_c"), (QStringList{"Select separator", "Comma(,)", "Tab", "Full stop(.)", "Hyphen(-)",
                                                   "Underscore(_)", "Colon(:)", "Semi colon(;)"}));
        QCOMPARE(control<QComboBox>(the<step4>(), "allval_c").currentIndex(), 0);
        QCOMPARE(control<QRadioButton>(the<step4>(), "seplines_op").text().remove('&'),
                 "Separate lines for each value");
        QCOMPARE(control<QRadioButton>(the<step4>(), "allval_op").text().remove('&'),
                 "All values in continuous string");
    }

    void the_list_of_separators_shows_with_its_choice_only()
    {
        map_wizard_site site;
        open_cutting(site, "orders", 1);
        QVERIFY(!is_shown("allval_c"));
        control<QRadioButton>(the<step4>(), "allval_op").click();
        QVERIFY(is_shown("allval_c"));
        control<QRadioButton>(the<step4>(), "seplines_op").click();
        QVERIFY(!is_shown("allval_c"));
    }

    void a_separator_must_be_chosen()
    {
        map_wizard_site site;
        open_cutting(site, "orders", 1);
        control<QRadioButton>(the<step4>(), "allval_op").click();
        press<step4>("next_b");
        QCOMPARE(site.boxes.shown, QStringList{"Please select a separator"});
        QVERIFY(is_shown("Frame1"));
        QCOMPARE(the<step4>().windowTitle(), "Map mails Wizard-Step3(A)");
    }

    void next_numbers_the_lines()
    {
        map_wizard_site site;
        open_cutting(site, "orders", 1);
        cut_by_lines();
        QCOMPARE(body(), numbered_order);
        QCOMPARE(entries("Line_c"),
                 (QStringList{"Separator1", "Separator2", "Separator3", "Separator4", "Separator5"}));
        QCOMPARE(control<QComboBox>(the<step4>(), "Line_c").currentIndex(), 0);
        QCOMPARE(maps::map_wizard.map_separator, "Line");
        QCOMPARE(the<step4>().windowTitle(), "Map mails Wizard-Step3(B)");
        QCOMPARE(caption("next_b"), "Add this field»");
        QVERIFY(!is_shown("Frame1"));
        for (const char *now : {"Frame2", "pfields_b", "finish_b"})
            QVERIFY(is_shown(now));
        QCOMPARE(the<step4>().focusWidget(), &control<QLineEdit>(the<step4>(), "field_t"));
    }

    void each_separator_cuts_data()
    {
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("sign");
        QTest::newRow("comma") << "Comma(,)"
                               << ","
                               << ",";
        QTest::newRow("tab") << "Tab"
                             << "Tab"
                             << "\t";
        QTest::newRow("full stop") << "Full stop(.)"
                                   << "."
                                   << ".";
        QTest::newRow("hyphen") << "Hyphen(-)"
                                << "-"
                                << "-";
        QTest::newRow("underscore") << "Underscore(_)"
                                    << "_"
                                    << "_";
        QTest::newRow("colon") << "Colon(:)"
                               << ":"
                               << ":";
        QTest::newRow("semicolon") << "Semi colon(;)"
                                   << ";"
                                   << ";";
    }

    void each_separator_cuts()
    {
        QFETCH(QString, caption);
        QFETCH(QString, stored);
        QFETCH(QString, sign);
        map_wizard_site site;
        open_mail(site, "  one" + sign + "two\r\nhalves" + sign + sign + "four ");
        cut_by(caption);
        QCOMPARE(maps::map_wizard.map_separator, stored);
        QCOMPARE(body(), "one  <Separator1>\r\ntwohalves  <Separator2>\r\n  <Separator3>\r\nfour  <Separator4>\r\n");
        QCOMPARE(entries("Line_c"), (QStringList{"Separator1", "Separator2", "Separator3", "Separator4"}));
    }

    void odd_letters_stay_in_their_pieces_data()
    {
        QTest::addColumn<QString>("value");
        QTest::newRow("no-break blanks") << QString("a\u00a0b\u00a0");
        QTest::newRow("a line separator") << QString("a\u2028b");
        QTest::newRow("a paragraph separator") << QString("a\u2029b");
        QTest::newRow("surrogate pairs") << QString::fromUtf8("a\xf0\x9f\x8c\xb9");
        QTest::newRow("a form feed") << "a\fb";
        QTest::newRow("tabs") << "a\tb\t";
    }

    void odd_letters_stay_in_their_pieces()
    {
        QFETCH(QString, value);
        map_wizard_site site;
        open_mail(site, value + "\r\nsecond");
        cut_by_lines();
        QCOMPARE(body(), value + "  <Separator1>\r\nsecond  <Separator2>\r\n");
        add_field("odd", 1);
        QCOMPARE(maps::map_wizard.MapWHiddenA_frm[0].value, value);
    }

    void a_lone_carriage_return_is_no_line_end()
    {
        map_wizard_site site;
        open_mail(site, "one\rtwo\nthree");
        cut_by_lines();
        QCOMPARE(body(), "onetwo  <Separator1>\r\nthree  <Separator2>\r\n");
    }

    void a_mail_without_text_has_no_piece()
    {
        map_wizard_site site;
        open_mail(site, "");
        cut_by_lines();
        QCOMPARE(body(), "");
        QCOMPARE(entries("Line_c"), QStringList());
        type(the<step4>(), "field_t", "city");
        press<step4>("next_b");
        QCOMPARE(site.status_lines,
                 QStringList{"This mail holds no text to take a value from. Go back and choose another mail."});
        QCOMPARE(added_fields(), QStringList());
    }

    void back_in_a_leads_to_the_sample_mails()
    {
        map_wizard_site site;
        open_cutting(site, "orders", 1);
        press<step4>("back_b");
        QVERIFY(!is_loaded<step4>());
        QVERIFY(is_visible<mapWizardStep3_frm>());
        QCOMPARE(maps::map_wizard.mail_table, "");
        QCOMPARE(maps::map_wizard.mail_id, "");
    }

    void back_in_b_asks_and_stays_on_cancel()
    {
        map_wizard_site site;
        open_cutting(site, "orders", 1);
        cut_by_lines();
        add_field("city", 2);
        site.boxes.will_say_no();
        press<step4>("back_b");
        QCOMPARE(site.boxes.shown,
                 QStringList{"You have not saved the mapped format. You will be loosing all data , if you go back "
                             "from here"});
        QCOMPARE(site.boxes.boxes[0].kind, message_kind::ok_cancel);
        QVERIFY(is_shown("Frame2"));
        QCOMPARE(body(), numbered_order);
        QCOMPARE(added_fields().size(), 1);
    }

    void back_in_b_returns_to_a_on_ok_and_the_fields_go_at_the_next_cut_only()
    {
        map_wizard_site site;
        open_cutting(site, "orders", 1);
        cut_by_lines();
        add_field("city", 2);
        site.boxes.will_say_yes();
        press<step4>("back_b");
        QVERIFY(is_shown("Frame1"));
        QVERIFY(!is_shown("Frame2"));
        QVERIFY(!is_shown("pfields_b"));
        QCOMPARE(the<step4>().windowTitle(), "Map mails Wizard-Step3(A)");
        QCOMPARE(caption("next_b"), "Next»");
        QCOMPARE(body(), order_body);
        QCOMPARE(added_fields(), QStringList{"city|Line2||0|City: Bath"});
        cut_by("Comma(,)");
        QCOMPARE(added_fields(), QStringList());
        QCOMPARE(body(), "Name: Ann MossCity: BathItem: Lavender  <Separator1>\r\n blueQuantity: 12  <Separator2>\r\n");
    }

    void the_number_of_each_piece_is_dim_and_the_chosen_piece_marked()
    {
        map_wizard_site site;
        open_cutting(site, "orders", 1);
        cut_by_lines();
        const auto marks = [] { return control<exact_text>(the<step4>(), "body_t").extraSelections(); };
        QCOMPARE(marks().size(), 6);
        QCOMPARE(marks()[0].cursor.selectedText(), "  <Separator1>");
        QCOMPARE(marks()[4].cursor.selectedText(), "  <Separator5>");
        QCOMPARE(marks()[5].cursor.selectedText(), "Name: Ann Moss");
        control<QComboBox>(the<step4>(), "Line_c").setCurrentIndex(3);
        QCOMPARE(marks()[5].cursor.selectedText(), "Quantity: 12");
    }

    void the_note_on_text_areas_opens_and_closes()
    {
        map_wizard_site site;
        open_cutting(site, "orders", 1);
        bool said_something = false;
        in_modal<textarea_frm>([&](textarea_frm &note) {
            said_something = !control<QLabel>(note, "lines_l").text().isEmpty();
            QTest::keyClick(&note, Qt::Key_Return);
        });
        press<step4>("textarea_b");
        QVERIFY(said_something);
        QVERIFY(is_visible<step4>());
    }

    void a_mail_that_cannot_be_read_is_logged()
    {
        map_wizard_site site;
        maps::map_wizard.mail_table = "no_such_table";
        maps::map_wizard.mail_id = "1";
        the<step4>().show();
        QCOMPARE(session.err_form, "mapwizardstep4.frm");
        QCOMPARE(body(), "");
        QVERIFY(site.status_lines.last().startsWith("The mail cannot be read: "));
    }

    void the_mail_cannot_be_typed_into()
    {
        map_wizard_site site;
        open_cutting(site, "orders", 1);
        auto &mail = control<exact_text>(the<step4>(), "body_t");
        const QString before = mail.toPlainText();
        mail.setFocus();
        QTest::keyClicks(&mail, "x");
        QTest::keyClick(&mail, Qt::Key_Delete);
        QTest::keyClick(&mail, Qt::Key_Backspace);
        QCOMPARE(mail.toPlainText(), before);
        QCOMPARE(body(), order_body);
    }

    // The list is not laid out entry by entry: that would take many times as long.
    void the_list_of_very_many_positions_opens_at_once()
    {
        map_wizard_site site;
        open_mail(site, QString("a\r\n").repeated(99999));
        cut_by_lines();
        auto &positions = control<QComboBox>(the<MapWizardStep4_frm>(), "Line_c");
        QCOMPARE(positions.count(), 100000);
        positions.setCurrentIndex(70000);
        QElapsedTimer taken;
        taken.start();
        positions.showPopup();
        QCoreApplication::processEvents();
        QVERIFY2(taken.elapsed() < 1000, qPrintable(QString::number(taken.elapsed()) + " ms"));
        QVERIFY(positions.view()->isVisible());
        QVERIFY(positions.view()->visualRect(positions.view()->currentIndex()).isValid());
        QCOMPARE(positions.view()->currentIndex().row(), 70000);
        positions.hidePopup();
    }

    void a_mail_of_a_million_line_ends_stays_usable()
    {
        map_wizard_site site;
        open_mail(site, QString("\r\n").repeated(1000000)); // two million letters
        QElapsedTimer clock;
        clock.start();
        cut_by_lines();
        auto &positions = control<QComboBox>(the<step4>(), "Line_c");
        QCOMPARE(positions.count(), 1000001);
        const qsizetype marks = control<exact_text>(the<step4>(), "body_t").extraSelections().size();
        QVERIFY(marks > 0 && marks < 20000); // none for a number that is not shown
        for (int piece = 0; piece < 200; ++piece)
            positions.setCurrentIndex(piece * 5000);
        add_field("last", 1000001);
        QCOMPARE(added_fields(), QStringList{"last|Line1000001||0|"});
        QVERIFY2(clock.elapsed() < 60000, qPrintable(QString::number(clock.elapsed())));
    }
};

QTEST_MAIN(map_wizard_cut_test)
#include "map_wizard_cut_test.moc"
