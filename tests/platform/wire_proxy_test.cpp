// The proxy of other tests counts, delays and spoils what it says, over a server that says what is written down.
#include "support/loopback.h"
#include "support/scripted_server.h"
#include "support/wire_proxy.h"
#include <QElapsedTimer>
#include <QTest>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace std::chrono_literals;

class wire_proxy_test : public QObject {
    Q_OBJECT
private slots:
    void round_trips_and_bytes_are_counted();
    void a_round_trip_takes_its_delay();
    void an_end_comes_at_its_byte();
    void a_stall_says_nothing_more();
    void noise_is_the_same_for_a_seed();
    void only_the_first_connection_is_spoilt();
    void a_fault_of_what_the_client_sends();
    void text_is_inserted_behind_an_answer();
    void a_server_away_is_an_end();
    void the_script_tells_of_surprises();
};

static const script talk{scripted::say("hello\r\n"), scripted::expect("one"), scripted::say("first\r\n"),
                         scripted::expect("two"), scripted::say("second\r\n")};

void wire_proxy_test::round_trips_and_bytes_are_counted()
{
    scripted_server server(talk);
    wire_proxy proxy(server.port, {.record = true});
    {
        raw_connection client(proxy.port);
        QCOMPARE(client.line(), QByteArray("hello"));
        QCOMPARE(proxy.counts().round_trips, 0);
        client.send("on");
        QCOMPARE(client.ask("e"), QByteArray("first")); // two writes, one round trip
        QCOMPARE(proxy.counts().round_trips, 1);
        QCOMPARE(client.ask("two"), QByteArray("second"));
        QVERIFY(client.ended());
    }
    const wire_counts counts = proxy.counts();
    QCOMPARE(counts.connections, 1);
    QCOMPARE(counts.round_trips, 2);
    QCOMPARE(counts.to_server, qint64(qstrlen("one\r\ntwo\r\n")));
    QCOMPARE(counts.to_client, qint64(qstrlen("hello\r\nfirst\r\nsecond\r\n")));
    QCOMPARE(proxy.recorded(wire::to_server), QByteArray("one\r\ntwo\r\n"));
    QCOMPARE(proxy.recorded(wire::to_client), QByteArray("hello\r\nfirst\r\nsecond\r\n"));
    QCOMPARE(server.received(), QByteArray("one\ntwo\n"));
    QCOMPARE(server.unexpected(), QByteArray());
    proxy.forget();
    QCOMPARE(proxy.counts().to_client, 0);
}

void wire_proxy_test::a_round_trip_takes_its_delay()
{
    scripted_server server(talk);
    wire_proxy proxy(server.port, {.round_trip = 60ms});
    raw_connection client(proxy.port);
    client.line();
    QElapsedTimer since;
    since.start();
    QCOMPARE(client.ask("one"), QByteArray("first"));
    QCOMPARE(client.ask("two"), QByteArray("second"));
    QVERIFY2(since.elapsed() >= 120, qPrintable(QString::number(since.elapsed())));
}

void wire_proxy_test::an_end_comes_at_its_byte()
{
    scripted_server server(talk);
    for (const wire_fault::kind_of kind : {wire_fault::close, wire_fault::reset}) {
        for (const qint64 at : {0, 3, 9}) {
            wire_proxy proxy(server.port, {.faults = {{.kind = kind, .at_byte = at}}});
            const int socket = connect_loopback(proxy.port);
            QVERIFY(::send(socket, "one\r\ntwo\r\n", 10, MSG_NOSIGNAL) == 10 || at == 0);
            QByteArray told;
            char bytes[64];
            ssize_t got = 0;
            while ((got = ::recv(socket, bytes, sizeof bytes, 0)) > 0)
                told.append(bytes, got);
            const bool was_reset = got < 0;
            ::close(socket);
            QCOMPARE(was_reset, kind == wire_fault::reset);
            if (kind == wire_fault::close) // a reset may overtake what was sent before it
                QCOMPARE(told, QByteArray("hello\r\nfirst\r\n").left(at));
            QCOMPARE(proxy.counts().to_client, at);
        }
    }
}

void wire_proxy_test::a_stall_says_nothing_more()
{
    scripted_server server(talk);
    wire_proxy proxy(server.port, {.faults = {{.kind = wire_fault::stall, .at_byte = 7}}});
    const int socket = connect_loopback(proxy.port);
    char bytes[64];
    QCOMPARE(::recv(socket, bytes, sizeof bytes, 0), ssize_t(7));
    QCOMPARE(::send(socket, "one\r\n", 5, MSG_NOSIGNAL), ssize_t(5));
    pollfd waits{socket, POLLIN, 0};
    QCOMPARE(::poll(&waits, 1, 200), 0); // neither a byte nor an end
    ::close(socket);
    QTRY_COMPARE(server.unexpected(), QByteArray("the end instead of one")); // the server learns of the client's end
}

void wire_proxy_test::noise_is_the_same_for_a_seed()
{
    const auto heard = [](quint32 seed) {
        scripted_server server(script{scripted::say("0123456789abcdefghij")});
        wire_proxy proxy(server.port,
                         {.faults = {{.kind = wire_fault::noise, .at_byte = 10, .seed = seed}}, .record = true});
        raw_connection client(proxy.port);
        while (!client.line().isEmpty() || !client.ended())
            continue;
        return proxy.recorded(wire::to_client);
    };
    const QByteArray first = heard(7);
    QCOMPARE(first.size(), 20);
    QCOMPARE(first.left(10), QByteArray("0123456789"));
    QVERIFY(first.mid(10) != QByteArray("abcdefghij"));
    QCOMPARE(heard(7), first);
    QVERIFY(heard(8) != first);
}

void wire_proxy_test::only_the_first_connection_is_spoilt()
{
    scripted_server server(talk);
    const wire_options options{.faults = {{.kind = wire_fault::close, .at_byte = 2, .connection = 0}}};
    wire_proxy proxy(server.port, options);
    for (int round = 0; round < 2; ++round) {
        {
            raw_connection spoilt(proxy.port);
            QCOMPARE(spoilt.line(), QByteArray("he"));
        }
        {
            raw_connection whole(proxy.port);
            QCOMPARE(whole.line(), QByteArray("hello"));
        }
        proxy.set(options); // the next is number 0 again
    }
}

void wire_proxy_test::a_fault_of_what_the_client_sends()
{
    scripted_server server(talk);
    wire_proxy proxy(server.port,
                     {.faults = {{.kind = wire_fault::close, .direction = wire::to_server, .at_byte = 7}}});
    raw_connection client(proxy.port);
    client.line();
    QCOMPARE(client.ask("one"), QByteArray("first"));
    QCOMPARE(client.ask("two"), QByteArray());
    QCOMPARE(proxy.counts().to_server, 7);
    QTRY_COMPARE(server.unexpected(), QByteArray("the end instead of two"));
}

void wire_proxy_test::text_is_inserted_behind_an_answer()
{
    scripted_server server(talk);
    wire_proxy proxy(server.port, {.faults = {{.kind = wire_fault::insert, .after = "first\r\n", .text = "lie\r\n"}}});
    raw_connection client(proxy.port);
    client.line();
    QCOMPARE(client.ask("one"), QByteArray("first"));
    QCOMPARE(client.line(), QByteArray("lie"));
    QCOMPARE(client.ask("two"), QByteArray("second"));
}

void wire_proxy_test::a_server_away_is_an_end()
{
    wire_proxy proxy(free_loopback_port());
    raw_connection client(proxy.port);
    QVERIFY(client.ended());
}

void wire_proxy_test::the_script_tells_of_surprises()
{
    scripted_server server(script{scripted::say("* OK\r\n"), scripted::expect("%t LOGIN "),
                                  scripted::say("%t OK in\r\n"), scripted::expect("%t NOOP"),
                                  scripted::say("never said\r\n")});
    raw_connection client(server.port);
    client.line();
    QCOMPARE(client.ask("a7 LOGIN ann"), QByteArray("a7 OK in"));
    QCOMPARE(client.ask("a8 IDLE"), QByteArray());
    QVERIFY(client.ended());
    QCOMPARE(server.unexpected(), QByteArray("a8 IDLE instead of a8 NOOP"));
    QCOMPARE(server.connections(), 1);
}

QTEST_GUILESS_MAIN(wire_proxy_test)
#include "wire_proxy_test.moc"
