// HTML mails and hard texts as bytes, read back by our own reader and by Python's, which shares nothing with ours.
#include "platform/real/mail/compose.h"
#include "platform/real/mail/mail_address.h"
#include "platform/real/mail/mail_encode.h"
#include "platform/real/mail/mime_body.h"
#include "platform/real/mail/mime_parse.h"
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QDateTime new_year(QDate(2026, 1, 1), QTime(13, 5, 9), Qt::UTC);

outbox::outgoing_mail html_mail()
{
    outbox::outgoing_mail mail;
    mail.SendingAccount = "orders@example.org";
    mail.To = {"ann@example.net"};
    mail.Subject = "Spring";
    mail.HTMLBody = "<html><body><h1>Spring</h1><p>Roses &amp; tulips</p></body></html>\n";
    return mail;
}

QByteArray composed(const outbox::outgoing_mail &mail)
{
    return mail::compose(mail, new_year, 3600, "1@example.org");
}

QJsonObject read_by_python(const QByteArray &bytes)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("mail.eml"));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("the mail cannot be written");
    file.close();
    QProcess python;
    python.start("/usr/bin/python3", {SOURCE_ROOT "/tests/support/read_mails.py", file.fileName()});
    if (!python.waitForFinished() || python.exitCode() != 0)
        qFatal("python3: %s", python.readAllStandardError().constData());
    return QJsonDocument::fromJson(python.readAllStandardOutput()).array().at(0).toObject();
}

QStringList texts(const QJsonValue &array)
{
    QStringList all;
    for (const QJsonValue &one : array.toArray())
        all.append(one.toString());
    return all;
}

}

class compose_html_test : public QObject {
    Q_OBJECT
private slots:

    void a_html_mail_whole()
    {
        const QByteArray bytes = composed(html_mail());
        const qsizetype at = bytes.indexOf("boundary=\"") + 10;
        const QByteArray boundary = bytes.sliced(at, bytes.indexOf('"', at) - at);
        QVERIFY(boundary.size() > 20 && boundary.size() <= 70);
        QCOMPARE(bytes, QByteArray("Date: Thu, 01 Jan 2026 13:05:09 +0100\r\n"
                                   "Message-ID: <1@example.org>\r\n"
                                   "From: orders@example.org\r\n"
                                   "To: ann@example.net\r\n"
                                   "Subject: Spring\r\n"
                                   "MIME-Version: 1.0\r\n"
                                   "Content-Type: multipart/alternative;\r\n boundary=\"" +
                                   boundary +
                                   "\"\r\n"
                                   "\r\n"
                                   "--" +
                                   boundary +
                                   "\r\n"
                                   "Content-Type: text/plain; charset=utf-8\r\n"
                                   "Content-Transfer-Encoding: 7bit\r\n"
                                   "\r\n"
                                   "Spring\r\n\r\nRoses & tulips\r\n"
                                   "\r\n"
                                   "--" +
                                   boundary +
                                   "\r\n"
                                   "Content-Type: text/html; charset=utf-8\r\n"
                                   "Content-Transfer-Encoding: 7bit\r\n"
                                   "\r\n"
                                   "<html><body><h1>Spring</h1><p>Roses &amp; tulips</p></body></html>\r\n"
                                   "\r\n"
                                   "--" +
                                   boundary + "--\r\n"));
    }

    void the_boundary_occurs_in_no_part()
    {
        auto mail = html_mail();
        const QByteArray first = composed(mail);
        const qsizetype at = first.indexOf("boundary=\"") + 10;
        const QString taken = QString::fromLatin1(first.sliced(at, first.indexOf('"', at) - at));
        mail.body = "--" + taken + "\n";
        const QJsonObject read = read_by_python(composed(mail));
        QCOMPARE(texts(read["parts"]), (QStringList{"text/plain", "text/html"}));
        QCOMPARE(read["plain"].toString(), "--" + taken + "\r\n");
        QCOMPARE(texts(read["defects"]), QStringList());
    }

    void both_readers_find_what_was_written_data();
    void both_readers_find_what_was_written();
    void python_finds_the_headers_data();
    void python_finds_the_headers();

    void several_recipients()
    {
        auto mail = html_mail();
        mail.To.clear();
        for (int number = 0; number < 60; ++number)
            mail.To.append(QString("recipient.number.%1@example.net").arg(number));
        const QJsonObject read = read_by_python(composed(mail));
        QCOMPARE(texts(read["to"]), mail.To);
        QVERIFY(read["longest_line"].toInt() <= 78);
    }

    void a_domain_of_another_script_travels_in_ascii()
    {
        auto mail = html_mail();
        mail.To = {"jörg@exämple.net"};
        mail.SendingAccount = "orders@bücher.example";
        const QByteArray bytes = composed(mail);
        QVERIFY(bytes.contains("\r\nFrom: orders@xn--bcher-kva.example\r\n"));
        QVERIFY(bytes.contains("\r\nTo: j\xC3\xB6rg@xn--exmple-cua.net\r\n"));
        QCOMPARE(mail::wire_address("Ann@Example.NET"), "Ann@Example.NET");
        QVERIFY(!mail::why_not_writable(QString("ann@ex") + QChar(0x202E) + "ample.net").isEmpty());
    }

    void no_value_adds_a_header_data()
    {
        QTest::addColumn<QString>("field");
        for (const char *field : {"subject", "account", "to", "header name", "header value"})
            QTest::newRow(field) << QString(field);
    }
    void no_value_adds_a_header()
    {
        QFETCH(QString, field);
        for (const char *end : {"\r\n", "\n", "\r", "\r\n ", "\u0085", "\u2028", "\x0b", "\x0c"}) {
            auto mail = html_mail();
            const QString evil = "x" + QString::fromUtf8(end) + "Bcc: all@example.org";
            if (field == "subject")
                mail.Subject = evil;
            if (field == "account")
                mail.SendingAccount = "ann@example.net" + evil;
            if (field == "to")
                mail.To = {"ann@example.net" + evil};
            if (field == "header name")
                mail.Headers = {{evil, "x"}};
            if (field == "header value")
                mail.Headers = {{"X-Name", evil}};
            const QStringList headers = texts(read_by_python(composed(mail))["headers"]);
            QVERIFY2(!headers.contains("Bcc", Qt::CaseInsensitive), qPrintable(headers.join(u' ')));
        }
    }
};

void compose_html_test::both_readers_find_what_was_written_data()
{
    QTest::addColumn<QString>("body");
    QTest::newRow("plain") << "Thank you\nAnn\n";
    QTest::newRow("no last line end") << "Thank you";
    QTest::newRow("accents") << "Merci pour l'été, merci beaucoup\n";
    QTest::newRow("another script") << "日本語の本文\n";
    QTest::newRow("beyond the first plane") << QString("😀").repeated(300) + "\n";
    QTest::newRow("a line of 5,000 letters") << QString(5000, u'x') + "\n";
    QTest::newRow("5,000 words in a line") << QString("word ").repeated(5000) + "\n";
    QTest::newRow("dots") << ".\n..\n.x\n";
    QTest::newRow("From at the head of a line") << "a\nFrom here\n";
    QTest::newRow("blanks at line ends") << "a \nb\t\n\n c\n";
    QTest::newRow("control characters") << QString("a\x01\x0c\x1f") + "b\n";
    QTest::newRow("what looks like a boundary") << "--=_x\n--\n-- \nsignature\n";
}

void compose_html_test::both_readers_find_what_was_written()
{
    QFETCH(QString, body);
    QString with_crlf = body;
    with_crlf.replace("\n", "\r\n");
    for (const bool with_html : {false, true}) {
        auto mail = html_mail();
        mail.body = body;
        mail.HTMLBody = with_html ? "<p>" + body + "</p>" : QString();
        const QByteArray bytes = composed(mail);
        QCOMPARE(mime::body_text(bytes, mime::read_header_block(bytes)), body);
        const QJsonObject read = read_by_python(bytes);
        QCOMPARE(texts(read["defects"]), QStringList());
        QCOMPARE(read["plain"].toString(), with_crlf);
        if (with_html)
            QCOMPARE(read["html"].toString(), "<p>" + with_crlf + "</p>");
        QVERIFY(read["longest_line"].toInt() <= 78);
        QCOMPARE(read["lone_line_ends"].toInt(), 0);
    }
}

void compose_html_test::python_finds_the_headers_data()
{
    QTest::addColumn<QString>("subject");
    QTest::newRow("short") << "Your order";
    QTest::newRow("accents") << "Votre été";
    QTest::newRow("letters beyond the first plane where words end") << "a" + QString("😀").repeated(100);
    QTest::newRow("three-byte letters where words end") << "ab" + QString("€").repeated(100);
    QTest::newRow("what looks encoded") << "=?utf-8?Q?x?=";
    QTest::newRow("long and plain") << QString("one two three four five ").repeated(20).trimmed();
    QTest::newRow("500 blanks inside") << "a" + QString(500, u' ') + "b";
    QTest::newRow("a word of 3,000 letters") << QString(3000, u'x');
}

void compose_html_test::python_finds_the_headers()
{
    QFETCH(QString, subject);
    auto mail = html_mail();
    mail.Subject = subject;
    mail.Headers = {{"X-A-Rather-Long-Name-Of-A-Header-That-Nobody-Needs", subject}};
    const QJsonObject read = read_by_python(composed(mail));
    QCOMPARE(read["subject"].toString(), subject);
    QCOMPARE(read["from"].toString(), "orders@example.org");
    QCOMPARE(texts(read["to"]), QStringList{"ann@example.net"});
    QCOMPARE(read["date"].toString(), "2026-01-01T13:05:09+01:00");
    QCOMPARE(read["type"].toString(), "multipart/alternative");
    QCOMPARE(texts(read["defects"]), QStringList());
    QVERIFY(read["longest_line"].toInt() <= 78);
    QCOMPARE(texts(read["headers"]),
             (QStringList{"Date", "Message-ID", "From", "To", "Subject",
                          "X-A-Rather-Long-Name-Of-A-Header-That-Nobody-Needs", "MIME-Version", "Content-Type"}));
}

QTEST_GUILESS_MAIN(compose_html_test)
#include "compose_html_test.moc"
