#include "platform/real/outbox/delivery_round.h"
#include "platform/clock.h"
#include "platform/real/outbox/retry_plan.h"
#include <utility>

namespace outbox {

namespace {

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

delivery_round::delivery_round(outbox_shelf &from, const sending_order &order, const net::patience &patience,
                               round_listener listener)
    : shelf(from),
      orders(order),
      way(road_of(order, patience)),
      told(std::move(listener)),
      rate(from.folder(), order.settings.mailings_per_hour),
      journal(from.folder()),
      mails(from, orders.settings, rate, journal, told.shall_end),
      clearing([&from](const QString &id) { return from.clear(id); })
{
}

round_result delivery_round::run()
{
    try {
        while (send_next() && !told.shall_end()) {
        }
    } catch (const run_time_error &error) { // of the way or of the disk: the round is over
        result.failure = error;
        if (in_hand) // there is no way, or no room to note that it goes; it has not gone
            shelf.put_back(*in_hand);
    }
    put_back_ready();
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

// The one behind it is made ready first, so that the server can be asked for both in one breath.
bool delivery_round::send_next()
{
    if (!ready)
        ready = mails.next(0);
    if (!ready)
        return false;
    const ready_mail present = *std::exchange(ready, std::nullopt);
    in_hand = present.mail;
    ready = mails.next(present.mail.Kind == mail_kind::mailing ? 1 : 0);
    return send_one(present);
}

// False: the round is over.
bool delivery_round::send_one(const ready_mail &present)
{
    const smtp::outcome outcome = hand_out(present);
    in_hand.reset();
    if (outcome.line_is_broken)
        put_back_ready(); // it keeps its place behind this one
    record mail = present.mail;
    note_fates(mail, outcome);
    if (outcome.sender_refused)
        for (recipient &one : mail.left)
            one.words = QStringLiteral("The server refuses to send as %1. %2").arg(present.parcel.from, one.words);
    if (mail.left.empty())
        return note_gone(mail.id);
    if (outcome.line_is_broken)
        return keep_broken_off(present.mail, mail, outcome.why_broken);
    if (has_any(mail, recipient_state::waiting))
        note_postponed(mail, seconds_now());
    return keep(mail);
}

smtp::outcome delivery_round::hand_out(const ready_mail &present)
{
    const auto last_moment = [&] {
        if (present.mail.Kind == mail_kind::mailing)
            rate.note_one(seconds_now());
        journal.sending(present.mail.id);
        told.at_its_end(true);
    };
    const smtp::outcome outcome = way->send(present.parcel, last_moment, ready ? &ready->parcel : nullptr);
    told.at_its_end(false);
    return outcome;
}

void delivery_round::put_back_ready()
{
    if (ready)
        shelf.put_back(ready->mail);
    ready.reset();
}

bool delivery_round::note_gone(const QString &id)
{
    journal.gone(id, ready ? sending_journal::write_it::with_the_next : sending_journal::write_it::now);
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
