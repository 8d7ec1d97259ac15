// "Code Generation": the reference code of the field that MapMail shows.
#include "frame/session.h"
#include "screens/maps/fcodes_frm.h"
#include "support/failing_messages.h"
#include "support/screens_classic_map.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>

class fcodes_frm_test : public QObject {
    Q_OBJECT
private slots:
    void codes_want_a_kind_and_then_values()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        control<QCheckBox>(screen, "code_ch").setChecked(true);
        press_and_in<fcodes_frm>(screen, "values_b", [](fcodes_frm &codes) {
            QVERIFY(!control<QRadioButton>(codes, "fixed_op").isChecked());
            QVERIFY(!control<QRadioButton>(codes, "dynamic_op").isChecked());
            press_in(codes, "submit_b");
            control<QRadioButton>(codes, "fixed_op").click();
            press_in(codes, "submit_b");
            press_in(codes, "add_b");
            control<QLineEdit>(codes, "desc_t").setText("Red");
            control<QLineEdit>(codes, "code_t").setText(" ");
            press_in(codes, "add_b");
            control<QLineEdit>(codes, "code_t").setText("R");
            press_in(codes, "add_b");
            press_in(codes, "submit_b");
        });
        QCOMPARE(site.screens.boxes.shown, (QStringList{"Please select any one of the type", "Please enter values",
                                                        "Please enter description", "Please enter code"}));
        QCOMPARE(screen.code().type, "fixed");
        QCOMPARE(screen.code().descriptions, QStringList{"Red"});
        QCOMPARE(screen.code().codes, QStringList{"R"});
    }

    void codes_open_with_what_the_field_has()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        press_in(screen, "next_b");
        press_and_in<fcodes_frm>(screen, "values_b", [](fcodes_frm &codes) {
            QVERIFY(control<QRadioButton>(codes, "fixed_op").isChecked());
            QCOMPARE(entries(control<QListWidget>(codes, "desc_l")), (QStringList{"Bonn", "Paris"}));
            QCOMPARE(entries(control<QListWidget>(codes, "code_l")), (QStringList{"B", "P"}));
            control<QRadioButton>(codes, "dynamic_op").click();
            press_in(codes, "submit_b");
        });
        QCOMPARE(screen.code().type, "dynamic");
    }

    void cancel_on_the_codes_also_unsets_the_box_data()
    {
        QTest::addColumn<QString>("way");
        for (const char *way : {"the button", "Escape", "the cross"})
            QTest::newRow(way) << way;
    }

    void cancel_on_the_codes_also_unsets_the_box()
    {
        QFETCH(QString, way);
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        control<QCheckBox>(screen, "code_ch").setChecked(true);
        press_and_in<fcodes_frm>(screen, "values_b", [way](fcodes_frm &codes) {
            if (way == "the cross")
                codes.window()->close();
            else if (way == "Escape")
                QTest::keyClick(&codes, Qt::Key_Escape);
            else
                press_in(codes, "cancel_b");
        });
        QVERIFY(!control<QCheckBox>(screen, "code_ch").isChecked());
        QVERIFY(!control<QPushButton>(screen, "values_b").isEnabled());
    }

    void the_codes_log_under_their_own_words()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        press_in(screen, "next_b"); // to the field with fixed codes
        site.screens.spoil_store();
        press_and_in<fcodes_frm>(screen, "values_b", [&site](fcodes_frm &codes) {
            QCOMPARE(site.screens.last_logged(), "Fcodes_frm.frm|Form_load");
            QCOMPARE(entries(control<QListWidget>(codes, "desc_l")), (QStringList{"Bonn", "Paris"}));
        });
        screen.set_code({}); // neither kind: a submit has something to say
        press_and_in<fcodes_frm>(screen, "values_b", [&site](fcodes_frm &codes) {
            const failing_messages no_boxes(site.screens.boxes);
            press_in(codes, "submit_b");
            QCOMPARE(site.screens.last_logged(), "Fcodes_frm.frm|Submit_b");
            QVERIFY(codes.shown());
        });
    }
};

QTEST_MAIN(fcodes_frm_test)
#include "fcodes_frm_test.moc"
