// The console's tick every ten seconds: when it fetches, and what it leaves behind.
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/status.h"
#include "intake/map_parser.h"
#include "platform/settings.h"
#include "screens/frame/menuFrm.h"
#include "screens/intake/mailfrm.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QTest>
#include <QTimer>

namespace {

// A box that stays open until a tick has come.
class ticking_box : public message_service {
public:
    explicit ticking_box(menuFrm &told) : console(told) {}
    std::optional<QString> show(const message_box &) override
    {
        console.Timer1_Timer();
        ticked = true;
        return QString();
    }
    bool ticked = false;

private:
    menuFrm &console;
};

}

class auto_fetch_tick_test : public QObject {
    Q_OBJECT

    static void set_minutes(screens_site &site, int minutes)
    {
        site.store.run("update autofetch set minutes=" + QString::number(minutes));
    }

    static qint64 stored_after_ticks(int minutes, int ticks)
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        set_minutes(site, minutes);
        menuFrm console;
        for (int tick = 0; tick < ticks; ++tick) {
            site.deliver_mail("orders@shop.example", "Order " + QString::number(tick));
            console.Timer1_Timer();
        }
        return site.rows_of("orders");
    }

private slots:
    void minutes_below_one_never_fetch()
    {
        QCOMPARE(stored_after_ticks(-1, 3), 0);
        QCOMPARE(stored_after_ticks(0, 3), 0);
    }

    void minutes_of_one_fetch_on_every_tick()
    {
        QCOMPARE(stored_after_ticks(1, 1), 1);
        QCOMPARE(stored_after_ticks(1, 3), 3);
    }

    void two_or_more_never_fetch()
    {
        QCOMPARE(stored_after_ticks(2, 5), 0);
        QCOMPARE(stored_after_ticks(10, 12), 0);
    }

    void a_fetching_tick_clears_no_fetch_and_unloads_the_auditor()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        set_minutes(site, 1);
        session.no_fetch = true;
        menuFrm console;
        console.Timer1_Timer();
        QVERIFY(!session.no_fetch);
        QVERIFY(!is_loaded<mailfrm>());
        QCOMPARE(session.autofetch_minutes, qint16(1));
    }

    void with_the_auditor_open_a_tick_neither_fetches_nor_closes_it()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        set_minutes(site, 1);
        menuFrm console;
        session.no_fetch = true;
        the<mailfrm>().show();
        const mailfrm *open = &the<mailfrm>();
        site.deliver_mail("orders@shop.example");
        console.Timer1_Timer();
        QCOMPARE(site.rows_of("orders"), 0);
        QVERIFY(is_visible<mailfrm>());
        QCOMPARE(&the<mailfrm>(), open);
    }

    void a_tick_returns_at_once_while_the_program_is_busy()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        set_minutes(site, 1);
        site.deliver_mail("orders@shop.example");
        menuFrm console;
        {
            const busy_scope box_open;
            console.Timer1_Timer();
        }
        QCOMPARE(site.rows_of("orders"), 0);
        console.Timer1_Timer();
        QCOMPARE(site.rows_of("orders"), 1);
    }

    void a_tick_while_a_message_box_is_open_does_nothing()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        set_minutes(site, 1);
        site.deliver_mail("orders@shop.example");
        menuFrm console;
        ticking_box box(console);
        set_message_service(&box);
        say("Hello");
        set_message_service(&site.boxes);
        QVERIFY(box.ticked);
        QCOMPARE(site.rows_of("orders"), 0);
    }

    void a_tick_while_another_routine_runs_does_nothing()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        set_minutes(site, 1);
        site.deliver_mail("orders@shop.example");
        menuFrm console;
        QVERIFY(guarded("a.frm", "b", [&console] { console.Timer1_Timer(); }));
        QCOMPARE(site.rows_of("orders"), 0);
    }

    void a_tick_while_a_wizard_brings_mails_over_does_nothing()
    {
        screens_site site;
        const qint64 account = site.store.add_account("orders", "orders@shop.example");
        site.store.add_map("clients", account, "Order", {{"name", 1}});
        site.store.run("insert into orders (tsl_subject,tsl_body,tsl_processed) values('Order','Ann',no)");
        set_minutes(site, 1);
        site.deliver_mail("orders@shop.example");
        menuFrm console;
        int ticks = 0;
        set_progress_sink([&](const QString &, qint64, qint64) { // where the wait screen lets timers fire
            ++ticks;
            console.Timer1_Timer();
        });
        QVERIFY(intake::remap_account_mails("orders", "clients"));
        QVERIFY(ticks > 0);
        QCOMPARE(site.rows_of("orders"), 1);
        QCOMPARE(site.rows_of("clients"), 1);
    }

    void the_timer_runs_from_the_first_show_every_ten_seconds()
    {
        screens_site site;
        menuFrm console;
        QVERIFY(!control<QTimer>(console, "Timer1").isActive());
        console.show();
        QVERIFY(control<QTimer>(console, "Timer1").isActive());
        QCOMPARE(control<QTimer>(console, "Timer1").interval(), 10000);
    }

    void a_tick_takes_away_the_line_of_a_fetch_and_no_other()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        set_minutes(site, 1);
        menuFrm console;
        QStringList lines;
        set_status_sink([&lines](const QString &line) { lines += line; });
        status_line("The report was cancelled.");
        console.Timer1_Timer();
        QCOMPARE(lines, QStringList{"The report was cancelled."});
        SaveSetting("mail_client", "maildir", "/no/such/Maildir");
        console.Timer1_Timer();
        QCOMPARE(lines.last(), "Not everything went well: Path not found: /no/such/Maildir");
        SaveSetting("mail_client", "maildir", site.maildir());
        console.Timer1_Timer();
        QCOMPARE(lines.last(), QString());
        QCOMPARE(lines.size(), 3);
    }

    void a_tick_opens_a_closed_store()
    {
        screens_site site;
        session.store_connection->Close();
        menuFrm console;
        console.Timer1_Timer();
        QCOMPARE(session.store_connection->State(), 1);
    }
};

QTEST_MAIN(auto_fetch_tick_test)
#include "auto_fetch_tick_test.moc"
