// The sending server fails at each step, after some mails, in each way: what the Outbox says of every mail is what the
// server has, and once the server is well, everything is through that it did not refuse. A few ways unless TESSALY_LONG
// is set. The same of one session: smtp_fault_test.cpp.
#include "support/delivery_site.h"
#include "support/smtp_sink.h"
#include <QTest>
#include <map>

Q_DECLARE_METATYPE(smtp_fault)

class delivery_fault_test : public QObject {
    Q_OBJECT
private slots:
    void the_outbox_says_what_the_server_has_data();
    void the_outbox_says_what_the_server_has();
};

namespace {

// "" or the failure that ended it.
QString deliver_with_little_patience()
{
    net::patience patience;
    patience.connect_ms = patience.answer_ms = 300;
    try {
        delivery::deliver_all(patience);
    } catch (const run_time_error &error) {
        return error.description;
    }
    return {};
}

std::map<QString, outbox::mail_state> states_by_address()
{
    std::map<QString, outbox::mail_state> states;
    for (const outbox::kept_mail &mail : outbox::contents())
        states[mail.To.value(0)] = mail.state;
    return states;
}

// "" when the Outbox and the server agree on each of the mails.
QString what_is_wrong(const smtp_sink &sink, int all_mails)
{
    std::map<QString, int> taken;
    for (const recorded_mail &mail : sink.mails())
        ++taken[QString::fromLatin1(mail.recipients.value(0))];
    const std::map<QString, outbox::mail_state> kept = states_by_address();
    int doubtful = 0;
    for (int number = 1; number <= all_mails; ++number) {
        const QString address = QStringLiteral("%1@example.net").arg(number);
        const auto state = kept.find(address);
        const bool unknown = state != kept.end() && state->second == outbox::mail_state::unknown;
        doubtful += unknown ? 1 : 0;
        const int times = taken[address];
        if (unknown ? times > 1 : times != (state == kept.end() ? 1 : 0))
            return QStringLiteral("%1 has it %2 times").arg(address).arg(times);
    }
    return doubtful > 1 ? QStringLiteral("%1 mails are in doubt").arg(doubtful) : QString();
}

}

void delivery_fault_test::the_outbox_says_what_the_server_has_data()
{
    QTest::addColumn<smtp_fault>("fault");
    const QList<std::pair<smtp_step, const char *>> steps{
        {smtp_step::connect, "connect"}, {smtp_step::ehlo, "ehlo"},        {smtp_step::mail, "mail"},
        {smtp_step::rcpt, "rcpt"},       {smtp_step::data, "data"},        {smtp_step::body, "body"},
        {smtp_step::final, "final dot"}, {smtp_step::recorded, "recorded"}};
    const QList<std::pair<QByteArray, smtp_fault>> deeds{
        {"closes", {.deed = smtp_fault::close}},
        {"resets", {.deed = smtp_fault::reset}},
        {"stalls", {.deed = smtp_fault::stall}},
        {"421", {.deed = smtp_fault::answer, .text = "421 4.3.2 Must go"}},
        {"451", {.deed = smtp_fault::answer, .text = "451 4.3.0 Not now"}},
        {"550", {.deed = smtp_fault::answer, .text = "550 5.7.1 Not this"}}};
    const bool all = qEnvironmentVariableIsSet("TESSALY_LONG");
    for (const int after : all ? QList<int>{0, 1, 7, 99} : QList<int>{7})
        for (const auto &[step, step_name] : steps)
            for (const auto &[deed_name, deed] : deeds) {
                if (step == smtp_step::recorded && deed.deed == smtp_fault::answer)
                    continue; // a server that records a mail and says no to it tells nobody the truth
                smtp_fault fault = deed;
                fault.at = step;
                // Connecting comes once, before all mails.
                fault.after_mails = step == smtp_step::connect || step == smtp_step::ehlo ? 0 : after;
                QTest::addRow("%s at %s, behind %d mails", deed_name.constData(), step_name, after) << fault;
            }
}

void delivery_fault_test::the_outbox_says_what_the_server_has()
{
    QFETCH(smtp_fault, fault);
    smtp_sink sink({.faults = {fault}});
    delivery_site site(sink.port());
    const int all_mails = fault.after_mails + 3;
    site.hand_over_many(all_mails);
    const QString failure = deliver_with_little_patience();
    const QString wrong = what_is_wrong(sink, all_mails);
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong + QStringLiteral(" ") + failure));
    sink.set_faults({});
    site.begin_a_new_run();
    QCOMPARE(deliver_with_little_patience(), "");
    const QString wrong_again = what_is_wrong(sink, all_mails);
    QVERIFY2(wrong_again.isEmpty(), qPrintable(wrong_again));
    QCOMPARE(outbox::count().waiting, 0);
    QVERIFY(outbox::count().refused == 0 || fault.text.startsWith("550"));
}

QTEST_GUILESS_MAIN(delivery_fault_test)
#include "delivery_fault_test.moc"
