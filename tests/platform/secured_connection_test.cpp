// A connection is encrypted, to the right server, before anything is said that matters: IMAP, POP3 and SMTP alike.
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
Q_DECLARE_METATYPE(mail::security)

class secured_connection_test : public QObject {
    Q_OBJECT
private slots:
    void a_good_certificate_connects_data();
    void a_good_certificate_connects();
    void a_bad_certificate_is_refused_with_its_reason_data();
    void a_bad_certificate_is_refused_with_its_reason();
    void without_our_authority_the_good_one_is_unknown();
    void a_missing_authority_file_is_named();
    void without_starttls_nothing_is_said_in_the_clear_data();
    void without_starttls_nothing_is_said_in_the_clear();
    void text_before_starttls_is_not_heard_data();
    void text_before_starttls_is_not_heard();
    void a_plain_server_on_a_tls_port_is_told_data();
    void a_plain_server_on_a_tls_port_is_told();
    void a_tls_server_on_a_plain_port_is_told_data();
    void a_tls_server_on_a_plain_port_is_told();

private:
    certificates made;
    mail_servers servers{made};
};

namespace {

constexpr char secret[] = "never to be seen";

void rows_of_protocol()
{
    QTest::addColumn<protocol>("speaks");
    for (const protocol speaks : all_protocols())
        QTest::newRow(name_of(speaks)) << speaks;
}

void rows_of_protocol_and_security()
{
    QTest::addColumn<protocol>("speaks");
    QTest::addColumn<security>("secured");
    for (const protocol speaks : all_protocols())
        for (const security secured : {security::tls, security::starttls})
            QTest::addRow("%s, %s", name_of(speaks), name_of(secured)) << speaks << secured;
}

// A question to a server that is logged in, and its answer.
QByteArray asked(net::stream &stream, protocol speaks)
{
    stream.send(speaks == protocol::imap ? "a NOOP\r\n" : "NOOP\r\n");
    std::array<char, 1000> buffer;
    QByteArray said;
    while (!said.endsWith('\n'))
        said.append(buffer.data(), stream.receive(buffer.data(), buffer.size()));
    return said;
}

}

void secured_connection_test::a_good_certificate_connects_data()
{
    rows_of_protocol_and_security();
}

void secured_connection_test::a_good_certificate_connects()
{
    QFETCH(protocol, speaks);
    QFETCH(security, secured);
    for (const char *host : {"127.0.0.1", "localhost"}) {
        net::place where = servers.place_of(speaks, secured, made.good());
        wire_proxy proxy(quint16(where.server.port), {.record = true});
        where.server.port = proxy.port;
        where.server.host = QString::fromLatin1(host);
        const connecting tried(where);
        QVERIFY2(tried.stream, qPrintable(tried.description));
        const QByteArray yes = speaks == protocol::imap ? "a OK" : speaks == protocol::pop3 ? "+OK" : "250";
        QVERIFY(asked(*tried.stream, speaks).startsWith(yes));
        QVERIFY(!proxy.recorded(wire::to_server).contains("NOOP")); // it is encrypted
    }
}

void secured_connection_test::a_bad_certificate_is_refused_with_its_reason_data()
{
    QTest::addColumn<protocol>("speaks");
    QTest::addColumn<security>("secured");
    QTest::addColumn<certificate_files>("shown");
    QTest::addColumn<QString>("why");
    const auto rows = [](const char *name, const certificate_files &shown, const QString &why) {
        for (const protocol speaks : all_protocols())
            for (const security secured : {security::tls, security::starttls})
                QTest::addRow("%s, %s, %s", name, name_of(speaks), name_of(secured))
                    << speaks << secured << shown << why;
    };
    rows("another host", made.other_host(), "it was made out for another server name");
    rows("expired", made.expired(), "it has expired");
    rows("unknown authority", made.unknown_authority(),
         "it is signed by an authority that this computer does not know");
    rows("self-signed", made.self_signed(), "it is signed by itself, by no authority at all");
}

void secured_connection_test::a_bad_certificate_is_refused_with_its_reason()
{
    QFETCH(protocol, speaks);
    QFETCH(security, secured);
    QFETCH(certificate_files, shown);
    QFETCH(QString, why);
    net::place where = servers.place_of(speaks, secured, shown);
    // Nobody of that name: had the login been tried, the server would have it in its log.
    where.server.user = QStringLiteral("nobody-of-that-name");
    where.password = QString::fromLatin1(secret);
    const connecting tried(where);
    QVERIFY(!tried.stream);
    QCOMPARE(tried.description,
             QStringLiteral("The certificate of 127.0.0.1 is not accepted: %1. Nothing was sent.").arg(why));
    QVERIFY(tried.failed_as(net::trouble::certificate_refused));
    const QString seen = servers.seen(speaks, secured, shown);
    QVERIFY2(!seen.contains(where.server.user) && !seen.contains(u"1 logins"), qPrintable(seen));
}

void secured_connection_test::without_our_authority_the_good_one_is_unknown()
{
    net::place where = servers.place_of(protocol::imap, security::tls, made.good());
    where.authority_file.clear();
    const connecting tried(where);
    QVERIFY(tried.failed_as(net::trouble::certificate_refused));
    QVERIFY2(tried.description.contains(u"an authority that this computer does not know"),
             qPrintable(tried.description));
}

void secured_connection_test::a_missing_authority_file_is_named()
{
    net::place where = servers.place_of(protocol::imap, security::tls, made.good());
    where.authority_file = QStringLiteral("/nowhere/authority.pem");
    const connecting tried(where);
    QVERIFY(tried.failed_as(net::trouble::not_configured));
    QVERIFY2(tried.description.contains(u"/nowhere/authority.pem"), qPrintable(tried.description));
}

void secured_connection_test::without_starttls_nothing_is_said_in_the_clear_data()
{
    rows_of_protocol();
}

void secured_connection_test::without_starttls_nothing_is_said_in_the_clear()
{
    QFETCH(protocol, speaks);
    const script imap{say("* OK here\r\n"), expect("%t CAPABILITY"),
                      say("* CAPABILITY IMAP4rev1 AUTH=PLAIN SASL-IR\r\n%t OK\r\n"), wait_for_end()};
    const script pop3{say("+OK here\r\n"), expect("CAPA"), say("+OK\r\nUSER\r\nSASL PLAIN\r\n.\r\n"), wait_for_end()};
    const script smtp{say("220 here\r\n"), expect("EHLO"), say("250-here\r\n250 AUTH PLAIN\r\n"), wait_for_end()};
    scripted_server server(speaks == protocol::imap ? imap : speaks == protocol::pop3 ? pop3 : smtp);
    const connecting tried(place_at(speaks, security::starttls, server.port));
    QCOMPARE(tried.description, "127.0.0.1 does not offer to encrypt the connection (STARTTLS).");
    QVERIFY(tried.failed_as(net::trouble::no_encryption));
    QCOMPARE(server.received().count('\n'), 1); // the question for what it can, and nothing about a login
    QCOMPARE(server.connections(), 1);
}

void secured_connection_test::text_before_starttls_is_not_heard_data()
{
    QTest::addColumn<protocol>("speaks");
    QTest::addColumn<QByteArray>("after"); // the server's own words, behind which somebody on the way adds his
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("IMAP: a logged-in answer")
        << protocol::imap << QByteArray("Begin TLS negotiation now.\r\n")
        << QByteArray("* PREAUTH you are in\r\nA002 OK [CAPABILITY INJECTED] in\r\n");
    QTest::newRow("POP3: a logged-in answer") << protocol::pop3 << QByteArray("Begin TLS negotiation now.\r\n")
                                              << QByteArray("+OK INJECTED\r\n+OK INJECTED\r\n.\r\n");
    QTest::newRow("SMTP: offers") << protocol::smtp << QByteArray("220 2.0.0 Go ahead\r\n")
                                  << QByteArray("250-INJECTED\r\n250 AUTH LOGIN\r\n");
}

void secured_connection_test::text_before_starttls_is_not_heard()
{
    QFETCH(protocol, speaks);
    QFETCH(QByteArray, after);
    QFETCH(QByteArray, text);
    net::place where = servers.place_of(speaks, security::starttls, made.good());
    wire_proxy proxy(quint16(where.server.port),
                     {.faults = {{.kind = wire_fault::insert, .after = after, .text = text}}, .record = true});
    where.server.port = proxy.port;
    const connecting tried(where);
    QVERIFY(proxy.recorded(wire::to_client).contains(text)); // it was there to be heard
    QVERIFY2(!tried.stream, "who speaks before encryption is not to be trusted behind it");
    QVERIFY(!tried.description.contains(u"INJECTED"));
    QVERIFY(!proxy.recorded(wire::to_server).contains("apple"));
}

void secured_connection_test::a_plain_server_on_a_tls_port_is_told_data()
{
    rows_of_protocol();
}

void secured_connection_test::a_plain_server_on_a_tls_port_is_told()
{
    QFETCH(protocol, speaks);
    net::place where = servers.place_of(speaks, security::starttls, made.good());
    where.server.secured = security::tls;
    const connecting tried(where);
    QVERIFY2(tried.failed_as(net::trouble::no_encryption), qPrintable(tried.description));
    QVERIFY2(tried.description.contains(u"another kind of encryption at this port"), qPrintable(tried.description));
}

void secured_connection_test::a_tls_server_on_a_plain_port_is_told_data()
{
    rows_of_protocol();
}

void secured_connection_test::a_tls_server_on_a_plain_port_is_told()
{
    QFETCH(protocol, speaks);
    net::place where = servers.place_of(speaks, security::tls, made.good());
    where.server.secured = security::starttls;
    const connecting tried(where, short_patience(1000));
    // It waits for our first byte as we wait for its first: only the time says so.
    QVERIFY2(tried.failed_as(net::trouble::timed_out), qPrintable(tried.description));
    QVERIFY2(tried.description.contains(u"encryption"), qPrintable(tried.description));
}

QTEST_GUILESS_MAIN(secured_connection_test)
#include "secured_connection_test.moc"
