// "Ignore characters": the supporting texts of the field that MapMail shows.
#include "screens/maps/Ignore.h"
#include "support/screens_classic_map.h"

#include <QCheckBox>
#include <QLineEdit>

class Ignore_test : public QObject {
    Q_OBJECT
private slots:
    void ignored_texts_are_typed_and_kept_in_their_order()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        press_and_in<Ignore>(screen, "Command6", [](Ignore &list) {
            QCOMPARE(entries(control<QListWidget>(list, "ignore_l")), (QStringList{"Name:", "!"}));
            press_in(list, "Add_b");
            control<QLineEdit>(list, "ignore_T").setText("?");
            press_in(list, "Add_b");
            QCOMPARE(control<QLineEdit>(list, "ignore_T").text(), QString());
            press_in(list, "Submit_b");
        });
        QCOMPARE(site.screens.boxes.shown, QStringList{"Please enter character"});
        QCOMPARE(screen.ignored_texts(), (QStringList{"Name:", "!", "?"}));
    }

    void cancel_keeps_the_ignored_texts_as_they_were()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        press_and_in<Ignore>(screen, "Command6", [](Ignore &list) {
            control<QLineEdit>(list, "ignore_T").setText("?");
            press_in(list, "Add_b");
            press_in(list, "cancel_b");
        });
        QCOMPARE(screen.ignored_texts(), (QStringList{"Name:", "!"}));
    }

    void a_chosen_text_is_removed()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        press_and_in<Ignore>(screen, "Command6", [](Ignore &list) {
            QVERIFY(!control<QPushButton>(list, "remove_b").isEnabled());
            control<QListWidget>(list, "ignore_l").setCurrentRow(0);
            press_in(list, "remove_b");
            press_in(list, "Submit_b");
        });
        QCOMPARE(screen.ignored_texts(), QStringList{"!"});
    }

    void ignoring_throughout_the_form_changes_nothing()
    {
        classic_site site;
        mapmail_frm &screen = site.screen_with_map();
        press_and_in<Ignore>(screen, "Command6", [](Ignore &list) {
            control<QCheckBox>(list, "whole_ch").setChecked(true);
            press_in(list, "Submit_b");
        });
        QCOMPARE(screen.ignored_texts(), (QStringList{"Name:", "!"}));
        press_in(screen, "next_b");
        QCOMPARE(screen.ignored_texts(), QStringList());
    }
};

QTEST_MAIN(Ignore_test)
#include "Ignore_test.moc"
