// An IMAP mailbox that changes under the program: the server goes away between two walks, mails come and go in the
// middle of one, the folder is made anew. What moves: imap_moves_test.cpp.
#include "support/imap_box.h"
#include "support/loopback.h"
#include "support/wire_proxy.h"
#include <QDir>
#include <QTest>

namespace {

void in_another_program(const imap_box &box, const QByteArray &command)
{
    raw_connection other(box.server.imap_port);
    other.line();
    for (const QByteArray &line : {QByteArray("LOGIN ann \"apple tree\""), QByteArray("SELECT INBOX"), command}) {
        other.send("x " + line + "\r\n");
        const QByteArray said = other.up_to("x ");
        QVERIFY2(said.contains("x OK"), said.constData());
    }
}

}

class imap_changes_test : public QObject {
    Q_OBJECT
private slots:
    void the_server_was_away_between_two_walks_data();
    void the_server_was_away_between_two_walks();
    void a_line_that_died_silently();
    void mails_go_and_come_in_the_middle_of_a_walk();
    void files_vanish_in_the_middle_of_a_walk();
    void flags_change_in_the_middle_of_a_walk();
    void a_folder_made_anew_between_two_walks();
};

void imap_changes_test::the_server_was_away_between_two_walks_data()
{
    QTest::addColumn<bool>("says_goodbye");
    QTest::newRow("it was stopped") << true;
    QTest::newRow("it was killed") << false;
}

void imap_changes_test::the_server_was_away_between_two_walks()
{
    QFETCH(bool, says_goodbye);
    imap_box box;
    box.put_many(3);
    QCOMPARE(box.subjects(), QStringList({"0", "1", "2"}));
    says_goodbye ? box.server.stop() : box.server.kill();
    box.server.start();
    box.put("after", noon + 9);
    QCOMPARE(box.subjects(), QStringList({"0", "1", "2", "after"}));
    QCOMPARE(box.failures(), QStringList());
}

void imap_changes_test::a_line_that_died_silently()
{
    imap_box box;
    wire_proxy proxy(box.port);
    box.port = proxy.port;
    box.put_many(3);
    box.open();
    const auto target = box.inbox->add("Tessaly_Inbox");
    QCOMPARE(box.subjects().size(), 3);
    proxy.reset_connections();
    QCOMPARE(box.move_all(*target), 3);
    QCOMPARE(box.failures(), QStringList());
    QCOMPARE(box.in_folder().size(), 3);
    QCOMPARE(proxy.counts().connections, 2);
}

// One that went is not met if it was not read yet; one that came is met by the next walk.
void imap_changes_test::mails_go_and_come_in_the_middle_of_a_walk()
{
    imap_box box;
    box.put_many(1200); // more than are asked for at a time
    QStringList seen;
    for (outlook::MailItem *item = box.find(); item; item = box.items->FindNext()) {
        seen += item->Subject();
        if (seen.size() == 1) {
            in_another_program(box, "UID STORE 1200 +FLAGS (\\Deleted)");
            in_another_program(box, "EXPUNGE");
            box.put("came", noon + 5000);
        }
    }
    QVERIFY(seen.size() == 1199 || seen.size() == 1200); // the last one may have been on its way
    QCOMPARE(seen.mid(0, 1199).last(), QString("1198"));
    QCOMPARE(box.failures(), QStringList());
    const QStringList again = box.subjects();
    QCOMPARE(again.size(), 1200);
    QCOMPARE(again.last(), QString("came"));
    QVERIFY(!again.contains("1199"));
    QCOMPARE(box.items->Count(), 1200);
}

void imap_changes_test::files_vanish_in_the_middle_of_a_walk()
{
    imap_box box;
    box.put_many(4);
    box.open();
    QCOMPARE(box.items->Count(), 4);
    const QDir maildir(box.server.maildir("ann"));
    const QString second = box.in_inbox().value(1);
    QVERIFY(QFile::remove(maildir.filePath(second)));
    const QStringList seen = box.subjects();
    QVERIFY2(seen == QStringList({"0", "2", "3"}), qPrintable(seen.join(u',')));
    QCOMPARE(box.subjects(), QStringList({"0", "2", "3"}));
}

void imap_changes_test::flags_change_in_the_middle_of_a_walk()
{
    imap_box box;
    box.put_many(3);
    QStringList seen;
    for (outlook::MailItem *item = box.find(); item; item = box.items->FindNext()) {
        seen += item->Subject();
        in_another_program(box, "STORE 1:* +FLAGS (\\Seen \\Flagged)");
        in_another_program(box, "STORE 1:* -FLAGS (\\Flagged)");
    }
    QCOMPARE(seen, QStringList({"0", "1", "2"}));
    QCOMPARE(box.subjects(), seen);
    QCOMPARE(box.failures(), QStringList());
}

// Its mails have the numbers of those that were there before.
void imap_changes_test::a_folder_made_anew_between_two_walks()
{
    imap_box box;
    box.put("old one");
    box.put("old two", noon + 1);
    QCOMPARE(box.subjects(), QStringList({"old one", "old two"}));
    box.server.stop();
    const QDir maildir(box.server.maildir("ann"));
    for (const QString &mail : box.in_inbox())
        QVERIFY(QFile::remove(maildir.filePath(mail)));
    for (const QString &name : maildir.entryList({"dovecot*"}, QDir::Files))
        QVERIFY(QFile::remove(maildir.filePath(name)));
    box.server.start();
    box.put("new one", noon + 60);
    box.put("new two", noon + 61);
    QCOMPARE(box.subjects(), QStringList({"new one", "new two"}));
    box.start_anew(); // with the cache of before
    QCOMPARE(box.subjects(), QStringList({"new one", "new two"}));
    QCOMPARE(box.failures(), QStringList());
}

QTEST_GUILESS_MAIN(imap_changes_test)
#include "imap_changes_test.moc"
