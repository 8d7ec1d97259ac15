// The program's own wiring: every service that a fetch may ask for is there, whatever client is configured.
#include "app/wiring.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/store.h"
#include "frame/tell_a_friend.h"
#include "intake/fetch_session.h"
#include "platform/app_folder.h"
#include "platform/outside_effects.h"
#include "platform/services.h"
#include "platform/settings.h"
#include "platform/winopen.h"
#include "screens/intake/mailfrm.h"
#include "screens/screen.h"
#include "support/screens_driver.h"
#include "support/screens_site.h"

#include <QDesktopServices>
#include <QTest>
#include <QUrl>
#include <QUrlQuery>
#include <array>

// The desktop's programs, as far as they are told what to open.
class heard_desktop : public QObject {
    Q_OBJECT
public:
    heard_desktop()
    {
        for (const char *scheme : schemes)
            QDesktopServices::setUrlHandler(scheme, this, "hear");
    }
    ~heard_desktop() override
    {
        for (const char *scheme : schemes)
            QDesktopServices::unsetUrlHandler(scheme);
    }
    QList<QUrl> heard;

public slots:
    void hear(const QUrl &url) { heard += url; }

private:
    static constexpr std::array schemes{"file", "mailto", "https"};
};

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

    void files_and_addresses_reach_the_desktop_as_what_they_are()
    {
        screens_site site;
        const wiring services_in_force;
        heard_desktop desktop;
        QVERIFY(winopen("/tmp/a form 100%.htm"));
        QVERIFY(winopen("https://www.shop.example/a%20form"));
        QVERIFY(tell_a_friend());
        QCOMPARE(desktop.heard.size(), 3);
        QCOMPARE(desktop.heard[0].toLocalFile(), "/tmp/a form 100%.htm");
        QCOMPARE(desktop.heard[1].toString(QUrl::FullyEncoded), "https://www.shop.example/a%20form");
        QCOMPARE(desktop.heard[2].scheme(), "mailto");
        QCOMPARE(QUrlQuery(desktop.heard[2]).queryItemValue("subject", QUrl::FullyDecoded),
                 "Your friend has recommended");
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
