// Passwords where no keyring is: in the settings file. With one: passwords_keyring_test.cpp.
#include "platform/passwords.h"
#include "platform/settings.h"
#include <QElapsedTimer>
#include <QFile>
#include <QSettings>
#include <QTest>

using passwords::of;
using passwords::place;

class passwords_test : public QObject {
    Q_OBJECT
private slots:

    void initTestCase() { qunsetenv("DBUS_SESSION_BUS_ADDRESS"); }

    void init()
    {
        QFile::remove(QSettings("brenmoorbiz").fileName());
        passwords::forget_remembered();
    }

    void without_a_password()
    {
        QCOMPARE(passwords::read(of::mailbox), "");
        QCOMPARE(passwords::read(of::sending), "");
        QVERIFY(passwords::where(of::mailbox) == place::nowhere);
        QVERIFY(passwords::where(of::sending) == place::nowhere);
    }

    void the_file_has_it_and_only_the_user_may_read_it()
    {
        QVERIFY(passwords::save(of::mailbox, "a, \"b\" = 1; \u00e4") == place::settings_file);
        QVERIFY(passwords::where(of::mailbox) == place::settings_file);
        passwords::forget_remembered();
        QCOMPARE(passwords::read(of::mailbox), "a, \"b\" = 1; \u00e4");
        const QFile::Permissions modes = QFile::permissions(QSettings("brenmoorbiz").fileName());
        QVERIFY(!(modes & (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther)));
    }

    void each_has_its_key()
    {
        passwords::save(of::mailbox, "first");
        passwords::save(of::sending, "second");
        QCOMPARE(GetSetting("mail_client", "password"), "first");
        QCOMPARE(GetSetting("mail_client", "smtp_password"), "second");
        QCOMPARE(passwords::read(of::sending), "second");
    }

    void sending_falls_back_data()
    {
        QTest::addColumn<QString>("smtp_user");
        QTest::addColumn<QString>("expected");
        QTest::newRow("no user of its own") << ""
                                            << "first";
        QTest::newRow("the same user") << "jane"
                                       << "first";
        QTest::newRow("another user") << "shop"
                                      << "";
    }
    void sending_falls_back()
    {
        QFETCH(QString, smtp_user);
        QFETCH(QString, expected);
        SaveSetting("mail_client", "user", "jane");
        SaveSetting("mail_client", "smtp_user", smtp_user);
        passwords::save(of::mailbox, "first");
        QCOMPARE(passwords::read(of::sending), expected);
        QVERIFY(passwords::where(of::sending) == place::nowhere);
    }

    void an_empty_one_takes_it_away()
    {
        passwords::save(of::mailbox, "first");
        QVERIFY(passwords::save(of::mailbox, "") == place::nowhere);
        QCOMPARE(passwords::read(of::mailbox), "");
        QVERIFY(!QSettings("brenmoorbiz").contains("mail_client/password"));
    }

    void without_a_bus_nobody_waits()
    {
        QElapsedTimer since;
        since.start();
        passwords::save(of::mailbox, "first");
        passwords::read(of::mailbox);
        passwords::read(of::sending);
        QVERIFY(since.elapsed() < 2000);
    }
};

QTEST_GUILESS_MAIN(passwords_test)
#include "passwords_test.moc"
