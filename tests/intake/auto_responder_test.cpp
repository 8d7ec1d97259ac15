// Automatic replies: which mails are answered, and what the replies say of themselves. A real store, a real Outbox.
// Their subjects and texts: auto_responder_words_test.cpp; handing them over, and failing:
// auto_responder_failure_test.cpp; killed programs: auto_reply_kill_test.cpp; storing and testing: auto_reply_test.cpp.
#include "intake/mail_source.h"
#include "intake/map_parser.h"
#include "maps/map_writing.h"
#include "support/answer_site.h"
#include "support/dovecot.h"
#include "support/open_mailbox.h"

#include <QtTest/QTest>

class auto_responder_test : public QObject {
    Q_OBJECT
private slots:
    void a_map_without_a_reply_answers_nobody();
    void a_reply_that_is_not_enabled_stays_and_keeps_its_token();
    void a_mail_of_two_maps_gets_two_replies();
    void bringing_mails_over_answers_nobody();
    void the_parser_behind_a_new_map_answers_what_others_take();
    void replies_say_what_they_are_and_whose();
    void a_mail_s_own_headers_hold_nothing_back();
    void a_mailbox_that_is_only_read_is_answered_too();
};

void auto_responder_test::a_map_without_a_reply_answers_nobody()
{
    answer_site site;
    site.come("Bob");
    services.mail_session = nullptr; // nothing signs on
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies(), QStringList());
    QCOMPARE(site.column("select full_name from names"), QStringList{"Bob"});
}

void auto_responder_test::a_reply_that_is_not_enabled_stays_and_keeps_its_token()
{
    answer_site site;
    intake::auto_reply reply = reply_with(intake::support_token);
    reply.enable = false;
    site.answer(reply);
    site.come("Bob");
    services.mail_session = nullptr;
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies(), QStringList());
    QCOMPARE(site.token(), "7");
    QCOMPARE(site.column(unprocessed_mails), QStringList());
}

void auto_responder_test::a_mail_of_two_maps_gets_two_replies()
{
    answer_site site;
    site.add_name_map("again");
    site.answer(reply_with(intake::support_token, "First"));
    site.answer(reply_with(intake::support_token, "Second"), "again");
    site.come("Bob");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies(), (QStringList{"bob@example.net|First 7 at the nursery|waiting",
                                     "bob@example.net|Second 7 at the nursery|waiting"}));
    QCOMPARE(site.token(), "8");
    QCOMPARE(site.token("again"), "8");
}

void auto_responder_test::bringing_mails_over_answers_nobody()
{
    answer_site site;
    site.answer(reply_with(intake::support_token));
    site.come("Bob");
    QVERIFY(intake::remap_account_mails("orders", "names"));
    QCOMPARE(site.column("select full_name from names"), QStringList{"Bob"});
    QCOMPARE(replies(), QStringList());
    QCOMPARE(site.token(), "7");
}

void auto_responder_test::the_parser_behind_a_new_map_answers_what_others_take()
{
    answer_site site;
    site.answer(reply_with(intake::standard_subject));
    site.add_stored_mail("orders", "Other", "Rome"); // for the new map
    site.come("Bob");                                // still unprocessed, and names takes it
    maps::map_wizard.map_subject = "Other";
    site.add_field("town", 1);
    maps::write_map("newer");
    QVERIFY(maps::bring_mails_over("newer"));
    QCOMPARE(site.column("select town from newer"), QStringList{"Rome"});
    QCOMPARE(replies(), QStringList{"bob@example.net|Thank you|waiting"});
}

void auto_responder_test::replies_say_what_they_are_and_whose()
{
    answer_site site;
    site.add_account("contact", "hello@example.org");
    site.add_name_map("questions", 2);
    site.answer(reply_with(intake::standard_subject));
    site.answer(reply_with(intake::standard_subject), "questions");
    site.come("Bob");
    site.come("Zoe", "zoe@example.net", "contact");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies().size(), 2);
    for (size_t number : {size_t(0), size_t(1)}) {
        QVERIFY2(head_of(number).contains("\r\nAuto-Submitted: auto-replied\r\n"), head_of(number));
        QCOMPARE(outbox::contents().at(number).Kind, outbox::mail_kind::answer);
    }
    QVERIFY2(head_of(0).contains("\r\nFrom: orders@example.org\r\n"), head_of(0));
    QVERIFY2(head_of(1).contains("\r\nFrom: hello@example.org\r\n"), head_of(1));
    QVERIFY2(head_of(1).contains("\r\nTo: zoe@example.net\r\n"), head_of(1));
}

// A form's script is a machine, and says so.
void auto_responder_test::a_mail_s_own_headers_hold_nothing_back()
{
    answer_site site;
    site.answer(reply_with(intake::standard_subject));
    site.put({"orders@example.org", "www-data@example.net", "Order", "full_name: Bob\ncity: Rome\n",
              "Auto-Submitted: auto-generated\nPrecedence: bulk\nList-Id: <forms.example.net>\n"
              "X-Auto-Response-Suppress: All\nReply-To: bob@example.net\n"});
    QVERIFY(site.fetch());
    QCOMPARE(replies(), QStringList{"bob@example.net|Thank you|waiting"});
    QCOMPARE(site.log_text(), QString());
}

// The session that fetches stays open beside those of the replies.
void auto_responder_test::a_mailbox_that_is_only_read_is_answered_too()
{
    answer_site site;
    dovecot_server server;
    set_pop3_mailbox("127.0.0.1", server.pop3_port);
    site.answer(reply_with(intake::support_token));
    for (const char *visitor : {"bob", "zoe"})
        server.deliver("ann",
                       simple_mail{"orders@example.org", QString(visitor) + "@example.net", "Order",
                                   "full_name: " + QString(visitor) + "\ncity: Rome\n"},
                       site.next_delivery++);
    for (int times = 0; times < 2; ++times) { // the mails are there the second time, too
        QVERIFY(site.fetch());
        intake::close_mail_source();
    }
    QCOMPARE(site.log_text(), QString());
    QCOMPARE(replies(), (QStringList{"bob@example.net|Order 7 at the nursery|waiting",
                                     "zoe@example.net|Order 8 at the nursery|waiting"}));
    QCOMPARE(site.column("select full_name from names"), (QStringList{"bob", "zoe"}));
}

QTEST_GUILESS_MAIN(auto_responder_test)
#include "auto_responder_test.moc"
