// What the tests of the sending dialogue have in common: a mail, addresses, the beginning of a scripted server.
#pragma once
#include "platform/real/smtp/smtp_session.h"
#include "support/scripted_server.h"

namespace smtp_scripts {

using namespace scripted;

inline constexpr char mail_bytes[] = "Subject: Hello\r\n\r\nText\r\n";
inline const QString ann = QStringLiteral("ann@example.org");
inline const QString bob = QStringLiteral("bob@example.org");
inline const QString zoe = QStringLiteral("zoe@example.org");
inline const QString shop = QStringLiteral("shop@example.org");

inline net::place place_at(quint16 port)
{
    net::place where;
    where.speaks = net::protocol::smtp;
    where.server = {QStringLiteral("127.0.0.1"), port, mail::security::none, {}};
    return where;
}

inline net::patience short_patience(int answer_ms = 2000)
{
    net::patience patience;
    patience.connect_ms = 5000;
    patience.answer_ms = answer_ms;
    return patience;
}

// Up to the first command about a mail.
inline script greeting(const QByteArray &offers = "250-here\r\n250-PIPELINING\r\n250 SIZE 1000000\r\n")
{
    return {say("220 here\r\n"), expect("EHLO [127.0.0.1]"), say("250 here\r\n"), expect("EHLO [127.0.0.1]"),
            say(offers)};
}

// What a client of that script says before anything about a mail.
inline const QByteArray greeted = "EHLO [127.0.0.1]\nEHLO [127.0.0.1]\n";

inline script expect_lines(const QByteArrayList &lines)
{
    script steps;
    for (const QByteArray &line : lines)
        steps << expect(line);
    return steps;
}

inline const QByteArrayList mail_lines{"Subject: Hello", "", "Text", "."};

inline QString name_of(smtp::fate became)
{
    switch (became) {
    case smtp::fate::sent:
        return QStringLiteral("sent");
    case smtp::fate::refused:
        return QStringLiteral("refused");
    case smtp::fate::later:
        return QStringLiteral("later");
    case smtp::fate::unknown:
        return QStringLiteral("unknown");
    }
    return {};
}

inline QString fates_of(const smtp::outcome &outcome)
{
    QStringList fates;
    for (const smtp::recipient_fate &one : outcome.recipients)
        fates << name_of(one.became);
    return fates.join(u' ');
}

inline smtp::outcome send_one(const scripted_server &server, const QStringList &to, const QByteArray &mail = mail_bytes,
                              int answer_ms = 2000)
{
    smtp::session session(place_at(server.port), short_patience(answer_ms));
    return session.send({shop, to, mail}, [] {});
}

inline bool has_ended_a_mail(const QByteArray &received)
{
    return received.contains("\n.\n");
}

}
