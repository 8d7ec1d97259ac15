// The sending server dies at each step of the dialogue, after some mails, in each way: what the session says of every
// recipient is what the server has. A few ways unless TESSALY_LONG is set. Servers that lie: smtp_session_test.cpp.
#include "platform/real/smtp/smtp_session.h"
#include "support/mail_servers.h"
#include "support/wire_proxy.h"
#include <QElapsedTimer>
#include <QTest>
#include <map>
#include <set>

Q_DECLARE_METATYPE(smtp_fault)

class smtp_fault_test : public QObject {
    Q_OBJECT
private slots:
    void what_is_said_is_what_the_server_has_data();
    void what_is_said_is_what_the_server_has();
    void a_server_that_refuses_the_connection_is_quoted_data();
    void a_server_that_refuses_the_connection_is_quoted();
    void round_trips_a_mail_data();
    void round_trips_a_mail();
};

namespace {

constexpr int patience_ms = 300;
const QString shop = QStringLiteral("shop@example.org");
enum class way { one_by_one, pipelined, asked_ahead };

struct step_name {
    smtp_step step;
    const char *name;
};
constexpr step_name steps[] = {
    {smtp_step::connect, "connect"}, {smtp_step::ehlo, "ehlo"},         {smtp_step::mail, "mail"},
    {smtp_step::rcpt, "rcpt"},       {smtp_step::data, "data"},         {smtp_step::body, "body"},
    {smtp_step::final, "final dot"}, {smtp_step::recorded, "recorded"}, {smtp_step::quit, "quit"},
};

struct deed_name {
    smtp_fault::deed_of deed;
    QByteArray text;
    const char *name;
};
const deed_name deeds[] = {
    {smtp_fault::close, {}, "closes"},
    {smtp_fault::reset, {}, "resets"},
    {smtp_fault::stall, {}, "stalls"},
    {smtp_fault::answer, "421 4.3.2 Must go", "421"},
    {smtp_fault::answer, "451 4.3.0 Not now", "451"},
    {smtp_fault::answer, "550 5.7.1 Not this", "550"},
};

net::place open_place(quint16 port)
{
    net::place where = place_at(net::protocol::smtp, mail::security::none, port);
    where.server.user.clear();
    return where;
}

QByteArray mail_of(int number)
{
    return "Subject: mail " + QByteArray::number(number) + "\r\n\r\n.Dear " + QByteArray::number(number) + "\r\n";
}

QStringList recipients_of(int number)
{
    return {QStringLiteral("ann%1@example.org").arg(number), QStringLiteral("bob%1@example.org").arg(number)};
}

// Sends as the Outbox does: what is to go later goes again, over a new connection where the line broke.
class persistent_sender {
public:
    explicit persistent_sender(quint16 port) : port(port) {}

    // next: the number of the one behind it, which is asked for ahead; 0: none is known yet
    void send(int number, int next = 0)
    {
        QStringList left = recipients_of(number);
        const smtp::parcel ahead{shop, recipients_of(next), mail_of(next)};
        for (int tries = 0; tries < 4 && !left.isEmpty(); ++tries) {
            if (!session && !connect())
                continue;
            const smtp::outcome outcome = session->send(
                {shop, left, mail_of(number)}, [] {}, next > 0 ? &ahead : nullptr);
            left.clear();
            for (const smtp::recipient_fate &one : outcome.recipients) {
                fates[one.address] = one.became;
                if (one.became == smtp::fate::later)
                    left << one.address;
                if (one.became == smtp::fate::unknown)
                    unknown_mails.insert(number);
            }
            if (outcome.line_is_broken)
                session.reset();
        }
    }

    void quit()
    {
        if (session)
            session->quit();
        session.reset();
    }

    std::map<QString, smtp::fate> fates;
    std::set<int> unknown_mails;
    int failed_connections = 0;

private:
    bool connect()
    {
        try {
            session = std::make_unique<smtp::session>(open_place(port), short_patience(patience_ms, patience_ms));
        } catch (const run_time_error &) { // a test looks at what a failure is elsewhere
            ++failed_connections;
        }
        return bool(session);
    }

    quint16 port;
    std::unique_ptr<smtp::session> session;
};

// How often each recipient has which mail.
std::map<QString, int> taken_by(const smtp_sink &sink)
{
    std::map<QString, int> taken;
    for (const recorded_mail &mail : sink.mails())
        for (const QByteArray &address : mail.recipients) {
            const int number = QByteArray(mail.bytes).replace("Subject: mail ", "").split('\r').first().toInt();
            if (mail.bytes == mail_of(number) && recipients_of(number).contains(QString::fromLatin1(address)))
                ++taken[QString::fromLatin1(address)];
            else
                taken[QStringLiteral("somebody else's mail, or not all of it")] = 1;
        }
    return taken;
}

}

void smtp_fault_test::what_is_said_is_what_the_server_has_data()
{
    QTest::addColumn<smtp_fault>("fault");
    QTest::addColumn<way>("how");
    const bool all = qEnvironmentVariableIsSet("TESSALY_LONG");
    const std::vector<std::pair<way, const char *>> ways{
        {way::one_by_one, "one by one"}, {way::pipelined, "pipelined"}, {way::asked_ahead, "asked ahead"}};
    for (const auto &[how, way_name] : ways)
        for (const int after : {0, 1, 7, 99})
            for (const step_name &step : steps)
                for (const deed_name &deed : deeds) {
                    // A server that records a mail and says no to it tells nobody the truth.
                    if (step.step == smtp_step::recorded && deed.deed == smtp_fault::answer)
                        continue;
                    if (!all && after != (how == way::pipelined ? 1 : 7))
                        continue;
                    QTest::addRow("%s at %s, behind %d mails, %s", deed.name, step.name, after, way_name)
                        << smtp_fault{step.step, deed.deed, deed.text, after, 1, 1} << how;
                }
}

void smtp_fault_test::what_is_said_is_what_the_server_has()
{
    QFETCH(smtp_fault, fault);
    QFETCH(way, how);
    const smtp_sink sink({.pipelining = how != way::one_by_one, .faults = {fault}});
    persistent_sender all(sink.port());
    // A fault of the connection shows at the next connection.
    const bool at_connecting = fault.at == smtp_step::connect || fault.at == smtp_step::ehlo;
    for (int number = 0; number < fault.after_mails + 3; ++number) {
        if (at_connecting && number == fault.after_mails)
            all.quit();
        all.send(number, how == way::asked_ahead && number < fault.after_mails + 2 ? number + 1 : 0);
    }
    QElapsedTimer since;
    since.start();
    all.quit();
    QVERIFY2(since.elapsed() < patience_ms + 200, "a goodbye that nobody answers");

    const std::map<QString, int> taken = taken_by(sink);
    qsizetype refused = 0;
    for (const auto &[address, became] : all.fates) {
        const auto found = taken.find(address);
        const int times = found == taken.end() ? 0 : found->second;
        const bool fits = became == smtp::fate::sent      ? times == 1
                          : became == smtp::fate::unknown ? times <= 1
                                                          : times == 0;
        QVERIFY2(fits, qPrintable(QStringLiteral("%1 has it %2 times").arg(address).arg(times)));
        QVERIFY2(became != smtp::fate::later, "the server is there again, and everybody can be reached");
        refused += became == smtp::fate::refused ? 1 : 0;
    }
    QCOMPARE(all.fates.size(), size_t(2 * (fault.after_mails + 3)));
    QVERIFY(taken.size() <= all.fates.size());
    // Nobody knows of a mail only where the server fell silent behind the whole of it.
    const bool may_be_unknown =
        (fault.at == smtp_step::final || fault.at == smtp_step::recorded || fault.at == smtp_step::body) &&
        fault.deed != smtp_fault::answer;
    QVERIFY(all.unknown_mails.size() <= (may_be_unknown ? 1U : 0U));
    QVERIFY(fault.text.startsWith("550") || refused == 0);
    QCOMPARE(sink.complaints(), QByteArrayList());
}

void smtp_fault_test::a_server_that_refuses_the_connection_is_quoted_data()
{
    QTest::addColumn<smtp_step>("step");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("words");
    QTest::newRow("closed for today") << smtp_step::connect << QByteArray("554 5.3.2 No service here")
                                      << "127.0.0.1 refuses the connection. It said: 5.3.2 No service here";
    QTest::newRow("too busy") << smtp_step::connect << QByteArray("421 4.7.0 Too many connections")
                              << "127.0.0.1 refuses the connection. It said: 4.7.0 Too many connections";
    QTest::newRow("login not now") << smtp_step::auth << QByteArray("454 4.7.0 Temporary failure")
                                   << "127.0.0.1 lets nobody in at the moment. It said: 4.7.0 Temporary failure";
    QTest::newRow("login closes") << smtp_step::auth << QByteArray("421 4.7.0 Too many errors")
                                  << "127.0.0.1 lets nobody in at the moment. It said: 4.7.0 Too many errors";
}

void smtp_fault_test::a_server_that_refuses_the_connection_is_quoted()
{
    QFETCH(smtp_step, step);
    QFETCH(QByteArray, text);
    const smtp_sink sink({.user = QStringLiteral("ann"),
                          .password = QStringLiteral("apple tree"),
                          .faults = {{.at = step, .deed = smtp_fault::answer, .text = text, .times = -1}}});
    const connecting tried(place_at(net::protocol::smtp, mail::security::none, sink.port()));
    QTEST(tried.description, "words");
    QVERIFY(tried.failed_as(step == smtp_step::auth ? net::trouble::nobody_let_in : net::trouble::refused));
}

void smtp_fault_test::round_trips_a_mail_data()
{
    QTest::addColumn<bool>("ahead");
    QTest::addColumn<int>("a_mail");
    QTest::newRow("two for each on its own") << false << 2;
    QTest::newRow("one where the next is asked for ahead") << true << 1;
}

void smtp_fault_test::round_trips_a_mail()
{
    QFETCH(bool, ahead);
    QFETCH(int, a_mail);
    constexpr int mails = 100;
    const smtp_sink sink;
    const wire_proxy proxy(sink.port());
    persistent_sender all(proxy.port);
    for (int number = 0; number < mails; ++number)
        all.send(number, ahead && number + 1 < mails ? number + 1 : 0);
    all.quit();
    QCOMPARE(sink.taken(), mails);
    // EHLO twice, the first envelope, and QUIT.
    QVERIFY2(proxy.counts().round_trips <= a_mail * mails + 4, qPrintable(QString::number(proxy.counts().round_trips)));
    QCOMPARE(proxy.counts().connections, 1);
}

QTEST_GUILESS_MAIN(smtp_fault_test)
#include "smtp_fault_test.moc"
