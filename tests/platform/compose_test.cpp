// Outgoing mails as bytes.
#include "platform/real/mail/compose.h"
#include "platform/real/mail/mail_address.h"
#include "platform/real/mail/mail_encode.h"
#include "platform/real/mail/mime_body.h"
#include "platform/real/mail/mime_parse.h"
#include <QTest>

namespace {

const QDateTime new_year(QDate(2026, 1, 1), QTime(13, 5, 9), Qt::UTC);

outbox::outgoing_mail good_mail()
{
    outbox::outgoing_mail mail;
    mail.SendingAccount = "orders@example.org";
    mail.To = {"ann@example.net"};
    mail.Subject = "Your order";
    mail.body = "Thank you\n";
    return mail;
}

QByteArray composed(const outbox::outgoing_mail &mail)
{
    return mail::compose(mail, new_year, 3600, "1@example.org");
}

QByteArray longest_line(const QByteArray &bytes)
{
    QByteArray longest;
    for (const QByteArray &line : bytes.split('\n'))
        if (line.size() > longest.size())
            longest = line;
    return longest;
}

}

class compose_test : public QObject {
    Q_OBJECT
private slots:

    void a_plain_mail_whole()
    {
        QCOMPARE(composed(good_mail()), QByteArray("Date: Thu, 01 Jan 2026 13:05:09 +0100\r\n"
                                                   "Message-ID: <1@example.org>\r\n"
                                                   "From: orders@example.org\r\n"
                                                   "To: ann@example.net\r\n"
                                                   "Subject: Your order\r\n"
                                                   "MIME-Version: 1.0\r\n"
                                                   "Content-Type: text/plain; charset=utf-8\r\n"
                                                   "Content-Transfer-Encoding: 7bit\r\n"
                                                   "\r\n"
                                                   "Thank you\r\n"));
    }

    void a_zone_west_of_greenwich()
    {
        QVERIFY(mail::compose(good_mail(), new_year, -12600, "1@x")
                    .startsWith("Date: Thu, 01 Jan 2026 13:05:09 -0330\r\n"));
    }

    void further_headers_stand_there()
    {
        auto mail = good_mail();
        mail.Headers = {{"Auto-Submitted", "auto-replied"}, {"X-Name", "Jörg"}};
        QCOMPARE(mail::why_refused(mail), "");
        QVERIFY(composed(mail).contains("\r\nAuto-Submitted: auto-replied\r\nX-Name: =?utf-8?B?SsO2cmc=?=\r\n"));
    }

    void what_is_refused_data()
    {
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("account");
        QTest::addColumn<QString>("header_name");
        QTest::addColumn<QString>("header_value");
        QTest::newRow("no address") << ""
                                    << ""
                                    << "X"
                                    << "y";
        QTest::newRow("no at sign") << "ann"
                                    << ""
                                    << "X"
                                    << "y";
        QTest::newRow("CR LF in the address") << "ann@example.net\r\nBcc: all@example.org"
                                              << ""
                                              << "X"
                                              << "y";
        QTest::newRow("LF at the end of the address") << "ann@example.net\n"
                                                      << ""
                                                      << "X"
                                                      << "y";
        QTest::newRow("CR in the account") << "ann@example.net"
                                           << "a@b.c\rBcc: d@e.f"
                                           << "X"
                                           << "y";
        QTest::newRow("LF in a header value") << "ann@example.net"
                                              << ""
                                              << "X"
                                              << "y\nBcc: all@example.org";
        QTest::newRow("CR in a header value") << "ann@example.net"
                                              << ""
                                              << "X"
                                              << "y\rBcc: all@example.org";
        QTest::newRow("CR LF in a header name") << "ann@example.net"
                                                << ""
                                                << "X\r\nBcc"
                                                << "all@example.org";
        QTest::newRow("a colon in a header name") << "ann@example.net"
                                                  << ""
                                                  << "Bcc: all@example.org\u0000"
                                                  << "y";
        QTest::newRow("a zero in a header value") << "ann@example.net"
                                                  << ""
                                                  << "X" << QString("y") + QChar(0) + "z";
        QTest::newRow("a header of ours") << "ann@example.net"
                                          << ""
                                          << "bcc"
                                          << "all@example.org";
        QTest::newRow("a second To") << "ann@example.net"
                                     << ""
                                     << "TO"
                                     << "all@example.org";
    }
    void what_is_refused()
    {
        QFETCH(QString, to);
        QFETCH(QString, account);
        QFETCH(QString, header_name);
        QFETCH(QString, header_value);
        auto mail = good_mail();
        mail.To = {to};
        mail.SendingAccount = account;
        mail.Headers = {{header_name, header_value}};
        QVERIFY(!mail::why_refused(mail).isEmpty() || !mail::why_not_writable(to).isEmpty());
        const QByteArray bytes = composed(mail);
        QVERIFY(!bytes.toLower().contains("bcc:"));
        QVERIFY(!bytes.contains("all@example.org"));
    }

    void addresses_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("writable");
        QTest::newRow("plain") << "ann@example.net" << true;
        QTest::newRow("plus and dots") << "ann.b+c@mail.example.net" << true;
        QTest::newRow("beyond ASCII") << "jörg@exämple.net" << true;
        QTest::newRow("one at a local host") << "ann@localhost" << true;
        QTest::newRow("empty") << "" << false;
        QTest::newRow("nothing before the at sign") << "@example.net" << false;
        QTest::newRow("nothing behind it") << "ann@" << false;
        QTest::newRow("two at signs") << "a@b@c" << false;
        QTest::newRow("a blank inside") << "a b@example.net" << false;
        QTest::newRow("a blank behind") << "ann@example.net " << false;
        QTest::newRow("a hard blank") << "ann\u00A0@example.net" << false;
        QTest::newRow("a name and brackets") << "Ann<ann@example.net>" << false;
        QTest::newRow("two addresses") << "a@example.net,b@example.net" << false;
        QTest::newRow("smtp: before it") << "smtp:ann@example.net" << false;
        QTest::newRow("a line separator") << "ann@example.net\u2028x" << false;
        QTest::newRow("half a surrogate pair") << QString("ann") + QChar(0xD800) + "@example.net" << false;
        QTest::newRow("two dots in the domain") << "ann@example..net" << false;
        QTest::newRow("too long") << QString(250, u'a') + "@example.net" << false;
    }
    void addresses()
    {
        QFETCH(QString, address);
        QFETCH(bool, writable);
        QCOMPARE(mail::why_not_writable(address).isEmpty(), writable);
    }

    void subjects_come_back_as_they_were_data()
    {
        QTest::addColumn<QString>("subject");
        QTest::newRow("short") << "Your order";
        QTest::newRow("empty") << "";
        QTest::newRow("accents") << "Votre été";
        QTest::newRow("long and plain") << QString("one two three four five ").repeated(20).trimmed();
        QTest::newRow("long without a blank") << QString(3000, u'x');
        QTest::newRow("long and beyond ASCII") << QString("ä€😀").repeated(200);
        QTest::newRow("what looks encoded") << "=?utf-8?Q?x?=";
        QTest::newRow("two blanks inside") << "a  b";
        QTest::newRow("blanks where it folds") << QString(60, u'x') + "     " + QString(60, u'y');
    }
    void subjects_come_back_as_they_were()
    {
        QFETCH(QString, subject);
        auto mail = good_mail();
        mail.Subject = subject;
        const QByteArray bytes = composed(mail);
        QCOMPARE(mime::subject_of(mime::read_header_block(bytes)), subject);
        QVERIFY2(longest_line(bytes).size() <= 78, longest_line(bytes).constData());
    }

    void a_subject_of_several_lines_becomes_one()
    {
        auto mail = good_mail();
        mail.Subject = "Your order\r\nBcc: all@example.org\nX";
        QCOMPARE(mail::why_refused(mail), "");
        QVERIFY(composed(mail).contains("\r\nSubject: Your order Bcc: all@example.org X\r\n"));
    }

    void bodies_come_back_as_they_were_data()
    {
        QTest::addColumn<QString>("body");
        QTest::addColumn<QByteArray>("encoding");
        const auto row = [](const char *name, const QString &body, const char *encoding) {
            QTest::newRow(name) << body << QByteArray(encoding);
        };
        row("plain", "Thank you\nAnn\n", "7bit");
        row("empty", "", "7bit");
        row("no last line end", "Thank you", "quoted-printable");
        row("empty lines at the end", "Thank you\n\n\n", "7bit");
        row("accents", "Merci pour l'été, merci beaucoup\n", "quoted-printable");
        row("accents without a last line end", "Merci pour l'été, merci beaucoup", "quoted-printable");
        row("mostly beyond ASCII", "日本語の本文\n", "base64");
        row("mostly beyond ASCII without a last line end", "日本語の本文", "base64");
        row("a long line", QString("word ").repeated(100) + "\n", "quoted-printable");
        row("a very long word", QString(3000, u'x') + "\n", "quoted-printable");
        row("From at the head of a line", "a\nFrom here\n", "quoted-printable");
        row("a blank at the end of a line", "a \nb\t\n", "quoted-printable");
        row("a dot alone", "a\n.\n", "7bit");
        row("equals signs at the end of a full line", QString(74, u'a') + "==\n" + QString(75, u'b') + "=",
            "quoted-printable");
    }
    void bodies_come_back_as_they_were()
    {
        QFETCH(QString, body);
        QFETCH(QByteArray, encoding);
        auto mail = good_mail();
        mail.body = body;
        const QByteArray bytes = composed(mail);
        QVERIFY(bytes.contains("Content-Transfer-Encoding: " + encoding + "\r\n"));
        QCOMPARE(mime::body_text(bytes, mime::read_header_block(bytes)), body);
        QVERIFY2(longest_line(bytes).size() <= 78, longest_line(bytes).constData());
        QVERIFY(!QByteArray(bytes).replace("\r\n", "").contains('\n'));
        QVERIFY(!QByteArray(bytes).replace("\r\n", "").contains('\r'));
    }

    // Such a line would be taken for another mail's beginning, or for the end of this one.
    void no_line_begins_like_something_else_data()
    {
        QTest::addColumn<QString>("word");
        QTest::addColumn<QByteArray>("head");
        QTest::newRow("From") << "From the nursery" << QByteArray("=46rom the nursery");
        QTest::newRow("a dot") << "." << QByteArray("=2E");
    }
    void no_line_begins_like_something_else()
    {
        QFETCH(QString, word);
        QFETCH(QByteArray, head);
        const QByteArray plain = word.toLatin1();
        int breaks_before_it = 0;
        for (int before = 60; before < 80; ++before) {
            const QString body = QString(before, u'a') + word + QString(40, u'b') + "\n" + word + "\n";
            const QByteArray text = mail::encode_text(body).bytes;
            const QByteArrayList lines = QByteArray(text).replace("\r\n", "\n").split('\n');
            for (const QByteArray &line : lines) {
                QVERIFY2(!line.startsWith("From ") && !line.startsWith('.'), line.constData());
                QVERIFY2(line.size() <= 76, line.constData());
            }
            QVERIFY2(text.endsWith("\r\n" + head + "\r\n"), text.constData());
            breaks_before_it += int(text.count("=\r\n" + head.first(3)));
        }
        QCOMPARE(breaks_before_it, 1); // of all places, one lets the word begin a line
    }

    void any_line_ends_become_those_of_a_mail()
    {
        QCOMPARE(mail::encode_text("a\nb\r\nc\rd\n").bytes, "a\r\nb\r\nc\r\nd\r\n");
    }
};

QTEST_GUILESS_MAIN(compose_test)
#include "compose_test.moc"
