// A mail on its way into an account table: the test for a duplicate to the letter, and the row.
#include "intake/stored_mail.h"
#include "support/intake_site.h"

#include <QtTest/QTest>

namespace {

const QDateTime moment(QDate(2026, 8, 13), QTime(13, 2, 3), Qt::UTC);

intake::arrived_mail mail_of(const QString &subject, const QString &body, const QString &sender = "bob@example.net")
{
    return {subject, moment, sender, body};
}

}

class stored_mail_test : public QObject {
    Q_OBJECT
private slots:
    void the_duplicate_test_to_the_letter_data();
    void the_duplicate_test_to_the_letter();
    void a_row_is_found_again_data();
    void a_row_is_found_again();
    void another_mail_is_no_duplicate_data();
    void another_mail_is_no_duplicate();
    void the_row_as_it_is_stored();
};

void stored_mail_test::the_duplicate_test_to_the_letter_data()
{
    QTest::addColumn<QString>("subject");
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("sender");
    QTest::addColumn<QString>("by_texts");
    const QString sender = "bob@example.net";
    const QString by_bob = " and ucase(tsl_Email) ='BOB@EXAMPLE.NET' and ucase(tsl_body) =";

    QTest::newRow("a plain mail") << "Order"
                                  << "x" << sender << "'ORDER'|" + by_bob + "'X'";
    QTest::newRow("an accented letter") << "Été"
                                        << "Café" << sender << "'ÉTÉ'|" + by_bob + "'CAFÉ'";
    QTest::newRow("several lines, the last one ended") << "Order"
                                                       << "a\nb\n"
                                                       << sender << "'ORDER'|" + by_bob + "'A\r\nB\r\n'";
    QTest::newRow("quotes are doubled") << "O'Neil"
                                        << "it's" << sender << "'O''NEIL'|" + by_bob + "'IT''S'";
    QTest::newRow("a quote in the sender too") << "Order"
                                               << "x"
                                               << "o'neil@example.net"
                                               << "'ORDER'| and ucase(tsl_Email) ='O''NEIL@EXAMPLE.NET'"
                                                  " and ucase(tsl_body) ='X'";
    QTest::newRow("outer blanks go by quoting, line ends stay")
        << " Order "
        << "  a \n \n  " << sender << "'ORDER'|" + by_bob + "'A \r\n \r\n'";
    QTest::newRow("percent signs stay") << "%1"
                                        << "%2" << sender << "'%1'|" + by_bob + "'%2'";
    QTest::newRow("nothing at all") << ""
                                    << ""
                                    << ""
                                    << "''| and ucase(tsl_Email) ='' and ucase(tsl_body) =''";
}

void stored_mail_test::the_duplicate_test_to_the_letter()
{
    QFETCH(QString, subject);
    QFETCH(QString, body);
    QFETCH(QString, sender);
    QFETCH(QString, by_texts);
    QCOMPARE(intake::duplicate_test("orders", mail_of(subject, body, sender)),
             "select * from orders where ucase(tsl_subject)=" + by_texts.section(u'|', 0, 0) +
                 " and month(tsl_recdate)=8 and day(tsl_recdate)=13 and year(tsl_recdate)=2026"
                 " and hour(tsl_recdate)=13 and minute(tsl_recdate)=2 and second(tsl_recdate)=3" +
                 by_texts.section(u'|', 1));
}

void stored_mail_test::a_row_is_found_again_data()
{
    QTest::addColumn<QString>("subject");
    QTest::addColumn<QString>("body");
    QTest::newRow("a plain mail") << "Order"
                                  << "x";
    QTest::newRow("every letter up to the Greek ones") << "Order" << [] {
        QString text;
        for (char16_t letter = 0x20; letter < 0x400; ++letter)
            text += QChar(letter);
        return "x" + text + "x";
    }();
    QTest::newRow("letters whose capitals are several") << "ŉ ǰ ΐ ß"
                                                        << "ﬁ ﬄ";
    QTest::newRow("a body that ends in line ends") << "Order"
                                                   << "a\n\n\n";
    QTest::newRow("a body with carriage returns") << "Order"
                                                  << "a\r\nb\r";
    QTest::newRow("a long body") << "Order" << QString("é'\n").repeated(20000) + "x";
    QTest::newRow("nothing") << ""
                             << "";
}

void stored_mail_test::a_row_is_found_again()
{
    QFETCH(QString, subject);
    QFETCH(QString, body);
    intake_site site;
    site.add_account("orders", "orders@example.org");
    const auto mail = mail_of(subject, body);
    QVERIFY(!intake::is_duplicate("orders", mail));
    intake::store_mail("orders", mail);
    QVERIFY(intake::is_duplicate("orders", mail));
    QVERIFY(intake::is_duplicate(
        "orders", mail_of(subject.toUpper().size() == subject.size() ? subject.toUpper() : subject, body)));
}

void stored_mail_test::another_mail_is_no_duplicate_data()
{
    QTest::addColumn<QString>("subject");
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("sender");
    QTest::addColumn<int>("seconds_later");
    QTest::newRow("another subject") << "Order 2"
                                     << "x"
                                     << "bob@example.net" << 0;
    QTest::newRow("another body") << "Order"
                                  << "y"
                                  << "bob@example.net" << 0;
    QTest::newRow("one more line end") << "Order"
                                       << "x\n"
                                       << "bob@example.net" << 0;
    QTest::newRow("an accent in the body") << "Order"
                                           << "x\u0301"
                                           << "bob@example.net" << 0;
    QTest::newRow("another sender") << "Order"
                                    << "x"
                                    << "rob@example.net" << 0;
    QTest::newRow("a second later") << "Order"
                                    << "x"
                                    << "bob@example.net" << 1;
    QTest::newRow("an hour later") << "Order"
                                   << "x"
                                   << "bob@example.net" << 3600;
    QTest::newRow("a day later") << "Order"
                                 << "x"
                                 << "bob@example.net" << 86400;
    QTest::newRow("a year later") << "Order"
                                  << "x"
                                  << "bob@example.net" << 365 * 86400;
}

void stored_mail_test::another_mail_is_no_duplicate()
{
    QFETCH(QString, subject);
    QFETCH(QString, body);
    QFETCH(QString, sender);
    QFETCH(int, seconds_later);
    intake_site site;
    site.add_account("orders", "orders@example.org");
    intake::store_mail("orders", mail_of("Order", "x"));
    QVERIFY(intake::is_duplicate("orders", mail_of("ORDER", "X", "BOB@example.net")));
    QVERIFY(!intake::is_duplicate("orders", {subject, moment.addSecs(seconds_later), sender, body}));
}

void stored_mail_test::the_row_as_it_is_stored()
{
    intake_site site;
    site.add_account("orders", "orders@example.org");
    intake::store_mail("orders", mail_of("An Order", "a\r\nb\n"));
    QCOMPARE(site.rows("select * from orders"),
             QStringList{"1|An Order|8/13/2026 1:02:03 PM|bob@example.net|new|a\r\r\nb\r\n|False"});
}

QTEST_GUILESS_MAIN(stored_mail_test)
#include "stored_mail_test.moc"
