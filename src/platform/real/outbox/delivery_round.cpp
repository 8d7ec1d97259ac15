#include "platform/real/outbox/delivery_round.h"
#include "platform/clock.h"
#include "platform/real/mail/mail_address.h"
#include "platform/real/outbox/retry_plan.h"
#include "platform/real/outbox/sending_address.h"
#include <algorithm>
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

// Those that wait, in their order, are those of the outcome.
void note_fates(record &mail, const smtp::outcome &outcome)
{
    std::vector<recipient> left;
    size_t at = 0;
    mail.reason.clear();
    for (const recipient &one : mail.left) {
        if (one.state != recipient_state::waiting || at >= outcome.recipients.size()) {
            left.push_back(one);
            continue;
        }
        const smtp::recipient_fate &fate = outcome.recipients[at++];
        if (fate.became == smtp::fate::sent)
            continue;
        const recipient_state state = fate.became == smtp::fate::refused   ? recipient_state::refused
                                      : fate.became == smtp::fate::unknown ? recipient_state::unknown
                                                                           : recipient_state::waiting;
        left.push_back({one.address, state, fate.words});
    }
    mail.left = std::move(left);
}

}

delivery_round::delivery_round(outbox_shelf &mails, const sending_order &order, const net::patience &patience,
                               round_listener listener)
    : shelf(mails),
      orders(order),
      way(road_of(order, patience)),
      told(std::move(listener)),
      rate(mails.folder(), order.settings.mailings_per_hour),
      journal(mails.folder()),
      clearing([&mails](const QString &id) { return mails.clear(id); })
{
}

round_result delivery_round::run()
{
    try {
        while (!told.shall_end() && send_next()) {
        }
    } catch (const run_time_error &error) { // of the way or of the disk: the round is over
        result.failure = error;
    }
    try {
        way->close();
        if (!clearing.finish()) // the journal stays, and says that they went
            throw run_time_error{70, QStringLiteral("Permission denied: ") + shelf.folder()};
        journal.finish();
    } catch (const run_time_error &error) {
        result.failure = error;
    }
    const bool mailings_wait = !shelf.next_due(seconds_now(), 1, 1).isEmpty();
    if (!result.failure && mailings_wait && rate.allowed(seconds_now()) == 0)
        result.limited_until = rate.next_moment(seconds_now());
    return result;
}

bool delivery_round::send_next()
{
    const QStringList next = shelf.next_due(seconds_now(), rate.allowed(seconds_now()), 1);
    if (next.isEmpty())
        return false;
    const QString &id = next.first();
    if (!journal.is_announced(id))
        announce_some();
    const auto mail = shelf.claim(id);
    return !mail || send_one(*mail);
}

void delivery_round::announce_some()
{
    const bool quick = since_announced.isValid() && !since_announced.hasExpired(a_moment_ms);
    announced_at_once = quick ? qMin(2 * announced_at_once, most_announced) : fewest_announced;
    since_announced.start();
    journal.announce(
        shelf.next_due(seconds_now(), qMin(rate.allowed(seconds_now()), announced_at_once), announced_at_once));
}

// False: the round is over.
bool delivery_round::send_one(record mail)
{
    const QString from = mail.SendingAccount.isEmpty() ? usual_sending_address(orders.settings) : mail.SendingAccount;
    if (from.isEmpty() || !mail::why_not_writable(from).isEmpty()) {
        refuse_all(mail, from.isEmpty() ? QStringLiteral("There is no address that it could go out as.")
                                        : QStringLiteral("It cannot go out as \"%1\".").arg(from));
        return keep(mail);
    }
    const file_content eml = shelf.eml(mail.id);
    if (eml.failure != 0 || eml.bytes.isEmpty())
        return keep_unread(mail, eml);
    const record before = mail;
    const smtp::outcome outcome = hand_out(mail, from, eml.bytes);
    note_fates(mail, outcome);
    if (outcome.sender_refused)
        for (recipient &one : mail.left)
            one.words = QStringLiteral("The server refuses to send as %1. %2").arg(from, one.words);
    if (mail.left.empty())
        return note_gone(mail.id);
    if (outcome.line_is_broken)
        return keep_broken_off(before, mail, outcome.why_broken);
    if (has_any(mail, recipient_state::waiting))
        note_postponed(mail, seconds_now());
    return keep(mail);
}

smtp::outcome delivery_round::hand_out(const record &mail, const QString &from, const QByteArray &eml)
{
    try {
        smtp::outcome outcome = way->send(from, waiting_of(mail), with_sender(eml, from), [&] {
            if (mail.Kind == mail_kind::mailing)
                rate.note_one(seconds_now());
            journal.sending(mail.id);
            told.at_its_end(true);
        });
        told.at_its_end(false);
        return outcome;
    } catch (const run_time_error &) { // there is no way, or no room to note that it goes; it has not gone
        shelf.put_back(mail);
        throw;
    }
}

bool delivery_round::note_gone(const QString &id)
{
    journal.gone(id);
    shelf.gone(id);
    clearing.add(id);
    ++result.sent;
    told.sent();
    return true;
}

bool delivery_round::keep(const record &mail)
{
    shelf.keep(mail);
    journal.kept(mail.id);
    return true;
}

// A disk may be well again tomorrow; what is not there does not come back.
bool delivery_round::keep_unread(record mail, const file_content &eml)
{
    const QString why = eml.failure == ENOENT ? QStringLiteral("it is not there any more")
                        : eml.failure == 0    ? QStringLiteral("it is empty")
                                              : qt_error_string(eml.failure);
    const QString words = QStringLiteral("The mail's file cannot be read: %1.").arg(why);
    if (eml.failure == ENOENT || eml.failure == 0)
        refuse_all(mail, words);
    else
        postpone_all(mail, words);
    return keep(mail);
}

// Before its end: once more, at once, over a new connection; then later, so that it does not hold up the others.
// Behind its end it is in doubt, and a server that does this may do it again: the next mail waits a while.
bool delivery_round::keep_broken_off(const record &before, record mail, const QString &why)
{
    const bool in_doubt = has_any(mail, recipient_state::unknown);
    const bool ends = told.shall_end();
    if (!in_doubt && (ends || broke_the_line != mail.id)) {
        broke_the_line = mail.id;
        shelf.put_back(before);
        journal.kept(mail.id);
        return !ends;
    }
    result.failure = net::failure(net::trouble::closed, why);
    if (has_any(mail, recipient_state::waiting))
        note_postponed(mail, seconds_now());
    keep(mail);
    return false;
}

}
