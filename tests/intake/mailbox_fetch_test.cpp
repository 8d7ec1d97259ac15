// The whole fetch over the mail client that reads and leaves, as it is: an mbox file and a POP3 mailbox of a real
// server. Lines that break: pop3_fault_test.cpp.
#include "intake/fetch.h"
#include "intake/mail_source.h"
#include "platform/outbox.h"
#include "platform/services.h"
#include "support/dovecot.h"
#include "support/intake_site.h"
#include "support/open_mailbox.h"
#include "support/scripted_server.h"
#include <QFile>
#include <QtTest/QTest>

namespace {

constexpr qint64 delivered_at = 1767268800;
const QString stored = "select tsl_subject from orders";
const QString blocked = "select email from unsubscribe_tbl";
const QByteArray body = "Name: Bob\nCity: Rome\n";

struct left_site : intake_site {
    left_site()
    {
        services.mail_session = &real;
        add_account("orders", "orders@example.org");
        enable_unsubscribing();
        run("update unsub_detail set unsub_keyword='UNSUBSCRIBE'");
    }
    ~left_site() { intake::close_mail_source(); }
    bool fetch_and_leave()
    {
        const bool good = fetch();
        intake::close_mail_source();
        return good;
    }
    real_mail_session real;
};

// One road over both kinds.
struct kind_of_mailbox {
    explicit kind_of_mailbox(bool is_pop3) : server(is_pop3 ? std::make_unique<dovecot_server>() : nullptr)
    {
        if (server)
            set_pop3_mailbox("127.0.0.1", server->pop3_port);
        else
            set_mbox(site.folder.filePath("inbox"));
    }
    void put(const QByteArray &to, const QByteArray &subject, const QByteArray &sender = "bob@example.net")
    {
        const QByteArray mail = "To: " + to + "\nFrom: " + sender + "\nSubject: " + subject +
                                "\nDate: Thu, 1 Jan 2026 12:00:00 +0000\n\n" + body;
        if (server) {
            server->deliver("ann", mail, delivered_at);
            return;
        }
        QFile file(site.folder.filePath("inbox"));
        QVERIFY(file.open(QIODevice::Append));
        file.write("From " + sender + " Thu Jan  1 13:00:00 2026\n" + mail + "\n");
    }
    std::unique_ptr<dovecot_server> server;
    left_site site;
};

void both_kinds()
{
    QTest::addColumn<bool>("is_pop3");
    QTest::newRow("pop3") << true;
    QTest::newRow("mbox") << false;
}

}

class mailbox_fetch_test : public QObject {
    Q_OBJECT
private slots:
    void mails_are_stored_once_and_left_data() { both_kinds(); }
    void mails_are_stored_once_and_left();
    void a_mail_deleted_in_the_store_comes_back_data() { both_kinds(); }
    void a_mail_deleted_in_the_store_comes_back();
    void an_unsubscribe_is_acted_on_once_data() { both_kinds(); }
    void an_unsubscribe_is_acted_on_once();
    void a_mail_that_vanishes_is_passed_over();
    void a_refused_mail_is_told_once_and_taken_when_it_comes();
    void duplicate_and_missing_ids_lose_nothing();
    void a_server_without_uidl_and_top_is_read();
};

void mailbox_fetch_test::mails_are_stored_once_and_left()
{
    QFETCH(bool, is_pop3);
    kind_of_mailbox box(is_pop3);
    box.put("orders@example.org", "An order");
    box.put("private@example.org", "Lunch?");
    box.put("private@example.org, Orders <orders@example.org>", "Another");
    QVERIFY(box.site.fetch_and_leave());
    QCOMPARE(box.site.rows("select * from orders"),
             (QStringList{"1|An order|1/1/2026 1:00:00 PM|bob@example.net|new|Name: Bob\r\nCity: Rome\r\n|False",
                          "2|Another|1/1/2026 1:00:00 PM|bob@example.net|new|Name: Bob\r\nCity: Rome\r\n|False"}));
    box.put("orders@example.org", "A new one");
    QVERIFY(box.site.fetch_and_leave());
    QCOMPARE(box.site.column(stored), (QStringList{"An order", "Another", "A new one"}));
    QCOMPARE(box.site.log_entries(), QStringList());
    QCOMPARE(box.site.moved(), QStringList());
}

void mailbox_fetch_test::a_mail_deleted_in_the_store_comes_back()
{
    QFETCH(bool, is_pop3);
    kind_of_mailbox box(is_pop3);
    box.put("orders@example.org", "An order");
    QVERIFY(box.site.fetch_and_leave());
    box.site.run("delete from orders");
    QVERIFY(box.site.fetch_and_leave());
    QCOMPARE(box.site.column(stored), QStringList{"An order"});
}

void mailbox_fetch_test::an_unsubscribe_is_acted_on_once()
{
    QFETCH(bool, is_pop3);
    kind_of_mailbox box(is_pop3);
    box.put("orders@example.org", "unsubscribe 1037", "zoe@example.net");
    box.put("private@example.org", "unsubscribe 1038");
    QVERIFY(box.site.fetch_and_leave());
    QVERIFY(box.site.fetch_and_leave());
    QCOMPARE(box.site.column(blocked), QStringList{"ann@example.net"});
    QCOMPARE(box.site.column("select tsl_Email from orders"), QStringList{"ann@example.net"});
    const auto kept = outbox::contents();
    QCOMPARE(kept.size(), size_t(1));
    QCOMPARE(kept[0].To, QStringList{"zoe@example.net"});
    QCOMPARE(kept[0].SendingAccount, QString("orders@example.org"));
    QCOMPARE(kept[0].Subject, QString("You are off the list"));
}

namespace {

const QByteArray head = "To: orders@example.org\r\nFrom: bob@example.net\r\nDate: Thu, 1 Jan 2026 12:00:00 +0000\r\n";
QByteArray head_of(const QByteArray &subject)
{
    return "+OK\r\n" + head + "Subject: " + subject + "\r\n\r\n.\r\n";
}
QByteArray mail_of(const QByteArray &subject, const QByteArray &text = "Hi\r\n")
{
    return "+OK\r\n" + head + "Subject: " + subject + "\r\n\r\n" + text + ".\r\n";
}

// As the login goes where the server offers nothing else.
script logged_in(const script &then)
{
    script steps{scripted::say("+OK hi\r\n")};
    for (const auto &[command, said] : {std::pair("CAPA", "+OK\r\nSASL PLAIN\r\n.\r\n"),
                                        std::pair("AUTH PLAIN", "+ \r\n"), std::pair("", "+OK\r\n")}) {
        steps += scripted::expect(command);
        steps += scripted::say(said);
    }
    return steps + then;
}

QList<script_step> turn(const QByteArray &command, const QByteArray &answer)
{
    return {scripted::expect(command), scripted::say(answer)};
}

const QByteArray no_pipelining = "+OK\r\nTOP\r\n.\r\n";

}

void mailbox_fetch_test::a_mail_that_vanishes_is_passed_over()
{
    scripted_server server(logged_in(turn("UIDL", "+OK\r\n1 a\r\n2 b\r\n.\r\n") + turn("CAPA", no_pipelining) +
                                     turn("TOP 1 0", "-ERR gone\r\n") + turn("TOP 2 0", head_of("Two")) +
                                     turn("RETR 1", "-ERR gone\r\n") + turn("RETR 2", mail_of("Two")) +
                                     turn("QUIT", "+OK\r\n")));
    left_site site;
    set_pop3_mailbox("127.0.0.1", server.port);
    QVERIFY(site.fetch_and_leave());
    QCOMPARE(server.unexpected(), QByteArray());
    QCOMPARE(site.column(stored), QStringList{"Two"});
    QCOMPARE(site.log_entries(), QStringList());
}

void mailbox_fetch_test::a_refused_mail_is_told_once_and_taken_when_it_comes()
{
    const QByteArray both = "+OK\r\n1 a\r\n2 b\r\n.\r\n";
    scripted_server server(
        QList<script>{logged_in(turn("UIDL", both) + turn("CAPA", no_pipelining) + turn("TOP 1 0", head_of("One")) +
                                turn("TOP 2 0", head_of("Two")) + turn("RETR 1", "-ERR broken\r\n") +
                                turn("RETR 2", mail_of("Two")) + turn("QUIT", "+OK\r\n")),
                      logged_in(turn("UIDL", both) + turn("RETR 1", "-ERR broken\r\n") + turn("QUIT", "+OK\r\n")),
                      logged_in(turn("UIDL", both) + turn("RETR 1", mail_of("One")) + turn("RETR 1", mail_of("One")) +
                                turn("QUIT", "+OK\r\n"))});
    left_site site;
    set_pop3_mailbox("127.0.0.1", server.port);
    for (const QStringList &expected : {QStringList{"Two"}, QStringList{"Two"}, QStringList{"Two", "One"}}) {
        QVERIFY2(site.fetch_and_leave(), qPrintable(site.log_text() + server.unexpected()));
        QCOMPARE(server.unexpected(), QByteArray());
        QCOMPARE(site.column(stored), expected);
        QCOMPARE(site.log_entries().size(), 1);
    }
    QVERIFY2(site.log_text().contains("said no: broken"), qPrintable(site.log_text()));
}

void mailbox_fetch_test::duplicate_and_missing_ids_lose_nothing()
{
    const QList<script_step> top =
        turn("TOP 1 0", head_of("One")) + turn("TOP 2 0", head_of("One")) + turn("TOP 3 0", head_of("Three"));
    const QByteArray listing = "+OK\r\n1 same\r\n2 same\r\n3\r\n.\r\n";
    const QList<script_step> texts =
        turn("RETR 1", mail_of("One", "Hi\r\n")) + turn("RETR 2", mail_of("One", "Ho\r\n"));
    scripted_server server(QList<script>{
        logged_in(turn("UIDL", listing) + turn("CAPA", no_pipelining) + top + texts + turn("RETR 3", mail_of("Three")) +
                  turn("QUIT", "+OK\r\n")),
        logged_in(turn("UIDL", listing) + turn("CAPA", no_pipelining) + top + texts + turn("QUIT", "+OK\r\n"))});
    left_site site;
    set_pop3_mailbox("127.0.0.1", server.port);
    for (int times = 0; times < 2; ++times) {
        QVERIFY(site.fetch_and_leave());
        QCOMPARE(server.unexpected(), QByteArray());
        QCOMPARE(site.column("select tsl_body from orders"), (QStringList{"Hi\r\n", "Ho\r\n", "Hi\r\n"}));
    }
}

void mailbox_fetch_test::a_server_without_uidl_and_top_is_read()
{
    const QList<script_step> each = turn("UIDL", "-ERR what?\r\n") + turn("LIST", "+OK\r\n1 120\r\n.\r\n") +
                                    turn("TOP 1 0", "-ERR what?\r\n") + turn("RETR 1", mail_of("One"));
    scripted_server server(QList<script>{logged_in(each + turn("RETR 1", mail_of("One")) + turn("QUIT", "+OK\r\n")),
                                         logged_in(each + turn("QUIT", "+OK\r\n"))});
    left_site site;
    set_pop3_mailbox("127.0.0.1", server.port);
    for (int times = 0; times < 2; ++times) {
        QVERIFY(site.fetch_and_leave());
        QCOMPARE(server.unexpected(), QByteArray());
        QCOMPARE(site.column(stored), QStringList{"One"});
    }
}

QTEST_GUILESS_MAIN(mailbox_fetch_test)
#include "mailbox_fetch_test.moc"
