// Fetching over a real Maildir: which mails are taken, what is stored, what is moved.
// Unsubscribing on the way: unsubscribe_fetch_test.cpp.
#include "frame/session.h"
#include "intake/fetch.h"
#include "intake/fetch_session.h"
#include "intake/mail_source.h"
#include "intake/write_data.h"
#include "platform/services.h"
#include "support/intake_site.h"

#include <QDir>
#include <QtTest/QTest>
#include <unistd.h>

namespace {

const QString subjects = "select tsl_subject from orders";

struct orders_site : intake_site {
    orders_site() { add_account("orders", "orders@example.org"); }
};

simple_mail order(const QString &subject, const QString &body = "Name: Bob\n")
{
    return {"orders@example.org", "bob@example.net", subject, body};
}

}

class fetch_test : public QObject {
    Q_OBJECT
private slots:
    void a_mail_to_an_account_is_stored_whole_and_moved();
    void a_mail_to_no_account_with_no_keyword_is_left_alone();
    void the_address_is_compared_without_regard_to_case_and_blanks();
    void a_mail_with_two_addresses_in_to_is_left_alone();
    void two_accounts_get_their_own_mails();
    void fetching_twice_with_the_mails_put_back_stores_each_once_data();
    void fetching_twice_with_the_mails_put_back_stores_each_once();
    void the_same_mail_a_second_later_is_another_mail();
    void two_copies_of_one_mail_are_stored_once_and_both_moved();
    void walking_while_moving_skips_none();
    void a_folder_made_by_another_program_in_other_capitals_is_used();
    void account_names_with_a_dash_and_a_point();
    void account_names_that_are_words_of_the_store_data();
    void account_names_that_are_words_of_the_store();
    void a_dropped_account_table_leaves_its_mails_and_takes_the_others();
    void a_mail_file_that_cannot_be_read_is_logged_once_and_the_others_are_taken();
    void without_accounts_the_message_comes_and_nothing_is_stored();
    void the_count_is_a_16_bit_number();
    void the_count_starts_anew_with_each_fetch();
    void a_long_subject_is_stored_whole();
    void without_a_client_signing_on_fails_and_is_logged();
};

void fetch_test::a_mail_to_an_account_is_stored_whole_and_moved()
{
    orders_site site;
    site.put(order("New order", "Name: Bob\nCity: Rome\n"));
    site.put({"someone@example.org", "bob@example.net", "Lunch?", "Hi\n"});
    QVERIFY(site.fetch());
    QCOMPARE(site.rows("select * from orders"),
             QStringList{"1|New order|1/1/2026 1:00:00 PM|bob@example.net|new|Name: Bob\r\nCity: Rome\r\n|False"});
    QCOMPARE(site.inbox().size(), 1);
    QCOMPARE(site.moved().size(), 1);
    QCOMPARE(intake::fetch_summary(), QString("1 of 2 mails processed"));
    QCOMPARE(site.log_text(), QString());
}

void fetch_test::a_mail_to_no_account_with_no_keyword_is_left_alone()
{
    orders_site site;
    site.enable_unsubscribing();
    site.put({"someone@example.org", "bob@example.net", "Lunch?", "Hi\n"});
    QVERIFY(site.fetch());
    QCOMPARE(site.column(subjects), QStringList());
    QCOMPARE(site.inbox().size(), 1);
    QCOMPARE(site.moved(), QStringList());
}

void fetch_test::the_address_is_compared_without_regard_to_case_and_blanks()
{
    intake_site site;
    site.run("insert into email_tbl(query,email,table_name) values('orders',\" Orders@Example.org \",'orders')");
    site.run("select * into [orders] from model_for_first");
    site.put({"ORDERS@example.ORG", "bob@example.net", "a", "x\n"});
    QVERIFY(site.fetch());
    QCOMPARE(site.column(subjects), QStringList{"a"});
    QCOMPARE(site.moved().size(), 1);
}

void fetch_test::a_mail_with_two_addresses_in_to_is_left_alone()
{
    orders_site site;
    site.put({"orders@example.org, someone@example.org", "bob@example.net", "a", "x\n"});
    QVERIFY(site.fetch());
    QCOMPARE(site.column(subjects), QStringList());
    QCOMPARE(site.inbox().size(), 1);
}

void fetch_test::two_accounts_get_their_own_mails()
{
    orders_site site;
    site.add_account("contact", "contact@example.org");
    site.put({"contact@example.org", "bob@example.net", "A question", "x\n"});
    site.put(order("An order"));
    QVERIFY(site.fetch());
    QCOMPARE(site.column(subjects), QStringList{"An order"});
    QCOMPARE(site.column("select tsl_subject from contact"), QStringList{"A question"});
}

void fetch_test::fetching_twice_with_the_mails_put_back_stores_each_once_data()
{
    QTest::addColumn<QString>("subject");
    QTest::addColumn<QString>("body");
    QTest::newRow("a plain mail") << "New order"
                                  << "Name: Bob\n";
    QTest::newRow("several lines and a last line end") << "New order"
                                                       << "a\n\nb\n\n";
    QTest::newRow("no last line end") << "New order"
                                      << "a\nb";
    QTest::newRow("blanks at the ends") << "  New order  "
                                        << "  a\nb  \n  ";
    QTest::newRow("accented letters") << "Réponse à l'été"
                                      << "Prénom: Élodie\n";
    QTest::newRow("letters without a simple counterpart") << "Straße ﬁn ŉ İı"
                                                          << "ß ŉ ǰ İ ı ſ K\n";
    QTest::newRow("quotes") << "O'Neil's \"order\""
                            << "it's 'so'\n";
    QTest::newRow("SQL in both") << "'); drop table orders; --"
                                 << "' or 1=1\n";
    QTest::newRow("an empty subject and body") << ""
                                               << "";
    QTest::newRow("patterns and placeholders") << "100% [a-z] ? *"
                                               << "%1 :a @b _\n";
    QTest::newRow("an emoji") << "\U0001F600"
                              << "\U0001F600\n";
}

void fetch_test::fetching_twice_with_the_mails_put_back_stores_each_once()
{
    QFETCH(QString, subject);
    QFETCH(QString, body);
    orders_site site;
    site.put(order(subject, body));
    QVERIFY(site.fetch());
    QCOMPARE(site.moved().size(), 1);
    site.put_back();
    QCOMPARE(site.inbox().size(), 1);
    QVERIFY(site.fetch());
    QCOMPARE(site.column(subjects).size(), 1);
    QCOMPARE(site.inbox(), QStringList());
    QCOMPARE(intake::fetch_summary(), QString("0 of 1 mails processed"));
    QCOMPARE(site.log_text(), QString());
}

void fetch_test::the_same_mail_a_second_later_is_another_mail()
{
    orders_site site;
    site.put(order("a"));
    site.put(order("a"));
    QVERIFY(site.fetch());
    QCOMPARE(site.column("select tsl_recdate from orders"),
             (QStringList{"1/1/2026 1:00:00 PM", "1/1/2026 1:00:01 PM"}));
}

void fetch_test::two_copies_of_one_mail_are_stored_once_and_both_moved()
{
    orders_site site;
    site.put(order("a"));
    --site.next_delivery;
    site.put(order("A")); // a copy in other capitals is the same mail
    QVERIFY(site.fetch());
    QCOMPARE(site.column(subjects), QStringList{"a"});
    QCOMPARE(site.inbox(), QStringList());
    QCOMPARE(site.moved().size(), 2);
}

void fetch_test::walking_while_moving_skips_none()
{
    orders_site site;
    QStringList expected;
    for (int number = 0; number < 350; ++number) {
        expected += QString::number(number);
        site.put(order(expected.last()));
    }
    QVERIFY(site.fetch());
    QCOMPARE(site.column(subjects), expected);
    QCOMPARE(site.inbox(), QStringList());
    QCOMPARE(site.moved().size(), 350);
}

void fetch_test::a_folder_made_by_another_program_in_other_capitals_is_used()
{
    orders_site site;
    for (const char *part : {"cur", "new", "tmp"})
        QVERIFY(QDir().mkpath(site.maildir() + "/.TESSALY_inBOX/" + part));
    site.put(order("a"));
    QVERIFY(site.fetch());
    QCOMPARE(files_in(site.maildir() + "/.TESSALY_inBOX").size(), 1);
    QVERIFY(!QDir(site.maildir() + "/.Tessaly_Inbox").exists());
}

void fetch_test::account_names_with_a_dash_and_a_point()
{
    intake_site site;
    site.add_account("web-orders.de", "orders@example.org");
    site.put(order("a"));
    QVERIFY(site.fetch());
    QCOMPARE(site.column("select tsl_subject from [web-orders.de]"), QStringList{"a"});
    QCOMPARE(site.moved().size(), 1);
    QCOMPARE(site.log_text(), QString());
}

void fetch_test::account_names_that_are_words_of_the_store_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"Where", "Set", "Values", "Into", "Like", "sqlite_orders", "Transaction", "Limit", "Case"})
        QTest::newRow(name) << QString(name);
}

void fetch_test::account_names_that_are_words_of_the_store()
{
    QFETCH(QString, name);
    intake_site site;
    site.add_account(name, "orders@example.org");
    site.put(order("a"));
    QVERIFY(site.fetch());
    QCOMPARE(site.column("select tsl_subject from [" + name + "]"), QStringList{"a"});
    QCOMPARE(site.log_text(), QString());
}

void fetch_test::a_dropped_account_table_leaves_its_mails_and_takes_the_others()
{
    orders_site site;
    site.add_account("contact", "contact@example.org");
    site.run("drop table contact");
    site.put({"contact@example.org", "bob@example.net", "lost?", "x\n"});
    site.put(order("An order"));
    site.put({"contact@example.org", "bob@example.net", "lost too?", "x\n"});
    site.fetch();
    QCOMPARE(site.column(subjects), QStringList{"An order"});
    QCOMPARE(site.inbox().size(), 2);
    QCOMPARE(site.moved().size(), 1);
    const QStringList entries = site.log_entries(); // two mails, then the parser over the missing table
    QCOMPARE(entries.size(), 3);
    QVERIFY(entries[0].startsWith(QString::number(qint32(ado::unknown_table)) + u'|'));
    QVERIFY(entries[0].endsWith("|Mailfrm.frm|write_data"));
    QVERIFY(entries[1].endsWith("|Mailfrm.frm|write_data"));
}

void fetch_test::a_mail_file_that_cannot_be_read_is_logged_once_and_the_others_are_taken()
{
    orders_site site;
    site.put(order("First"));
    const QString bad = site.maildir() + "/new/1767268800.bad";
    QVERIFY(symlink(qPrintable(bad), qPrintable(bad)) == 0); // leads to itself: nobody can open it
    QVERIFY(site.fetch());
    const QStringList entries = site.log_entries();
    QCOMPARE(entries.size(), 1);
    QVERIFY2(entries[0].startsWith("75|The mail cannot be read (" + bad), qPrintable(entries[0]));
    site.put(order("Second"));
    QVERIFY(site.fetch());
    QCOMPARE(site.column(subjects), QStringList({"First", "Second"}));
    QCOMPARE(site.log_entries().size(), 1);
}

void fetch_test::without_accounts_the_message_comes_and_nothing_is_stored()
{
    intake_site site;
    site.put(order("a"));
    QVERIFY(site.fetch());
    QVERIFY(site.boxes.shown.contains("Mail ids not yet configured"));
    QCOMPARE(site.inbox().size(), 1);
    QCOMPARE(site.moved(), QStringList());
    QCOMPARE(intake::fetch_summary(), QString("0 of 1 mails processed"));
}

void fetch_test::the_count_is_a_16_bit_number()
{
    orders_site site;
    intake::choose_mail_source();
    intake::fetch_mail();
    site.put(order("one more"));
    intake::choose_mail_source();
    intake::fetching.current_item =
        intake::fetching.inbox_items->Find("", {"", [](const QString &, const QString &) { return true; }});
    QVERIFY(intake::fetching.current_item);
    intake::fetching.mail_count = 32767;
    intake::write_data();
    QCOMPARE(site.log_entries(), QStringList{"6|Overflow|Mailfrm.frm|write_data"});
    QCOMPARE(site.column(subjects), QStringList{"one more"}); // what was written stays
    intake::close_mail_source();
    QCOMPARE(site.inbox().size(), 1);
    QVERIFY(site.fetch()); // found again, not stored again, and moved
    QCOMPARE(site.column(subjects).size(), 1);
    QCOMPARE(site.inbox(), QStringList());
}

void fetch_test::the_count_starts_anew_with_each_fetch()
{
    orders_site site;
    site.put(order("a"));
    site.put(order("b"));
    QVERIFY(site.fetch());
    QCOMPARE(int(intake::fetching.mail_count), 2);
    site.put(order("c"));
    QVERIFY(site.fetch());
    QCOMPARE(int(intake::fetching.mail_count), 1);
}

void fetch_test::a_long_subject_is_stored_whole()
{
    orders_site site;
    const QString subject = QString("word ").repeated(100).chopped(1);
    site.put(order(subject));
    QVERIFY(site.fetch());
    QCOMPARE(site.column(subjects), QStringList{subject});
    QCOMPARE(site.moved().size(), 1);
}

void fetch_test::without_a_client_signing_on_fails_and_is_logged()
{
    class refusing_session : public mapi::mail_session_service {
        class failing : public mapi::MAPISession {
            void SignOn() override { throw run_time_error{32003, "Logon failure"}; }
            void SignOff() override {}
            long SessionID() const override { return 0; }
        };
        std::unique_ptr<mapi::MAPISession> session() override { return std::make_unique<failing>(); }
        std::unique_ptr<mapi::MAPIMessages> messages() override { return nullptr; }
    };
    orders_site site;
    refusing_session none;
    services = {nullptr, &none, nullptr};
    QVERIFY(!site.fetch());
    QCOMPARE(site.log_entries(), QStringList{"32003|Logon failure|Mailfrm.frm|Form_load"});
    intake::close_mail_source();
}

QTEST_GUILESS_MAIN(fetch_test)
#include "fetch_test.moc"
