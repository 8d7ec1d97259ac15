// The console's status bar: how many mails are in no table yet, and when mail was last fetched.
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/status.h"
#include "frame/store.h"
#include "frame/text.h"
#include "intake/map_parser.h"
#include "intake/unprocessed_count.h"
#include "maps/sample_mails.h"
#include "platform/clock.h"
#include "platform/network.h"
#include "platform/settings.h"
#include "screens/frame/menuFrm.h"
#include "screens/intake/mailfrm.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QAction>
#include <QLabel>
#include <QScopeGuard>
#include <QTest>
#include <QTimer>
#include <QToolButton>

namespace {

// Two accounts and the console; the form "Order" sends to the first.
struct status_site : screens_site {
    status_site()
    {
        account = store.add_account("orders", "orders@shop.example");
        store.add_account("contact", "hello@shop.example");
    }
    ~status_site()
    {
        session.last_fetch = {};
        session.broken_fetch = {};
    }
    void fetch()
    {
        session.no_fetch = false;
        the<mailfrm>().load();
        the<mailfrm>().unload();
    }
    QString count() { return control<QToolButton>(console, "unprocessed_b").text(); }
    // Cancel is pressed after so many mails.
    void fetch_cancelled_after(int mails)
    {
        net::patience waits;
        waits.give_up = [mails, asked = 0]() mutable { return ++asked >= mails; };
        const net::patience_scope waiting(waits);
        fetch();
    }
    QString fetched_in_full() { return control<QLabel>(console, "fetched_l").toolTip(); }
    QString fetched() { return control<QLabel>(console, "fetched_l").text(); }
    menuFrm console;
    qint64 account = 0;
};

}

class console_status_test : public QObject {
    Q_OBJECT
private slots:
    void it_counts_the_mails_of_all_accounts_when_the_console_opens()
    {
        status_site site;
        for (const char *table : {"orders", "contact", "contact"})
            site.store.run(QString("insert into ") + table + " (tsl_subject,tsl_processed) values('Hello',no)");
        site.store.run("insert into orders (tsl_subject,tsl_processed) values('Hello',yes)");
        QVERIFY(!control<QToolButton>(site.console, "unprocessed_b").isVisible());
        site.console.show();
        QTRY_COMPARE(site.count(), "3 in no table yet");
        QVERIFY(control<QToolButton>(site.console, "unprocessed_b").isVisible());
        QVERIFY(!control<QLabel>(site.console, "fetched_l").isVisible()); // not since the start
    }

    void its_hint_promises_reasons_only_where_there_are_some_data()
    {
        QTest::addColumn<int>("mails");
        QTest::addColumn<QString>("hint");
        QTest::newRow("none") << 0 << "No mail waits to go into a table. A click opens the Mail Auditor.";
        QTest::newRow("one") << 1 << "1 mail is in no table yet. A click opens the Mail Auditor, which says why.";
        QTest::newRow("two") << 2 << "2 mails are in no table yet. A click opens the Mail Auditor, which says why.";
    }
    void its_hint_promises_reasons_only_where_there_are_some()
    {
        QFETCH(int, mails);
        QFETCH(QString, hint);
        status_site site;
        for (int mail = 0; mail < mails; ++mail)
            site.store.run("insert into orders (tsl_subject,tsl_processed) values('Hello',no)");
        site.console.show();
        QTRY_COMPARE(site.count(), QString::number(mails) + " in no table yet");
        QCOMPARE(control<QToolButton>(site.console, "unprocessed_b").toolTip(), hint);
    }

    void a_fetch_raises_the_number_and_tells_its_time()
    {
        status_site site;
        site.console.show();
        QTRY_COMPARE(site.count(), "0 in no table yet");
        site.deliver_mail("orders@shop.example");
        site.deliver_mail("hello@shop.example");
        site.fetch();
        QTRY_COMPARE(site.count(), "2 in no table yet");
        QVERIFY(session.last_fetch.isValid());
        QCOMPARE(site.fetched(), "Fetched " + us_date_time(session.last_fetch).section(' ', 1));
        QVERIFY(control<QLabel>(site.console, "fetched_l").isVisible());
    }

    void a_fetch_of_another_day_is_told_with_its_date()
    {
        status_site site;
        session.last_fetch = now().addDays(-2);
        site.console.show();
        QTRY_COMPARE(site.fetched(), "Fetched " + us_date_time(session.last_fetch));
    }

    void after_midnight_the_tick_adds_the_date()
    {
        status_site site;
        site.store.run("update autofetch set minutes=-1");
        QDateTime moment(QDate(2026, 11, 21), QTime(23, 59, 50), Qt::UTC);
        set_clock([&moment] { return moment; });
        const auto own_clock = qScopeGuard([] { set_clock({}); });
        session.last_fetch = moment;
        site.console.show();
        QTRY_COMPARE(site.fetched(), "Fetched 11:59:50 PM");
        moment = moment.addSecs(20);
        site.console.Timer1_Timer();
        QCOMPARE(site.fetched(), "Fetched 11/21/2026 11:59:50 PM");
    }

    void a_fetch_that_is_cancelled_between_two_mails_is_told_as_stopped()
    {
        status_site site;
        site.console.show();
        for (const char *subject : {"First", "Second", "Third"})
            site.deliver_mail("orders@shop.example", subject);
        site.fetch_cancelled_after(2);
        QCOMPARE(site.rows_of("orders"), 2);
        QTRY_COMPARE(site.fetched(), "Fetch stopped " + us_date_time(session.broken_fetch).section(' ', 1));
        QCOMPARE(site.fetched_in_full(), "You stopped fetching mail " + us_date_time(session.broken_fetch) +
                                             ". What was taken in until then stands; the next fetch takes the rest.");
        QVERIFY(!session.last_fetch.isValid());
        QCOMPARE(control<QLabel>(site.console, "status_l").text(),
                 "Fetching was cancelled. The mails stored so far are shown.");
    }

    void the_next_fetch_to_the_end_takes_the_word_stopped_away()
    {
        status_site site;
        site.console.show();
        site.deliver_mail("orders@shop.example", "First");
        site.deliver_mail("orders@shop.example", "Second");
        site.fetch_cancelled_after(1);
        QTRY_VERIFY(site.fetched().startsWith("Fetch stopped "));
        site.fetch();
        QCOMPARE(site.rows_of("orders"), 2);
        QTRY_COMPARE(site.fetched(), "Fetched " + us_date_time(session.last_fetch).section(' ', 1));
        QCOMPARE(site.fetched_in_full(), "Mail was last fetched " + us_date_time(session.last_fetch));
    }

    void a_tick_that_fails_is_told_as_failed_beside_the_last_fetch_to_the_end()
    {
        status_site site;
        site.store.run("update autofetch set minutes=1");
        QDateTime moment(QDate(2026, 11, 21), QTime(9, 30), Qt::UTC);
        set_clock([&moment] { return moment; });
        const auto own_clock = qScopeGuard([] { set_clock({}); });
        site.console.show();
        site.console.Timer1_Timer();
        QTRY_COMPARE(site.fetched(), "Fetched 9:30:00 AM");
        SaveSetting("mail_client", "maildir", "/no/such/Maildir");
        moment = moment.addSecs(10);
        site.console.Timer1_Timer();
        QTRY_COMPARE(site.fetched(), "Fetch failed 9:30:10 AM");
        QCOMPARE(site.fetched_in_full(),
                 "Mail could not be fetched 11/21/2026 9:30:10 AM. What was taken in until then stands; the next fetch "
                 "takes the rest.\nMail was last fetched 11/21/2026 9:30:00 AM.");
        SaveSetting("mail_client", "maildir", site.maildir());
        moment = moment.addSecs(10);
        site.console.Timer1_Timer();
        QTRY_COMPARE(site.fetched(), "Fetched 9:30:20 AM");
    }

    void a_table_that_is_gone_leaves_the_others_filled_and_is_no_failed_fetch()
    {
        status_site site;
        site.console.show();
        site.store.run("drop table contact"); // its mails can neither be shown nor put into tables
        site.deliver_mail("orders@shop.example");
        site.fetch();
        QCOMPARE(site.rows_of("orders"), 1);
        QTRY_VERIFY2(site.fetched().startsWith("Tables not filled "), qPrintable(site.fetched()));
    }

    void a_fetch_that_only_shows_what_is_stored_is_none()
    {
        status_site site;
        session.no_fetch = true;
        the<mailfrm>().load();
        QVERIFY(!session.last_fetch.isValid());
    }

    void a_new_map_lowers_the_number()
    {
        status_site site;
        site.deliver_mail("orders@shop.example", "Order", "Name: Ann");
        site.deliver_mail("orders@shop.example", "Something else", "Text");
        site.fetch();
        site.console.show();
        QTRY_COMPARE(site.count(), "2 in no table yet");
        site.store.add_map("clients", site.account, "Order", {{"name", 1}});
        intake::remap_account_mails("orders", "clients");
        QTRY_COMPARE(site.count(), "1 in no table yet");
    }

    void a_deletion_lowers_the_number()
    {
        status_site site;
        site.deliver_mail("orders@shop.example");
        site.fetch();
        site.console.show();
        QTRY_COMPARE(site.count(), "1 in no table yet");
        maps::delete_raw_mails("orders", {site.store.cell("select max(message_id) from orders")});
        QTRY_COMPARE(site.count(), "0 in no table yet");
    }

    void many_changes_in_a_row_are_counted_once()
    {
        status_site site;
        site.console.show();
        QTRY_COMPARE(site.count(), "0 in no table yet");
        site.store.run("insert into orders (tsl_subject,tsl_processed) values('Hello',no)");
        for (int change = 0; change < 1000; ++change)
            mails_changed();
        QCOMPARE(site.count(), "0 in no table yet"); // not at once
        QTRY_COMPARE(site.count(), "1 in no table yet");
    }

    void a_click_opens_the_mail_auditor_without_fetching()
    {
        status_site site;
        site.console.show();
        QTRY_VERIFY(control<QToolButton>(site.console, "unprocessed_b").isVisible());
        site.deliver_mail("orders@shop.example");
        control<QToolButton>(site.console, "unprocessed_b").click();
        QVERIFY(is_visible<mailfrm>());
        QCOMPARE(site.rows_of("orders"), 0);
    }

    void where_an_accounts_table_is_gone_no_number_is_shown()
    {
        status_site site;
        site.console.show();
        QTRY_VERIFY(control<QToolButton>(site.console, "unprocessed_b").isVisible());
        site.store.run("drop table contact");
        mails_changed();
        QTRY_VERIFY(!control<QToolButton>(site.console, "unprocessed_b").isVisible());
        QCOMPARE(session.err_routine, "count_mails");
    }

    void nothing_is_counted_in_the_middle_of_a_routine()
    {
        status_site site;
        site.console.show();
        QTRY_COMPARE(site.count(), "0 in no table yet");
        site.store.run("insert into orders (tsl_subject,tsl_processed) values('Hello',no)");
        {
            const busy_scope routine_runs;
            mails_changed();
            QMetaObject::invokeMethod(&control<QTimer>(site.console, "count_timer"), "timeout");
            QCOMPARE(site.count(), "0 in no table yet");
        }
        QTRY_COMPARE(site.count(), "1 in no table yet");
    }
};

QTEST_MAIN(console_status_test)
#include "console_status_test.moc"
