// Passwords in a real keyring that answers. One that is slow or silent: passwords_waiting_test.cpp.
#include "platform/passwords.h"
#include "platform/settings.h"
#include "support/fault_points.h"
#include "support/keyring_site.h"
#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QTest>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

using passwords::of;
using passwords::place;

namespace {

QString settings_path()
{
    return QSettings("brenmoorbiz").fileName();
}

enum class bus { ours, none };

// Another process saves the new password and dies before its n-th disk call; true when it lived.
bool child_saves(int die_before, bus reachable)
{
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (reachable == bus::none)
        environment.remove("DBUS_SESSION_BUS_ADDRESS");
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(), {"--save", QString::number(die_before)});
    const bool ended = child.waitForFinished();
    QFile::remove(settings_path() + ".lock"); // a second's wait for an owner that died nameless
    return ended && child.exitStatus() == QProcess::NormalExit && child.exitCode() == 0;
}

int save_and_die(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    die_before_disk_call(std::atoi(argv[2]));
    passwords::save(of::mailbox, new_word);
    _exit(0);
}

}

class passwords_keyring_test : public QObject {
    Q_OBJECT
private slots:

    void initTestCase() { QVERIFY2(keyring_process() > 0, "gnome-keyring-daemon did not start"); }
    void cleanupTestCase() { kill(keyring_process(), SIGTERM); }

    void init() { begin_without_passwords(); }

    void the_keyring_has_it_and_the_file_has_not()
    {
        SaveSetting("mail_client", "password", "in the file before");
        QVERIFY(passwords::save(of::mailbox, old_word) == place::keyring);
        QVERIFY(passwords::save(of::sending, new_word) == place::keyring);
        passwords::forget_remembered();
        QCOMPARE(passwords::read(of::mailbox), old_word);
        QCOMPARE(passwords::read(of::sending), new_word);
        QVERIFY(passwords::where(of::mailbox) == place::keyring);
        QVERIFY(!QSettings("brenmoorbiz").contains("mail_client/password"));
        QVERIFY(!QSettings("brenmoorbiz").contains("mail_client/smtp_password"));
    }

    void it_shows_nowhere()
    {
        SaveSetting("mail_client", "user", "jane");
        passwords::save(of::mailbox, old_word);
        passwords::forget_remembered();
        QCOMPARE(passwords::read(of::mailbox), old_word);
        for (const QString &path :
             {settings_path(), QStringLiteral("/proc/self/environ"), QStringLiteral("/proc/self/cmdline"),
              QStringLiteral("/proc/%1/environ").arg(keyring_process())}) {
            QVERIFY2(!bytes_of(path).isEmpty(), qPrintable(path));
            QVERIFY2(!bytes_of(path).contains(old_word.toUtf8()), qPrintable(path));
        }
    }

    void an_empty_one_takes_it_away()
    {
        passwords::save(of::mailbox, old_word);
        QVERIFY(passwords::save(of::mailbox, "") == place::nowhere);
        passwords::forget_remembered();
        QCOMPARE(passwords::read(of::mailbox), "");
        QVERIFY(passwords::where(of::mailbox) == place::nowhere);
    }

    void the_file_is_believed_first()
    {
        passwords::save(of::mailbox, old_word);
        SaveSetting("mail_client", "password", new_word);
        QCOMPARE(passwords::read(of::mailbox), new_word);
        QVERIFY(passwords::where(of::mailbox) == place::settings_file);
    }

    // One of the two passwords is in force whenever the process dies, and the new one when it lived.
    void a_kill_on_the_way_from_file_to_keyring()
    {
        bool lived = false;
        for (int number = 1; !lived; ++number) {
            QVERIFY(number < 300);
            passwords::save(of::mailbox, "");
            SaveSetting("mail_client", "password", old_word);
            lived = child_saves(number, bus::ours);
            passwords::forget_remembered();
            const QString found = passwords::read(of::mailbox);
            QVERIFY2(found == old_word || found == new_word, qPrintable(QString::number(number)));
            QVERIFY(!lived || found == new_word);
        }
        QVERIFY(passwords::where(of::mailbox) == place::keyring);
    }

    void a_kill_on_the_way_from_keyring_to_file()
    {
        bool lived = false;
        for (int number = 1; !lived; ++number) {
            QVERIFY(number < 300);
            passwords::save(of::mailbox, old_word);
            lived = child_saves(number, bus::none);
            passwords::forget_remembered();
            const QString found = passwords::read(of::mailbox);
            QVERIFY2(found == old_word || found == new_word, qPrintable(QString::number(number)));
            QVERIFY(!lived || found == new_word);
        }
        QVERIFY(passwords::where(of::mailbox) == place::settings_file);
    }

    // The last one: the keyring is locked from here on, and nobody is there to open it.
    void a_keyring_that_stays_locked()
    {
        passwords::save(of::mailbox, old_word);
        QCOMPARE(
            QProcess::execute("gdbus", {"call", "--session", "--dest", "org.freedesktop.secrets", "--object-path",
                                        "/org/freedesktop/secrets", "--method", "org.freedesktop.Secret.Service.Lock",
                                        "['/org/freedesktop/secrets/collection/login']"}),
            0);
        passwords::forget_remembered();
        passwords::set_longest_wait(short_wait_ms);
        QCOMPARE(passwords::read(of::mailbox), "");
        QVERIFY(passwords::save(of::mailbox, new_word) == place::settings_file);
        QCOMPARE(passwords::read(of::mailbox), new_word);
    }
};

int main(int argc, char **argv)
{
    if (argc == 3 && std::strcmp(argv[1], "--save") == 0)
        return save_and_die(argc, argv);
    start_again_in_keyring(argv);
    QCoreApplication application(argc, argv);
    passwords_keyring_test test;
    return QTest::qExec(&test, argc, argv);
}
#include "passwords_keyring_test.moc"
