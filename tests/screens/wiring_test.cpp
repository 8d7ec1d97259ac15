// The program's own wiring: every service that a fetch may ask for is there, whatever client is configured.
#include "app/wiring.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/store.h"
#include "intake/fetch_session.h"
#include "platform/app_folder.h"
#include "platform/outside_effects.h"
#include "platform/services.h"
#include "platform/settings.h"
#include "screens/intake/mailfrm.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QTest>

class wiring_test : public QObject {
    Q_OBJECT
private slots:
    void a_client_that_is_not_set_up_is_a_failure_not_a_crash_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("words");
        QTest::newRow("one that reads and leaves") << "pop3"
                                                   << "No user name is set for the mailbox.";
        QTest::newRow("one over a file") << "mbox"
                                         << "No mbox file is set.";
        QTest::newRow("one with folders") << "imap"
                                          << "No server is set.";
    }

    void a_client_that_is_not_set_up_is_a_failure_not_a_crash()
    {
        QFETCH(QString, kind);
        QFETCH(QString, words);
        screens_site site;
        const wiring services_in_force;
        set_message_service(&site.boxes); // nobody is there to close the program's own
        SaveSetting("mail_client", "kind", kind);
        site.store.add_account("orders", "orders@shop.example");
        the<mailfrm>().load();
        QCOMPARE((site.boxes.shown + site.status_lines).filter(words).size(), 1);
        QCOMPARE(session.err_routine, "Form_load");
        QVERIFY(!intake::fetching.MAPISession1);
        the<mailfrm>().unload();
    }

    void what_cannot_be_committed_at_the_end_of_a_fetch_is_told()
    {
        screens_site site;
        site.store.add_account("orders", "orders@shop.example");
        const int refusing = on_outside_effect([] { throw run_time_error{ado::store_failure, "The disk is full"}; });
        the<mailfrm>().load();
        forget_outside_effect(refusing);
        QCOMPARE(site.status_lines.filter("Not everything went well: The disk is full").size(), 1);
        QVERIFY(!intake::fetching.inbox_items);
    }
};

QTEST_MAIN(wiring_test)
#include "wiring_test.moc"
