// A POP3 mailbox of a real server under the verbs of the mail client that reads and leaves: what is read, what it costs
// on the wire, what is remembered. Servers that lie: pop3_hostile_test.cpp.
#include "platform/clock.h"
#include "platform/network.h"
#include "platform/outbox.h"
#include "support/dovecot.h"
#include "support/maildir_files.h"
#include "support/open_mailbox.h"
#include "support/wire_proxy.h"
#include <QFile>
#include <QTest>

namespace {

constexpr qint64 delivered_at = 1767268800;

struct pop3_folder : open_mailbox_folder {
    explicit pop3_folder(const dovecot_options &options = {})
        : server(options), proxy(server.pop3_port, recording(), server.host())
    {
        set_pop3_mailbox("127.0.0.1", proxy.port);
    }
    ~pop3_folder()
    {
        sign_off();
        set_clock({});
    }
    static wire_options recording()
    {
        wire_options options;
        options.record = true;
        return options;
    }
    QString deliver(const QString &subject, const QString &body = "Hello\n", const QString &more = {})
    {
        return server.deliver("ann", simple_mail{"orders@example.org", "bob@example.net", subject, body, more},
                              delivered_at);
    }
    // The commands behind the login, their arguments left out, the same ones in a row once.
    QByteArrayList commands() const
    {
        QByteArrayList verbs;
        for (const QByteArray &line : proxy.recorded(wire::to_server).split('\n')) {
            const QByteArray verb = line.trimmed().split(' ').first();
            if (!verb.isEmpty() && (verbs.isEmpty() || verbs.last() != verb))
                verbs += verb;
        }
        const qsizetype login = qMax(verbs.lastIndexOf("PASS"), verbs.lastIndexOf("AUTH"));
        // A login by AUTH sends its secret in the same line or in the next one.
        QByteArrayList behind;
        for (const QByteArray &verb : verbs.mid(login + 1))
            if (QByteArrayList{"CAPA", "UIDL", "LIST", "TOP", "RETR", "QUIT", "DELE", "STAT", "RSET"}.contains(verb))
                behind += verb;
        return behind;
    }
    void fetch_all()
    {
        sign_on();
        for (int index = 0; index < messages->MsgCount(); ++index)
            at(index);
        sign_off();
    }

    dovecot_server server;
    wire_proxy proxy;
};

net::patience tick()
{
    net::patience waits;
    waits.is_tick = true;
    return waits;
}

}

class pop3_session_test : public QObject {
    Q_OBJECT
private slots:
    void a_mail_is_read_and_left();
    void the_arrival_is_that_of_the_first_received_field_data();
    void the_arrival_is_that_of_the_first_received_field();
    void a_second_fetch_costs_one_listing();
    void only_new_mails_cost_more();
    void headers_come_many_at_once();
    void what_is_remembered_may_be_lost_data();
    void what_is_remembered_may_be_lost();
    void the_first_sight_is_kept_for_ever();
    void what_the_mailbox_no_longer_lists_is_forgotten();
    void a_tick_within_a_minute_stays_at_home();
    void it_speaks_over_tls_data();
    void it_speaks_over_tls();
    void failures_are_told_data();
    void failures_are_told();
    void an_answer_goes_out_as_the_address_written_to();
};

void pop3_session_test::a_mail_is_read_and_left()
{
    pop3_folder box;
    box.deliver("=?utf-8?Q?Gr=C3=BC=C3=9Fe?=", "Name: Bob\n.\n..dots\n", "Reply-To: zoe@example.net\n");
    box.sign_on();
    QCOMPARE(box.messages->MsgCount(), 1);
    const read_message read = box.at(0);
    QCOMPARE(read.recipients, QString("orders@example.org"));
    QCOMPARE(read.subject, QString("Grüße"));
    QCOMPARE(read.sender, QString("zoe@example.net"));
    QCOMPARE(read.text, QString("Name: Bob\n.\n..dots\n"));
    box.sign_off();
    QCOMPARE(files_in(box.server.maildir("ann")).size(), 1);
    QVERIFY(!box.commands().contains("DELE"));
}

void pop3_session_test::the_arrival_is_that_of_the_first_received_field_data()
{
    QTest::addColumn<QString>("more");
    QTest::addColumn<QDateTime>("received");
    const QString hop = "Received: from a by b; Fri, 2 Jan 2026 12:00:05 +0000\n";
    const QString later_hop = "Received: from c by d;\n\tThu, 1 Jan 2026 00:00:00 -0500\n";
    const QString date = "Date: Wed, 31 Dec 2025 23:30:00 +0000\n";
    const auto wall = [](int year, int month, int day, int hour, int minute, int second) {
        return QDateTime(QDate(year, month, day), QTime(hour, minute, second), Qt::UTC);
    };
    QTest::newRow("the first one") << hop + later_hop + date << wall(2026, 1, 2, 13, 0, 5);
    QTest::newRow("folded, another zone") << later_hop + hop << wall(2026, 1, 1, 6, 0, 0);
    QTest::newRow("without one: Date") << date << wall(2026, 1, 1, 0, 30, 0);
    QTest::newRow("one without a date: Date") << "Received: by nobody\n" + date << wall(2026, 1, 1, 0, 30, 0);
    QTest::newRow("neither: first sight") << QString() << wall(2026, 3, 4, 5, 6, 7);
    QTest::newRow("nonsense: first sight") << QString("Date: yesterday\n") << wall(2026, 3, 4, 5, 6, 7);
}

void pop3_session_test::the_arrival_is_that_of_the_first_received_field()
{
    QFETCH(QString, more);
    QFETCH(QDateTime, received);
    pop3_folder box;
    set_clock([] { return QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7), Qt::UTC); });
    box.deliver("One", "Hello\n", more);
    box.sign_on();
    QCOMPARE(box.at(0).received, received);
}

void pop3_session_test::a_second_fetch_costs_one_listing()
{
    pop3_folder box;
    for (const char *subject : {"One", "Two", "Three"})
        box.deliver(subject);
    box.fetch_all();
    box.proxy.forget();
    box.sign_on();
    QCOMPARE(box.subjects(), (QStringList{"One", "Two", "Three"}));
    QCOMPARE(box.at(1).text, QString("Hello\n"));
    box.sign_off();
    QCOMPARE(box.commands(), (QByteArrayList{"UIDL", "QUIT"}));
}

void pop3_session_test::only_new_mails_cost_more()
{
    pop3_folder box;
    box.deliver("One");
    box.fetch_all();
    box.deliver("Two");
    box.proxy.forget();
    box.fetch_all();
    QCOMPARE(box.commands(), (QByteArrayList{"UIDL", "TOP", "RETR", "QUIT"}));
    QCOMPARE(box.proxy.recorded(wire::to_server).count("TOP "), 1);
    QVERIFY(box.proxy.recorded(wire::to_server).contains("TOP 2 0"));
}

void pop3_session_test::headers_come_many_at_once()
{
    pop3_folder box;
    for (int count = 0; count < 250; ++count)
        box.deliver(QString::number(count));
    box.sign_on();
    QCOMPARE(box.messages->MsgCount(), 250);
    QCOMPARE(box.proxy.recorded(wire::to_server).count("TOP "), 250);
    QCOMPARE(box.commands(), (QByteArrayList{"UIDL", "CAPA", "TOP"})); // no text was asked for
    QVERIFY2(box.proxy.counts().round_trips < 40, qPrintable(QString::number(box.proxy.counts().round_trips)));
}

void pop3_session_test::what_is_remembered_may_be_lost_data()
{
    QTest::addColumn<QByteArray>("left");
    QTest::newRow("deleted") << QByteArray();
    QTest::newRow("no database") << QByteArray("this is no database, but it is long enough to be taken for one\n");
    QTest::newRow("the head of one") << QByteArray("SQLite format 3\0", 16) + QByteArray(4080, '\x55');
}

void pop3_session_test::what_is_remembered_may_be_lost()
{
    QFETCH(QByteArray, left);
    pop3_folder box;
    box.deliver("One");
    box.deliver("Two");
    box.fetch_all();
    for (const char *tail : {"", "-wal", "-shm"})
        QFile::remove(box.path("pop3memory.sqlite") + tail);
    if (!left.isEmpty()) {
        QFile file(box.path("pop3memory.sqlite"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(left);
    }
    box.sign_on();
    QCOMPARE(box.subjects(), (QStringList{"One", "Two"}));
    QCOMPARE(box.at(1).text, QString("Hello\n"));
    box.sign_off();
    box.proxy.forget();
    box.fetch_all();
    QCOMPARE(box.proxy.recorded(wire::to_server).count("TOP "), 0);
}

void pop3_session_test::the_first_sight_is_kept_for_ever()
{
    pop3_folder box;
    const QDateTime first(QDate(2026, 3, 4), QTime(5, 6, 7), Qt::UTC);
    set_clock([first] { return first; });
    box.deliver("One");
    box.fetch_all();
    set_clock([first] { return first.addDays(3); });
    box.sign_on();
    QCOMPARE(box.at(0).received, first);
}

void pop3_session_test::what_the_mailbox_no_longer_lists_is_forgotten()
{
    pop3_folder box;
    box.deliver("One", "A text to be found again in the file\n");
    box.fetch_all();
    QVERIFY(QFile::remove(box.server.maildir("ann") + '/' + files_in(box.server.maildir("ann")).value(0)));
    box.deliver("Two");
    box.sign_on();
    QCOMPARE(box.subjects(), QStringList{"Two"});
    box.sign_off();
    box.proxy.forget();
    box.fetch_all();
    QCOMPARE(box.proxy.recorded(wire::to_server).count("TOP "), 0);
}

void pop3_session_test::a_tick_within_a_minute_stays_at_home()
{
    pop3_folder box;
    QDateTime time(QDate(2026, 3, 4), QTime(5, 6, 7), Qt::UTC);
    set_clock([&time] { return time; });
    box.deliver("One");
    box.fetch_all();
    box.deliver("Two");
    const int connections = box.proxy.counts().connections;
    {
        const net::patience_scope ticking(tick());
        time = time.addSecs(59);
        box.sign_on();
        QCOMPARE(box.subjects(), QStringList{"One"});
        QCOMPARE(box.at(0).text, QString("Hello\n"));
        box.sign_off();
        QCOMPARE(box.proxy.counts().connections, connections);
        time = time.addSecs(1);
        box.sign_on();
        QCOMPARE(box.subjects(), (QStringList{"One", "Two"}));
        QCOMPARE(box.proxy.counts().connections, connections + 1);
        box.sign_off();
    }
    box.deliver("Three");
    box.sign_on(); // by hand, at once
    QCOMPARE(box.subjects(), (QStringList{"One", "Two", "Three"}));
    QCOMPARE(box.proxy.counts().connections, connections + 2);
}

void pop3_session_test::it_speaks_over_tls_data()
{
    QTest::addColumn<QString>("security");
    QTest::newRow("from the first byte") << QString("tls");
    QTest::newRow("STARTTLS") << QString("starttls");
}

void pop3_session_test::it_speaks_over_tls()
{
    QFETCH(QString, security);
    const certificates made;
    dovecot_options options;
    options.certificate = made.good();
    pop3_folder box(options);
    box.deliver("One");
    const quint16 port = security == "tls" ? box.server.pop3s_port : box.server.pop3_port;
    set_pop3_mailbox("127.0.0.1", port, security, made.authority());
    box.sign_on();
    QCOMPARE(box.subjects(), QStringList{"One"});
    QCOMPARE(box.at(0).text, QString("Hello\n"));
}

void pop3_session_test::failures_are_told_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<quint32>("number");
    QTest::newRow("a wrong password") << QString("password") << quint32(net::trouble::login_refused);
    QTest::newRow("no user") << QString("user") << quint32(net::trouble::not_configured);
    QTest::newRow("no server") << QString("host") << quint32(net::trouble::not_configured);
    QTest::newRow("nobody answers") << QString("stopped") << quint32(net::trouble::not_reached);
}

void pop3_session_test::failures_are_told()
{
    QFETCH(QString, what);
    QFETCH(quint32, number);
    pop3_folder box;
    set_pop3_mailbox("127.0.0.1", box.server.pop3_port);
    if (what == "stopped") {
        box.server.stop();
    } else {
        SaveSetting("mail_client", what, what == "password" ? "wrong" : "");
        passwords::forget_remembered();
    }
    try {
        box.sign_on();
        QFAIL("it connected");
    } catch (const run_time_error &failure) {
        QCOMPARE(failure.number, number);
        QVERIFY(!failure.description.isEmpty() && !failure.description.contains("wrong"));
    }
}

void pop3_session_test::an_answer_goes_out_as_the_address_written_to()
{
    pop3_folder box;
    box.deliver("One", "Hello\n", "Message-ID: <1@x>\nReferences: <0@x>\n");
    box.fetch_all();
    box.sign_on(); // all of it is remembered by now
    box.messages->MsgIndex = 0;
    box.messages->Reply();
    box.messages->set_MsgSubject("Thanks");
    box.messages->Send();
    const auto kept = outbox::contents();
    QCOMPARE(kept.size(), size_t(1));
    QCOMPARE(kept[0].SendingAccount, QString("orders@example.org"));
    QCOMPARE(kept[0].To, QStringList{"bob@example.net"});
    const QByteArray bytes = bytes_of_file(box.path("outbox") + '/' + kept[0].id + ".eml");
    QVERIFY2(bytes.contains("In-Reply-To: <1@x>") && bytes.contains("References: <0@x> <1@x>"), bytes.constData());
}

QTEST_GUILESS_MAIN(pop3_session_test)
#include "pop3_session_test.moc"
