// Bytes of an IMAP server to answers, and their words; sets, folder names and moments. The fuzzer: fuzz/imap_fuzz.cpp.
#include "platform/network.h"
#include "platform/real/imap/fetched.h"
#include "platform/real/imap/modified_utf7.h"
#include "platform/real/imap/uid_set.h"
#include "platform/run_time_error.h"
#include <QTest>
#include <cstring>

namespace {

// Gives the bytes in pieces of that size, then fails as a closed connection does.
struct pieces {
    QByteArray bytes;
    qsizetype size;
    qsizetype at = 0;

    qsizetype operator()(char *buffer, qsizetype room)
    {
        const qsizetype count = qMin(qMin(size, room), bytes.size() - at);
        if (count == 0)
            throw net::failure(net::trouble::closed, {});
        memcpy(buffer, bytes.constData() + at, size_t(count));
        at += count;
        return count;
    }
};

quint32 failure_of(const QByteArray &bytes)
{
    imap::response_reader reader(pieces{bytes, 65536});
    try {
        while (true)
            reader.next();
    } catch (const run_time_error &failure) {
        return failure.number;
    }
}

}

class imap_reader_test : public QObject {
    Q_OBJECT
private slots:

    void answers_are_cut_at_their_ends_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArrayList>("answers");
        QTest::newRow("two lines") << QByteArray("* 1 EXISTS\r\nt1 OK done\r\n")
                                   << QByteArrayList{"* 1 EXISTS", "t1 OK done"};
        QTest::newRow("a line feed alone will do")
            << QByteArray("* 1 EXISTS\nt1 OK\n") << QByteArrayList{"* 1 EXISTS", "t1 OK"};
        QTest::newRow("a literal with line ends")
            << QByteArray("* 1 FETCH (BODY[] {6}\r\na\r\n\r\nb UID 5)\r\nt OK\r\n")
            << QByteArrayList{"* 1 FETCH (BODY[] {6}\r\na\r\n\r\nb UID 5)", "t OK"};
        QTest::newRow("an empty literal")
            << QByteArray("* 1 FETCH (BODY[] {0}\r\n)\r\n") << QByteArrayList{"* 1 FETCH (BODY[] {0}\r\n)"};
        QTest::newRow("two literals") << QByteArray("* LIST () {1}\r\n. {3}\r\na b\r\n")
                                      << QByteArrayList{"* LIST () {1}\r\n. {3}\r\na b"};
        QTest::newRow("free text that ends like a literal")
            << QByteArray("* OK look {5}\r\nt1 NO {9}\r\n") << QByteArrayList{"* OK look {5}", "t1 NO {9}"};
        QTest::newRow("no number in the braces")
            << QByteArray("* LIST {x}\r\n* 2 EXISTS\r\n") << QByteArrayList{"* LIST {x}", "* 2 EXISTS"};
        QTest::newRow("empty lines") << QByteArray("\r\n\r\n") << QByteArrayList{"", ""};
    }
    void answers_are_cut_at_their_ends()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QByteArrayList, answers);
        for (const qsizetype size : {1, 2, 3, 65536}) {
            imap::response_reader reader(pieces{bytes, size});
            for (const QByteArray &wanted : answers)
                QCOMPARE(reader.next().bytes.toByteArray(), wanted);
        }
    }

    void a_huge_literal_is_cut_and_the_next_answer_is_met()
    {
        const qsizetype size = 40 * 1024 * 1024;
        const QByteArray bytes = "* 1 FETCH (BODY[] {" + QByteArray::number(size) + "}\r\n" + QByteArray(size, 'x') +
                                 " UID 7)\r\n* 2 EXISTS\r\n";
        imap::response_reader reader(pieces{bytes, 100000});
        const imap::response answer = reader.next();
        const imap::fetched_mail mail = imap::read_fetched(answer, imap::read_answer(answer));
        QCOMPARE(mail.uid, 7u);
        QCOMPARE(mail.body->size(), imap::most_literal_bytes);
        QCOMPARE(reader.next().bytes.toByteArray(), QByteArray("* 2 EXISTS"));
    }

    void what_no_server_sends_is_a_failure_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<quint32>("failure");
        const auto not_understood = quint32(net::trouble::not_understood);
        QTest::newRow("a line without end") << QByteArray(9 * 1024 * 1024, 'x') << not_understood;
        QTest::newRow("a size beyond all numbers")
            << QByteArray("* 1 FETCH {99999999999999999999999}\r\n") << not_understood;
        QTest::newRow("literals without number") << "* LIST " + QByteArray("{0}\r\n").repeated(3000) << not_understood;
        QTest::newRow("the end in the middle")
            << QByteArray("* 1 FETCH (BODY[] {100}\r\nabc") << quint32(net::trouble::closed);
    }
    void what_no_server_sends_is_a_failure()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(quint32, failure);
        QCOMPARE(failure_of(bytes), failure);
    }

    void a_fetched_mail_is_read_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<quint32>("uid");
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<bool>("has_body");
        QTest::newRow("as Dovecot writes it")
            << QByteArray("* 1 FETCH (UID 5 BODY[HEADER.FIELDS (TO SUBJECT)] {7}\r\nTo: a\r\n)\r\n") << 5u
            << QByteArray("To: a\r\n") << false;
        QTest::newRow("field names in quotes, small letters")
            << QByteArray("* 1 fetch (body[header.fields (\"To\" \"Subject\")] \"To: a\" uid 6)\r\n") << 6u
            << QByteArray("To: a") << false;
        QTest::newRow("escapes") << QByteArray("* 1 FETCH (BODY[HEADER.FIELDS (TO)] \"a\\\"b\\\\\" UID 7)\r\n") << 7u
                                 << QByteArray("a\"b\\") << false;
        QTest::newRow("the body of a mail that is gone")
            << QByteArray("* 2 FETCH (UID 2 BODY[] NIL)\r\n") << 2u << QByteArray() << false;
        QTest::newRow("an empty mail") << QByteArray("* 2 FETCH (UID 2 BODY[] \"\")\r\n") << 2u << QByteArray() << true;
        QTest::newRow("a part of it") << QByteArray("* 2 FETCH (UID 2 BODY[]<0> {2}\r\nab)\r\n") << 2u << QByteArray()
                                      << true;
        QTest::newRow("items that nobody asked for")
            << QByteArray("* 2 FETCH (FLAGS (\\Seen) MODSEQ (12) X-ODD ((\"a\" NIL) {2}\r\n)() UID 9)\r\n") << 9u
            << QByteArray() << false;
        QTest::newRow("flags alone") << QByteArray("* 2 FETCH (FLAGS ())\r\n") << 0u << QByteArray() << false;
        QTest::newRow("a UID too big") << QByteArray("* 2 FETCH (UID 4294967296)\r\n") << 0u << QByteArray() << false;
    }
    void a_fetched_mail_is_read()
    {
        QFETCH(QByteArray, line);
        QFETCH(quint32, uid);
        QFETCH(QByteArray, head);
        QFETCH(bool, has_body);
        imap::response_reader reader(pieces{line, 65536});
        const imap::response answer = reader.next();
        const imap::fetched_mail mail = imap::read_fetched(answer, imap::read_answer(answer));
        QCOMPARE(mail.uid, uid);
        QCOMPARE(mail.head.value_or(QByteArrayView()).toByteArray(), head);
        QCOMPARE(mail.body.has_value(), has_body);
    }

    // Noise inside a literal shows behind it only: an answer is taken whole or not at all.
    void an_answer_that_is_not_whole_is_a_failure_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("no list") << QByteArray("* 2 FETCH UID 5\r\n");
        QTest::newRow("brackets without end")
            << "* 2 FETCH (" + QByteArray(100000, '(') + QByteArray(1000, '[') + " UID 5\r\n";
        QTest::newRow("no bracket behind a literal") << QByteArray("* 2 FETCH (UID 2 BODY[] {2}\r\nab\r\n");
        QTest::newRow("more behind the bracket") << QByteArray("* 2 FETCH (UID 2 BODY[] {2}\r\nab)x\r\n");
    }
    void an_answer_that_is_not_whole_is_a_failure()
    {
        QFETCH(QByteArray, line);
        imap::response_reader reader(pieces{line, 65536});
        const imap::response answer = reader.next();
        bool failed = false;
        try {
            imap::read_fetched(answer, imap::read_answer(answer));
        } catch (const run_time_error &failure) {
            failed = net::is(failure, net::trouble::not_understood);
        }
        QVERIFY(failed);
    }

    void moments_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<qint64>("seconds"); // -1: none
        QTest::newRow("east of Greenwich") << QByteArray("01-Jan-2026 13:00:00 +0100") << qint64(1767268800);
        QTest::newRow("west, one digit") << QByteArray(" 1-jan-2026 04:30:00 -0730") << qint64(1767268800);
        QTest::newRow("no such day") << QByteArray("31-Feb-2026 13:00:00 +0100") << qint64(-1);
        QTest::newRow("no zone") << QByteArray("01-Jan-2026 13:00:00") << qint64(-1);
        QTest::newRow("nothing") << QByteArray() << qint64(-1);
    }
    void moments()
    {
        QFETCH(QByteArray, text);
        QFETCH(qint64, seconds);
        QCOMPARE(imap::moment_in(text).value_or(-1), seconds);
    }

    void folder_names_go_there_and_back_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("wire");
        QTest::newRow("plain") << "Tessaly_Inbox" << QByteArray("Tessaly_Inbox");
        QTest::newRow("an ampersand") << "a & b" << QByteArray("a &- b");
        QTest::newRow("an umlaut") << QString::fromUtf8("B\xC3\xBC"
                                                        "cher")
                                   << QByteArray("B&APw-cher");
        QTest::newRow("Japanese") << QString::fromUtf8("\xE5\x8F\xB0\xE5\x8C\x97") << QByteArray("&U,BTFw-");
        QTest::newRow("outside the first plane") << QString::fromUtf8("\xF0\x9F\x93\xAC") << QByteArray("&2D3c7A-");
    }
    void folder_names_go_there_and_back()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, wire);
        QCOMPARE(imap::to_modified_utf7(name), wire);
        QCOMPARE(imap::from_modified_utf7(wire), name);
    }

    void folder_names_that_are_none_are_taken_as_utf8()
    {
        QCOMPARE(imap::from_modified_utf7("a&b"), "a&b");
        QCOMPARE(imap::from_modified_utf7("a&!-"), "a&!-");
        QCOMPARE(imap::from_modified_utf7("B\xC3\xBC"), QString::fromUtf8("B\xC3\xBC"));
    }

    void a_search_result_with_stray_brackets_comes_to_an_end()
    {
        imap::response_reader reader(pieces{"* ESEARCH (TAG \"t1\") UID ) (\"a\" MIN) \"x\" \t ALL 3:5,7\r\n", 65536});
        const imap::response from = reader.next();
        const std::vector<imap::uid_range> found = imap::searched_uids(from, imap::read_answer(from));
        QVERIFY((found == std::vector<imap::uid_range>{{3, 5}, {7, 7}}));
    }

    void a_header_in_quotes_outlives_its_reading()
    {
        imap::response_reader reader(
            pieces{"* 1 FETCH (UID 5 BODY[HEADER.FIELDS (TO)] \"To: \\\"Ann\\\" x\")\r\n", 65536});
        const imap::response from = reader.next();
        const imap::fetched_mail mail = imap::read_fetched(from, imap::read_answer(from));
        QVERIFY(mail.head && !mail.unescaped.empty());
        QCOMPARE(mail.head->data(), mail.unescaped.back().constData()); // not what is gone by now
        QCOMPARE(mail.head->toByteArray(), QByteArray("To: \"Ann\" x"));
    }

    void sets_of_uids()
    {
        QCOMPARE(imap::uid_set({}), QByteArray());
        QCOMPARE(imap::uid_set({1, 2, 3, 7, 9, 10}), QByteArray("1:3,7,9:10"));
        const std::vector<imap::uid_range> read = imap::ranges_in("9,3:1,x,2:5,*,0,4294967296");
        QVERIFY((read == std::vector<imap::uid_range>{{1, 5}, {9, 9}}));
        QVERIFY(imap::holds(read, 5) && imap::holds(read, 9));
        QVERIFY(!imap::holds(read, 6) && !imap::holds(read, 10) && !imap::holds({}, 1));
    }
};

QTEST_GUILESS_MAIN(imap_reader_test)
#include "imap_reader_test.moc"
