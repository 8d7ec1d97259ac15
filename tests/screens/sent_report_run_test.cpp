// A report from the sent view: the checks, and list and store afterwards.
#include "platform/outside_effects.h"
#include "screens/intake/PrintRpt.h"
#include "screens/intake/genrepwait_frm.h"
#include "support/failing_messages.h"
#include "support/raw_store.h"
#include "support/screens_sent_site.h"

#include <QTest>
#include <QTimer>

namespace {

const QLabel &on_bar_after_november()
{
    open_sent_view();
    choose_november();
    generate();
    return on_bar<QLabel>("report_l");
}

}

class sent_report_run_test : public QObject {
    Q_OBJECT
private slots:
    void without_an_account_the_report_stops_with_an_empty_table()
    {
        sent_site site;
        site.store.run("insert into printreport_tbl (sentaccount) values('former')");
        open_sent_view();
        generate();
        QCOMPARE(site.boxes.shown, QStringList{"Please select the account"});
        QCOMPARE(site.reported(), 0);
        QCOMPARE(listed(), (QStringList{"First", "Second", "Third"}));
        QCOMPARE(the<mailfrm>().focusWidget(), &on_bar<QComboBox>("account_c"));
        QCOMPARE(site.store.cell("select gendate from lastdate where id=3"), "8/13/1976");
    }

    void a_filter_with_a_field_but_no_value_stops_the_report()
    {
        sent_site site;
        open_sent_view();
        choose_november();
        choose_entry("field3_c", "city");
        on_bar<QLineEdit>("val3_t").setText("  ");
        generate();
        QCOMPARE(site.boxes.shown, QStringList{"Please enter value"});
        QCOMPARE(the<mailfrm>().focusWidget(), &on_bar<QLineEdit>("val3_t"));
        QCOMPARE(site.reported(), 0);
        QCOMPARE(listed(), (QStringList{"First", "Second", "Third"}));
    }

    void a_report_fills_list_and_table_and_keeps_its_day()
    {
        sent_site site;
        open_sent_view();
        choose_november();
        generate();
        QCOMPARE(listed(), (QStringList{"First", "Third", "Second"})); // by the letters of the dates
        QCOMPARE(site.store.column("select sentto from printreport_tbl"),
                 (QVariantList{"one@mail.example", "three@mail.example", "two@mail.example"}));
        QCOMPARE(site.store.cell("select gendate from lastdate where id=3"), "11/21/2026");
        QCOMPARE(on_bar<QLabel>("report_l").text(),
                 "The list shows the report: 3 mails of orders between 11/1/2026 and 11/30/2026.");
        QVERIFY(!is_visible<genrepwait_frm>());
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void every_choice_narrows_the_report()
    {
        sent_site site;
        site.add_mailing_to_paris();
        open_sent_view();
        choose_november();
        choose_entry("field1_c", "city");
        on_bar<QLineEdit>("val1_t").setText("paris");
        generate();
        QCOMPARE(listed(), (QStringList{"Third", "Second"}));
        on_bar<QLineEdit>("subject_words_t").setText("SECO");
        generate();
        QCOMPARE(listed(), QStringList{"Second"});
        QCOMPARE(site.store.cell("select filtersused from printreport_tbl"), ",Filter1:city=paris");
    }

    void a_report_with_no_matching_mailings_empties_the_list_and_printreport_tbl()
    {
        sent_site site;
        site.add_mailing_to_paris();
        open_sent_view();
        choose_november();
        generate();
        QCOMPARE(site.reported(), 3);
        choose_entry("field1_c", "city");
        on_bar<QLineEdit>("val1_t").setText("Rome");
        generate();
        QCOMPARE(listed(), QStringList());
        QCOMPARE(site.reported(), 0);
        QCOMPARE(on_bar<QLabel>("report_l").text(),
                 "The list shows the report: no mail of orders between 11/1/2026 and 11/30/2026.");
    }

    void cancel_leaves_the_list_and_an_empty_table()
    {
        sent_site site;
        open_sent_view();
        choose_november();
        QTimer::singleShot(0, [] { control<QPushButton>(the<genrepwait_frm>(), "cancel_b").click(); });
        generate();
        QCOMPARE(listed(), (QStringList{"First", "Second", "Third"}));
        QCOMPARE(site.reported(), 0);
        QCOMPARE(site.store.cell("select gendate from lastdate where id=3"), "8/13/1976");
        QCOMPARE(site.status_lines.last(), "The report was cancelled.");
        QVERIFY(!is_visible<genrepwait_frm>());
    }

    void after_a_stopped_report_the_words_are_about_the_former_one()
    {
        sent_site site;
        const QString former = "The list shows the previous report, which can no longer be printed: "
                               "3 mails of orders between 11/1/2026 and 11/30/2026.";
        const QString present = "The list shows the report: 3 mails of orders between 11/1/2026 and 11/30/2026.";
        const auto &words = on_bar_after_november();
        QCOMPARE(words.text(), present);
        choose_entry("field3_c", "city"); // without a value
        generate();
        QCOMPARE(site.reported(), 0);
        QCOMPARE(listed(), (QStringList{"First", "Third", "Second"}));
        QCOMPARE(words.text(), former);
        choose_entry("field3_c", "Select");
        generate();
        QCOMPARE(words.text(), present);
        QTimer::singleShot(0, [] { control<QPushButton>(the<genrepwait_frm>(), "cancel_b").click(); });
        generate();
        QCOMPARE(site.reported(), 0);
        QCOMPARE(words.text(), former);
    }

    void words_that_are_no_pattern_are_logged_and_told()
    {
        sent_site site;
        open_sent_view();
        choose_november();
        on_bar<QLineEdit>("subject_words_t").setText("[offer");
        generate();
        QCOMPARE(session.err_form, "Mailfrm.frm");
        QCOMPARE(session.err_routine, "sentitems_show");
        QVERIFY(site.status_lines.last().startsWith("The report could not be made: "));
        QCOMPARE(listed(), (QStringList{"First", "Second", "Third"}));
        QCOMPARE(site.reported(), 0);
        QCOMPARE(site.store.cell("select gendate from lastdate where id=3"), "8/13/1976");
    }

    void a_mail_without_a_date_is_named_as_it_ends_each_report_of_its_account()
    {
        sent_site site;
        site.add_sent("four@mail.example", "Fourth", "the day before", "0");
        open_sent_view();
        choose_november();
        generate();
        QCOMPARE(site.reported(), 0);
        QCOMPARE(site.last_logged(), "Mailfrm.frm|sentitems_show");
        QCOMPARE(
            site.status_lines.last(),
            "The report could not be made: the mail to four@mail.example, \"Fourth\", is stored with a date that is "
            "none: \"the day before\". Delete it under Sent Item.");
        site.store.run("delete from sentitems_tbl where tsl_subject='Fourth'");
        generate();
        QCOMPARE(site.reported(), 3);
    }

    void a_look_up_that_fails_is_logged()
    {
        sent_site site;
        open_sent_view();
        choose_november();
        choose_entry("field1_c", "city");
        on_bar<QLineEdit>("val1_t").setText("Paris");
        site.store.run("drop table match_tbl");
        generate();
        QCOMPARE(session.err_form, "Mailfrm.frm");
        QCOMPARE(session.err_routine, "genrep_b");
        QCOMPARE(site.last_logged(), "Mailfrm.frm|genrep_b");
        QCOMPARE(site.reported(), 0);
        QCOMPARE(listed(), (QStringList{"First", "Second", "Third"}));
        QVERIFY2(site.status_lines.last().startsWith("The report could not be made: "),
                 qPrintable(site.status_lines.last()));
        QCOMPARE(site.store.cell("select gendate from lastdate where id=3"), "8/13/1976");
    }

    void a_report_that_cannot_begin_is_told()
    {
        sent_site site;
        open_sent_view();
        choose_november();
        site.store.run("drop table printreport_tbl");
        generate();
        QCOMPARE(site.last_logged(), "Mailfrm.frm|genrep_b");
        QVERIFY2(site.status_lines.last().startsWith("The report could not be made: "),
                 qPrintable(site.status_lines.last()));
        QCOMPARE(listed(), (QStringList{"First", "Second", "Third"}));
        QVERIFY(!is_loaded<genrepwait_frm>());
    }

    void a_missing_choice_that_no_box_can_tell_is_told()
    {
        sent_site site;
        open_sent_view();
        {
            const failing_messages no_desktop(site.boxes);
            generate();
        }
        QCOMPARE(site.status_lines.last(), "The report could not be made: no box");
    }

    void a_report_that_fails_half_way_leaves_no_rows_and_is_told()
    {
        sent_site site;
        open_sent_view();
        choose_november();
        generate();
        QCOMPARE(site.reported(), 3);
        before_outside_effect();
        raw_store(site.store.path())
            .run("create trigger second before insert on printreport_tbl when (select count(*) from printreport_tbl)>0 "
                 "begin select raise(abort,'the second row'); end");
        generate();
        QCOMPARE(site.reported(), 0);
        QCOMPARE(site.last_logged(), "Mailfrm.frm|sentitems_show");
        QVERIFY2(site.status_lines.last().startsWith("The report could not be made: "),
                 qPrintable(site.status_lines.last()));
        QVERIFY(site.status_lines.last().contains("the second row"));
        QCOMPARE(on_bar<QLabel>("report_l").text(),
                 "The list shows the previous report, which can no longer be printed: "
                 "3 mails of orders between 11/1/2026 and 11/30/2026.");
    }

    void a_day_that_cannot_be_kept_does_not_hide_the_report()
    {
        sent_site site;
        open_sent_view();
        choose_november();
        site.store.run("drop table lastdate");
        generate();
        QCOMPARE(site.reported(), 3);
        QCOMPARE(listed(), (QStringList{"First", "Third", "Second"}));
        QCOMPARE(on_bar<QLabel>("report_l").text(),
                 "The list shows the report: 3 mails of orders between 11/1/2026 and 11/30/2026.");
        QVERIFY2(site.status_lines.last().startsWith("The report was made, but its day could not be kept: "),
                 qPrintable(site.status_lines.last()));
    }

    void opening_the_view_again_lists_all()
    {
        const sent_site site;
        open_sent_view();
        choose_november();
        on_bar<QLineEdit>("subject_words_t").setText("second");
        generate();
        QCOMPARE(listed(), QStringList{"Second"});
        on_bar<QToolButton>("sentitems_b").click();
        QCOMPARE(listed(), (QStringList{"First", "Second", "Third"}));
        QCOMPARE(on_bar<QLabel>("report_l").text(), "");
    }

    void print_shows_the_report_that_was_generated_last()
    {
        const sent_site site;
        open_sent_view();
        on_bar<QPushButton>("prnrep_t").click();
        QVERIFY(is_visible<PrintRpt>());
        QVERIFY(control<QLabel>(the<PrintRpt>(), "empty_l").isVisible());
        choose_november();
        generate();
        on_bar<QPushButton>("prnrep_t").click();
        QVERIFY(!control<QLabel>(the<PrintRpt>(), "empty_l").isVisible());
    }

    void enter_in_a_box_generates()
    {
        sent_site site;
        open_sent_view();
        QTest::keyClick(&on_bar<QLineEdit>("subject_words_t"), Qt::Key_Return);
        QCOMPARE(site.boxes.shown, QStringList{"Please select the account"});
    }
};

QTEST_MAIN(sent_report_run_test)
#include "sent_report_run_test.moc"
