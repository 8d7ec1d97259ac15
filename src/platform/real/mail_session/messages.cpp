#include "platform/real/mail_session/messages.h"
#include "platform/outside_effects.h"
#include "platform/real/mail/answer.h"
#include "platform/real/mail/mail_address.h"

namespace {

const QString divider = QStringLiteral("; ");

run_time_error no_such_message()
{
    return {9, QStringLiteral("Subscript out of range")};
}

QStringList recipients_in(const QString &line)
{
    return line.isEmpty() ? QStringList() : line.split(divider);
}

}

void messages_of_session::Fetch()
{
    box.reset();
    read_index = -1;
    state->open.erase(SessionID);
    box = open_mailbox(*state);
    if (box)
        state->open[SessionID] = box;
}

const reading::mail_facts &messages_of_session::current() const
{
    if (MsgIndex < 0 || MsgIndex >= MsgCount())
        throw no_such_message();
    if (read_index != MsgIndex) {
        read_index = -1;
        read_facts = box->facts(MsgIndex);
        read_index = MsgIndex;
    }
    return read_facts;
}

QString messages_of_session::MsgSubject() const
{
    return is_composing() ? composed.Subject : current().subject;
}

QString messages_of_session::MsgNoteText()
{
    if (is_composing())
        return composed.body;
    current();
    return box->text(MsgIndex);
}

QString messages_of_session::MsgOrigAddress() const
{
    return is_composing() ? SendingAccount : current().sender;
}

QDateTime messages_of_session::MsgDateReceived() const
{
    return is_composing() ? QDateTime() : current().received;
}

QString messages_of_session::RecipAddress() const
{
    return is_composing() ? composed.To.join(divider) : current().recipients;
}

void messages_of_session::begin_with(const outbox::outgoing_mail &mail)
{
    composed = mail;
    Kind = mail.Kind;
    SendingAccount = mail.SendingAccount;
    Headers = mail.Headers;
    MsgIndex = -1;
}

void messages_of_session::Compose()
{
    begin_with({});
}

void messages_of_session::Reply()
{
    if (is_composing())
        throw no_such_message();
    const reading::mail_facts &mail = current();
    begin_with(mail::answer_to(
        mail::answered_mail{recipients_in(mail.recipients), mail.sender, mail.message_id, mail.references}));
}

void messages_of_session::expect_composing() const
{
    if (!is_composing())
        throw no_such_message();
}

void messages_of_session::set_MsgSubject(const QString &subject)
{
    expect_composing();
    composed.Subject = subject;
}

void messages_of_session::set_MsgNoteText(const QString &text)
{
    expect_composing();
    composed.body = text;
}

void messages_of_session::set_RecipAddress(const QString &address)
{
    expect_composing();
    composed.To = address.split(u';');
    for (QString &one : composed.To)
        while (one.startsWith(u' '))
            one.remove(0, 1);
}

void messages_of_session::ResolveName()
{
    expect_composing();
    if (composed.To.isEmpty())
        throw run_time_error{mapi::unknown_recipient, mail::why_not_writable({})};
    for (const QString &address : composed.To) {
        const QString reason = mail::why_not_writable(address);
        if (!reason.isEmpty())
            throw run_time_error{mapi::unknown_recipient, reason};
    }
}

// The reason for the mail is in the store before the mail can be on its way, unless commits are held: an automatic
// reply comes before its row (docs/decisions/0019).
void messages_of_session::Send()
{
    expect_composing();
    before_outside_effect();
    composed.Kind = Kind;
    composed.SendingAccount = SendingAccount;
    composed.Headers = Headers;
    outbox::hand_over(composed);
}
