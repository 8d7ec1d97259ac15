// What the sent view offers for a report: dates, accounts, fields, and how it folds.
#include "support/screens_access_keys.h"
#include "support/screens_sent_site.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

class sent_report_bar_test : public QObject {
    Q_OBJECT
private slots:
    void a_first_report_is_about_today()
    {
        const sent_site site;
        open_sent_view();
        QCOMPARE(on_bar<QDateEdit>("DTP1").date(), QDate(2026, 11, 21));
        QCOMPARE(on_bar<QDateEdit>("DTP2").date(), QDate(2026, 11, 21));
    }

    void a_later_one_begins_with_the_day_of_the_last()
    {
        sent_site site;
        site.store.run("update lastdate set gendate='11/9/2026' where id=3");
        open_sent_view();
        QCOMPARE(on_bar<QDateEdit>("DTP1").date(), QDate(2026, 11, 9));
        QCOMPARE(on_bar<QDateEdit>("DTP2").date(), QDate(2026, 11, 21));
    }

    void a_last_day_in_the_future_is_today()
    {
        sent_site site;
        site.store.run("update lastdate set gendate='12/24/2026' where id=3");
        open_sent_view();
        QCOMPARE(on_bar<QDateEdit>("DTP1").date(), QDate(2026, 11, 21));
    }

    void dates_that_the_user_has_set_stay()
    {
        const sent_site site;
        open_sent_view();
        on_bar<QDateEdit>("DTP1").setDate(QDate(2026, 1, 2));
        on_bar<QToolButton>("inbox_b").click();
        on_bar<QToolButton>("sentitems_b").click();
        QCOMPARE(on_bar<QDateEdit>("DTP1").date(), QDate(2026, 1, 2));
    }

    void the_accounts_stand_behind_select()
    {
        const sent_site site;
        open_sent_view();
        QCOMPARE(entries("account_c"), (QStringList{"Select", "orders", "contact"}));
        QCOMPARE(on_bar<QComboBox>("account_c").currentText(), "Select");
        for (const char *name : {"field1_c", "field2_c", "field3_c", "field4_c", "subject_field_c"})
            QCOMPARE(entries(name), QStringList{"Select"});
    }

    void an_account_brings_the_columns_of_its_map()
    {
        const sent_site site;
        open_sent_view();
        choose_entry("account_c", "orders");
        for (const char *name : {"field1_c", "field2_c", "field3_c", "field4_c", "subject_field_c"}) {
            QCOMPARE(entries(name), (QStringList{"Select", "tsl_subject", "tsl_Email", "first_name", "city"}));
            QCOMPARE(on_bar<QComboBox>(name).currentText(), "Select");
        }
        choose_entry("account_c", "contact"); // it has no map
        QCOMPARE(entries("field1_c"), QStringList{"Select"});
    }

    void a_map_without_its_table_is_logged()
    {
        sent_site site;
        site.store.run("drop table clients");
        open_sent_view();
        choose_entry("account_c", "orders");
        QCOMPARE(entries("field1_c"), QStringList{"Select"});
        QCOMPARE(session.err_form, "Mailfrm.frm");
        QCOMPARE(session.err_routine, "account_c_click");
        QCOMPARE(site.status_lines.last(),
                 "The fields of the account's map could not be read: " + session.err_description);
    }

    void what_is_chosen_stays_when_the_view_is_opened_again()
    {
        sent_site site;
        open_sent_view();
        choose_entry("account_c", "orders");
        choose_entry("field2_c", "city");
        site.store.add_account("third", "third@shop.example");
        on_bar<QToolButton>("inbox_b").click();
        on_bar<QToolButton>("sentitems_b").click();
        QCOMPARE(entries("account_c"), (QStringList{"Select", "orders", "contact", "third"}));
        QCOMPARE(on_bar<QComboBox>("account_c").currentText(), "orders");
        QCOMPARE(on_bar<QComboBox>("field2_c").currentText(), "city");
    }

    void the_fields_of_the_chosen_account_are_read_again()
    {
        sent_site site;
        open_sent_view();
        choose_entry("account_c", "orders");
        choose_entry("field1_c", "city");
        choose_entry("field2_c", "first_name");
        on_bar<QLineEdit>("val1_t").setText("Paris");
        site.store.run("alter table clients add column street text(50)");
        site.store.run("alter table clients drop column first_name");
        on_bar<QToolButton>("inbox_b").click();
        on_bar<QToolButton>("sentitems_b").click();
        QCOMPARE(entries("field1_c"), (QStringList{"Select", "tsl_subject", "tsl_Email", "city", "street"}));
        QCOMPARE(on_bar<QComboBox>("field1_c").currentText(), "city");
        QCOMPARE(on_bar<QLineEdit>("val1_t").text(), "Paris");
        QVERIFY(on_bar<QLineEdit>("val1_t").isEnabled());
        QCOMPARE(on_bar<QComboBox>("field2_c").currentText(), "Select");
        QVERIFY(!on_bar<QLineEdit>("val2_t").isEnabled());
    }

    void a_value_is_typed_only_beside_a_field()
    {
        const sent_site site;
        open_sent_view();
        choose_entry("account_c", "orders");
        QVERIFY(!on_bar<QLineEdit>("val1_t").isEnabled());
        choose_entry("field1_c", "city");
        QVERIFY(on_bar<QLineEdit>("val1_t").isEnabled());
        QVERIFY(!on_bar<QLineEdit>("val2_t").isEnabled());
        choose_entry("account_c", "contact");
        QVERIFY(!on_bar<QLineEdit>("val1_t").isEnabled());
    }

    void it_folds_away_and_stays_so()
    {
        const sent_site site;
        open_sent_view();
        QCoreApplication::processEvents();
        QVERIFY(on_bar<QPushButton>("genrep_b").isVisible());
        on_bar<QToolButton>("report_b").click();
        QVERIFY(!on_bar<QPushButton>("genrep_b").isVisible());
        the<mailfrm>().unload();
        open_sent_view();
        QVERIFY(!on_bar<QPushButton>("genrep_b").isVisible());
        on_bar<QToolButton>("report_b").click();
        QVERIFY(on_bar<QPushButton>("genrep_b").isVisible());
    }

    void in_a_low_window_it_begins_folded_and_opens_on_wish()
    {
        const sent_site site;
        the<mailfrm>().show();
        the<mailfrm>().resize(620, 360);
        open_sent_view();
        QTRY_VERIFY(!on_bar<QPushButton>("genrep_b").isVisible());
        QVERIFY(!on_bar<QToolButton>("report_b").isChecked());
        on_bar<QToolButton>("report_b").click();
        QVERIFY(on_bar<QPushButton>("genrep_b").isVisible());
        on_bar<QToolButton>("inbox_b").click();
        on_bar<QToolButton>("sentitems_b").click();
        QCoreApplication::processEvents();
        QVERIFY(on_bar<QPushButton>("genrep_b").isVisible()); // as the user left it
    }

    void in_a_window_that_has_grown_it_is_whole_again()
    {
        const sent_site site;
        the<mailfrm>().show();
        the<mailfrm>().resize(620, 360);
        open_sent_view();
        QTRY_VERIFY(!on_bar<QPushButton>("genrep_b").isVisible());
        on_bar<QToolButton>("inbox_b").click();
        the<mailfrm>().resize(920, 700);
        on_bar<QToolButton>("sentitems_b").click();
        QCoreApplication::processEvents();
        QVERIFY(on_bar<QPushButton>("genrep_b").isVisible());
    }

    void however_narrow_the_window_nothing_of_it_scrolls_data()
    {
        QTest::addColumn<int>("width");
        QTest::newRow("as a small console leaves it") << 533;
        QTest::newRow("the least that the screen asks for") << 560;
        QTest::newRow("where the captions still wrap") << 640;
        QTest::newRow("as it opens") << 920;
        QTest::newRow("wide") << 1400;
    }

    void however_narrow_the_window_nothing_of_it_scrolls()
    {
        QFETCH(int, width);
        const sent_site site;
        the<mailfrm>().setMinimumWidth(0);
        the<mailfrm>().show();
        the<mailfrm>().resize(width, 640);
        open_sent_view();
        QCoreApplication::processEvents();
        QCOMPARE(the<mailfrm>().width(), width);
        const auto &choices = on_bar<QScrollArea>("report_fr");
        QVERIFY(choices.isVisible());
        QCOMPARE(choices.horizontalScrollBar()->maximum(), 0);
        QCOMPARE(choices.verticalScrollBar()->maximum(), 0);
    }

    void the_access_keys_are_single_and_none_is_one_of_the_menus()
    {
        const sent_site site;
        const menuFrm console;
        open_sent_view();
        const QString keys = access_keys(the<mailfrm>());
        QVERIFY2(keys.contains("G") && keys.contains("N"), qPrintable(keys));
        QCOMPARE(repeated_letter(keys + menu_keys(console) + "C"), QString()); // C: the composer brings its menu
    }

    void the_captions_stand_to_the_letter()
    {
        const sent_site site;
        open_sent_view();
        const auto caption = [](const char *name) { return on_bar<QLabel>(name).text().remove(u'&'); };
        QCOMPARE(caption("subject_words_lb"), "Subject contains the words: ");
        QCOMPARE(caption("subject_field_lb"), "Subject copy refers to field: ");
        for (int filter = 1; filter <= 4; ++filter) {
            const QString number = QString::number(filter);
            QCOMPARE(caption(qPrintable("filter" + number + "_lb")), "Filter" + number);
        }
        QCOMPARE(on_bar<QPushButton>("genrep_b").text().remove(u'&'), "Generate report");
        QCOMPARE(on_bar<QPushButton>("prnrep_t").text().remove(u'&'), "Print report");
    }
};

QTEST_MAIN(sent_report_bar_test)
#include "sent_report_bar_test.moc"
