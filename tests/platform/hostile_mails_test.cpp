// No mail of the hostile hundred ends the program, hangs it, or brings anything in that must not come through.
#include "platform/real/mail/compose.h"
#include "platform/real/mail/mail_address.h"
#include "platform/real/mail/mime_body.h"
#include "platform/real/mail/mime_parse.h"
#include "support/hostile_mails.h"
#include <QElapsedTimer>
#include <QSet>
#include <QTest>

namespace {

const QByteArray account = "orders@example.org";
constexpr qint64 longest_time = 20000; // ms, under the sanitizers too

bool is_one_clean_line(const QString &text)
{
    return !text.contains(u'\n') && !text.contains(u'\r') && !text.contains(QChar(0)) && text.isValidUtf16();
}

}

class hostile_mails_test : public QObject {
    Q_OBJECT
private slots:

    void there_are_a_hundred_of_them()
    {
        QSet<QByteArray> names;
        for (const hostile_mail &mail : hostile_mails(account))
            names.insert(mail.name);
        QCOMPARE(names.size(), qsizetype(hostile_mails(account).size()));
        QVERIFY(names.size() >= 100);
    }

    void parsing_data()
    {
        QTest::addColumn<QByteArray>("mail");
        for (const hostile_mail &mail : hostile_mails(account))
            QTest::newRow(mail.name.constData()) << mail.bytes;
    }
    void parsing()
    {
        QFETCH(QByteArray, mail);
        QElapsedTimer timer;
        timer.start();
        const mime::header_block head = mime::read_header_block(mail);
        QVERIFY(is_one_clean_line(mime::to_line(head)));
        QVERIFY(is_one_clean_line(mime::subject_of(head)));
        QVERIFY(is_one_clean_line(mime::answer_address(head)));
        const QString body = mime::body_text(mail, head);
        QVERIFY(body.size() <= mime::longest_body);
        QVERIFY(!body.contains(QChar(0)));
        QVERIFY(body.isValidUtf16());
        QVERIFY2(timer.elapsed() < longest_time, qPrintable(QString::number(timer.elapsed())));
    }

    void an_answer_to_any_of_them_holds_no_header_of_theirs_data() { parsing_data(); }
    void an_answer_to_any_of_them_holds_no_header_of_theirs()
    {
        QFETCH(QByteArray, mail);
        const mime::header_block head = mime::read_header_block(mail);
        outbox::outgoing_mail answer;
        answer.SendingAccount = mime::to_addresses(head).value(0);
        answer.To = {mime::answer_address(head)};
        answer.Subject = "Re: " + mime::subject_of(head);
        answer.Headers = {{"In-Reply-To", mime::message_id_of(head)}, {"References", mime::references_of_answer(head)}};
        const QByteArray bytes = mail::compose(answer, QDateTime(QDate(2026, 1, 1), QTime(12, 0), Qt::UTC), 0, "id@x");
        const QByteArray header = bytes.first(bytes.indexOf("\r\n\r\n") + 2);
        for (const QByteArray &line : header.chopped(2).split('\n')) {
            const bool known = line.startsWith(' ') || line.startsWith("Date: ") || line.startsWith("Message-ID: ") ||
                               line.startsWith("From: ") || line.startsWith("To: ") || line.startsWith("Subject:") ||
                               line.startsWith("In-Reply-To:") || line.startsWith("References:") ||
                               line.startsWith("MIME-Version: ") || line.startsWith("Content-T");
            QVERIFY2(known, line.left(200).constData());
        }
    }
};

QTEST_GUILESS_MAIN(hostile_mails_test)
#include "hostile_mails_test.moc"
