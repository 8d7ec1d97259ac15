// The report in the Mail Auditor's sent view: what is offered, the checks, the list and the store afterwards.
#include "frame/session.h"
#include "platform/clock.h"
#include "platform/settings.h"
#include "screens/intake/PrintRpt.h"
#include "screens/intake/genrepwait_frm.h"
#include "screens/intake/mailfrm.h"
#include "screens/list_view.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolButton>

namespace {

// On 21 November 2026: the account orders with its map clients and three sent mails, the account contact with none.
struct sent_site : screens_site {
    sent_site()
    {
        set_clock([] { return QDateTime(QDate(2026, 11, 21), QTime(9, 30), Qt::UTC); });
        const qint64 orders = store.add_account("orders", "orders@shop.example");
        store.add_account("contact", "hello@shop.example");
        store.add_map("clients", orders, "Order", {{"first_name"}, {"city"}});
        store.run("update table_list_tbl set lastformat=yes where table_name='clients'");
        add_sent("one@mail.example", "First", "11/9/2026 8:00:00 AM", "0");
        add_sent("two@mail.example", "Second", "11/20/2026 1:02:03 PM", "1");
        add_sent("three@mail.example", "Third", "11/21/2026 1:02:03 PM", "1");
        session.no_fetch = true;
    }
    ~sent_site() { set_clock({}); }

    void add_sent(const QString &to, const QString &subject, const QString &date, const QString &mailing)
    {
        store.run("insert into sentitems_tbl (tsl_to,tsl_subject,tsl_sentdate,tsl_body,tsl_sentaccount,"
                  "tsl_sentmailid,tsl_sentformat,matchid) values('" +
                  to + "','" + subject + "','" + date + "','body','orders','orders@shop.example',''," + mailing + ")");
    }
    void add_mailing_to_paris()
    {
        store.run("insert into match_tbl(ac_name,from_dt,to_dt,sub_contains,filter1,filter2,filter3,filter4,fval1,"
                  "fval2,fval3,fval4) values('orders','','','','city','','','','Paris','','','')");
    }
    int reported() { return store.cell("select count(*) from printreport_tbl").toInt(); }
};

template <typename T>
T &on_bar(const char *name)
{
    return control<T>(the<mailfrm>(), name);
}

void open_sent_view()
{
    the<mailfrm>().show();
    on_bar<QToolButton>("sentitems_b").click();
}

void choose_entry(const char *name, const QString &text)
{
    auto &list = on_bar<QComboBox>(name);
    const int index = list.findText(text);
    if (index < 0)
        qFatal("%s does not offer %s", name, qPrintable(text));
    list.setCurrentIndex(index);
}

void choose_november()
{
    choose_entry("account_c", "orders");
    on_bar<QDateEdit>("DTP1").setDate(QDate(2026, 11, 1));
    on_bar<QDateEdit>("DTP2").setDate(QDate(2026, 11, 30));
}

void generate()
{
    on_bar<QPushButton>("genrep_b").click();
}

QStringList entries(const char *name)
{
    QStringList texts;
    for (int index = 0; index < on_bar<QComboBox>(name).count(); ++index)
        texts += on_bar<QComboBox>(name).itemText(index);
    return texts;
}

QStringList listed()
{
    QStringList subjects;
    const QAbstractItemModel &rows = *on_bar<list_view>("LV_sub_si").model();
    for (int row = 0; row < rows.rowCount(); ++row)
        subjects += rows.index(row, 1).data().toString();
    return subjects;
}

}

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

    void it_folds_away_and_stays_so()
    {
        const sent_site site;
        open_sent_view();
        QVERIFY(on_bar<QPushButton>("genrep_b").isVisible());
        on_bar<QToolButton>("report_b").click();
        QVERIFY(!on_bar<QPushButton>("genrep_b").isVisible());
        the<mailfrm>().unload();
        open_sent_view();
        QVERIFY(!on_bar<QPushButton>("genrep_b").isVisible());
        on_bar<QToolButton>("report_b").click();
        QVERIFY(on_bar<QPushButton>("genrep_b").isVisible());
    }

    void enter_in_a_box_generates()
    {
        sent_site site;
        open_sent_view();
        QTest::keyClick(&on_bar<QLineEdit>("subject_words_t"), Qt::Key_Return);
        QCOMPARE(site.boxes.shown, QStringList{"Please select the account"});
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
