// The face of the Outbox: what the rest of the program asks of it. Delivering: delivery_worker.h.
#include "platform/outbox.h"
#include "platform/app_folder.h"
#include "platform/clock.h"
#include "platform/outside_effects.h"
#include "platform/real/durable_file.h"
#include "platform/real/mail/compose.h"
#include "platform/real/mail/mail_address.h"
#include "platform/real/outbox/outbox_state.h"
#include "platform/real/outbox/sending_address.h"
#include <QDir>
#include <QRandomGenerator>
#include <algorithm>
#include <chrono>

namespace outbox {

namespace {

// Microseconds, never the same twice and never going back within a run: the names sort by age.
QString next_id(qint64 &last_number)
{
    using namespace std::chrono;
    const qint64 clock = duration_cast<microseconds>(system_clock::now().time_since_epoch()).count();
    last_number = qMax(clock, last_number + 1);
    return QStringLiteral("%1-%2")
        .arg(last_number, 16, 10, QChar(u'0'))
        .arg(QRandomGenerator::system()->generate(), 8, 16, QChar(u'0'));
}

QByteArray message_id(const QString &id, const QString &account)
{
    const bool known = mail::why_not_writable(account).isEmpty();
    const QString domain = known ? mail::wire_address(account).section(u'@', -1) : QStringLiteral("tessaly.invalid");
    return id.toLatin1() + '@' + domain.toLatin1();
}

int offset_of(const QDateTime &wall)
{
    return QDateTime(wall.date(), wall.time(), Qt::LocalTime).offsetFromUtc();
}

recipient recipient_of(const QString &address, const QString &reason_against_all)
{
    const QString reason = reason_against_all.isEmpty() ? mail::why_not_writable(address) : reason_against_all;
    return {address, reason.isEmpty() ? recipient_state::waiting : recipient_state::refused, reason};
}

record record_of(const outgoing_mail &mail, const QString &id, const QDateTime &moment)
{
    record kept;
    kept.id = id;
    kept.Kind = mail.Kind;
    kept.SendingAccount = mail.SendingAccount;
    kept.Subject = mail.Subject;
    kept.handed_over = moment;
    const QString reason = mail::why_refused(mail);
    const QStringList to = mail.To.isEmpty() ? QStringList{QString()} : mail.To;
    for (const QString &address : to)
        kept.left.push_back(recipient_of(address, reason));
    return kept;
}

void hold_endless_answers(record &mail, answer_ledger &ledger)
{
    if (mail.Kind != mail_kind::answer || state_of(mail) != mail_state::waiting)
        return;
    const qint64 seconds = seconds_now(); // a wall clock counts an hour twice in autumn
    for (const recipient &one : mail.left)
        if (ledger.is_full(one.address, seconds)) {
            mail.held = true;
            mail.reason = QStringLiteral("Ten answers went to %1 within an hour. Perhaps a machine answers there; this "
                                         "one waits for your decision.")
                              .arg(one.address);
            return;
        }
}

// Once the Outbox has it. A ledger that cannot be written is no reason to say that the mail was not handed over.
void count_answer(const record &mail, answer_ledger &ledger)
{
    if (mail.Kind != mail_kind::answer || state_of(mail) != mail_state::waiting)
        return;
    try {
        for (const recipient &one : mail.left)
            ledger.note(one.address, seconds_now());
    } catch (const run_time_error &) { // it is counted as long as the program runs
    }
}

void tell_change(const outbox_state &state)
{
    if (state.changed)
        state.changed();
}

}

outbox_state &state_in_use()
{
    static outbox_state state;
    const QString folder = app_path(u"\\outbox");
    if (!state.shelf || state.shelf->folder() != folder) {
        state.shelf = std::make_shared<outbox_shelf>(folder);
        state.ledger.reset();
    }
    return state;
}

QString hand_over(const outgoing_mail &mail)
{
    before_outside_effect();
    outgoing_mail whole = mail;
    if (whole.SendingAccount.isEmpty())
        whole.SendingAccount = usual_sending_address(mail::read_client_settings());
    outbox_state &state = state_in_use();
    make_durable_folder(state.shelf->folder());
    if (!state.ledger)
        state.ledger = std::make_unique<answer_ledger>(state.shelf->folder());
    const QString id = next_id(state.last_number);
    const QDateTime moment = now();
    record kept = record_of(whole, id, moment);
    hold_endless_answers(kept, *state.ledger);
    state.shelf->add(kept, mail::compose(whole, moment, offset_of(moment), message_id(id, whole.SendingAccount)));
    count_answer(kept, *state.ledger);
    tell_change(state);
    return id;
}

std::vector<kept_mail> contents()
{
    return state_in_use().shelf->contents();
}

qint64 waiting_count()
{
    return count().waiting;
}

counts count()
{
    return state_in_use().shelf->count();
}

bool send_again(const QString &id)
{
    return send_again(QStringList{id}) == 0;
}

bool discard(const QString &id)
{
    return discard(QStringList{id}) == 0;
}

qsizetype send_again(const QStringList &ids)
{
    outbox_state &state = state_in_use();
    const qsizetype left_alone = state.shelf->send_again(ids);
    if (left_alone < ids.size())
        tell_change(state);
    return left_alone;
}

qsizetype discard(const QStringList &ids)
{
    outbox_state &state = state_in_use();
    const qsizetype left_alone = state.shelf->discard(ids);
    if (left_alone < ids.size())
        tell_change(state);
    return left_alone;
}

QByteArray bytes_of(const QString &id)
{
    return state_in_use().shelf->eml(id).bytes;
}

}
