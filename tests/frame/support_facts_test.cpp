// The facts for whoever helps: one a line, whatever is there or missing, and nothing that is the user's own.
#include "frame/support_facts.h"
#include "platform/settings.h"
#include "support/intake_site.h"
#include "support/plain_files.h"

#include <QFile>
#include <QSysInfo>
#include <QtTest/QTest>

namespace {

QString fact(const QString &name)
{
    for (const QString &line : support_facts().split(u'\n'))
        if (line.startsWith(name + ": "))
            return line.sliced(name.size() + 2);
    return "(no line)";
}

}

class support_facts_test : public QObject {
    Q_OBJECT
private slots:
    void a_line_a_fact_in_their_order()
    {
        const intake_site site;
        const QStringList lines = support_facts().split(u'\n');
        QCOMPARE(lines.size(), 7);
        QCOMPARE(lines[0], "Tessaly " TESSALY_VERSION);
        QVERIFY2(lines[1].startsWith("System: " + QSysInfo::prettyProductName() + ", "), qPrintable(lines[1]));
        QVERIFY2(lines[1].endsWith(", " + QSysInfo::currentCpuArchitecture()), qPrintable(lines[1]));
        QCOMPARE(lines[2], QString("Qt ") + qVersion());
        QCOMPARE(lines[3], "Folder: " + site.folder.path());
        QVERIFY2(lines[4].startsWith("Store: "), qPrintable(lines[4]));
        QVERIFY2(lines[5].startsWith("Error log: "), qPrintable(lines[5]));
        QVERIFY2(lines[6].startsWith("Mail client: "), qPrintable(lines[6]));
    }

    void sizes_are_rounded_up_to_whole_kb_data()
    {
        QTest::addColumn<int>("bytes");
        QTest::addColumn<QString>("words");
        QTest::newRow("empty") << 0 << "0 KB";
        QTest::newRow("one byte") << 1 << "1 KB";
        QTest::newRow("a whole KB") << 1024 << "1 KB";
        QTest::newRow("a byte more") << 1025 << "2 KB";
    }

    void sizes_are_rounded_up_to_whole_kb()
    {
        QFETCH(int, bytes);
        QFETCH(QString, words);
        const intake_site site;
        QCOMPARE(error_log_path(), site.folder.filePath("errorlog.txt"));
        put_file(error_log_path(), QByteArray(bytes, 'x'));
        QCOMPARE(fact("Error log"), "errorlog.txt, " + words);
    }

    void what_is_missing_is_said_to_be()
    {
        const intake_site site;
        QCOMPARE(fact("Error log"), "errorlog.txt, not there");
        QVERIFY(fact("Store").endsWith(" KB"));
        QVERIFY(QFile::remove(site.folder.filePath("mailapp.mdb")));
        QCOMPARE(fact("Store"), "mailapp.mdb, not there");
    }

    void the_mail_client_in_force_is_named()
    {
        const intake_site site;
        SaveSetting("mail_client", "kind", "imap");
        SaveSetting("mail_client", "host", "imap.shop.example");
        SaveSetting("mail_client", "send", "smtp");
        SaveSetting("mail_client", "smtp_host", "smtp.shop.example");
        QCOMPARE(fact("Mail client"),
                 "In force now: mail is fetched from imap.shop.example (IMAP) and what is sent goes "
                 "out by smtp.shop.example.");
    }

    void no_password_user_or_stored_mail_is_told()
    {
        intake_site site;
        site.add_account("orders", "secret@shop.example");
        site.add_stored_mail("orders", "Roses", "four dozen");
        SaveSetting("mail_client", "kind", "imap");
        SaveSetting("mail_client", "host", "imap.shop.example");
        SaveSetting("mail_client", "user", "ann-the-owner");
        SaveSetting("mail_client", "password", "swordfish");
        SaveSetting("mail_client", "smtp_password", "haddock");
        const QString told = support_facts();
        for (const char *own : {"swordfish", "haddock", "ann-the-owner", "secret@shop.example", "Roses", "four dozen"})
            QVERIFY2(!told.contains(own), own);
        QVERIFY(told.contains("imap.shop.example"));
    }
};

QTEST_GUILESS_MAIN(support_facts_test)
#include "support_facts_test.moc"
