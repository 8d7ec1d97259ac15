// The settings of the mail client: written, read again, damaged.
#include "platform/mail_settings.h"
#include "platform/settings.h"
#include "support/fault_points.h"
#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSettings>
#include <QTest>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

QString settings_path()
{
    return QSettings("brenmoorbiz").fileName();
}

void set(const char *key, const QString &value)
{
    SaveSetting("mail_client", QLatin1String(key), value);
}

mail::client_settings everything_set()
{
    mail::client_settings all;
    all.configured = true;
    all.kind = mail::client_kind::pop3;
    all.maildir = "~/My, Mail";
    all.mbox = "/var/mail/jane";
    all.incoming = {"pop.example.org", 1995, mail::security::starttls, "jane@example.org"};
    all.sending = mail::send_by::smtp;
    all.smtp = {"smtp.example.org", 0, mail::security::none, "J\u00f6rg; \"x\" = 1"};
    all.smtp_logs_in = false;
    all.from = "shop@example.org";
    all.use_token = true;
    all.token_command = "get-token --for 'jane@example.org', | tail -1";
    all.authority_file = "/etc/own authority.pem";
    all.mailings_per_hour = 0;
    return all;
}

}

class mail_settings_test : public QObject {
    Q_OBJECT
private slots:

    void init() { QFile::remove(settings_path()); }

    void nothing_set()
    {
        const mail::client_settings found = mail::read_client_settings();
        QVERIFY(!found.configured);
        QVERIFY(found.kind == mail::client_kind::maildir);
        QVERIFY(found.sending == mail::send_by::keep);
        QVERIFY(found.incoming.secured == mail::security::tls);
        QVERIFY(found.smtp_logs_in);
        QVERIFY(!found.use_token);
        QCOMPARE(found.mailings_per_hour, 450);
    }

    void everything_comes_back()
    {
        const mail::client_settings all = everything_set();
        mail::write_client_settings(all);
        const mail::client_settings found = mail::read_client_settings();
        QVERIFY(found.configured);
        QVERIFY(found.kind == all.kind);
        QCOMPARE(found.maildir, all.maildir);
        QCOMPARE(found.mbox, all.mbox);
        QCOMPARE(found.incoming.host, all.incoming.host);
        QCOMPARE(found.incoming.port, 1995);
        QVERIFY(found.incoming.secured == mail::security::starttls);
        QCOMPARE(found.incoming.user, all.incoming.user);
        QVERIFY(found.sending == mail::send_by::smtp);
        QCOMPARE(found.smtp.host, all.smtp.host);
        QCOMPARE(found.smtp.port, 0);
        QVERIFY(found.smtp.secured == mail::security::none);
        QCOMPARE(found.smtp.user, all.smtp.user);
        QVERIFY(!found.smtp_logs_in);
        QCOMPARE(found.from, all.from);
        QVERIFY(found.use_token);
        QCOMPARE(found.token_command, all.token_command);
        QCOMPARE(found.authority_file, all.authority_file);
        QCOMPARE(found.mailings_per_hour, 0);
    }

    void settings_that_are_not_configured_say_so()
    {
        mail::client_settings all = everything_set();
        mail::write_client_settings(all);
        all.configured = false;
        mail::write_client_settings(all);
        QVERIFY(!mail::read_client_settings().configured);
    }

    void a_damaged_value_is_the_usual_one_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::newRow("an unknown kind") << "kind"
                                         << "exchange";
        QTest::newRow("an unknown security") << "security"
                                             << "ssl3";
        QTest::newRow("a port of letters") << "port"
                                           << "imap";
        QTest::newRow("a negative port") << "port"
                                         << "-1";
        QTest::newRow("a port too high") << "port"
                                         << "65536";
        QTest::newRow("a way out that is none") << "send"
                                                << "pigeon";
        QTest::newRow("an unknown security of sending") << "smtp_security"
                                                        << "?";
        QTest::newRow("a limit of letters") << "mailings_per_hour"
                                            << "many";
        QTest::newRow("a negative limit") << "mailings_per_hour"
                                          << "-5";
        QTest::newRow("an unknown login") << "login"
                                          << "kerberos";
    }
    void a_damaged_value_is_the_usual_one()
    {
        QFETCH(QString, key);
        QFETCH(QString, value);
        SaveSetting("mail_client", key, value);
        const mail::client_settings found = mail::read_client_settings();
        QVERIFY(found.kind == mail::client_kind::maildir);
        QVERIFY(found.incoming.secured == mail::security::tls);
        QCOMPARE(found.incoming.port, 0);
        QVERIFY(found.sending == mail::send_by::keep);
        QVERIFY(found.smtp.secured == mail::security::tls);
        QCOMPARE(found.mailings_per_hour, 450);
        QVERIFY(!found.use_token);
    }

    void a_token_command_alone_means_a_token()
    {
        set("token_command", "get-token");
        QVERIFY(mail::read_client_settings().use_token);
        set("login", "password");
        QVERIFY(!mail::read_client_settings().use_token);
    }

    void only_the_user_may_read_the_file()
    {
        const mode_t before = umask(0);
        set("password", "fresh");
        umask(before);
        const QFile::Permissions group_and_others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                                    QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
        QVERIFY((QFile::permissions(settings_path()) & group_and_others) == QFile::Permissions());
        QFile::setPermissions(settings_path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther);
        set("password", "again");
        QVERIFY((QFile::permissions(settings_path()) & group_and_others) == QFile::Permissions());
    }

    void a_deleted_key_is_gone()
    {
        set("password", "gone soon");
        set("from", "jane@example.org");
        DeleteSetting("mail_client", "password");
        DeleteSetting("mail_client", "never_there");
        QCOMPARE(GetSetting("mail_client", "password", "none"), "none");
        QCOMPARE(GetSetting("mail_client", "from"), "jane@example.org");
        QFile file(settings_path());
        QVERIFY(file.open(QFile::ReadOnly));
        QVERIFY(!file.readAll().contains("gone soon"));
    }

    // As a process leaves it that was killed right behind making it.
    void a_lock_without_an_owner_holds_nobody_up()
    {
        SaveSetting("mail_client", "user", "jane");
        QFile lock(settings_path() + ".lock");
        QVERIFY(lock.open(QFile::WriteOnly));
        lock.close();
        QElapsedTimer since;
        since.start();
        SaveSetting("mail_client", "user", "joe");
        QVERIFY2(since.elapsed() < 10000, qPrintable(QString::number(since.elapsed())));
        QCOMPARE(GetSetting("mail_client", "user"), "joe");
        QVERIFY(!lock.exists());
    }

    void a_lock_that_is_held_is_waited_for()
    {
        SaveSetting("mail_client", "user", "jane");
        const pid_t owner = fork();
        if (owner == 0) {
            QLockFile lock(settings_path() + ".lock");
            const bool held = lock.lock();
            const timeval long_ago[2]{{1000000000, 0}, {1000000000, 0}};
            utimes(qPrintable(settings_path() + ".lock"), long_ago);
            usleep(300 * 1000); // the other one takes it away meanwhile, if it ever does
            const bool is_old = GetSetting("mail_client", "user") == "jane";
            lock.unlock();
            _exit(held && is_old ? 0 : 1);
        }
        const QString lock_path = settings_path() + ".lock";
        const QDateTime after_long_ago(QDate(2020, 1, 1), QTime());
        QTRY_VERIFY(QFile::exists(lock_path) && QFileInfo(lock_path).lastModified() < after_long_ago);
        SaveSetting("mail_client", "user", "joe");
        int status = 1;
        QCOMPARE(waitpid(owner, &status, 0), owner);
        QVERIFY(WIFEXITED(status) && WEXITSTATUS(status) == 0);
        QCOMPARE(GetSetting("mail_client", "user"), "joe");
    }

    // Killed anywhere while a group is written: all old or all new, and never readable to others.
    void a_kill_leaves_no_half_written_group()
    {
        mail::client_settings before;
        before.configured = true;
        before.kind = mail::client_kind::imap;
        before.incoming.host = "old.example.org";
        before.from = "old@example.org";
        bool lived = false;
        for (int number = 1; !lived; ++number) {
            QVERIFY(number < 100);
            mail::write_client_settings(before);
            const pid_t child = fork();
            if (child == 0) {
                umask(0);
                die_before_disk_call(number);
                mail::write_client_settings(everything_set());
                _exit(0);
            }
            int status = 0;
            waitpid(child, &status, 0);
            QFile::remove(settings_path() + ".lock"); // Qt waits half a minute for an owner that died nameless
            lived = WIFEXITED(status);
            const mail::client_settings found = mail::read_client_settings();
            const bool is_new = found.kind == mail::client_kind::pop3;
            QCOMPARE(found.incoming.host, is_new ? "pop.example.org" : "old.example.org");
            QCOMPARE(found.from, is_new ? "shop@example.org" : "old@example.org");
            QVERIFY(!lived || is_new);
            QVERIFY(!(QFile::permissions(settings_path()) & (QFile::ReadGroup | QFile::ReadOther)));
        }
    }
};

QTEST_GUILESS_MAIN(mail_settings_test)
#include "mail_settings_test.moc"
