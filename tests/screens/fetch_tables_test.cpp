// A fetch whose mails come in, but not into their tables, or that cannot be kept: what is told, and when the ticks try
// again. A server that is away: fetch_failure_test.cpp.
#include "frame/session.h"
#include "intake/auto_reply.h"
#include "platform/clock.h"
#include "platform/outbox.h"
#include "screens/frame/menuFrm.h"
#include "screens/intake/mailfrm.h"
#include "screens/screen.h"
#include "support/plain_files.h"
#include "support/refusing_store.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QTest>

namespace {

const char *const not_filled = "Not all mails could be put into their tables, the next fetch tries again: ";

// A map that answers with a number, ticks that fetch, and an Outbox that cannot be written.
struct unanswered_site : screens_site {
    unanswered_site()
    {
        const qint64 account = store.add_account("orders", "orders@shop.example");
        store.add_map("clients", account, "Order", {{"name", 1}});
        store.run("update autofetch set minutes=1");
        intake::auto_reply reply;
        reply.SubjectType = intake::support_token;
        reply.SubjectPrefix = "Ticket";
        reply.LastToken = "7";
        reply.autocontent = "We have it.";
        reply.enable = true;
        intake::save_auto_reply("clients", reply);
        set_clock([this] { return moment; });
        QDir(file("outbox")).removeRecursively();
        put_file(file("outbox"), "a file in the folder's place");
    }
    ~unanswered_site()
    {
        set_clock({});
        session.last_fetch = {};
        session.broken_fetch = {};
        session.auto_fetch_pause_s = 0;
    }

    // Ticks ten seconds apart, as many as the seconds hold.
    void let_pass(int seconds)
    {
        for (int passed = 0; passed < seconds; passed += 10) {
            moment = moment.addSecs(10);
            console.Timer1_Timer();
        }
    }
    void give_the_outbox_back() { QVERIFY(QFile::remove(file("outbox"))); }
    QString token() { return store.cell("select LastToken from autocontent"); }
    QString told() { return control<QLabel>(console, "status_l").accessibleName(); } // the whole of it
    QString fetched() { return control<QLabel>(console, "fetched_l").text(); }

    menuFrm console;
    QDateTime moment{QDate(2026, 11, 21), QTime(9, 30), Qt::UTC};
};

}

class fetch_tables_test : public QObject {
    Q_OBJECT
private slots:
    void a_tick_tells_it_and_the_next_ones_pause_longer_and_longer()
    {
        unanswered_site site;
        site.console.show();
        site.deliver_mail("orders@shop.example", "Order", "Ann");
        site.console.Timer1_Timer();
        QCOMPARE(site.told(), not_filled + session.err_description);
        QVERIFY(!session.err_description.isEmpty());
        QTRY_COMPARE(site.fetched(), "Tables not filled 9:30:00 AM");
        QCOMPARE(site.rows_of("clients"), 1);
        site.let_pass(100); // tried again after 10, 20 and 40 seconds, and not in the 80 behind them
        QCOMPARE(site.rows_of("clients"), 4);
        QCOMPARE(site.token(), "11");
        QCOMPARE(site.told(), not_filled + session.err_description);
        QCOMPARE(site.rows_of("orders"), 1);
        QVERIFY(!session.last_fetch.isValid());
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void once_they_can_be_filled_the_pause_and_the_words_are_over()
    {
        unanswered_site site;
        site.console.show();
        site.deliver_mail("orders@shop.example", "Order", "Ann");
        site.console.Timer1_Timer();
        site.let_pass(10);
        site.give_the_outbox_back();
        site.let_pass(20);
        QCOMPARE(site.told(), "");
        QTRY_COMPARE(site.fetched(), "Fetched 9:30:30 AM");
        QCOMPARE(session.auto_fetch_pause_s, 0);
        QCOMPARE(outbox::contents().size(), size_t(1));
        QCOMPARE(outbox::contents()[0].Subject, "Ticket 9 "); // 7 and 8 are spent
        site.deliver_mail("orders@shop.example", "Order", "Bob");
        site.let_pass(10); // the very next tick
        QCOMPARE(outbox::contents().size(), size_t(2));
    }

    void a_reply_that_names_a_missing_column_is_such_a_failure()
    {
        unanswered_site site;
        site.give_the_outbox_back();
        site.store.run("update autocontent set SubjectType='2', SubjectDynamic='street'");
        site.deliver_mail("orders@shop.example", "Order", "Ann");
        site.console.Timer1_Timer();
        QVERIFY2(site.told().startsWith(not_filled), qPrintable(site.told()));
        site.let_pass(100);
        QCOMPARE(site.rows_of("clients"), 4);
        QCOMPARE(outbox::contents().size(), size_t(0));
    }

    void by_hand_it_is_told_too_and_nothing_pauses()
    {
        unanswered_site site;
        site.deliver_mail("orders@shop.example", "Order", "Ann");
        session.no_fetch = false;
        the<mailfrm>().show();
        QCOMPARE(site.told(), not_filled + session.err_description);
        QVERIFY(!session.last_fetch.isValid());
        QCOMPARE(session.auto_fetch_pause_s, 0);
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(site.rows_of("orders"), 1); // and listed
    }

    void a_full_account_is_told_in_words_of_its_own()
    {
        unanswered_site site;
        site.give_the_outbox_back();
        site.store.run("insert into orders (message_id,tsl_subject,tsl_body,tsl_processed) "
                       "values(32768,'Order','Ann',no)");
        site.console.Timer1_Timer();
        QCOMPARE(site.told(), "The mails of orders can no longer be marked: number 32768 is above 32767.");
        site.let_pass(100);
        QCOMPARE(site.rows_of("clients"), 4);
    }

    void a_fetch_that_cannot_be_kept_is_none_and_makes_the_pause_longer()
    {
        unanswered_site site;
        session.auto_fetch_pause_s = 40;
        session.auto_fetch_missed = site.moment.addSecs(-60);
        const refusing_store full;
        site.console.Timer1_Timer();
        QCOMPARE(site.told(), "Not everything went well: The disk is full");
        QVERIFY(!session.last_fetch.isValid());
        QCOMPARE(session.auto_fetch_pause_s, 80);
        QCOMPARE(session.auto_fetch_missed, site.moment);
    }
};

QTEST_MAIN(fetch_tables_test)
#include "fetch_tables_test.moc"
