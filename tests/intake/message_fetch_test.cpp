// The fetch over the client that reads and leaves, by a stand-in of its verbs.
#include "frame/error_log.h"
#include "frame/session.h"
#include "intake/fetch.h"
#include "intake/fetch_session.h"
#include "intake/mail_source.h"
#include "platform/services.h"
#include "platform/settings.h"
#include "support/fake_mail_session.h"
#include "support/intake_site.h"

#include <QtTest/QTest>

namespace {

const QDateTime noon(QDate(2026, 8, 13), QTime(12, 0, 0), Qt::UTC);
const QString blocked = "select email from unsubscribe_tbl";
const QString stored = "select tsl_subject from orders";

struct message_site : intake_site {
    message_site()
    {
        SaveSetting("mail_client", "kind", "pop3");
        services.mail_session = &session_service;
        add_account("orders", "orders@example.org");
        enable_unsubscribing();
        run("update unsub_detail set unsub_keyword='UNSUBSCRIBE'");
    }
    void put(const QString &recipient, const QString &subject, const QString &sender = "smtp:bob@example.net")
    {
        session_service.log.messages.push_back({recipient, subject, "Name: Bob\nCity: Rome", sender, noon});
    }
    fake_mail_session session_service;
};

}

class message_fetch_test : public QObject {
    Q_OBJECT
private slots:
    void signing_on_and_fetching();
    void a_mail_to_an_account_is_stored_and_left();
    void a_mail_to_nobody_without_the_keyword_is_left_alone();
    void two_addresses_in_to_are_taken();
    void fetching_twice_stores_once();
    void the_keyword_is_looked_for_as_it_is_in_the_subject_in_capitals();
    void a_valid_entry_blocks_and_answers_the_sender();
    void a_sender_without_the_prefix_is_replaced_by_the_entrys_address();
    void the_stored_sender_of_a_handled_unsubscribe_is_the_entrys_address();
    void a_blocked_sender_gets_no_second_answer();
    void a_bad_entry_is_none();
    void a_mail_to_nobody_with_the_keyword_stores_no_row();
    void the_source_is_let_go();
    void signing_off_that_fails_leaves_nothing_for_the_next_fetch();
    void a_client_with_folders_that_cannot_be_had_gives_way_to_this_one();
    void a_client_with_folders_comes_first();
};

void message_fetch_test::signing_on_and_fetching()
{
    message_site site;
    QVERIFY(site.fetch());
    const auto &log = site.session_service.log;
    QVERIFY(intake::fetching.use_mapi);
    QVERIFY(log.signed_on);
    QVERIFY(log.fetched);
    QVERIFY(log.sorted);
    QVERIFY(!log.unread_only);
    QCOMPARE(log.session_id, 4711L);
}

void message_fetch_test::a_mail_to_an_account_is_stored_and_left()
{
    message_site site;
    site.put("SMTP:Orders@example.org", "An order");
    site.put("smtp:private@example.org", "Lunch?");
    QVERIFY(site.fetch());
    QCOMPARE(site.rows("select * from orders"),
             QStringList{"1|An order|8/13/2026 12:00:00 PM|smtp:bob@example.net|new|Name: Bob\r\nCity: Rome|False"});
    QCOMPARE(intake::fetch_summary(), QString("1 of 2 mails processed"));
    QCOMPARE(int(site.session_service.log.messages.size()), 2);
}

void message_fetch_test::a_mail_to_nobody_without_the_keyword_is_left_alone()
{
    message_site site;
    site.put("smtp:private@example.org", "Lunch?");
    QVERIFY(site.fetch());
    QCOMPARE(site.column(stored), QStringList());
    QCOMPARE(site.column(blocked), QStringList());
}

void message_fetch_test::two_addresses_in_to_are_taken()
{
    message_site site;
    site.put("smtp:private@example.org; smtp:orders@example.org", "An order");
    QVERIFY(site.fetch());
    QCOMPARE(site.column(stored), QStringList{"An order"});
}

void message_fetch_test::fetching_twice_stores_once()
{
    message_site site;
    site.put("smtp:orders@example.org", "Été");
    QVERIFY(site.fetch());
    QVERIFY(site.fetch());
    QCOMPARE(site.column(stored), QStringList{"Été"});
    QCOMPARE(intake::fetch_summary(), QString("0 of 1 mails processed"));
}

void message_fetch_test::the_keyword_is_looked_for_as_it_is_in_the_subject_in_capitals()
{
    message_site site;
    site.put("smtp:private@example.org", "unsubscribe 1037");
    site.run("update unsub_detail set unsub_keyword='Unsubscribe'"); // stands in no capitals
    QVERIFY(site.fetch());
    QCOMPARE(site.session_service.log.sent, QStringList());
    site.run("update unsub_detail set unsub_keyword='UNSUBSCRIBE'");
    QVERIFY(site.fetch());
    QCOMPARE(site.session_service.log.sent.size(), 1);
}

void message_fetch_test::a_valid_entry_blocks_and_answers_the_sender()
{
    message_site site;
    site.put("smtp:private@example.org", "unsubscribe: 1037");
    site.put("smtp:orders@example.org", "An order", "smtp:zoe@example.net");
    QVERIFY(site.fetch());
    QCOMPARE(site.column(blocked), QStringList{"bob@example.net"});
    QCOMPARE(site.session_service.log.sent, QStringList{"smtp:bob@example.net|You are off the list|Goodbye.\r\n\r\n "});
    QCOMPARE(site.column(stored), QStringList{"An order"}); // the walk goes on behind the answer
}

void message_fetch_test::a_sender_without_the_prefix_is_replaced_by_the_entrys_address()
{
    message_site site;
    site.put("smtp:private@example.org", "unsubscribe 1037", "bob@example.net");
    QVERIFY(site.fetch());
    QCOMPARE(site.column(blocked), QStringList{"ann@example.net"});
}

void message_fetch_test::the_stored_sender_of_a_handled_unsubscribe_is_the_entrys_address()
{
    message_site site;
    site.put("smtp:orders@example.org", "unsubscribe 1037");
    QVERIFY(site.fetch());
    QCOMPARE(site.rows("select tsl_subject,tsl_Email from orders"), QStringList{"unsubscribe 1037|ann@example.net"});
}

void message_fetch_test::a_blocked_sender_gets_no_second_answer()
{
    message_site site;
    site.run("insert into unsubscribe_tbl (email) values('bob@example.net')");
    site.put("smtp:orders@example.org", "unsubscribe 1037");
    QVERIFY(site.fetch());
    QCOMPARE(site.session_service.log.sent, QStringList());
    QCOMPARE(site.column(blocked), QStringList{"bob@example.net"});
    QCOMPARE(site.column("select tsl_Email from orders"), QStringList{"smtp:bob@example.net"});
}

void message_fetch_test::a_bad_entry_is_none()
{
    message_site site;
    site.put("smtp:orders@example.org", "unsubscribe 1038");
    site.put("smtp:private@example.org", "unsubscribe me");
    QVERIFY(site.fetch());
    QCOMPARE(site.session_service.log.sent, QStringList());
    QCOMPARE(site.column(blocked), QStringList());
    QCOMPARE(site.column(stored), QStringList{"unsubscribe 1038"});
}

void message_fetch_test::a_mail_to_nobody_with_the_keyword_stores_no_row()
{
    message_site site;
    site.put("smtp:private@example.org", "unsubscribe 1037");
    QVERIFY(site.fetch());
    QCOMPARE(site.column(stored), QStringList());
    QCOMPARE(intake::fetch_summary(), QString("0 of 1 mails processed"));
}

void message_fetch_test::the_source_is_let_go()
{
    message_site site;
    QVERIFY(site.fetch());
    intake::close_mail_source();
    QVERIFY(!site.session_service.log.signed_on);
    QVERIFY(!intake::fetching.use_mapi);
}

void message_fetch_test::signing_off_that_fails_leaves_nothing_for_the_next_fetch()
{
    message_site site;
    site.put("orders@example.org", "An order");
    site.session_service.log.sign_off_fails = true;
    QVERIFY(site.fetch());
    QVERIFY(!guarded("Mailfrm.frm", "Form_load", [] { intake::close_mail_source(); }));
    QVERIFY(!intake::fetching.MAPISession1);
    QVERIFY(!intake::fetching.MAPIMessages1);
    QVERIFY(site.fetch());
    QCOMPARE(intake::fetch_summary(), QString("0 of 1 mails processed"));
    site.session_service.log.sign_off_fails = false;
}

void message_fetch_test::a_client_with_folders_that_cannot_be_had_gives_way_to_this_one()
{
    class absent_client : public outlook::mail_client_service {
        std::unique_ptr<outlook::Application> GetObject() override { return nullptr; }
        std::unique_ptr<outlook::Application> CreateObject() override { return nullptr; }
    };
    message_site site;
    absent_client absent;
    services.mail_client = &absent;
    SaveSetting("mail_client", "kind", "maildir");
    site.put("smtp:orders@example.org", "An order");
    QVERIFY(site.fetch());
    QVERIFY(intake::fetching.use_mapi);
    QCOMPARE(site.column(stored), QStringList{"An order"});
}

void message_fetch_test::a_client_with_folders_comes_first()
{
    message_site site;
    SaveSetting("mail_client", "kind", "maildir");
    site.put("smtp:orders@example.org", "Not looked at");
    QVERIFY(site.fetch());
    QVERIFY(!intake::fetching.use_mapi);
    QVERIFY(!site.session_service.log.signed_on);
    QCOMPARE(site.column(stored), QStringList());
}

QTEST_GUILESS_MAIN(message_fetch_test)
#include "message_fetch_test.moc"
