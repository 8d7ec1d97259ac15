// The page "Mail Client" with real servers behind it: typed, tested, saved, and a mail that goes out afterwards.
#include "platform/mail_delivery.h"
#include "platform/outbox.h"
#include "screens/frame/menuFrm.h"
#include "screens/frame/outbox_frm.h"
#include "screens/list_view.h"
#include "screens/preferences/mail_client_frm.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_mail_page.h"
#include "support/screens_servers_site.h"

#include <QAction>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

namespace {

constexpr int patience_ms = 30000;

}

class mail_client_servers_test : public QObject {
    Q_OBJECT
private slots:
    void typed_tested_and_saved_the_program_sends()
    {
        servers_site site;
        menuFrm console;
        console.show();
        console.start_delivery();
        site.type_settings();
        page::press("test_b");
        QTRY_VERIFY_WITH_TIMEOUT(page::test_has_ended(), patience_ms);
        QVERIFY2(page::label("result_l") == "It works: mail can be fetched and sent. Press OK to keep these settings.",
                 qPrintable(page::label("result_l") + "\n" + page::steps()));
        page::press("ok_b");
        QVERIFY(!is_loaded<mail_client_frm>());

        outbox::outgoing_mail mail;
        mail.To = QStringList{"bob@localhost"};
        mail.Subject = "Your order";
        mail.body = "Thank you.";
        outbox::hand_over(mail);
        QTRY_COMPARE_WITH_TIMEOUT(site.sink.taken(), 1, patience_ms);
        QTRY_COMPARE_WITH_TIMEOUT(outbox::contents().size(), size_t(0), patience_ms);
        control<QAction>(console, "outbox_mnu").trigger();
        QTRY_COMPARE(control<list_view>(the<outbox_frm>(), "LV_outbox").model()->rowCount(), 0);
    }

    void a_wrong_password_is_told_in_plain_words()
    {
        servers_site site;
        site.type_settings("pear tree");
        page::press("test_b");
        QTRY_VERIFY_WITH_TIMEOUT(page::test_has_ended(), patience_ms);
        QCOMPARE(page::label("result_l"), "It does not work yet. The line that failed says why.");
        QVERIFY2(page::steps().contains("failed, Signing in: "), qPrintable(page::steps()));
        QVERIFY(!page::steps().contains("pear tree"));
    }

    void what_waits_while_the_server_is_away_is_counted_and_goes_on()
    {
        servers_site site;
        site.type_settings();
        page::press("ok_b");
        site.sink.stop();
        outbox::outgoing_mail mail;
        mail.To = QStringList{"bob@localhost"};
        mail.Subject = "Your order";
        outbox::hand_over(mail);
        menuFrm console;
        console.show();
        console.start_delivery();
        auto &told = control<QToolButton>(console, "outbox_b");
        QTRY_VERIFY_WITH_TIMEOUT(told.isVisible(), patience_ms);
        site.sink.start();
        control<QAction>(console, "outbox_mnu").trigger();
        control<QPushButton>(the<outbox_frm>(), "now_b").click();
        QTRY_COMPARE_WITH_TIMEOUT(site.sink.taken(), 1, patience_ms);
        QTRY_VERIFY_WITH_TIMEOUT(!told.isVisible(), patience_ms);
    }
};

QTEST_MAIN(mail_client_servers_test)
#include "mail_client_servers_test.moc"
