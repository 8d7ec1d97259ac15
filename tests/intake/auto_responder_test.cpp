// Automatic replies: what is answered, with which subject and text, and what a reply that fails leaves. A real store,
// a real Outbox. Killed programs: auto_reply_kill_test.cpp. Storing and testing: auto_reply_test.cpp.
#include "frame/session.h"
#include "intake/auto_reply.h"
#include "intake/mail_source.h"
#include "intake/map_parser.h"
#include "maps/map_writing.h"
#include "platform/outbox.h"
#include "platform/real/mail_session/real_mail_session.h"
#include "platform/services.h"
#include "platform/settings.h"
#include "support/dovecot.h"
#include "support/fake_mail_session.h"
#include "support/open_mailbox.h"
#include "support/wizard_site.h"

#include <QFile>
#include <QtTest/QTest>

namespace {

const QString unfilled = "Not all mails could be put into their tables, the next fetch tries again: ";
const QString unprocessed = "select message_id from orders where tsl_processed=no";

intake::auto_reply reply_with(int type, const QString &prefix = "Order")
{
    intake::auto_reply reply;
    reply.SubjectType = type;
    reply.Subject = "Thank you";
    reply.SubjectPrefix = prefix;
    reply.SubjectDynamic = "full_name";
    reply.SubjectSuffix = "at the nursery";
    reply.LastToken = "7";
    reply.autocontent = "We have your order.";
    reply.enable = true;
    return reply;
}

// One account, one map "names" over full_name and city.
struct answer_site : wizard_site {
    answer_site()
    {
        services.mail_session = &mail_session;
        add_name_map("names");
    }
    void add_name_map(const QString &name, int account = 1)
    {
        add_map(name, account, "Order", "Line", {{"full_name", "Line1", ":"}, {"city", "Line2", ":"}});
    }
    void answer(const intake::auto_reply &reply, const QString &map = "names") { intake::save_auto_reply(map, reply); }
    void come(const QString &visitor, const QString &sender = "bob@example.net", const QString &account = "orders")
    {
        add_stored_mail(account, "Order", "full_name: " + visitor + "\r\ncity: Rome");
        run("update " + account + " set tsl_Email='" + sender + "' where message_id=(select max(message_id) from " +
            account + ")");
    }
    QString token(const QString &map = "names") const
    {
        return column("select LastToken from autocontent where Mapname='" + map + "'").value(0);
    }

    real_mail_session mail_session;
};

QStringList replies() // "to|subject|state"
{
    QStringList lines;
    for (const outbox::kept_mail &mail : outbox::contents()) {
        const char *state = mail.state == outbox::mail_state::waiting ? "waiting"
                            : mail.state == outbox::mail_state::held  ? "held"
                                                                      : "refused";
        lines += mail.To.join(",") + u'|' + mail.Subject + u'|' + state;
    }
    return lines;
}

QByteArray head_of(size_t number)
{
    const QByteArray bytes = outbox::bytes_of(outbox::contents().at(number).id);
    return bytes.first(bytes.indexOf("\r\n\r\n") + 2);
}

QString text_of_mail(size_t number)
{
    const QByteArray bytes = outbox::bytes_of(outbox::contents().at(number).id);
    return QString::fromUtf8(bytes.sliced(bytes.indexOf("\r\n\r\n") + 4)).remove("=\r\n"); // of quoted-printable
}

// The mail client's two controls as a list of what they were asked, with what the store held when Send came.
struct told_verbs : mapi::mail_session_service {
    QStringList verbs;

    struct session_part : mapi::MAPISession {
        explicit session_part(QStringList &list) : verbs(list) {}
        void SignOn() override { verbs += DownLoadMail ? "SignOn" : "SignOn without new mail"; }
        void SignOff() override { verbs += "SignOff"; }
        long SessionID() const override { return 4711; }
        QStringList &verbs;
    };
    struct message_part : fake_messages {
        message_part(QStringList &list, fake_mail_session_log &log) : fake_messages(log), verbs(list) {}
        void Compose() override { verbs += "Compose " + QString::number(SessionID); }
        void set_RecipDisplayName(const QString &name) override { verbs += "RecipDisplayName " + name; }
        void set_RecipAddress(const QString &address) override { verbs += "RecipAddress " + address; }
        void set_MsgSubject(const QString &subject) override { verbs += "MsgSubject " + subject; }
        void set_MsgNoteText(const QString &text) override { verbs += "MsgNoteText " + text; }
        void Send() override
        {
            ado::Recordset row;
            row.Open("select LastToken from autocontent", *::session.store_connection);
            ado::Recordset rows;
            rows.Open("select count(*) from names", *::session.store_connection);
            verbs += "Send, token " + row[0].to_text() + ", rows " + rows[0].to_text();
        }
        QStringList &verbs;
    };
    std::unique_ptr<mapi::MAPISession> session() override { return std::make_unique<session_part>(verbs); }
    std::unique_ptr<mapi::MAPIMessages> messages() override { return std::make_unique<message_part>(verbs, log); }
    fake_mail_session_log log;
};

}

class auto_responder_test : public QObject {
    Q_OBJECT
private slots:
    void a_map_without_a_reply_answers_nobody();
    void a_reply_that_is_not_enabled_stays_and_keeps_its_token();
    void a_standard_subject();
    void a_dynamic_subject_names_the_mail_s_own_value();
    void two_mails_in_one_pass_get_n_and_n_plus_1();
    void the_token_goes_out_as_it_was_typed();
    void a_token_that_is_no_number_goes_out_and_counts_from_one();
    void the_blanks_beside_an_empty_part_stay();
    void a_dynamic_subject_without_a_field_has_an_empty_value();
    void another_subject_type_has_an_empty_subject();
    void an_empty_greeting_leaves_the_text_alone();
    void a_greeting_is_followed_by_a_value_and_two_line_ends();
    void a_greeting_without_a_field_has_an_empty_value();
    void a_mail_of_two_maps_gets_two_replies();
    void saving_again_puts_the_token_back();
    void bringing_mails_over_answers_nobody();
    void the_parser_behind_a_new_map_answers_what_others_take();
    void replies_say_what_they_are_and_whose();
    void a_mail_s_own_headers_hold_nothing_back();
    void a_mailbox_that_is_only_read_is_answered_too();
    void an_address_that_cannot_be_written_to_is_kept_as_refused_data();
    void an_address_that_cannot_be_written_to_is_kept_as_refused();
    void the_eleventh_reply_within_an_hour_is_held();
    void the_verbs_come_in_their_order_and_the_token_before_send();
    void a_reply_that_fails_is_logged_and_the_mail_stays();
    void an_outbox_that_cannot_be_written_ends_the_pass();
    void a_server_that_is_away_is_no_failure();
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
    QCOMPARE(site.column(unprocessed), QStringList());
}

void auto_responder_test::a_standard_subject()
{
    answer_site site;
    site.answer(reply_with(intake::standard_subject));
    site.come("Bob");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies(), QStringList{"bob@example.net|Thank you|waiting"});
    QCOMPARE(site.token(), "7"); // no token went out
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies().size(), 1); // the mail is marked
}

// Each is composed before the next mail is stored: its row is the newest then.
void auto_responder_test::a_dynamic_subject_names_the_mail_s_own_value()
{
    answer_site site;
    intake::auto_reply reply = reply_with(intake::dynamic_subject);
    reply.GreetText = "Dear";
    reply.GreetField = "full_name";
    site.answer(reply);
    for (const char *visitor : {"Bob", "Liam O'Neil", "Zoë"})
        site.come(visitor);
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies(), (QStringList{"bob@example.net|Order Bob at the nursery|waiting",
                                     "bob@example.net|Order Liam O'Neil at the nursery|waiting",
                                     "bob@example.net|Order Zoë at the nursery|waiting"}));
    QVERIFY(text_of_mail(0).startsWith("Dear Bob\r\n"));
    QVERIFY(text_of_mail(1).startsWith("Dear Liam O'Neil\r\n"));
}

void auto_responder_test::two_mails_in_one_pass_get_n_and_n_plus_1()
{
    answer_site site;
    site.answer(reply_with(intake::support_token));
    site.come("Bob");
    site.come("Zoe", "zoe@example.net");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies(), (QStringList{"bob@example.net|Order 7 at the nursery|waiting",
                                     "zoe@example.net|Order 8 at the nursery|waiting"}));
    QCOMPARE(site.token(), "9");
}

void auto_responder_test::the_token_goes_out_as_it_was_typed()
{
    answer_site site;
    intake::auto_reply reply = reply_with(intake::support_token);
    reply.LastToken = "007";
    site.answer(reply);
    site.come("Bob");
    site.come("Zoe");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies(), (QStringList{"bob@example.net|Order 007 at the nursery|waiting",
                                     "bob@example.net|Order 8 at the nursery|waiting"}));
}

// No screen has tested it; what went out cannot be taken back.
void auto_responder_test::a_token_that_is_no_number_goes_out_and_counts_from_one()
{
    answer_site site;
    site.answer(reply_with(intake::support_token));
    site.run("update autocontent set LastToken='seven'");
    site.come("Bob");
    site.come("Zoe", "zoe@example.net");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies(), (QStringList{"bob@example.net|Order seven at the nursery|waiting",
                                     "zoe@example.net|Order 1 at the nursery|waiting"}));
    QCOMPARE(site.token(), "2");
}

void auto_responder_test::the_blanks_beside_an_empty_part_stay()
{
    answer_site site;
    intake::auto_reply reply = reply_with(intake::support_token);
    reply.SubjectSuffix = "";
    site.answer(reply);
    site.come("Bob");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(outbox::contents().at(0).Subject, "Order 7 ");
    // Base64 of "Order 7 ": a bare blank at a line's end would be lost on the way.
    QVERIFY2(head_of(0).contains("\r\nSubject: =?utf-8?B?T3JkZXIgNyA=?=\r\n"), head_of(0));
}

void auto_responder_test::a_dynamic_subject_without_a_field_has_an_empty_value()
{
    answer_site site;
    intake::auto_reply reply = reply_with(intake::dynamic_subject);
    reply.SubjectDynamic = "";
    site.answer(reply);
    site.come("Bob");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies(), QStringList{"bob@example.net|Order  at the nursery|waiting"});
    QCOMPARE(site.log_text(), QString());
}

void auto_responder_test::another_subject_type_has_an_empty_subject()
{
    answer_site site;
    site.answer(reply_with(4));
    site.come("Bob");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies(), QStringList{"bob@example.net||waiting"});
    QCOMPARE(site.token(), "7");
}

void auto_responder_test::an_empty_greeting_leaves_the_text_alone()
{
    answer_site site;
    intake::auto_reply reply = reply_with(intake::standard_subject);
    reply.GreetField = "full_name";
    site.answer(reply);
    site.come("Bob");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(text_of_mail(0), "We have your order.");
}

void auto_responder_test::a_greeting_is_followed_by_a_value_and_two_line_ends()
{
    answer_site site;
    intake::auto_reply reply = reply_with(intake::standard_subject);
    reply.GreetText = "Dear";
    reply.GreetField = "full_name";
    reply.autocontent = "We have it.\r\n\r\nAnn";
    site.answer(reply);
    site.come("Bob");
    QVERIFY(intake::parse_unprocessed_mails());
    QVERIFY(text_of_mail(0).startsWith("Dear Bob\r\n\r\nWe have it.\r\n\r\nAnn"));
}

void auto_responder_test::a_greeting_without_a_field_has_an_empty_value()
{
    intake::auto_reply reply = reply_with(intake::standard_subject);
    reply.GreetText = "Hello";
    QCOMPARE(intake::text_of(reply, ""), "Hello \r\n\r\nWe have your order.");
    answer_site site;
    site.answer(reply);
    site.come("Bob");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies().size(), 1);
    QCOMPARE(site.log_text(), QString());
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

void auto_responder_test::saving_again_puts_the_token_back()
{
    answer_site site;
    const intake::auto_reply as_in_the_box = reply_with(intake::support_token);
    site.answer(as_in_the_box);
    site.come("Bob");
    site.come("Zoe");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(site.token(), "9");
    site.answer(as_in_the_box);
    QCOMPARE(site.token(), "7");
    QCOMPARE(site.column("select count(*) from autocontent"), QStringList{"1"});
    site.come("Liam");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies().last(), "bob@example.net|Order 7 at the nursery|waiting");
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

void auto_responder_test::an_address_that_cannot_be_written_to_is_kept_as_refused_data()
{
    QTest::addColumn<QString>("sender");
    QTest::newRow("none") << "";
    QTest::newRow("a name") << "Bob Reed";
    QTest::newRow("two at once") << "bob@@example.net";
}

void auto_responder_test::an_address_that_cannot_be_written_to_is_kept_as_refused()
{
    QFETCH(QString, sender);
    answer_site site;
    site.answer(reply_with(intake::standard_subject));
    site.come("Bob", sender);
    site.come("Zoe", "zoe@example.net");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies(), (QStringList{sender + "|Thank you|refused", "zoe@example.net|Thank you|waiting"}));
    QVERIFY(!outbox::contents().at(0).reason.isEmpty());
    QCOMPARE(site.column(unprocessed), QStringList());
    QCOMPARE(site.log_text(), QString());
}

void auto_responder_test::the_eleventh_reply_within_an_hour_is_held()
{
    answer_site site;
    site.answer(reply_with(intake::support_token));
    for (int number = 0; number < 11; ++number)
        site.come("Bob");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(outbox::count().waiting, 10);
    QCOMPARE(replies().last(), "bob@example.net|Order 17 at the nursery|held");
    QCOMPARE(site.column(unprocessed), QStringList());
    QCOMPARE(site.column("select count(*) from names"), QStringList{"11"});
}

void auto_responder_test::the_verbs_come_in_their_order_and_the_token_before_send()
{
    answer_site site;
    told_verbs told;
    services.mail_session = &told;
    intake::auto_reply reply = reply_with(intake::support_token);
    reply.GreetText = "Dear";
    reply.GreetField = "full_name";
    site.answer(reply);
    site.come("Bob");
    site.come("Zoe", "zoe@example.net");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(
        told.verbs,
        (QStringList{"SignOn", "Compose 4711", "RecipDisplayName bob@example.net", "RecipAddress bob@example.net",
                     "MsgSubject Order 7 at the nursery", "MsgNoteText Dear Bob\r\n\r\nWe have your order.",
                     "Send, token 8, rows 1", "SignOff", "SignOn", "Compose 4711", "RecipDisplayName zoe@example.net",
                     "RecipAddress zoe@example.net", "MsgSubject Order 8 at the nursery",
                     "MsgNoteText Dear Zoe\r\n\r\nWe have your order.", "Send, token 9, rows 2", "SignOff"}));
}

void auto_responder_test::a_reply_that_fails_is_logged_and_the_mail_stays()
{
    answer_site site;
    intake::auto_reply reply = reply_with(intake::dynamic_subject);
    reply.SubjectDynamic = "street"; // no column of the map
    site.answer(reply);
    site.come("Bob");
    site.come("Zoe");
    QVERIFY(!intake::parse_unprocessed_mails());
    QCOMPARE(replies(), QStringList());
    QCOMPARE(site.log_entries().size(), 1);
    QVERIFY(site.log_entries()[0].endsWith("|mail_module.bas|parse_unprocessed_mails"));
    QCOMPARE(site.status_lines, QStringList{unfilled + session.err_description});
    QCOMPARE(site.column(unprocessed), (QStringList{"1", "2"}));
    QCOMPARE(site.column("select full_name from names"), QStringList{"Bob"}); // what was written stays
    site.answer(reply_with(intake::standard_subject));
    QVERIFY(intake::parse_unprocessed_mails()); // the next pass takes both
    QCOMPARE(replies().size(), 2);
    QCOMPARE(site.column("select full_name from names"), (QStringList{"Bob", "Bob", "Zoe"}));
}

void auto_responder_test::an_outbox_that_cannot_be_written_ends_the_pass()
{
    answer_site site;
    site.answer(reply_with(intake::support_token));
    site.come("Bob");
    QFile in_its_place(site.folder.filePath("outbox"));
    QVERIFY(in_its_place.open(QIODevice::WriteOnly));
    in_its_place.close();
    QVERIFY(!intake::parse_unprocessed_mails());
    QCOMPARE(site.log_entries().size(), 1);
    QCOMPARE(site.column(unprocessed), QStringList{"1"});
    QCOMPARE(site.token(), "8"); // raised before Send
    QCOMPARE(site.status_lines, QStringList{unfilled + session.err_description});
    QVERIFY(in_its_place.remove());
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies(), QStringList{"bob@example.net|Order 8 at the nursery|waiting"});
}

void auto_responder_test::a_server_that_is_away_is_no_failure()
{
    answer_site site;
    SaveSetting("mail_client", "send", "smtp");
    SaveSetting("mail_client", "smtp_host", "127.0.0.1");
    SaveSetting("mail_client", "smtp_port", "1"); // nobody
    site.answer(reply_with(intake::support_token));
    site.come("Bob");
    QVERIFY(intake::parse_unprocessed_mails());
    QVERIFY(intake::parse_unprocessed_mails());
    SaveSetting("mail_client", "send", "");
    QCOMPARE(replies(), QStringList{"bob@example.net|Order 7 at the nursery|waiting"});
    QCOMPARE(site.column(unprocessed), QStringList());
    QCOMPARE(site.log_text(), QString());
}

QTEST_GUILESS_MAIN(auto_responder_test)
#include "auto_responder_test.moc"
