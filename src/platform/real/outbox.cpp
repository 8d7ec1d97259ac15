#include "platform/outbox.h"
#include "platform/app_folder.h"
#include "platform/clock.h"
#include "platform/mail_settings.h"
#include "platform/outside_effects.h"
#include "platform/real/durable_file.h"
#include "platform/real/mail/compose.h"
#include "platform/real/mail/mail_address.h"
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <algorithm>
#include <array>
#include <chrono>
#include <optional>

namespace outbox {

namespace {

constexpr qsizetype longest_state_text = 2000; // what is only shown need not be longer

struct outbox_state {
    QString swept_folder; // leftovers of a kill were taken away here
    qint64 last_number = 0;
} outbox_used;

struct kind_name {
    mail_kind kind;
    QLatin1String name;
};
constexpr std::array<kind_name, 3> kind_names{{{mail_kind::single, QLatin1String("single")},
                                               {mail_kind::answer, QLatin1String("answer")},
                                               {mail_kind::mailing, QLatin1String("mailing")}}};

QString name_of(mail_kind kind)
{
    return kind_names[size_t(kind)].name;
}

mail_kind kind_named(const QString &name)
{
    const auto *found =
        std::find_if(kind_names.begin(), kind_names.end(), [&name](const kind_name &one) { return one.name == name; });
    return found == kind_names.end() ? mail_kind::single : found->kind;
}

QString outbox_folder()
{
    return app_path(u"\\outbox");
}

// Microseconds, never the same twice and never going back within a run: the names sort by age.
QString next_id()
{
    using namespace std::chrono;
    const qint64 clock = duration_cast<microseconds>(system_clock::now().time_since_epoch()).count();
    outbox_used.last_number = qMax(clock, outbox_used.last_number + 1);
    return QStringLiteral("%1-%2")
        .arg(outbox_used.last_number, 16, 10, QChar(u'0'))
        .arg(QRandomGenerator::system()->generate(), 8, 16, QChar(u'0'));
}

QByteArray message_id(const QString &id, const QString &account)
{
    const QByteArray domain = account.mid(account.indexOf(u'@') + 1).toLatin1();
    const bool plain = !domain.isEmpty() && !domain.contains('?') && !domain.contains(' ');
    return id.toLatin1() + '@' + (plain ? domain : QByteArray("tessaly.invalid"));
}

int offset_of(const QDateTime &wall)
{
    return QDateTime(wall.date(), wall.time(), Qt::LocalTime).offsetFromUtc();
}

QStringList shortened(QStringList texts)
{
    for (QString &text : texts)
        text.truncate(longest_state_text);
    return texts;
}

QString reason_against(const outgoing_mail &mail)
{
    QString reason = mail.To.isEmpty() ? mail::why_not_writable({}) : mail::why_refused(mail);
    for (const QString &address : mail.To)
        if (reason.isEmpty())
            reason = mail::why_not_writable(address);
    return reason;
}

QByteArray state_bytes(const outgoing_mail &mail, const QString &refused)
{
    const QJsonObject state{
        {QStringLiteral("state"), refused.isEmpty() ? QStringLiteral("waiting") : QStringLiteral("refused")},
        {QStringLiteral("reason"), refused},
        {QStringLiteral("kind"), name_of(mail.Kind)},
        {QStringLiteral("account"), mail.SendingAccount.left(longest_state_text)},
        {QStringLiteral("to"), QJsonArray::fromStringList(shortened(mail.To))},
        {QStringLiteral("subject"), mail.Subject.left(longest_state_text)}};
    return QJsonDocument(state).toJson();
}

std::optional<kept_mail> read_state(const QDir &folder, const QString &id)
{
    QFile file(folder.filePath(id + QStringLiteral(".json")));
    if (!QFile::exists(folder.filePath(id + QStringLiteral(".eml"))) || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QJsonObject state = QJsonDocument::fromJson(file.readAll()).object();
    if (state.isEmpty())
        return std::nullopt;
    kept_mail mail;
    mail.id = id;
    mail.state = state[QLatin1String("state")] == QLatin1String("refused") ? mail_state::refused : mail_state::waiting;
    mail.reason = state[QLatin1String("reason")].toString();
    mail.Kind = kind_named(state[QLatin1String("kind")].toString());
    mail.SendingAccount = state[QLatin1String("account")].toString();
    for (const QJsonValue &address : state[QLatin1String("to")].toArray())
        mail.To.append(address.toString());
    mail.Subject = state[QLatin1String("subject")].toString();
    return mail;
}

// A mail counts when its state file is there, which comes last. What a kill left before that is nobody's.
void sweep_leftovers(const QDir &folder)
{
    if (outbox_used.swept_folder == folder.path())
        return;
    outbox_used.swept_folder = folder.path();
    const QStringList names = folder.entryList(QDir::Files);
    for (const QString &name : names) {
        const bool half = name.endsWith(u".tmp");
        const bool without_state = name.endsWith(u".eml") && !folder.exists(name.chopped(4) + QStringLiteral(".json"));
        if (half || without_state)
            QFile::remove(folder.filePath(name));
    }
}

}

QString hand_over(const outgoing_mail &mail)
{
    before_outside_effect();
    outgoing_mail whole = mail;
    if (whole.SendingAccount.isEmpty())
        whole.SendingAccount = mail::from_setting();
    const QDir folder(outbox_folder());
    make_durable_folder(folder.path());
    sweep_leftovers(folder);
    const QString id = next_id();
    const QDateTime moment = now();
    const QByteArray eml = mail::compose(whole, moment, offset_of(moment), message_id(id, whole.SendingAccount));
    write_durable_pair(folder.path(), {id + QStringLiteral(".eml"), eml},
                       {id + QStringLiteral(".json"), state_bytes(whole, reason_against(whole))});
    return id;
}

std::vector<kept_mail> contents()
{
    const QDir folder(outbox_folder());
    std::vector<kept_mail> mails;
    const QStringList names = folder.entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name);
    for (const QString &name : names)
        if (const auto mail = read_state(folder, name.chopped(5)))
            mails.push_back(*mail);
    return mails;
}

qint64 waiting_count()
{
    const std::vector<kept_mail> mails = contents();
    return std::count_if(mails.begin(), mails.end(),
                         [](const kept_mail &mail) { return mail.state == mail_state::waiting; });
}

}
