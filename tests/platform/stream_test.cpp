// The stream to a mail server: bytes both ways, and an end to every waiting.
#include "support/loopback.h"
#include "support/mail_servers.h"
#include "support/scripted_server.h"
#include "support/wire_proxy.h"
#include <QElapsedTimer>
#include <QTest>
#include <array>

using namespace scripted;
using mail::security;
using net::protocol;

Q_DECLARE_METATYPE(net::protocol)

class stream_test : public QObject {
    Q_OBJECT
private slots:
    void a_name_that_nobody_has_is_told();
    void a_name_that_is_none_is_told_data();
    void a_name_that_is_none_is_told();
    void a_port_where_nobody_listens_is_told();
    void a_silent_server_is_left_in_time_data();
    void a_silent_server_is_left_in_time();
    void giving_up_ends_connecting_data();
    void giving_up_ends_connecting();
    void giving_up_ends_reading_and_writing();
    void a_server_that_hangs_up_is_told_data();
    void a_server_that_hangs_up_is_told();
    void reading_ends_in_time();
    void what_waits_is_seen();
    void hanging_up_waits_for_nobody_data();
    void hanging_up_waits_for_nobody();
    void writing_to_a_server_that_is_gone_is_a_failure();
    void big_mails_pass_whole_both_ways();
    void a_server_that_answers_in_the_middle_is_heard();
    void words_in_the_breath_of_the_login_answer_data();
    void words_in_the_breath_of_the_login_answer();
};

namespace {

void rows_of_protocol()
{
    QTest::addColumn<protocol>("speaks");
    for (const protocol speaks : all_protocols())
        QTest::newRow(name_of(speaks)) << speaks;
}

// From the greeting to the login's answer; behind it the client is in.
script logging_in(protocol speaks)
{
    if (speaks == protocol::imap)
        return {say("* OK here\r\n"), expect("%t CAPABILITY"),
                say("* CAPABILITY IMAP4rev1 AUTH=PLAIN SASL-IR\r\n%t OK\r\n"), expect("%t AUTHENTICATE PLAIN"),
                say("%t OK in\r\n")};
    if (speaks == protocol::pop3)
        return {say("+OK here\r\n"), expect("CAPA"),   say("+OK\r\nUSER\r\n.\r\n"), expect("USER ann"), say("+OK\r\n"),
                expect("PASS"),      say("+OK in\r\n")};
    return {say("220 here\r\n"),  expect("EHLO"),  say("250-here\r\n250 AUTH PLAIN\r\n"),
            expect("AUTH PLAIN"), say("334 \r\n"), expect(""),
            say("235 in\r\n")};
}

net::place plain_place(protocol speaks, quint16 port)
{
    return place_at(speaks, security::none, port);
}

QByteArray next_bytes(net::stream &stream)
{
    std::array<char, 4096> buffer;
    return {buffer.data(), stream.receive(buffer.data(), buffer.size())};
}

// All up to the line that begins so.
QByteArray bytes_up_to(net::stream &stream, const QByteArray &tag)
{
    std::vector<char> buffer(100000);
    QByteArray come;
    while (!come.endsWith('\n') || !come.mid(come.lastIndexOf('\n', come.size() - 2) + 1).startsWith(tag))
        come.append(buffer.data(), stream.receive(buffer.data(), qsizetype(buffer.size())));
    return come;
}

quint32 failure_of(const std::function<void()> &body)
{
    try {
        body();
    } catch (const run_time_error &error) {
        return error.number;
    }
    return 0;
}

quint32 number(net::trouble kind)
{
    return quint32(kind);
}

}

void stream_test::a_name_that_nobody_has_is_told()
{
    net::place where = plain_place(protocol::imap, 143);
    where.server.host = QStringLiteral("mail.nursery.invalid");
    QElapsedTimer since;
    since.start();
    const connecting tried(where, short_patience(10000));
    QVERIFY2(tried.failed_as(net::trouble::name_not_found), qPrintable(tried.description));
    QCOMPARE(tried.description,
             "There is no server called mail.nursery.invalid. Check the spelling, and that the network is up.");
    QVERIFY(since.elapsed() < 11000);
}

void stream_test::a_name_that_is_none_is_told_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<QString>("words");
    QTest::newRow("empty") << ""
                           << "No server is set.";
    QTest::newRow("blanks") << "  "
                            << "No server is set.";
    QTest::newRow("a path") << "mail.example.org/inbox"
                            << "\"mail.example.org/inbox\" cannot be the name of a server.";
    QTest::newRow("a user") << "ann@mail.example.org"
                            << "\"ann@mail.example.org\" cannot be the name of a server.";
    QTest::newRow("a line end") << "mail\nexample"
                                << "\"mail\nexample\" cannot be the name of a server.";
}

void stream_test::a_name_that_is_none_is_told()
{
    QFETCH(QString, host);
    net::place where = plain_place(protocol::imap, 143);
    where.server.host = host;
    const connecting tried(where);
    QVERIFY(tried.failed_as(net::trouble::not_configured));
    QTEST(tried.description, "words");
}

void stream_test::a_port_where_nobody_listens_is_told()
{
    const quint16 port = free_loopback_port();
    const connecting tried(plain_place(protocol::pop3, port));
    QVERIFY(tried.failed_as(net::trouble::not_reached));
    QCOMPARE(tried.description,
             QStringLiteral("127.0.0.1 cannot be reached at port %1: nobody answers there.").arg(port));
}

void stream_test::a_silent_server_is_left_in_time_data()
{
    QTest::addColumn<protocol>("speaks");
    QTest::addColumn<int>("secured");
    for (const protocol speaks : all_protocols())
        for (const security secured : {security::none, security::starttls, security::tls})
            QTest::addRow("%s, %s", name_of(speaks), name_of(secured)) << speaks << int(secured);
}

void stream_test::a_silent_server_is_left_in_time()
{
    QFETCH(protocol, speaks);
    QFETCH(int, secured);
    scripted_server server(script{wait_for_end()});
    QElapsedTimer since;
    since.start();
    const connecting tried(place_at(speaks, security(secured), server.port), short_patience(400));
    QVERIFY2(tried.failed_as(net::trouble::timed_out), qPrintable(tried.description));
    QVERIFY(since.elapsed() >= 350); // the library counts from a little earlier
    QVERIFY2(since.elapsed() < 1400, qPrintable(QString::number(since.elapsed())));
}

void stream_test::giving_up_ends_connecting_data()
{
    QTest::addColumn<protocol>("speaks");
    QTest::addColumn<int>("steps"); // of the login, before the server falls silent
    for (const protocol speaks : all_protocols())
        for (qsizetype steps = 0; steps < logging_in(speaks).size(); steps += 2)
            QTest::addRow("%s, silent behind %d steps", name_of(speaks), int(steps)) << speaks << int(steps);
}

void stream_test::giving_up_ends_connecting()
{
    QFETCH(protocol, speaks);
    QFETCH(int, steps);
    scripted_server server(logging_in(speaks).first(steps) + script{wait_for_end()});
    QElapsedTimer since;
    since.start();
    net::patience patience = short_patience(20000);
    patience.give_up = [&] { return since.elapsed() >= 100; };
    const connecting tried(plain_place(speaks, server.port), patience);
    QVERIFY2(since.elapsed() < 1100, qPrintable(QString::number(since.elapsed())));
    QVERIFY2(tried.failed_as(net::trouble::cancelled), qPrintable(tried.description));
}

void stream_test::giving_up_ends_reading_and_writing()
{
    scripted_server server(logging_in(protocol::imap) + script{wait_for_end()});
    // Behind the login it takes some bytes, and then no more.
    wire_proxy proxy(server.port,
                     {.faults = {{.kind = wire_fault::stall, .direction = wire::to_server, .at_byte = 5000}}});
    const connecting tried(plain_place(protocol::imap, proxy.port), short_patience(5000, 60000));
    QVERIFY2(tried.stream, qPrintable(tried.description));
    for (const bool reading : {true, false}) {
        QElapsedTimer since;
        since.start();
        net::patience patience = short_patience(5000, 60000);
        patience.give_up = [&] { return since.elapsed() >= 100; };
        tried.stream->set_patience(patience);
        const quint32 failed = failure_of([&] {
            while (reading)
                next_bytes(*tried.stream);
            while (true)
                tried.stream->send(QByteArray(1 << 20, 'x'));
        });
        QCOMPARE(failed, number(net::trouble::cancelled));
        QVERIFY2(since.elapsed() < 1100, qPrintable(QString::number(since.elapsed())));
    }
}

void stream_test::a_server_that_hangs_up_is_told_data()
{
    QTest::addColumn<protocol>("speaks");
    QTest::addColumn<int>("steps");
    QTest::addColumn<bool>("hard");
    for (const protocol speaks : all_protocols())
        for (qsizetype steps = 0; steps < logging_in(speaks).size(); ++steps)
            for (const bool hard : {false, true})
                QTest::addRow("%s, %s behind %d steps", name_of(speaks), hard ? "reset" : "closed", int(steps))
                    << speaks << int(steps) << hard;
}

void stream_test::a_server_that_hangs_up_is_told()
{
    QFETCH(protocol, speaks);
    QFETCH(int, steps);
    QFETCH(bool, hard);
    scripted_server server(logging_in(speaks).first(steps) + script{hard ? reset() : hang_up()});
    const connecting tried(plain_place(speaks, server.port), short_patience(5000));
    QVERIFY(!tried.stream);
    QVERIFY2(tried.failed_as(net::trouble::closed), qPrintable(tried.description));
    QVERIFY2(tried.description.startsWith(u"127.0.0.1 closed the connection."), qPrintable(tried.description));
}

void stream_test::reading_ends_in_time()
{
    scripted_server server(logging_in(protocol::imap) + script{wait_for_end()});
    const connecting tried(plain_place(protocol::imap, server.port), short_patience(5000, 300));
    QVERIFY2(tried.stream, qPrintable(tried.description));
    QElapsedTimer since;
    since.start();
    QCOMPARE(failure_of([&] { next_bytes(*tried.stream); }), number(net::trouble::timed_out));
    QVERIFY(since.elapsed() >= 300 && since.elapsed() < 1300);
}

void stream_test::what_waits_is_seen()
{
    scripted_server server(logging_in(protocol::imap) + script{expect("a"), say("one"), expect("b"), hang_up()});
    const connecting tried(plain_place(protocol::imap, server.port));
    QVERIFY2(tried.stream, qPrintable(tried.description));
    QVERIFY(!tried.stream->has_waiting(0));
    QVERIFY(!tried.stream->has_waiting(50));
    tried.stream->send("a\r\n");
    QVERIFY(tried.stream->has_waiting(5000));
    QVERIFY(tried.stream->has_waiting(0)); // looking takes nothing away
    QCOMPARE(next_bytes(*tried.stream), QByteArray("one"));
    QVERIFY(!tried.stream->has_waiting(0));
    tried.stream->send("b\r\n");
    QCOMPARE(failure_of([&] { tried.stream->has_waiting(5000); }), number(net::trouble::closed));
}

void stream_test::hanging_up_waits_for_nobody_data()
{
    rows_of_protocol();
}

void stream_test::hanging_up_waits_for_nobody()
{
    QFETCH(protocol, speaks);
    const certificates made;
    mail_servers servers(made);
    net::place encrypted = servers.place_of(speaks, security::tls, made.good());
    scripted_server plain(logging_in(speaks) + script{wait_for_end()});
    wire_proxy proxy(quint16(encrypted.server.port));
    encrypted.server.port = proxy.port;
    for (const net::place &where : {plain_place(speaks, plain.port), encrypted}) {
        connecting tried(where);
        QVERIFY2(tried.stream, qPrintable(tried.description));
        // Half a command, so that no server has a reason to speak or to hang up.
        tried.stream->send("NO");
        QElapsedTimer since;
        since.start();
        tried.stream.reset();
        QVERIFY2(since.elapsed() < 200, qPrintable(QString::number(since.elapsed())));
    }
}

void stream_test::writing_to_a_server_that_is_gone_is_a_failure()
{
    scripted_server server(logging_in(protocol::imap) + script{expect("a"), reset()});
    const connecting tried(plain_place(protocol::imap, server.port));
    QVERIFY2(tried.stream, qPrintable(tried.description));
    tried.stream->send("a\r\n");
    const quint32 failed = failure_of([&] {
        while (true)
            tried.stream->send("more\r\n"); // the second write behind the end is what SIGPIPE is for
    });
    QCOMPARE(failed, number(net::trouble::closed));
}

void stream_test::big_mails_pass_whole_both_ways()
{
    const certificates made;
    mail_servers servers(made);
    const connecting tried(servers.place_of(protocol::imap, security::tls, made.good()), short_patience(5000, 10000));
    QVERIFY2(tried.stream, qPrintable(tried.description));
    QByteArray line, mail = "Subject: big\r\n\r\n";
    for (int letter = 1; letter < 256; ++letter)
        if (letter != '\r' && letter != '\n')
            line += char(letter);
    while (mail.size() < (8 << 20))
        mail += QByteArray::number(mail.size()) + line + "\r\n";
    tried.stream->send("a APPEND INBOX {" + QByteArray::number(mail.size()) + "+}\r\n");
    tried.stream->send(mail + "\r\n");
    QVERIFY(bytes_up_to(*tried.stream, "a ").contains("a OK"));
    tried.stream->send("b SELECT INBOX\r\n");
    QVERIFY(bytes_up_to(*tried.stream, "b ").contains("b OK"));
    tried.stream->send("c FETCH 1 (BODY.PEEK[])\r\n");
    const QByteArray fetched = bytes_up_to(*tried.stream, "c ");
    const qsizetype at = fetched.indexOf("}\r\n") + 3;
    QVERIFY(fetched.mid(at, mail.size()) == mail);
    QVERIFY(fetched.mid(at + mail.size()).startsWith(")\r\nc OK"));
}

void stream_test::a_server_that_answers_in_the_middle_is_heard()
{
    // Both say more than all buffers on the way hold before they listen: one of them has to listen while it speaks.
    const QByteArray much = (QByteArray(1022, 'x') + "\r\n").repeated(14 * 1024);
    scripted_server server(logging_in(protocol::imap) + script{say(much), expect("x"), wait_for_end()});
    const connecting tried(plain_place(protocol::imap, server.port), short_patience(5000, 3000));
    QVERIFY2(tried.stream, qPrintable(tried.description));
    tried.stream->send(much);
    QByteArray come;
    while (come.size() < much.size())
        come += next_bytes(*tried.stream);
    QVERIFY(come == much);
    QCOMPARE(server.unexpected(), QByteArray());
}

void stream_test::words_in_the_breath_of_the_login_answer_data()
{
    rows_of_protocol();
}

// The library keeps them to itself. Were that to change, the protocols would have to know.
void stream_test::words_in_the_breath_of_the_login_answer()
{
    QFETCH(protocol, speaks);
    script steps = logging_in(speaks);
    steps.last().bytes += speaks == protocol::imap ? "* BYE I am going\r\n" : "250 One too many\r\n";
    scripted_server server(steps + script{expect("a"), say("answer"), wait_for_end()});
    const connecting tried(plain_place(speaks, server.port));
    QVERIFY2(tried.stream, qPrintable(tried.description));
    tried.stream->send("a\r\n");
    QCOMPARE(next_bytes(*tried.stream), QByteArray("answer"));
}

QTEST_GUILESS_MAIN(stream_test)
#include "stream_test.moc"
