// The Outbox while a real server is there, wants mails later, or is away. Its list and its buttons:
// outbox_frm_test.cpp.
#include "platform/mail_settings.h"
#include "screens/frame/menuFrm.h"
#include "support/screens_outbox.h"
#include "support/smtp_sink.h"

#include <QAction>
#include <QTest>

using namespace outbox_hands;

namespace {

// The console with the Outbox open, sending to that port.
struct sending_site : screens_site {
    explicit sending_site(quint16 port)
    {
        mail::client_settings settings;
        settings.configured = true;
        settings.sending = mail::send_by::smtp;
        settings.smtp = {"127.0.0.1", port, mail::security::none, {}};
        settings.smtp_logs_in = false;
        mail::write_client_settings(settings);
        hand_over("ann@mail.example", "Order 17");
        console.show();
        console.start_delivery();
        control<QAction>(console, "outbox_mnu").trigger();
    }
    ~sending_site() { delivery::stop(); }
    menuFrm console;
};

}

class outbox_sending_test : public QObject {
    Q_OBJECT
private slots:
    void send_now_sends_what_the_server_wanted_later()
    {
        smtp_sink sink(
            {.faults = {{.at = smtp_step::rcpt, .deed = smtp_fault::answer, .text = "450 4.2.0 Greylisted"}}});
        sending_site site(sink.port());
        QTRY_VERIFY2(cell(0, 3).contains("Greylisted"), "the server's words");
        QTRY_VERIFY2(cell(0, 3).contains("It is tried again at "), qPrintable(cell(0, 3)));
        QCOMPARE(cell(0, 2), "Waiting");
        QCOMPARE(sink.taken(), 0);
        QTRY_VERIFY(!delivery::present().busy);
        QVERIFY(button("now_b").isEnabled());
        button("now_b").click();
        QTRY_COMPARE(row_count(), 0);
        QCOMPARE(sink.taken(), 1);
        QVERIFY(!button("now_b").isEnabled());
        QCOMPARE(site.boxes.shown, QStringList());
    }

    void each_mail_says_that_the_server_is_away_and_when_it_is_tried_again()
    {
        smtp_sink sink;
        sink.stop();
        sending_site site(sink.port());
        QTRY_VERIFY2(cell(0, 3).contains("It is tried again at "), qPrintable(cell(0, 3)));
        const QString time = cell(0, 3).section("again at ", 1).chopped(1);
        QVERIFY2(QTime::fromString(time, "h:mm:ss AP").isValid(), qPrintable(time)); // as the other times of the list
        QVERIFY2(summary().endsWith(": tried again at " + time), qPrintable(summary()));
        select(0);
        QCOMPARE(shown_reason(), cell(0, 3));
        sink.start();
        button("now_b").click();
        QTRY_COMPARE(row_count(), 0);
        QCOMPARE(sink.taken(), 1);
    }
};

QTEST_MAIN(outbox_sending_test)
#include "outbox_sending_test.moc"
