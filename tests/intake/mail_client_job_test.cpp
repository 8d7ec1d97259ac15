// The driver's job that tries out the mail client, and its timeout.
#include "platform/passwords.h"
#include "platform/settings.h"
#include "support/dovecot.h"
#include "support/driver.h"
#include "support/intake_site.h"
#include "support/scripted_server.h"
#include "support/smtp_sink.h"
#include <QElapsedTimer>
#include <QFile>
#include <QSettings>
#include <QTest>

namespace {

void set(const char *key, const QString &value)
{
    SaveSetting("mail_client", QLatin1String(key), value);
}

void set_imap(quint16 port)
{
    set("kind", "imap");
    set("host", "127.0.0.1");
    set("port", QString::number(port));
    set("security", "none");
    set("user", "ann");
}

}

class mail_client_job_test : public QObject {
    Q_OBJECT
private slots:

    void init() { QFile::remove(QSettings("brenmoorbiz").fileName()); }

    void a_maildir_that_keeps_what_is_sent()
    {
        const intake_site site;
        set("kind", "maildir");
        set("maildir", site.maildir());
        const driver_run run = run_driver_job("test-mail-client", site.folder.path());
        QVERIFY2(run.status == 0, qPrintable(run.output + run.errors));
        QVERIFY2(run.output.contains("good     Maildir: "), qPrintable(run.output));
        QVERIFY2(run.output.contains("warning  Sending: Nothing goes out"), qPrintable(run.output));
    }

    void a_maildir_that_is_not_there()
    {
        const intake_site site;
        set("kind", "maildir");
        set("maildir", "/nowhere/Maildir");
        const driver_run run = run_driver_job("test-mail-client", site.folder.path());
        QCOMPARE(run.status, 1);
        QVERIFY2(run.output.contains("failed   Maildir: There is no folder /nowhere/Maildir"), qPrintable(run.output));
    }

    // The password lies in the settings file here; it is in nothing that is printed or logged.
    void a_mailbox_and_a_sending_server()
    {
        const intake_site site;
        dovecot_server server;
        smtp_options options;
        options.user = "ann";
        options.password = "apple tree";
        const smtp_sink sink(options);
        set_imap(server.imap_port);
        set("send", "smtp");
        set("smtp_host", "127.0.0.1");
        set("smtp_port", QString::number(sink.port()));
        set("smtp_security", "none");
        set("from", "shop@example.org");
        passwords::save(passwords::of::mailbox, "apple tree");
        const driver_run run = run_driver_job("test-mail-client", site.folder.path(), {"--timeout", "10"});
        QVERIFY2(run.status == 0, qPrintable(run.output + run.errors));
        QVERIFY2(run.output.contains("good     Signing in: "), qPrintable(run.output));
        QVERIFY2(run.output.contains("good     Sending address: "), qPrintable(run.output));
        QVERIFY(!(run.output + run.errors + site.log_text()).contains("apple tree"));

        passwords::save(passwords::of::sending, "WRONG-word");
        const driver_run refused = run_driver_job("test-mail-client", site.folder.path());
        QCOMPARE(refused.status, 1);
        QVERIFY2(refused.output.contains("failed   Signing in to send: "), qPrintable(refused.output));
        QVERIFY(!(refused.output + refused.errors + site.log_text()).contains("WRONG-word"));
    }

    void the_timeout_ends_the_waiting()
    {
        const intake_site site;
        scripted_server silent(script{scripted::wait_for_end()});
        set_imap(silent.port);
        QElapsedTimer since;
        since.start();
        const driver_run run = run_driver_job("test-mail-client", site.folder.path(), {"--timeout", "1"});
        QCOMPARE(run.status, 1);
        QVERIFY2(run.output.contains("does not answer"), qPrintable(run.output));
        QVERIFY(since.elapsed() < 6000);
    }

    void a_timeout_that_is_none_data()
    {
        QTest::addColumn<QString>("timeout");
        QTest::newRow("letters") << "soon";
        QTest::newRow("nothing to wait for") << "0";
        QTest::newRow("negative") << "-1";
        QTest::newRow("too long for a number") << "99999999";
    }
    void a_timeout_that_is_none()
    {
        QFETCH(QString, timeout);
        const intake_site site;
        const driver_run run = run_driver_job("test-mail-client", site.folder.path(), {"--timeout=" + timeout});
        QCOMPARE(run.status, 1);
        QVERIFY2(run.errors.contains("number of seconds"), qPrintable(run.errors));
    }
};

QTEST_GUILESS_MAIN(mail_client_job_test)
#include "mail_client_job_test.moc"
