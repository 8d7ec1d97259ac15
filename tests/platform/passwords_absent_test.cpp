// Passwords on a desktop whose message bus knows no keyring: each question is refused at once. A keyring that is
// silent: passwords_waiting_test.cpp.
#include "platform/passwords.h"
#include "support/open_keyring.h"
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>

using passwords::of;

class passwords_absent_test : public QObject {
    Q_OBJECT
private slots:
    void who_is_told_may_read_at_once()
    {
        const QObject screen;
        QElapsedTimer since;
        qint64 took = -1;
        const bool asked = passwords::ask(&screen, [&] {
            since.start();
            QCOMPARE(passwords::read(of::mailbox), "");
            QCOMPARE(passwords::read(of::sending), "");
            took = since.elapsed();
        });
        QVERIFY(asked);
        QTRY_VERIFY_WITH_TIMEOUT(took >= 0, 20000);
        QVERIFY2(took < 2000, qPrintable(QString::number(took))); // nobody is waited for
    }

    void a_password_goes_into_the_file()
    {
        QVERIFY(passwords::save(of::mailbox, "the wording") == passwords::place::settings_file);
        QCOMPARE(passwords::read(of::mailbox), "the wording");
    }
};

int main(int argc, char **argv)
{
    start_again_on_empty_bus(argv);
    QCoreApplication application(argc, argv);
    passwords_absent_test test;
    return QTest::qExec(&test, argc, argv);
}
#include "passwords_absent_test.moc"
