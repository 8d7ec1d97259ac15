// The two registry reads, answered from the mail settings.
#include "platform/registry.h"
#include "platform/settings.h"
#include <QTest>

class registry_test : public QObject {
    Q_OBJECT
private slots:

    void the_mail_program_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("with_folders");
        QTest::newRow("nothing set") << "" << true;
        QTest::newRow("a Maildir") << "maildir" << true;
        QTest::newRow("IMAP") << "imap" << true;
        QTest::newRow("IMAP in capitals") << "IMAP" << true;
        QTest::newRow("POP3") << "pop3" << false;
        QTest::newRow("an mbox file") << "mbox" << false;
    }
    void the_mail_program()
    {
        QFETCH(QString, kind);
        QFETCH(bool, with_folders);
        SaveSetting("mail_client", "kind", kind);
        QVERIFY(registry_key_exists("mailto\\shell\\open\\command"));
        const QString value = registry_value("mailto\\shell\\open\\command");
        QCOMPARE(value.toUpper().contains("\\OUTLOOK.EXE"), with_folders);
        QVERIFY(!value.isEmpty());
        QVERIFY(!value.contains(QChar(0)));
        SaveSetting("mail_client", "kind", "");
    }

    void no_other_key_exists()
    {
        QVERIFY(!registry_key_exists("mailto\\shell"));
        QVERIFY(!registry_key_exists(""));
        QCOMPARE(registry_value("http\\shell\\open\\command"), "");
    }
};

QTEST_GUILESS_MAIN(registry_test)
#include "registry_test.moc"
