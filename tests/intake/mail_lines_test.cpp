// The lines of the Mail Auditor's lists where a date is odd or missing, a table is gone, or a text has no end.
#include "frame/account_list.h"
#include "intake/mail_lines.h"
#include "support/report_site.h"

#include <QtTest/QTest>

namespace {

void rows_of_sent_dates()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QDateTime>("moment");
    const auto at = [](int hour, int minute, int second) {
        return QDateTime(QDate(2026, 11, 6), QTime(hour, minute, second), Qt::UTC);
    };
    QTest::newRow("date and time") << "11/6/2026 1:02:03 PM" << at(13, 2, 3);
    QTest::newRow("a second past midnight") << "11/6/2026 12:00:01 AM" << at(0, 0, 1);
    QTest::newRow("midnight") << "11/6/2026 12:00:00 AM" << at(0, 0, 0);
    QTest::newRow("noon") << "11/6/2026 12:00:00 PM" << at(12, 0, 0);
    QTest::newRow("a day alone") << "11/6/2026" << at(0, 0, 0);
    QTest::newRow("no such day") << "2/30/2026 1:00:00 PM" << QDateTime();
    QTest::newRow("no such hour") << "11/6/2026 13:00:00 PM" << QDateTime();
    QTest::newRow("the day first") << "21/11/2026" << QDateTime();
    QTest::newRow("another country's") << "6.11.2026" << QDateTime();
    QTest::newRow("a word") << "yesterday" << QDateTime();
    QTest::newRow("nothing") << "" << QDateTime();
}

}

class mail_lines_test : public QObject {
    Q_OBJECT
private slots:
    void a_sent_date_is_shown_as_it_is_stored_data() { rows_of_sent_dates(); }

    void a_sent_date_is_shown_as_it_is_stored()
    {
        QFETCH(QString, stored);
        const report_site site;
        site.add_sent("ann@example.net", "Order", stored);
        const intake::mail_line line = intake::sent_mail_lines().at(0);
        QCOMPARE(intake::date_shown(line), stored);
        QTEST(line.date, "moment"); // what it is sorted by
    }

    void a_sent_mail_without_a_date_shows_none()
    {
        const report_site site;
        site.run("insert into sentitems_tbl (tsl_to,tsl_subject) values('ann@example.net','Order')");
        const intake::mail_line line = intake::sent_mail_lines().at(0);
        QCOMPARE(intake::date_shown(line), "");
        QVERIFY(!line.date.isValid());
    }

    void a_stored_mail_shows_its_moment_also_at_midnight()
    {
        intake_site site;
        site.add_account("orders", "orders@shop.example");
        for (const char *moment : {"'11/6/2026 1:02:03 PM'", "'11/6/2026'", "Null"})
            site.run(QString("insert into orders (tsl_recdate,tsl_Email) values(%1,'ann@example.net')").arg(moment));
        int left_out = 0;
        QStringList shown;
        load_accounts();
        for (const intake::mail_line &line : intake::stored_mail_lines(left_out))
            shown += intake::date_shown(line);
        QCOMPARE(shown, (QStringList{"11/6/2026 1:02:03 PM", "11/6/2026 12:00:00 AM", ""}));
        QCOMPARE(left_out, 0);
    }

    void an_account_without_its_table_is_left_out_and_logged()
    {
        intake_site site;
        site.add_account("orders", "orders@shop.example");
        site.add_account("gone", "gone@shop.example");
        site.add_account("contact", "hello@shop.example");
        site.add_stored_mail("orders", "First", "text");
        site.add_stored_mail("contact", "Last", "text");
        site.run("drop table gone");
        int left_out = 0;
        QStringList subjects;
        load_accounts();
        for (const intake::mail_line &line : intake::stored_mail_lines(left_out))
            subjects += line.subject;
        QCOMPARE(subjects, (QStringList{"First", "Last"}));
        QCOMPARE(left_out, 1);
        QCOMPARE(site.log_entries().size(), 1);
        QVERIFY(site.log_entries()[0].endsWith("|Mailfrm.frm|showmails_from_database"));
    }

    void an_endless_text_is_cut_and_says_so()
    {
        const QString whole(300000, u'x');
        QCOMPARE(intake::text_to_show(whole), whole);
        QCOMPARE(intake::text_to_show(whole + u'y'), whole + "\n\n(The text is longer than what is shown here.)");
    }
};

QTEST_GUILESS_MAIN(mail_lines_test)
#include "mail_lines_test.moc"
