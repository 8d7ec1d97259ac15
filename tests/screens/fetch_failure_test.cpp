// A fetch whose server cannot be reached: by hand one box, by a tick a line in the status bar and a pause that grows;
// and a fetch that the user cancels while it waits.
#include "frame/messages.h"
#include "frame/session.h"
#include "platform/clock.h"
#include "platform/services.h"
#include "screens/frame/menuFrm.h"
#include "screens/intake/mailfrm.h"
#include "screens/intake/mfetchinprogress_frm.h"
#include "screens/list_view.h"
#include "screens/screen.h"
#include "support/failing_mail_client.h"
#include "support/failing_messages.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace {

const char *const one_message = "Mail could not be fetched.\n\nNobody answers at imap.example.org, port 993.\n\n"
                                "The mails stored so far are shown.";

// One account with one stored mail, ticks that fetch, and a mailbox whose server is away.
struct cut_off_site : screens_site {
    cut_off_site()
    {
        store.add_account("orders", "orders@shop.example");
        store.run("insert into orders (tsl_subject,tsl_recdate,tsl_Email,tsl_Status,tsl_body) "
                  "values('Order 1',now,'ann@mail.example','new','Text')");
        store.run("update autofetch set minutes=1");
        usual = services.mail_client;
        services.mail_client = &away;
        set_clock([this] { return moment; });
    }
    ~cut_off_site()
    {
        set_clock({});
        session.broken_fetch = {};
    }

    void server_comes_back() { services.mail_client = usual; }
    bool has_log() const { return QFile::exists(file("errorlog.txt")); }

    // The seconds after the last one at which a tick tries again, with ticks ten seconds apart.
    int seconds_to_the_next_try(menuFrm &console)
    {
        const int before = away.tries;
        for (int waited = 10; waited <= 1000; waited += 10) {
            moment = moment.addSecs(10);
            console.Timer1_Timer();
            if (away.tries > before)
                return waited;
        }
        return -1;
    }

    failing_mail_client away;
    outlook::mail_client_service *usual = nullptr;
    QDateTime moment{QDate(2026, 8, 6), QTime(10, 0), Qt::UTC};
};

}

class fetch_failure_test : public QObject {
    Q_OBJECT
private slots:
    void by_hand_one_message_is_shown_and_then_the_stored_mails()
    {
        cut_off_site site;
        menuFrm console;
        console.show();
        control<QAction>(console, "fetchmail").trigger();
        QCOMPARE(site.boxes.shown, QStringList{one_message});
        QVERIFY(site.boxes.boxes[0].kind == message_kind::say);
        QVERIFY(is_visible<mailfrm>());
        QCOMPARE(control<list_view>(the<mailfrm>(), "LV_sub").model()->rowCount(), 1);
        QVERIFY(site.has_log());
        QVERIFY(!is_loaded<mfetchinprogress_frm>());
        QCOMPARE(site.away.asked_with.connect_ms, net::patience().connect_ms);
        QVERIFY(!site.away.asked_with.is_tick);
    }

    void a_box_that_cannot_be_shown_leaves_a_line()
    {
        cut_off_site site;
        const failing_messages no_box(site.boxes);
        the<mailfrm>().load();
        QCOMPARE(site.status_lines.last(), "Mail could not be fetched: Nobody answers at imap.example.org, port 993.");
        QCOMPARE(control<list_view>(the<mailfrm>(), "LV_sub").model()->rowCount(), 1);
        QCOMPARE(site.last_logged(), "Mailfrm.frm|Form_load");
    }

    void a_tick_opens_no_box_and_leaves_a_line()
    {
        cut_off_site site;
        menuFrm console;
        console.show();
        console.Timer1_Timer();
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(control<QLabel>(console, "status_l").text(),
                 "Mail could not be fetched: Nobody answers at imap.example.org, port 993.");
        QTRY_COMPARE(control<QLabel>(console, "fetched_l").text(), "Fetch failed 10:00:00 AM");
        QVERIFY(!site.has_log());
        QVERIFY(!is_loaded<mailfrm>());
        QVERIFY(site.away.asked_with.is_tick);
        QCOMPARE(site.away.asked_with.connect_ms, 5000);
        QCOMPARE(site.away.asked_with.answer_ms, 5000);
        QVERIFY(!net::present_patience().is_tick);
    }

    void after_each_failure_the_ticks_pause_longer_up_to_five_minutes()
    {
        cut_off_site site;
        menuFrm console;
        console.Timer1_Timer();
        QList<int> pauses;
        for (int failure = 0; failure < 8; ++failure)
            pauses += site.seconds_to_the_next_try(console);
        QCOMPARE(pauses, (QList<int>{10, 20, 40, 80, 160, 300, 300, 300}));
    }

    void a_tick_in_a_pause_does_not_even_read_the_store()
    {
        cut_off_site site;
        menuFrm console;
        console.Timer1_Timer();
        session.store_connection->Close();
        site.moment = site.moment.addSecs(9);
        console.Timer1_Timer();
        QCOMPARE(session.store_connection->State(), 0);
    }

    void a_success_ends_the_pause_for_good()
    {
        cut_off_site site;
        menuFrm console;
        console.Timer1_Timer();
        QCOMPARE(site.seconds_to_the_next_try(console), 10);
        QCOMPARE(site.seconds_to_the_next_try(console), 20);
        site.server_comes_back();
        site.deliver_mail("orders@shop.example", "Order 2");
        site.moment = site.moment.addSecs(40);
        console.Timer1_Timer();
        QCOMPARE(site.rows_of("orders"), 2);
        services.mail_client = &site.away;
        QCOMPARE(site.seconds_to_the_next_try(console), 10);
        QCOMPARE(site.seconds_to_the_next_try(console), 10);
    }

    void a_fetch_by_hand_ends_the_pause_even_when_it_fails()
    {
        cut_off_site site;
        menuFrm console;
        console.show();
        console.Timer1_Timer();
        site.seconds_to_the_next_try(console);
        site.seconds_to_the_next_try(console);
        control<QAction>(console, "fetchmail").trigger();
        the<mailfrm>().unload();
        QCOMPARE(site.seconds_to_the_next_try(console), 10);
        QCOMPARE(site.boxes.shown.size(), 1);
    }

    void a_clock_that_is_set_back_makes_no_longer_pause()
    {
        cut_off_site site;
        menuFrm console;
        console.Timer1_Timer();
        site.moment = site.moment.addSecs(-3600);
        console.Timer1_Timer();
        QCOMPARE(site.away.tries, 2);
    }

    void a_failure_that_is_not_the_networks_is_told_as_ever()
    {
        cut_off_site site;
        site.away.failure = {70, "Permission denied"};
        menuFrm console;
        console.show();
        console.Timer1_Timer();
        QCOMPARE(control<QLabel>(console, "status_l").text(), "Not everything went well: Permission denied");
        QVERIFY(site.has_log());
        console.Timer1_Timer(); // and makes no pause
        QCOMPARE(site.away.tries, 2);
    }

    void cancel_ends_the_waiting_without_box_or_log_data()
    {
        QTest::addColumn<bool>("by_key");
        QTest::newRow("the button") << false;
        QTest::newRow("Escape") << true;
    }

    void cancel_ends_the_waiting_without_box_or_log()
    {
        QFETCH(bool, by_key);
        cut_off_site site;
        site.away.waits_for_cancel = true;
        menuFrm console;
        console.show();
        QTimer presses;
        connect(&presses, &QTimer::timeout, [&] {
            if (site.away.tries == 0) // it is not waiting yet
                return;
            presses.stop();
            auto &button = control<QPushButton>(the<mfetchinprogress_frm>(), "cancel_b");
            if (by_key)
                QTest::keyClick(&button, Qt::Key_Escape);
            else
                QTest::mouseClick(&button, Qt::LeftButton);
        });
        presses.start(0);
        control<QAction>(console, "fetchmail").trigger();
        QCOMPARE(site.boxes.shown, QStringList());
        QVERIFY(!site.has_log());
        QVERIFY(is_visible<mailfrm>());
        QCOMPARE(control<list_view>(the<mailfrm>(), "LV_sub").model()->rowCount(), 1);
        QCOMPARE(control<QLabel>(console, "status_l").text(),
                 "Fetching was cancelled. The mails stored so far are shown.");
        QTRY_COMPARE(control<QLabel>(console, "fetched_l").text(), "Fetch stopped 10:00:00 AM");
    }

    void while_it_waits_no_other_window_hears_keys_or_clicks()
    {
        cut_off_site site;
        site.away.waits_for_cancel = true;
        menuFrm console;
        console.show();
        QPushButton elsewhere;
        elsewhere.show();
        int presses_elsewhere = 0;
        connect(&elsewhere, &QPushButton::clicked, [&] { ++presses_elsewhere; });
        QTimer presses;
        connect(&presses, &QTimer::timeout, [&] {
            if (site.away.tries == 0)
                return;
            presses.stop();
            QTest::mouseClick(&elsewhere, Qt::LeftButton);
            QTest::keyClick(&elsewhere, Qt::Key_Space);
            control<QPushButton>(the<mfetchinprogress_frm>(), "cancel_b").click();
        });
        presses.start(0);
        control<QAction>(console, "fetchmail").trigger();
        QCOMPARE(presses_elsewhere, 0);
    }
};

QTEST_MAIN(fetch_failure_test)
#include "fetch_failure_test.moc"
