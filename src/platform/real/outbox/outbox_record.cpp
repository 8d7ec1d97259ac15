#include "platform/real/outbox/outbox_record.h"
#include "platform/clock.h"
#include "platform/real/mail/header_block.h"
#include "platform/real/mail/mail_address.h"
#include "platform/real/mail/mime_parse.h"
#include "platform/real/named_values.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

namespace outbox {

namespace {

constexpr int written_version = 1;
constexpr qsizetype longest_state_text = 2000; // what is only shown need not be longer
const QString moment_form = QStringLiteral("yyyy-MM-ddTHH:mm:ss");

constexpr std::array<named_value<mail_kind>, 3> kinds{{{mail_kind::single, QLatin1String("single")},
                                                       {mail_kind::answer, QLatin1String("answer")},
                                                       {mail_kind::mailing, QLatin1String("mailing")}}};
constexpr std::array<named_value<mail_state>, 4> states{{{mail_state::waiting, QLatin1String("waiting")},
                                                         {mail_state::held, QLatin1String("held")},
                                                         {mail_state::refused, QLatin1String("refused")},
                                                         {mail_state::unknown, QLatin1String("unknown")}}};
constexpr std::array<named_value<recipient_state>, 3> fates{{{recipient_state::waiting, QLatin1String("waiting")},
                                                             {recipient_state::refused, QLatin1String("refused")},
                                                             {recipient_state::unknown, QLatin1String("unknown")}}};

QString reason_of(const record &mail)
{
    QStringList reasons;
    if (!mail.reason.isEmpty())
        reasons.append(mail.reason);
    for (const recipient &one : mail.left) {
        const QString words = mail.left.size() == 1 ? one.words : QStringLiteral("%1: %2").arg(one.address, one.words);
        if (!one.words.isEmpty() && !reasons.contains(words))
            reasons.append(words);
    }
    return reasons.join(u'\n');
}

// The first writing had only addresses, all in the mail's own state.
recipient recipient_in(const QJsonValue &value, const QString &state, const QString &reason)
{
    if (value.isString()) {
        const recipient_state fate = value_named(fates, state, recipient_state::unknown);
        return {value.toString(), fate, fate == recipient_state::waiting ? QString() : reason};
    }
    const QJsonObject one = value.toObject();
    return {one[QLatin1String("address")].toString(),
            value_named(fates, one[QLatin1String("state")].toString(), recipient_state::unknown),
            one[QLatin1String("words")].toString()};
}

QDateTime moment_in(const QString &text, const QString &id)
{
    const QDateTime moment = QDateTime::fromString(text + u'Z', Qt::ISODate); // far quicker than reading by a form
    constexpr qint64 microseconds = 1000000;
    return moment.isValid() ? moment : wall_clock(id.section(u'-', 0, 0).toLongLong() / microseconds);
}

}

bool has_any(const record &mail, recipient_state state)
{
    return std::any_of(mail.left.begin(), mail.left.end(),
                       [state](const recipient &one) { return one.state == state; });
}

mail_state state_of(const record &mail)
{
    if (mail.held)
        return mail_state::held;
    if (has_any(mail, recipient_state::waiting))
        return mail_state::waiting;
    return has_any(mail, recipient_state::unknown) ? mail_state::unknown : mail_state::refused;
}

kept_mail as_kept(const record &mail)
{
    kept_mail kept{mail.id, state_of(mail),  reason_of(mail), mail.Kind, mail.SendingAccount, mail.Subject,
                   {},      mail.handed_over};
    for (const recipient &one : mail.left)
        kept.To.append(one.address);
    if (kept.state == mail_state::waiting && mail.next_try > 0)
        kept.next_try = wall_clock(mail.next_try);
    return kept;
}

QByteArray state_bytes(const record &mail)
{
    QJsonArray to;
    for (const recipient &one : mail.left)
        to.append(QJsonObject{{QStringLiteral("address"), one.address.left(longest_state_text)},
                              {QStringLiteral("state"), name_of(fates, one.state)},
                              {QStringLiteral("words"), one.words.left(longest_state_text)}});
    const QJsonObject state{{QStringLiteral("version"), written_version},
                            {QStringLiteral("state"), name_of(states, state_of(mail))},
                            {QStringLiteral("reason"), mail.reason.left(longest_state_text)},
                            {QStringLiteral("kind"), name_of(kinds, mail.Kind)},
                            {QStringLiteral("account"), mail.SendingAccount.left(longest_state_text)},
                            {QStringLiteral("subject"), mail.Subject.left(longest_state_text)},
                            {QStringLiteral("to"), to},
                            {QStringLiteral("handed_over"), mail.handed_over.toString(moment_form)},
                            {QStringLiteral("tries"), mail.tries},
                            {QStringLiteral("first_try"), mail.first_try},
                            {QStringLiteral("next_try"), mail.next_try}};
    return QJsonDocument(state).toJson();
}

std::optional<record> read_state_bytes(const QString &id, const QByteArray &bytes)
{
    const QJsonObject state = QJsonDocument::fromJson(bytes).object();
    if (!state[QLatin1String("to")].isArray() || !state[QLatin1String("state")].isString())
        return std::nullopt;
    record mail;
    mail.id = id;
    const QString name = state[QLatin1String("state")].toString();
    mail.held = name == name_of(states, mail_state::held);
    mail.reason = state[QLatin1String("reason")].toString();
    mail.Kind = value_named(kinds, state[QLatin1String("kind")].toString(), mail_kind::single);
    mail.SendingAccount = state[QLatin1String("account")].toString();
    mail.Subject = state[QLatin1String("subject")].toString();
    for (const QJsonValue &one : state[QLatin1String("to")].toArray())
        mail.left.push_back(recipient_in(one, name, mail.reason));
    mail.handed_over = moment_in(state[QLatin1String("handed_over")].toString(), id);
    mail.tries = state[QLatin1String("tries")].toInt();
    mail.first_try = state[QLatin1String("first_try")].toInteger();
    mail.next_try = state[QLatin1String("next_try")].toInteger();
    return mail;
}

record record_of_damaged(const QString &id, const QByteArray &eml)
{
    const mime::header_block head = mime::read_header_block(eml);
    record found;
    found.id = id;
    found.Subject = mime::subject_of(head);
    found.SendingAccount = mail::addresses_in(head.from).value(0);
    for (const QString &address : mime::to_addresses(head))
        found.left.push_back({address, recipient_state::waiting, {}});
    found.handed_over = moment_in({}, id);
    put_in_doubt(found, QStringLiteral("What was noted about this mail cannot be read: it may or may not have gone."));
    return found;
}

void put_in_doubt(record &mail, const QString &words)
{
    if (mail.left.empty())
        mail.left.push_back({});
    for (recipient &one : mail.left)
        if (one.state == recipient_state::waiting)
            one = {one.address, recipient_state::unknown, words};
}

}
