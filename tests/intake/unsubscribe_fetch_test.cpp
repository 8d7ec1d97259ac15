// Unsubscribe mails on their way through a fetch, over a real Maildir and the real Outbox.
#include "intake/fetch.h"
#include "platform/outbox.h"
#include "platform/settings.h"
#include "support/intake_site.h"

#include <QtTest/QTest>

namespace {

const QString blocked = "select email from unsubscribe_tbl";
const QString stored = "select tsl_subject from orders";

struct unsubscribe_site : intake_site {
    unsubscribe_site()
    {
        add_account("orders", "orders@example.org");
        enable_unsubscribing();
    }
    QStringList answers() const
    {
        QStringList texts;
        for (const outbox::kept_mail &mail : outbox::contents())
            texts += mail.To.join(u';') + u'|' + mail.Subject;
        return texts;
    }
    // Behind the header, without the line ends that the encoding put in.
    QString answer_text() const
    {
        const auto mails = outbox::contents();
        if (mails.size() != 1)
            return QString("%1 answers").arg(mails.size());
        const QByteArray eml = bytes_of_file(folder.filePath("outbox/" + mails[0].id + ".eml"));
        return QString::fromUtf8(eml.sliced(eml.indexOf("\r\n\r\n") + 4).replace("=\r\n", ""));
    }
};

simple_mail to_nobody(const QString &subject, const QString &from = "ann@example.net")
{
    return {"private@example.org", from, subject, "Please.\n"};
}

simple_mail to_account(const QString &subject)
{
    return {"orders@example.org", "ann@example.net", subject, "Please.\n"};
}

}

class unsubscribe_fetch_test : public QObject {
    Q_OBJECT
private slots:
    void a_valid_entry_to_no_account_is_acted_on_and_moved_and_no_row_is_stored();
    void a_bad_entry_to_no_account_stays_in_the_inbox_data();
    void a_bad_entry_to_no_account_stays_in_the_inbox();
    void with_the_keyword_to_an_account_it_is_stored_whatever_the_entry_number_data();
    void with_the_keyword_to_an_account_it_is_stored_whatever_the_entry_number();
    void before_the_enabled_date_a_keyword_mail_to_an_account_is_stored_and_nothing_else();
    void at_the_enabled_second_it_applies();
    void without_an_enabled_date_it_does_not_apply();
    void a_date_that_cannot_be_read_keeps_back_only_keyword_mails();
    void switched_off_it_does_not_apply();
    void an_empty_keyword_is_in_no_subject();
    void an_address_already_blocked_gets_no_second_confirmation();
    void two_mails_with_one_entry_number_are_answered_once();
    void the_number_is_a_text();
    void nobody_leaves_the_list_by_somebody_elses_mail();
    void the_sender_in_the_list_by_the_same_address_stays_there();
    void the_answer_goes_to_reply_to();
    void the_account_is_named_when_the_confirmation_says_so();
    void for_a_mail_to_no_account_that_is_one_empty_line_more();
    void an_address_that_cannot_be_answered_ends_nothing();
    void without_a_confirmation_row_the_mail_stays_and_is_logged();
};

void unsubscribe_fetch_test::a_valid_entry_to_no_account_is_acted_on_and_moved_and_no_row_is_stored()
{
    unsubscribe_site site;
    site.put(to_nobody("Unsubscribe 1037"));
    QVERIFY(site.fetch());
    QCOMPARE(site.column(blocked), QStringList{"ann@example.net"});
    QCOMPARE(site.answers(), QStringList{"ann@example.net|You are off the list"});
    QCOMPARE(site.column(stored), QStringList());
    QCOMPARE(site.inbox(), QStringList());
    QCOMPARE(site.moved().size(), 1);
    QCOMPARE(intake::fetch_summary(), QString("0 of 1 mails processed"));
}

void unsubscribe_fetch_test::a_bad_entry_to_no_account_stays_in_the_inbox_data()
{
    QTest::addColumn<QString>("subject");
    QTest::newRow("an unknown number") << "unsubscribe 1038";
    QTest::newRow("no number") << "unsubscribe";
    QTest::newRow("a word for a number") << "unsubscribe me";
    QTest::newRow("an answer's Re stays, so it is none") << "Re: unsubscribe 1037";
    QTest::newRow("the number with leading noughts is another text") << "unsubscribe 0001037";
}

void unsubscribe_fetch_test::a_bad_entry_to_no_account_stays_in_the_inbox()
{
    QFETCH(QString, subject);
    unsubscribe_site site;
    site.put(to_nobody(subject));
    QVERIFY(site.fetch());
    QCOMPARE(site.inbox().size(), 1);
    QCOMPARE(site.moved(), QStringList());
    QCOMPARE(site.column(blocked), QStringList());
    QCOMPARE(site.answers(), QStringList());
    QCOMPARE(site.log_text(), QString());
}

void unsubscribe_fetch_test::with_the_keyword_to_an_account_it_is_stored_whatever_the_entry_number_data()
{
    QTest::addColumn<QString>("subject");
    QTest::addColumn<QStringList>("on_the_list");
    QTest::newRow("a valid number") << "UNSUBSCRIBE: 1037" << QStringList{"ann@example.net"};
    QTest::newRow("the keyword twice and colons")
        << "unsubscribe:unsubscribe: 1037 :" << QStringList{"ann@example.net"};
    QTest::newRow("an unknown number") << "unsubscribe 1038" << QStringList{};
    QTest::newRow("no number") << "unsubscribe" << QStringList{};
}

void unsubscribe_fetch_test::with_the_keyword_to_an_account_it_is_stored_whatever_the_entry_number()
{
    QFETCH(QString, subject);
    QFETCH(QStringList, on_the_list);
    unsubscribe_site site;
    site.put(to_account(subject));
    QVERIFY(site.fetch());
    QCOMPARE(site.rows("select tsl_subject,tsl_Email from orders"), QStringList{subject + "|ann@example.net"});
    QCOMPARE(site.inbox(), QStringList());
    QCOMPARE(site.column(blocked), on_the_list);
    QCOMPARE(site.answers().size(), on_the_list.size());
}

void unsubscribe_fetch_test::before_the_enabled_date_a_keyword_mail_to_an_account_is_stored_and_nothing_else()
{
    unsubscribe_site site;
    site.enable_unsubscribing(QDateTime(QDate(2026, 1, 1), QTime(13, 0, 1), Qt::UTC)); // a second after the mail
    site.put(to_account("unsubscribe 1037"));
    QVERIFY(site.fetch());
    QCOMPARE(site.column(stored), QStringList{"unsubscribe 1037"});
    QCOMPARE(site.moved().size(), 1);
    QCOMPARE(site.column(blocked), QStringList());
    QCOMPARE(site.answers(), QStringList());
}

void unsubscribe_fetch_test::at_the_enabled_second_it_applies()
{
    unsubscribe_site site;
    site.enable_unsubscribing(QDateTime(QDate(2026, 1, 1), QTime(13, 0, 0), Qt::UTC));
    site.put(to_account("unsubscribe 1037"));
    QVERIFY(site.fetch());
    QCOMPARE(site.column(blocked), QStringList{"ann@example.net"});
}

void unsubscribe_fetch_test::without_an_enabled_date_it_does_not_apply()
{
    unsubscribe_site site;
    SaveSetting("main", "enabledUnsubDate", QString());
    site.put(to_account("unsubscribe 1037"));
    site.put(to_nobody("unsubscribe 1037"));
    QVERIFY(site.fetch());
    QCOMPARE(site.column(blocked), QStringList());
    QCOMPARE(site.inbox().size(), 1);
}

void unsubscribe_fetch_test::a_date_that_cannot_be_read_keeps_back_only_keyword_mails()
{
    unsubscribe_site site;
    site.add_map("cut", 1, "Order", "Line", {{"word", "Line1", "", true}});
    SaveSetting("main", "enabledUnsubDate", "last summer");
    site.put(to_account("Order"));
    site.put(to_account("unsubscribe 1037"));
    site.put(to_nobody("unsubscribe 1037"));
    site.put(to_account("Hello"));
    QVERIFY(site.fetch());
    QCOMPARE(site.column(stored), QStringList({"Order", "Hello"}));
    QCOMPARE(site.column("select word from cut"), QStringList{"Please."});
    QCOMPARE(site.inbox().size(), 2);
    QCOMPARE(site.column(blocked), QStringList());
    QCOMPARE(site.answers(), QStringList());
    const QStringList entries = site.log_entries();
    QCOMPARE(entries.size(), 2);
    for (const QString &entry : entries)
        QVERIFY2(entry.endsWith("|Mailfrm.frm|write_data"), qPrintable(entry));
}

void unsubscribe_fetch_test::switched_off_it_does_not_apply()
{
    unsubscribe_site site;
    site.run("update unsub_detail set enable_unsub=no");
    site.put(to_account("unsubscribe 1037"));
    QVERIFY(site.fetch());
    QCOMPARE(site.column(blocked), QStringList());
    QCOMPARE(site.column(stored).size(), 1);
}

void unsubscribe_fetch_test::an_empty_keyword_is_in_no_subject()
{
    unsubscribe_site site;
    site.run("update unsub_detail set unsub_keyword=''");
    site.put(to_nobody("1037"));
    site.put(to_account("1037"));
    QVERIFY(site.fetch());
    QCOMPARE(site.column(blocked), QStringList());
    QCOMPARE(site.column(stored), QStringList{"1037"});
    QCOMPARE(site.inbox().size(), 1);
}

void unsubscribe_fetch_test::an_address_already_blocked_gets_no_second_confirmation()
{
    unsubscribe_site site;
    site.run("insert into unsubscribe_tbl (email) values('Ann@Example.net')");
    site.put(to_account("unsubscribe 1037"));
    site.put(to_nobody("unsubscribe 1037"));
    QVERIFY(site.fetch());
    QCOMPARE(site.answers(), QStringList());
    QCOMPARE(site.column(blocked), QStringList{"Ann@Example.net"});
    QCOMPARE(site.column(stored).size(), 1);
    QCOMPARE(site.inbox().size(), 1); // it is not handled, so the one to no account stays
}

void unsubscribe_fetch_test::two_mails_with_one_entry_number_are_answered_once()
{
    unsubscribe_site site;
    site.put(to_nobody("unsubscribe 1037"));
    site.put(to_nobody("unsubscribe 1037"));
    QVERIFY(site.fetch());
    QCOMPARE(site.answers().size(), 1);
    QCOMPARE(site.column(blocked).size(), 1);
    QCOMPARE(site.inbox().size(), 1);
}

void unsubscribe_fetch_test::the_number_is_a_text()
{
    unsubscribe_site site;
    site.run("insert into unsub_entryno (email,entryno) values('zoe@example.net','000701')");
    site.put(to_nobody("unsubscribe 701"));
    QVERIFY(site.fetch());
    QCOMPARE(site.column(blocked), QStringList());
    site.put(to_nobody("unsubscribe 000701"));
    QVERIFY(site.fetch());
    QCOMPARE(site.column(blocked), QStringList{"zoe@example.net"});
}

void unsubscribe_fetch_test::nobody_leaves_the_list_by_somebody_elses_mail()
{
    unsubscribe_site site;
    site.run("insert into unsubscribe_tbl (email) values('bob@example.net')");
    simple_mail mail = to_nobody("unsubscribe 1037");
    mail.more = "Reply-To: bob@example.net\n";
    site.put(mail);
    QVERIFY(site.fetch());
    QStringList list = site.column(blocked);
    list.removeDuplicates();
    list.sort();
    QCOMPARE(list, (QStringList{"ann@example.net", "bob@example.net"}));
}

void unsubscribe_fetch_test::the_sender_in_the_list_by_the_same_address_stays_there()
{
    unsubscribe_site site;
    site.put(to_nobody("unsubscribe 1037", "ANN@example.net"));
    QVERIFY(site.fetch());
    QCOMPARE(site.column(blocked), QStringList{"ann@example.net"});
}

void unsubscribe_fetch_test::the_answer_goes_to_reply_to()
{
    unsubscribe_site site;
    simple_mail mail = to_nobody("unsubscribe 1037");
    mail.more = "Reply-To: other@example.net\n";
    site.put(mail);
    QVERIFY(site.fetch());
    QCOMPARE(site.answers(), QStringList{"other@example.net|You are off the list"});
    QCOMPARE(site.column(blocked), QStringList{"ann@example.net"});
}

void unsubscribe_fetch_test::the_account_is_named_when_the_confirmation_says_so()
{
    unsubscribe_site site;
    site.run("update unsubconfirm_tbl set addquery=yes,signature='shop'");
    site.run("insert into sign (signtitle,signtext,signselected) values('shop','Rose Cottage','No')");
    site.put(to_account("unsubscribe 1037"));
    QVERIFY(site.fetch());
    QCOMPARE(site.answer_text(), QString("Goodbye.\r\norders\r\n\r\nRose Cottage"));
}

void unsubscribe_fetch_test::for_a_mail_to_no_account_that_is_one_empty_line_more()
{
    unsubscribe_site site;
    site.run("update unsubconfirm_tbl set addquery=yes,signature='shop'");
    site.run("insert into sign (signtitle,signtext,signselected) values('shop','Rose Cottage','No')");
    site.put(to_nobody("unsubscribe 1037"));
    QVERIFY(site.fetch());
    QCOMPARE(site.answer_text(), QString("Goodbye.\r\n\r\n\r\nRose Cottage"));
}

void unsubscribe_fetch_test::an_address_that_cannot_be_answered_ends_nothing()
{
    unsubscribe_site site;
    site.put({"orders@example.org", "nobody in particular", "unsubscribe 1037", "Please.\n"});
    site.put({"orders@example.org", "bob@example.net", "An order", "x\n"});
    QVERIFY(site.fetch());
    QCOMPARE(site.column(stored), (QStringList{"unsubscribe 1037", "An order"}));
    QCOMPARE(site.inbox(), QStringList());
    const auto kept = outbox::contents();
    QCOMPARE(int(kept.size()), 1);
    QVERIFY(kept[0].state == outbox::mail_state::refused);
    QVERIFY(!kept[0].reason.isEmpty());
    site.put_back();
    QVERIFY(site.fetch()); // a second pass over such a mail adds no row and no answer
    QCOMPARE(site.column(stored).size(), 2);
    QCOMPARE(int(outbox::contents().size()), 1);
}

void unsubscribe_fetch_test::without_a_confirmation_row_the_mail_stays_and_is_logged()
{
    unsubscribe_site site;
    site.run("delete from unsubconfirm_tbl");
    site.put(to_nobody("unsubscribe 1037"));
    site.put({"orders@example.org", "bob@example.net", "An order", "x\n"});
    site.fetch();
    QCOMPARE(site.inbox().size(), 1);
    QCOMPARE(site.column(stored), QStringList{"An order"});
    QCOMPARE(site.log_entries().size(), 1);
    QVERIFY(site.log_entries()[0].endsWith("|Mailfrm.frm|write_data"));
}

QTEST_GUILESS_MAIN(unsubscribe_fetch_test)
#include "unsubscribe_fetch_test.moc"
