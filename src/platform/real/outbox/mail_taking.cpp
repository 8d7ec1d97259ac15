#include "platform/real/outbox/mail_taking.h"
#include "platform/clock.h"
#include "platform/real/mail/mail_address.h"
#include "platform/real/outbox/retry_plan.h"
#include "platform/real/outbox/sending_address.h"
#include <cerrno>

namespace outbox {

namespace {

// In doubt after a power cut, at most: few where mails go slowly, more where that many are gone in a moment.
constexpr qsizetype fewest_announced = 20;
constexpr qsizetype most_announced = 320;
constexpr qint64 a_moment_ms = 250;

QStringList waiting_of(const record &mail)
{
    QStringList addresses;
    for (const recipient &one : mail.left)
        if (one.state == recipient_state::waiting)
            addresses.append(one.address);
    return addresses;
}

void refuse_all(record &mail, const QString &words)
{
    for (recipient &one : mail.left)
        if (one.state == recipient_state::waiting)
            one = {one.address, recipient_state::refused, words};
}

void postpone_all(record &mail, const QString &words)
{
    mail.reason.clear();
    for (recipient &one : mail.left)
        if (one.state == recipient_state::waiting)
            one.words = words;
    note_postponed(mail, seconds_now());
}

}

mail_taking::mail_taking(outbox_shelf &mails, const mail::client_settings &settings, mailing_rate &rate,
                         sending_journal &journal, const std::function<bool()> &shall_end)
    : shelf(mails), settings(settings), rate(rate), journal(journal), shall_end(shall_end)
{
}

std::optional<ready_mail> mail_taking::next(qsizetype ready_mailings)
{
    while (!shall_end()) {
        const qsizetype allowed = qMax<qsizetype>(rate.allowed(seconds_now()) - ready_mailings, 0);
        const QStringList due = shelf.next_due(seconds_now(), allowed, 1);
        if (due.isEmpty())
            return std::nullopt;
        if (!journal.is_announced(due.first()))
            announce_some();
        const auto mail = shelf.claim(due.first());
        if (!mail)
            continue;
        if (auto ready = made_ready(*mail))
            return ready;
    }
    return std::nullopt;
}

void mail_taking::announce_some()
{
    const bool quick = since_announced.isValid() && !since_announced.hasExpired(a_moment_ms);
    announced_at_once = quick ? qMin(2 * announced_at_once, most_announced) : fewest_announced;
    since_announced.start();
    journal.announce(
        shelf.next_due(seconds_now(), qMin(rate.allowed(seconds_now()), announced_at_once), announced_at_once));
}

std::optional<ready_mail> mail_taking::made_ready(record mail)
{
    const QString from = mail.SendingAccount.isEmpty() ? usual_sending_address(settings) : mail.SendingAccount;
    if (from.isEmpty() || !mail::why_not_writable(from).isEmpty()) {
        refuse_all(mail, from.isEmpty() ? QStringLiteral("There is no address that it could go out as.")
                                        : QStringLiteral("It cannot go out as \"%1\".").arg(from));
        shelf.keep(mail);
        journal.kept(mail.id);
        return std::nullopt;
    }
    const file_content eml = shelf.eml(mail.id);
    if (eml.failure != 0 || eml.bytes.isEmpty()) {
        keep_unread(mail, eml);
        return std::nullopt;
    }
    return ready_mail{mail, {from, waiting_of(mail), with_sender(eml.bytes, from)}};
}

// A disk may be well again tomorrow; what is not there does not come back.
void mail_taking::keep_unread(record mail, const file_content &eml)
{
    const QString why = eml.failure == ENOENT ? QStringLiteral("it is not there any more")
                        : eml.failure == 0    ? QStringLiteral("it is empty")
                                              : qt_error_string(eml.failure);
    const QString words = QStringLiteral("The mail's file cannot be read: %1.").arg(why);
    if (eml.failure == ENOENT || eml.failure == 0)
        refuse_all(mail, words);
    else
        postpone_all(mail, words);
    shelf.keep(mail);
    journal.kept(mail.id);
}

}
