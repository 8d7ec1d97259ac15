// Mails and addresses as they stand on the wire, and answers out of bytes that come in pieces.
#include "platform/real/smtp/answer_reader.h"
#include "platform/real/smtp/wire_form.h"
#include <QTest>

class smtp_wire_form_test : public QObject {
    Q_OBJECT
private slots:
    void lines_are_stuffed_data();
    void lines_are_stuffed();
    void an_address_is_written_data();
    void an_address_is_written();
    void an_answer_is_read_in_any_pieces_data();
    void an_answer_is_read_in_any_pieces();
    void words_are_one_bounded_line();
};

void smtp_wire_form_test::lines_are_stuffed_data()
{
    QTest::addColumn<QByteArray>("mail");
    QTest::addColumn<QByteArray>("wire");
    const auto row = [](const char *name, const char *mail, const char *wire) {
        QTest::newRow(name) << QByteArray(mail) << QByteArray(wire);
    };
    row("nothing", "", "");
    row("plain lines stay", "A: b\r\n\r\nx\r\n", "A: b\r\n\r\nx\r\n");
    row("an end is added once", "x", "x\r\n");
    row("a dot alone", ".\r\n", "..\r\n");
    row("a dot alone without a line end", "x\r\n.", "x\r\n..\r\n");
    row("two dots", "..\r\n", "...\r\n");
    row("a dot at the head", ".htaccess\r\n", "..htaccess\r\n");
    row("a dot within stays", "a.b\r\nc.\r\n", "a.b\r\nc.\r\n");
    row("empty lines stay", "\r\n\r\n", "\r\n\r\n");
    row("a line feed ends a line", "a\n.\nb", "a\r\n..\r\nb\r\n");
    row("a carriage return ends a line", "a\r.\rb\r\n", "a\r\n..\r\nb\r\n");
    row("mixed ends", "a\n\r.\r\n", "a\r\n\r\n..\r\n");
    row("a carriage return at the end", "a\r", "a\r\n");
}

void smtp_wire_form_test::lines_are_stuffed()
{
    QFETCH(QByteArray, mail);
    QFETCH(QByteArray, wire);
    QByteArray bytes = "before";
    smtp::append_stuffed(mail, bytes);
    QCOMPARE(bytes, "before" + wire);
}

void smtp_wire_form_test::an_address_is_written_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<bool>("needs_utf8");
    QTest::newRow("plain") << "Ann@Example.org" << QByteArray("Ann@Example.org") << false;
    QTest::newRow("domain") << "ann@bücher.example" << QByteArray("ann@xn--bcher-kva.example") << false;
    QTest::newRow("name") << "émil@example.org" << QByteArray("\xC3\xA9mil@example.org") << true;
    QTest::newRow("both") << "émil@bücher.example"
                          << QByteArray("\xC3\xA9mil@b\xC3\xBC"
                                        "cher.example")
                          << true;
}

void smtp_wire_form_test::an_address_is_written()
{
    QFETCH(QString, address);
    const smtp::envelope_address form = smtp::envelope_form(address);
    QTEST(form.bytes, "written");
    QTEST(form.needs_utf8, "needs_utf8");
}

void smtp_wire_form_test::an_answer_is_read_in_any_pieces_data()
{
    QTest::addColumn<int>("piece");
    for (const int piece : {1, 2, 3, 5, 7, 100})
        QTest::addRow("%d bytes", piece) << piece;
}

void smtp_wire_form_test::an_answer_is_read_in_any_pieces()
{
    QFETCH(int, piece);
    const QByteArray bytes = "250-one\r\n250-two\r\n250 three\r\n354\r\n550 no\nOk\r\n250 Ok\r\n";
    smtp::answer_reader reader;
    QString codes;
    for (qsizetype at = 0; at < bytes.size(); at += piece) {
        reader.add(bytes.mid(at, piece));
        while (const std::optional<smtp::answer> said = reader.next()) {
            codes += QString::number(said->code) + u'/' + QString::number(said->lines.size()) + u' ';
            if (said->code == 0)
                break;
        }
        if (codes.endsWith(u"0/1 ") && codes.contains(u" 0/1"))
            break;
    }
    QCOMPARE(codes, "250/3 354/1 550/1 0/1 ");
    reader.add("250 Ok\r\n");
    QCOMPARE(reader.next()->code, 0); // never trusted again
}

void smtp_wire_form_test::words_are_one_bounded_line()
{
    smtp::answer_reader reader;
    reader.add("550-5.7.1 Your mail\tis \x1b[31m not wanted;\r\n550-5.7.1\r\n550 5.7.1 see http://example.org\r\n");
    QCOMPARE(smtp::words_of(*reader.next()),
             "550 5.7.1 Your mail is [31m not wanted; 5.7.1 5.7.1 see http://example.org");
    reader.add("450 " + QByteArray(5000, 'x') + "\r\n");
    QCOMPARE(smtp::words_of(*reader.next()).size(), 300);
    reader.add("450 \xFF\xFE caf\xC3\xA9\r\n");
    QVERIFY(smtp::words_of(*reader.next()).endsWith(u"café"));
}

QTEST_GUILESS_MAIN(smtp_wire_form_test)
#include "smtp_wire_form_test.moc"
