// An mbox file under the verbs of the mail client that reads and leaves: where mails begin, and what is read of them.
// Other programs that write to the file: mbox_changes_test.cpp.
#include "platform/network.h"
#include "platform/outbox.h"
#include "platform/real/mail_session/from_line.h"
#include "support/maildir_files.h"
#include "support/mbox_folder.h"
#include <QDateTime>

class mbox_test : public QObject {
    Q_OBJECT
private slots:
    void a_mail_is_read();
    void dates_of_from_lines_data();
    void dates_of_from_lines();
    void mails_are_divided_data();
    void mails_are_divided();
    void marks_before_from_are_taken_away();
    void a_content_length_is_not_trusted();
    void a_mail_over_the_edge_of_a_piece_is_found();
    void lines_of_megabytes_and_zero_bytes_are_read();
    void what_cannot_be_opened_is_told_data();
    void what_cannot_be_opened_is_told();
    void a_reply_goes_to_the_sender_as_the_first_recipient();
    void places_that_are_none_fail();
    void with_folders_it_has_no_messages_and_composes();
};

void mbox_test::a_mail_is_read()
{
    mbox_folder box;
    box.write(from_ann + "To: Shop <orders@example.org>, b@example.org\nFrom: Ann <ann@example.net>\n"
                         "Subject: =?utf-8?Q?Gr=C3=BC=C3=9Fe?=\nDate: Fri, 2 Jan 2026 09:00:00 +0000\n"
                         "Content-Type: text/plain; charset=iso-8859-1\n\nName: J\xF6rg\nCity: Rome\n\n");
    box.sign_on();
    QCOMPARE(box.messages->MsgCount(), 1);
    const read_message read = box.at(0);
    QCOMPARE(read.recipients, QString("orders@example.org; b@example.org"));
    QCOMPARE(read.subject, QString("Grüße"));
    QCOMPARE(read.sender, QString("ann@example.net"));
    QCOMPARE(read.text, QString("Name: Jörg\nCity: Rome\n"));
    QCOMPARE(read.received, QDateTime(QDate(2026, 1, 1), QTime(13, 0, 5), Qt::UTC));
}

void mbox_test::dates_of_from_lines_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QDateTime>("date");
    const QDateTime date(QDate(2026, 1, 2), QTime(13, 4, 5), Qt::UTC);
    const QDateTime minute(QDate(2026, 1, 2), QTime(13, 4, 0), Qt::UTC);
    QTest::newRow("as the C library writes it") << QByteArray("From a@b Fri Jan  2 13:04:05 2026") << date;
    QTest::newRow("a day of two digits") << QByteArray("From a@b Fri Jan 02 13:04:05 2026") << date;
    QTest::newRow("without seconds") << QByteArray("From a@b Fri Jan  2 13:04 2026") << minute;
    QTest::newRow("a zone before the year") << QByteArray("From a@b Fri Jan  2 13:04:05 CET 2026") << date;
    QTest::newRow("an offset before the year") << QByteArray("From a@b Fri Jan  2 13:04:05 -0500 2026") << date;
    QTest::newRow("an offset behind") << QByteArray("From a@b Fri Jan  2 13:04:05 2026 +0100") << date;
    QTest::newRow("as header fields have it") << QByteArray("From a@b Fri, 02 Jan 2026 13:04:05 +0000") << date;
    QTest::newRow("a name with blanks") << QByteArray("From Ann Bee Fri Jan  2 13:04:05 2026") << date;
    QTest::newRow("a sender named like a weekday") << QByteArray("From sun Fri Jan  2 13:04:05 2026") << date;
    QTest::newRow("other capitals") << QByteArray("From a@b FRI JAN 2 13:04:05 2026") << date;
    QTest::newRow("from elsewhere") << QByteArray("From a@b Fri Jan  2 13:04:05 2026 remote from host") << date;
    QTest::newRow("no date") << QByteArray("From a@b") << QDateTime();
    QTest::newRow("no time") << QByteArray("From a@b Fri Jan  2 2026") << QDateTime();
    QTest::newRow("no such day") << QByteArray("From a@b Fri Feb 30 13:04:05 2026") << QDateTime();
    QTest::newRow("no such hour") << QByteArray("From a@b Fri Jan  2 25:04:05 2026") << QDateTime();
    QTest::newRow("a sentence") << QByteArray("From here on we meet on Friday") << QDateTime();
}

void mbox_test::dates_of_from_lines()
{
    QFETCH(QByteArray, line);
    QFETCH(QDateTime, date);
    QCOMPARE(mbox::date_of_from_line(line), date);
}

void mbox_test::mails_are_divided_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("subjects");
    const QStringList both{"One", "Two"};
    QTest::newRow("an empty file") << QByteArray() << QStringList();
    QTest::newRow("no mbox") << QByteArray("To: a@b\nSubject: One\n\nText\n\n") << QStringList();
    QTest::newRow("two mails") << mbox_mail("One") + mbox_mail("Two") << both;
    QTest::newRow("CR LF") << QByteArray(mbox_mail("One") + mbox_mail("Two")).replace("\n", "\r\n") << both;
    QTest::newRow("no empty line between") << mbox_mail("One").chopped(1) + mbox_mail("Two") << both;
    QTest::newRow("a sentence that begins with From")
        << mbox_mail("One", "Hi\n\nFrom here on: all is well\n") << QStringList{"One"};
    QTest::newRow("a From line that no header follows")
        << mbox_mail("One", "Hi\n\n" + from_ann + "is what it said\n") << QStringList{"One"};
    QTest::newRow("a marked From line") << mbox_mail("One", "Hi\n\n>" + from_ann + "To: x@y\n") << QStringList{"One"};
    QTest::newRow("a first mail without a date")
        << "From MAILER-DAEMON\nSubject: One\n\nText\n\n" + mbox_mail("Two") << both;
    QTest::newRow("a first mail in the old dress")
        << from_ann + ">From b\nSubject: One\n\nText\n\n" + mbox_mail("Two") << both;
}

void mbox_test::mails_are_divided()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, subjects);
    mbox_folder box;
    QCOMPARE(box.subjects_of(bytes), subjects);
}

void mbox_test::marks_before_from_are_taken_away()
{
    mbox_folder box;
    box.write(mbox_mail("One", ">From afar\n>>From farther\n> From a quote\n>Fromage\nFrom my side\n"));
    box.sign_on();
    QCOMPARE(box.at(0).text, QString("From afar\n>From farther\n> From a quote\n>Fromage\nFrom my side\n"));
}

void mbox_test::a_content_length_is_not_trusted()
{
    mbox_folder box;
    const QByteArray lying = mbox_mail("One").replace("Subject:", "Content-Length: 900\nSubject:");
    QCOMPARE(box.subjects_of(lying + mbox_mail("Two")), (QStringList{"One", "Two"}));
}

void mbox_test::a_mail_over_the_edge_of_a_piece_is_found()
{
    const qsizetype piece = 1024 * 1024;
    for (const qsizetype off : {-1100, -1025, -1024, -1023, -600, -46, -7, -6, -5, -1, 0, 1, 5}) {
        mbox_folder box;
        QByteArray first = mbox_mail("One", QByteArray("x\n").repeated(piece / 2));
        first = first.first(piece + off - 2) + "\n\n";
        QCOMPARE(box.subjects_of(first + mbox_mail("Two") + mbox_mail("Three")), (QStringList{"One", "Two", "Three"}));
        QCOMPARE(box.at(1).text, QString("Hello\n"));
    }
}

void mbox_test::lines_of_megabytes_and_zero_bytes_are_read()
{
    mbox_folder box;
    const QByteArray line(5 * 1024 * 1024, 'x');
    box.write(mbox_mail("One", line + "\n") + mbox_mail("Two", QByteArray("a\0b\n", 4)) + mbox_mail("Three"));
    box.sign_on();
    QCOMPARE(box.messages->MsgCount(), 3);
    QCOMPARE(box.at(0).text.size(), line.size() + 1);
    QCOMPARE(box.at(1).text, QString("ab\n"));
    QCOMPARE(box.at(2).subject, QString("Three"));
}

void mbox_test::what_cannot_be_opened_is_told_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<quint32>("number");
    QTest::newRow("no path") << QString() << quint32(net::trouble::not_configured);
    QTest::newRow("nothing there") << QString("/nowhere/inbox") << 76u;
    QTest::newRow("a folder") << QString("/tmp") << 76u;
    QTest::newRow("a device") << QString("/dev/null") << 76u;
}

void mbox_test::what_cannot_be_opened_is_told()
{
    QFETCH(QString, path);
    QFETCH(quint32, number);
    mbox_folder box;
    set_mbox(path);
    try {
        box.sign_on();
        QFAIL("it opened");
    } catch (const run_time_error &failure) {
        QCOMPARE(failure.number, number);
        QVERIFY2(failure.description.contains(path), qPrintable(failure.description));
    }
}

void mbox_test::a_reply_goes_to_the_sender_as_the_first_recipient()
{
    mbox_folder box;
    box.write(mbox_mail("One").replace("Subject:", "Message-ID: <1@x>\nReply-To: reply@example.net\nSubject:"));
    box.sign_on();
    box.messages->MsgIndex = 0;
    box.messages->Reply();
    QCOMPARE(box.messages->MsgIndex, -1);
    QCOMPARE(box.messages->RecipAddress(), QString("reply@example.net"));
    box.messages->set_MsgSubject("Thanks");
    box.messages->set_MsgNoteText("Bye\n");
    box.messages->Send();
    const auto kept = outbox::contents();
    QCOMPARE(kept.size(), size_t(1));
    QVERIFY(kept[0].Kind == outbox::mail_kind::answer);
    QCOMPARE(kept[0].SendingAccount, QString("orders@example.org"));
    QCOMPARE(kept[0].To, QStringList{"reply@example.net"});
    const QByteArray bytes = bytes_of_file(box.path("outbox") + '/' + kept[0].id + ".eml");
    QVERIFY2(bytes.contains("In-Reply-To: <1@x>") && bytes.contains("Auto-Submitted: auto-replied"), bytes.constData());
    box.messages->MsgIndex = 0;
    QCOMPARE(box.messages->MsgSubject(), QString("One"));
}

void mbox_test::places_that_are_none_fail()
{
    mbox_folder box;
    box.write(mbox_mail("One"));
    box.sign_on();
    for (const int index : {1, -2, 1000000}) {
        box.messages->MsgIndex = index;
        QCOMPARE(failure_of_call([&] { box.messages->MsgSubject(); }), 9u);
        QCOMPARE(failure_of_call([&] { box.messages->MsgNoteText(); }), 9u);
        QCOMPARE(failure_of_call([&] { box.messages->Reply(); }), 9u);
    }
}

void mbox_test::with_folders_it_has_no_messages_and_composes()
{
    mbox_folder box;
    SaveSetting("mail_client", "kind", "imap");
    box.sign_on();
    QCOMPARE(box.messages->MsgCount(), 0);
    box.messages->Compose();
    box.messages->set_RecipAddress("bob@example.net");
    box.messages->set_MsgSubject("Hello");
    box.messages->Send();
    box.sign_off();
    const auto kept = outbox::contents();
    QCOMPARE(kept.size(), size_t(1));
    QVERIFY(kept[0].Kind == outbox::mail_kind::single);
    QCOMPARE(kept[0].To, QStringList{"bob@example.net"});
}

QTEST_GUILESS_MAIN(mbox_test)
#include "mbox_test.moc"
