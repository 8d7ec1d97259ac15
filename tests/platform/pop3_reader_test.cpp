// What a POP3 server says, from bytes that come in any pieces; and its listings.
#include "platform/real/mail_session/pop3_listing.h"
#include "platform/real/mail_session/pop3_reader.h"
#include <QTest>

using namespace pop3;

namespace {

// Fed byte by byte and in one piece: both must give the same.
QByteArrayList answers_to(const QByteArray &bytes, form wanted, qsizetype keep, bool in_one_piece)
{
    answer_reader reader;
    QByteArrayList all;
    const qsizetype step = in_one_piece ? qMax<qsizetype>(1, bytes.size()) : 1;
    for (qsizetype at = 0; at < bytes.size(); at += step) {
        reader.add(QByteArrayView(bytes).sliced(at, step));
        while (const std::optional<answer> said = reader.next(wanted, keep)) {
            all += (said->said == fate::yes  ? "yes|"
                    : said->said == fate::no ? "no|"
                                             : "?|") +
                   said->words + '|' + said->lines;
            if (said->said == fate::not_understood)
                return all;
        }
    }
    return all;
}

QByteArrayList keys_of(const std::vector<listed_mail> &mails)
{
    QByteArrayList keys;
    for (const listed_mail &mail : mails)
        keys += QByteArray::number(mail.number) + '=' + mail.key;
    return keys;
}

}

class pop3_reader_test : public QObject {
    Q_OBJECT
private slots:
    void answers_data();
    void answers();
    void a_line_without_end_is_cut_and_does_not_grow();
    void listings_data();
    void listings();
    void a_very_long_id_is_known_by_its_hash();
    void words_for_the_user_are_one_clean_line();
};

void pop3_reader_test::answers_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("many");
    QTest::addColumn<QByteArrayList>("answers");
    const auto row = [](const char *name, const QByteArray &bytes, bool many, const QByteArrayList &all) {
        QTest::newRow(name) << bytes << many << all;
    };
    row("one line", "+OK hello\r\n", false, {"yes|hello|"});
    row("a yes without words", "+OK\r\n", false, {"yes||"});
    row("a bare line end", "+OK hello\n", false, {"yes|hello|"});
    row("a no", "-ERR [AUTH] wrong\r\n", false, {"no|[AUTH] wrong|"});
    row("a no where many lines were wanted", "-ERR gone\r\n+OK\r\na\r\n.\r\n", true, {"no|gone|", "yes||a\n"});
    row("many lines", "+OK 2\r\n1 a\r\n2 b\r\n.\r\n", true, {"yes|2|1 a\n2 b\n"});
    row("no lines", "+OK\r\n.\r\n", true, {"yes||"});
    row("dots undone", "+OK\r\n..\r\n...a\r\n.b\r\nc.\r\n.\r\n", true, {"yes||.\n..a\nb\nc.\n"});
    row("a CR within a line stays", "+OK\r\na\rb\r\n.\r\n", true, {"yes||a\rb\n"});
    row("two answers in one breath", "+OK\r\na\r\n.\r\n+OK\r\nb\r\n.\r\n", true, {"yes||a\n", "yes||b\n"});
    row("not whole", "+OK\r\na\r\n", true, {});
    row("nothing that is an answer", "* OK IMAP ready\r\n", false, {"?|* OK IMAP ready|"});
    row("a word that only begins so", "+OKAY\r\n", false, {"?|+OKAY|"});
    row("a zero byte", QByteArray("+OK\r\na\0b\r\n.\r\n", 13), true, {QByteArray("yes||a\0b\n", 9)});
    row("more than one keeps", "+OK\r\n0123456789\r\n0123456789\r\n01234567890123456789\r\n.\r\n+OK\r\na\r\n.\r\n",
        true, {"yes||0123456789\n0123456789\n01234567", "yes||a\n"});
}

void pop3_reader_test::answers()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, many);
    QFETCH(QByteArrayList, answers);
    const form wanted = many ? form::many_lines : form::one_line;
    QCOMPARE(answers_to(bytes, wanted, 30, true), answers);
    QCOMPARE(answers_to(bytes, wanted, 30, false), answers);
}

void pop3_reader_test::a_line_without_end_is_cut_and_does_not_grow()
{
    answer_reader reader;
    reader.add("+OK\r\n");
    const QByteArray piece(50000, 'x');
    for (int count = 0; count < 100; ++count) {
        reader.add(piece);
        QVERIFY(!reader.next(form::many_lines, 1000000));
    }
    reader.add("\r\n..y\r\n.\r\n");
    const std::optional<answer> said = reader.next(form::many_lines, 1000000);
    QVERIFY(said);
    QCOMPARE(said->lines.size(), 1000000);
    answer_reader first_line;
    first_line.add(piece);
    QVERIFY(first_line.next(form::one_line, 10)->said == fate::not_understood);
}

void pop3_reader_test::listings_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QByteArrayList>("keys");
    const auto row = [](const char *name, const QByteArray &lines, const QByteArrayList &keys) {
        QTest::newRow(name) << lines << keys;
    };
    row("nothing", "", {});
    row("as it should be", "1 aa\n2 bb\n", {"1=uaa", "2=ubb"});
    row("a gap", "1 aa\n7 bb\n", {"1=uaa", "7=ubb"});
    row("an id is missing", "1\n2 bb\n3 \n", {"1=", "2=ubb", "3="});
    row("an id stands twice", "1 aa\n2 aa\n3 bb\n", {"1=", "2=", "3=ubb"});
    row("a number stands twice", "1 aa\n1 bb\n", {"1=uaa"});
    row("numbers that are none", "0 aa\n-1 bb\nx cc\n99999999999 dd\n\n3 ee\n", {"3=uee"});
    row("other letters", "1 \xC3\xA4\xFF\n", {"1=u\xC3\xA4\xFF"});
    row("blanks within", "1 a b\n", {"1=ua b"});
    row("no end of line", "1 aa\n2 bb", {"1=uaa", "2=ubb"});
}

void pop3_reader_test::listings()
{
    QFETCH(QByteArray, lines);
    QFETCH(QByteArrayList, keys);
    QCOMPARE(keys_of(listing_in(lines, true)), keys);
}

void pop3_reader_test::a_very_long_id_is_known_by_its_hash()
{
    const QByteArray id(5000, 'i');
    const auto mails = listing_in("1 " + id + "a\n2 " + id + "b\n", true);
    QCOMPARE(mails.size(), size_t(2));
    QVERIFY(mails[0].key.size() < 100 && mails[1].key.size() < 100);
    QVERIFY(!mails[0].key.isEmpty() && mails[0].key != mails[1].key);
    QCOMPARE(listing_in("4 " + id + "a\n", true)[0].key, mails[0].key);
}

void pop3_reader_test::words_for_the_user_are_one_clean_line()
{
    answer said;
    said.words = "no\x01\x1b[31m \xFF" + QByteArray(1000, 'x');
    const QString words = words_for_user(said);
    QVERIFY(words.startsWith("no [31m"));
    QVERIFY(words.size() <= 300);
}

QTEST_GUILESS_MAIN(pop3_reader_test)
#include "pop3_reader_test.moc"
