// Passwords beside a real keyring that does not answer, or answers late. One that does: passwords_keyring_test.cpp.
#include "platform/network.h"
#include "platform/passwords.h"
#include "platform/settings.h"
#include "support/keyring_site.h"
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QSettings>
#include <QTest>
#include <csignal>

using passwords::of;
using passwords::place;

class passwords_waiting_test : public QObject {
    Q_OBJECT
private slots:

    void initTestCase() { QVERIFY2(keyring_process() > 0, "gnome-keyring-daemon did not start"); }
    void cleanupTestCase() { kill(keyring_process(), SIGTERM); }

    void init() { begin_without_passwords(); }

    void a_keyring_that_does_not_answer()
    {
        passwords::save(of::mailbox, old_word);
        passwords::forget_remembered();
        passwords::set_longest_wait(short_wait_ms);
        QElapsedTimer since;
        since.start();
        {
            const stopped_keyring stopped;
            QCOMPARE(passwords::read(of::mailbox), "");
            QVERIFY(since.elapsed() < usual_wait_ms);
            passwords::set_longest_wait(usual_wait_ms);
            since.restart();
            QCOMPARE(passwords::read(of::mailbox), ""); // still asked: nobody waits twice
            QVERIFY(since.elapsed() < 1000);
        }
        QTRY_COMPARE(passwords::read(of::mailbox), old_word); // its late answer counts
    }

    void saving_beside_a_keyring_that_does_not_answer()
    {
        passwords::save(of::mailbox, old_word);
        const stopped_keyring stopped;
        passwords::set_longest_wait(short_wait_ms);
        QVERIFY(passwords::save(of::mailbox, new_word) == place::settings_file);
        QCOMPARE(passwords::read(of::mailbox), new_word);
    }

    // As one does that asks its user first.
    void a_keyring_that_takes_it_late()
    {
        passwords::set_longest_wait(short_wait_ms);
        {
            const stopped_keyring stopped;
            QVERIFY(passwords::save(of::mailbox, new_word) == place::settings_file);
        }
        QTRY_VERIFY(passwords::where(of::mailbox) == place::keyring);
        QVERIFY(!QSettings("brenmoorbiz").contains("mail_client/password"));
        passwords::forget_remembered();
        QCOMPARE(passwords::read(of::mailbox), new_word);
    }

    void what_comes_late_leaves_a_newer_password_alone()
    {
        passwords::set_longest_wait(short_wait_ms);
        {
            const stopped_keyring stopped;
            passwords::save(of::mailbox, old_word);
            SaveSetting("mail_client", "password", new_word);
        }
        passwords::forget_remembered();
        passwords::read(of::sending); // answered behind the late one
        QCOMPARE(passwords::read(of::mailbox), new_word);
        QVERIFY(passwords::where(of::mailbox) == place::settings_file);
    }

    void a_silent_keyring_is_waited_for_once()
    {
        const stopped_keyring stopped;
        passwords::set_longest_wait(short_wait_ms);
        passwords::read(of::mailbox);
        passwords::set_longest_wait(usual_wait_ms);
        QElapsedTimer since;
        since.start();
        passwords::read(of::sending);
        passwords::save(of::mailbox, new_word);
        passwords::save(of::sending, "");
        QVERIFY2(since.elapsed() < usual_wait_ms, qPrintable(QString::number(since.elapsed())));
    }

    void who_gives_up_waits_no_longer()
    {
        const stopped_keyring stopped;
        net::patience patience;
        patience.give_up = [] { return true; };
        const net::patience_scope in_force(patience);
        QElapsedTimer since;
        since.start();
        QCOMPARE(passwords::read(of::mailbox), "");
        QVERIFY2(since.elapsed() < usual_wait_ms, qPrintable(QString::number(since.elapsed())));
    }

    void asking_does_not_wait()
    {
        passwords::save(of::mailbox, old_word);
        passwords::forget_remembered();
        const QObject screen;
        int answers = 0;
        QVERIFY(passwords::ask(&screen, [&answers] { ++answers; }));
        QCOMPARE(answers, 0);
        QTRY_COMPARE(answers, 1);
        QCOMPARE(passwords::read(of::mailbox), old_word);
        QVERIFY(!passwords::ask(&screen, [&answers] { ++answers; })); // it is known now
    }

    void asking_a_silent_keyring_ends_too()
    {
        const stopped_keyring stopped;
        passwords::set_longest_wait(short_wait_ms);
        const QObject screen;
        auto gone = std::make_unique<QObject>();
        int answers = 0, answers_to_nobody = 0;
        QVERIFY(passwords::ask(gone.get(), [&answers_to_nobody] { ++answers_to_nobody; }));
        gone.reset();
        QVERIFY(passwords::ask(&screen, [&answers] { ++answers; }));
        QTRY_COMPARE(answers, 1);
        QCOMPARE(answers_to_nobody, 0);
        QCOMPARE(passwords::read(of::mailbox), ""); // nobody waits once more
    }
};

int main(int argc, char **argv)
{
    start_again_in_keyring(argv);
    QCoreApplication application(argc, argv);
    passwords_waiting_test test;
    return QTest::qExec(&test, argc, argv);
}
#include "passwords_waiting_test.moc"
