// An automatic reply on its way into the Outbox: the order of the verbs, what is refused or held, and what a failure
// leaves.
#include "frame/session.h"
#include "intake/map_parser.h"
#include "platform/settings.h"
#include "support/answer_site.h"
#include "support/fake_mail_session.h"

#include <QFile>
#include <QtTest/QTest>

namespace {

const QString not_all_in_tables = "Not all mails could be put into their tables, the next fetch tries again: ";

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

class auto_responder_failure_test : public QObject {
    Q_OBJECT
private slots:
    void an_address_that_cannot_be_written_to_is_kept_as_refused_data();
    void an_address_that_cannot_be_written_to_is_kept_as_refused();
    void the_eleventh_reply_within_an_hour_is_held();
    void the_verbs_come_in_their_order_and_the_token_before_send();
    void a_reply_that_fails_is_logged_and_the_mail_stays();
    void an_outbox_that_cannot_be_written_ends_the_pass();
    void a_server_that_is_away_is_no_failure();
};

void auto_responder_failure_test::an_address_that_cannot_be_written_to_is_kept_as_refused_data()
{
    QTest::addColumn<QString>("sender");
    QTest::newRow("none") << "";
    QTest::newRow("a name") << "Bob Reed";
    QTest::newRow("two at once") << "bob@@example.net";
}

void auto_responder_failure_test::an_address_that_cannot_be_written_to_is_kept_as_refused()
{
    QFETCH(QString, sender);
    answer_site site;
    site.answer(reply_with(intake::standard_subject));
    site.come("Bob", sender);
    site.come("Zoe", "zoe@example.net");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies(), (QStringList{sender + "|Thank you|refused", "zoe@example.net|Thank you|waiting"}));
    QVERIFY(!outbox::contents().at(0).reason.isEmpty());
    QCOMPARE(site.column(unprocessed_mails), QStringList());
    QCOMPARE(site.log_text(), QString());
}

void auto_responder_failure_test::the_eleventh_reply_within_an_hour_is_held()
{
    answer_site site;
    site.answer(reply_with(intake::support_token));
    for (int number = 0; number < 11; ++number)
        site.come("Bob");
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(outbox::count().waiting, 10);
    QCOMPARE(replies().last(), "bob@example.net|Order 17 at the nursery|held");
    QCOMPARE(site.column(unprocessed_mails), QStringList());
    QCOMPARE(site.column("select count(*) from names"), QStringList{"11"});
}

void auto_responder_failure_test::the_verbs_come_in_their_order_and_the_token_before_send()
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

void auto_responder_failure_test::a_reply_that_fails_is_logged_and_the_mail_stays()
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
    QCOMPARE(site.status_lines, QStringList{not_all_in_tables + session.err_description});
    QCOMPARE(site.column(unprocessed_mails), (QStringList{"1", "2"}));
    QCOMPARE(site.column("select full_name from names"), QStringList{"Bob"}); // what was written stays
    site.answer(reply_with(intake::standard_subject));
    QVERIFY(intake::parse_unprocessed_mails()); // the next pass takes both
    QCOMPARE(replies().size(), 2);
    QCOMPARE(site.column("select full_name from names"), (QStringList{"Bob", "Bob", "Zoe"}));
}

void auto_responder_failure_test::an_outbox_that_cannot_be_written_ends_the_pass()
{
    answer_site site;
    site.answer(reply_with(intake::support_token));
    site.come("Bob");
    QFile in_its_place(site.folder.filePath("outbox"));
    QVERIFY(in_its_place.open(QIODevice::WriteOnly));
    in_its_place.close();
    QVERIFY(!intake::parse_unprocessed_mails());
    QCOMPARE(site.log_entries().size(), 1);
    QCOMPARE(site.column(unprocessed_mails), QStringList{"1"});
    QCOMPARE(site.token(), "8"); // raised before Send
    QCOMPARE(site.status_lines, QStringList{not_all_in_tables + session.err_description});
    QVERIFY(in_its_place.remove());
    QVERIFY(intake::parse_unprocessed_mails());
    QCOMPARE(replies(), QStringList{"bob@example.net|Order 8 at the nursery|waiting"});
}

void auto_responder_failure_test::a_server_that_is_away_is_no_failure()
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
    QCOMPARE(site.column(unprocessed_mails), QStringList());
    QCOMPARE(site.log_text(), QString());
}

QTEST_GUILESS_MAIN(auto_responder_failure_test)
#include "auto_responder_failure_test.moc"
