// Fetching from real servers that were set up through the page "Mail Client": what comes, what a line that breaks in
// the middle is told as, and that Cancel ends any waiting.
#include "frame/session.h"
#include "screens/frame/menuFrm.h"
#include "screens/intake/mailfrm.h"
#include "screens/intake/mfetchinprogress_frm.h"
#include "screens/list_view.h"
#include "screens/preferences/mail_client_frm.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_mail_page.h"
#include "support/screens_servers_site.h"
#include "support/wire_proxy.h"

#include <QAction>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace {

constexpr int patience_ms = 30000;
constexpr qint64 amid_the_bodies = 60000;
constexpr int orders_on_the_line = 40;

// One account, and the console that fetches.
struct fetching_site : servers_site {
    fetching_site() { store.add_account("orders", "orders@shop.example"); }

    // More than fits before the fault.
    void put_long_orders()
    {
        for (int number = 1; number <= orders_on_the_line; ++number)
            put_order(number, QString("Name: Ann\n").repeated(400));
    }
    void set_up(const char *kind, quint16 port = 0)
    {
        type_settings("apple tree", kind, port);
        page::press("ok_b");
        boxes.shown.clear(); // where the password lies
    }
    void fetch() { control<QAction>(console, "fetchmail").trigger(); }
    QString summary() const { return control<QLabel>(the<mailfrm>(), "Label3").text(); }
    QString status() const { return control<QLabel>(console, "status_l").accessibleName(); }

    menuFrm console;
};

}

class fetch_servers_test : public QObject {
    Q_OBJECT
private slots:
    void mail_comes_as_it_was_set_up_data()
    {
        QTest::addColumn<QByteArray>("kind");
        QTest::addColumn<int>("moved");
        QTest::newRow("IMAP, and it moves") << QByteArray("imap_o") << 3;
        QTest::newRow("POP3, and it stays") << QByteArray("pop3_o") << 0;
    }

    void mail_comes_as_it_was_set_up()
    {
        QFETCH(QByteArray, kind);
        QFETCH(int, moved);
        fetching_site site;
        site.console.show();
        for (int number = 1; number <= 3; ++number)
            site.put_order(number);
        site.set_up(kind);
        site.fetch();
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(site.rows_of("orders"), 3);
        QCOMPARE(site.summary(), "3 of 3 mails processed");
        QCOMPARE(control<list_view>(the<mailfrm>(), "LV_sub").model()->rowCount(), 3);
        QCOMPARE(int(files_in(site.mailbox.maildir("ann", "Tessaly_Inbox")).size()), moved);
        site.put_order(4);
        site.fetch();
        QCOMPARE(site.rows_of("orders"), 4);
    }

    void a_line_that_breaks_in_the_middle_is_told_and_the_rest_comes_next_time_data()
    {
        QTest::addColumn<QByteArray>("kind");
        QTest::newRow("IMAP") << QByteArray("imap_o");
        QTest::newRow("POP3") << QByteArray("pop3_o");
    }

    void a_line_that_breaks_in_the_middle_is_told_and_the_rest_comes_next_time()
    {
        QFETCH(QByteArray, kind);
        fetching_site site;
        site.console.show();
        site.put_long_orders();
        wire_proxy proxy(kind == "imap_o" ? site.mailbox.imap_port : site.mailbox.pop3_port,
                         {.faults = {{.kind = wire_fault::reset, .at_byte = amid_the_bodies, .connection = 0}}});
        site.set_up(kind, proxy.port);
        site.fetch();
        QCOMPARE(site.boxes.shown.size(), 1);
        QVERIFY2(site.boxes.shown[0].startsWith("Mail could not be fetched.\n\n"), qPrintable(site.boxes.shown[0]));
        QVERIFY(is_visible<mailfrm>());
        const qint64 before = site.rows_of("orders");
        QVERIFY2(before > 0 && before < orders_on_the_line, qPrintable(QString::number(before)));
        QCOMPARE(control<list_view>(the<mailfrm>(), "LV_sub").model()->rowCount(), int(before));
        site.fetch();
        QCOMPARE(site.boxes.shown.size(), 1);
        QCOMPARE(site.rows_of("orders"), orders_on_the_line);
    }

    void a_tick_whose_line_breaks_says_so_and_pauses()
    {
        fetching_site site;
        site.put_long_orders();
        site.store.run("update autofetch set minutes=1");
        wire_proxy proxy(site.mailbox.imap_port,
                         {.faults = {{.kind = wire_fault::reset, .at_byte = amid_the_bodies, .connection = 0}}});
        site.set_up("imap_o", proxy.port);
        site.console.Timer1_Timer();
        QCOMPARE(site.boxes.shown, QStringList());
        QVERIFY2(site.status().startsWith("Mail could not be fetched: "), qPrintable(site.status()));
        QVERIFY(session.auto_fetch_pause_s > 0);
    }

    void cancel_ends_a_fetch_whose_server_stalls_data()
    {
        QTest::addColumn<QByteArray>("kind");
        QTest::addColumn<qint64>("at_byte");
        QTest::newRow("IMAP, before its greeting") << QByteArray("imap_o") << qint64(0);
        QTest::newRow("IMAP, at the login") << QByteArray("imap_o") << qint64(1000);
        QTest::newRow("IMAP, amid the bodies") << QByteArray("imap_o") << amid_the_bodies;
        QTest::newRow("POP3, before its greeting") << QByteArray("pop3_o") << qint64(0);
        QTest::newRow("POP3, amid the bodies") << QByteArray("pop3_o") << amid_the_bodies;
    }

    void cancel_ends_a_fetch_whose_server_stalls()
    {
        QFETCH(QByteArray, kind);
        QFETCH(qint64, at_byte);
        fetching_site site;
        site.console.show();
        site.put_long_orders();
        wire_proxy proxy(kind == "imap_o" ? site.mailbox.imap_port : site.mailbox.pop3_port,
                         {.faults = {{.kind = wire_fault::stall, .at_byte = at_byte}}});
        site.set_up(kind, proxy.port);
        QElapsedTimer since;
        QTimer presses;
        connect(&presses, &QTimer::timeout, [&] {
            if (proxy.counts().connections == 0 || proxy.counts().to_client < at_byte) // not stalled yet
                return;
            presses.stop();
            since.start();
            QTest::mouseClick(&control<QPushButton>(the<mfetchinprogress_frm>(), "cancel_b"), Qt::LeftButton);
        });
        presses.start(10);
        site.fetch();
        QVERIFY(since.isValid());
        QVERIFY2(since.elapsed() < 3000, qPrintable(QString::number(since.elapsed())));
        QCOMPARE(site.boxes.shown, QStringList());
        QCOMPARE(site.status(), "Fetching was cancelled. The mails stored so far are shown.");
        QVERIFY(is_visible<mailfrm>());
        proxy.set({});
        site.fetch();
        QCOMPARE(site.rows_of("orders"), orders_on_the_line);
    }

    void stop_ends_a_test_whose_server_stalls_data()
    {
        QTest::addColumn<qint64>("at_byte");
        QTest::addColumn<int>("security_line");
        QTest::newRow("before its greeting") << qint64(0) << 2;
        QTest::newRow("at the login") << qint64(200) << 2;
        QTest::newRow("behind the login") << qint64(700) << 2;
        QTest::newRow("while the line is encrypted") << qint64(500) << 1;
    }

    void stop_ends_a_test_whose_server_stalls()
    {
        QFETCH(qint64, at_byte);
        QFETCH(int, security_line);
        servers_site site;
        wire_proxy proxy(site.mailbox.imap_port, {.faults = {{.kind = wire_fault::stall, .at_byte = at_byte}}});
        site.type_settings("apple tree", "imap_o", proxy.port);
        page::pick("security_c", security_line);
        page::press("test_b");
        QTRY_VERIFY_WITH_TIMEOUT(proxy.counts().connections > 0 && proxy.counts().to_client >= at_byte, patience_ms);
        QElapsedTimer since;
        since.start();
        page::press("stop_b");
        QTRY_COMPARE_WITH_TIMEOUT(page::label("result_l"), "The test was stopped.", patience_ms);
        QVERIFY2(since.elapsed() < 3000, qPrintable(QString::number(since.elapsed())));
        QVERIFY(page::field("address_t").isEnabled());
    }
};

QTEST_MAIN(fetch_servers_test)
#include "fetch_servers_test.moc"
