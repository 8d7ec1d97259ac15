#include "intake/write_data.h"
#include "frame/account_list.h"
#include "frame/error_log.h"
#include "frame/session.h"
#include "frame/text.h"
#include "intake/fetch_session.h"
#include "intake/stored_mail.h"
#include "intake/unsubscribe_intake.h"
#include "intake/unsubscribe_reply.h"

namespace intake {

namespace {

const account &account_at(int column)
{
    static const account none;
    return size_t(column) < session.account_ids.size() ? session.account_ids[size_t(column)] : none;
}

void store_unless_there(const QString &table, const arrived_mail &mail)
{
    if (table.isEmpty() || is_duplicate(table, mail))
        return;
    store_mail(table, mail);
    fetching.mail_count = to_int16(QString::number(fetching.mail_count + 1));
}

// The address that the mail's entry number stands for, when it is a valid unsubscribe. A mail before the enabled date,
// without keyword or with an unknown number is none.
std::optional<QString> unsubscribing_address(const arrived_mail &mail)
{
    const auto number = entry_number_in(mail.subject, mail.received, fetching.rules);
    return number ? address_of_entry(*number) : std::nullopt;
}

bool handle_unsubscribe_item(outlook::MailItem &item, const arrived_mail &mail, const QString &table)
{
    const auto address = unsubscribing_address(mail);
    if (!address || is_blocked(*address))
        return false;
    const bool sender_was_blocked = is_blocked(mail.sender);
    block_address(*address);
    const confirmation answer = unsubscribe_confirmation(table);
    const auto reply = item.Reply();
    reply->Subject = answer.subject;
    reply->body = answer.body;
    reply->send();
    replace_blocked_sender(*address, mail.sender, sender_was_blocked);
    return true;
}

void write_item(outlook::MailItem &item)
{
    const QString table = account_at(account_addressed(item.To())).table_name;
    const arrived_mail mail{item.Subject(), item.ReceivedTime(), item.SenderName(), item.body()};
    const bool unsubscribed = handle_unsubscribe_item(item, mail, table);
    store_unless_there(table, mail);
    if (session.unsub_only_mail && !unsubscribed)
        return; // it only looks like one of ours: it stays in the Inbox
    item.Move(*fetching.target_folder);
}

// This client counts and blocks the address that the mail came from, before the entry is looked up.
std::optional<QString> handle_unsubscribe_message(mapi::MAPIMessages &messages, const arrived_mail &mail,
                                                  const QString &table)
{
    const QString sender = remove_all(mail.sender, u"smtp:");
    const bool sender_was_blocked = is_blocked(sender);
    const auto address = unsubscribing_address(mail);
    if (!address || sender_was_blocked)
        return std::nullopt;
    if (is_blocked(*address)) // the mail stays in the mailbox and comes at every fetch: it was acted on before
        return address;
    block_address(sender);
    const confirmation answer = unsubscribe_confirmation(table);
    const int here = messages.MsgIndex;
    messages.Reply();
    messages.set_MsgSubject(answer.subject);
    messages.set_MsgNoteText(answer.body);
    messages.Send();
    messages.MsgIndex = here;
    replace_blocked_sender(*address, mail.sender, sender_was_blocked);
    return address;
}

void write_message(mapi::MAPIMessages &messages)
{
    const QString table =
        account_at(account_among_recipients(remove_all(messages.RecipAddress(), u"smtp:"))).table_name;
    arrived_mail mail{messages.MsgSubject(), messages.MsgDateReceived(), messages.MsgOrigAddress(),
                      messages.MsgNoteText()};
    if (const auto address = handle_unsubscribe_message(messages, mail, table))
        mail.sender = *address;
    store_unless_there(table, mail);
}

template <typename Fits>
int first_account(Fits fits)
{
    const int spare = account_upper_bound();
    for (int column = 1; column < spare; ++column) {
        if (fits(trim(session.account_ids[size_t(column)].email)))
            return column;
    }
    return spare;
}

}

int account_addressed(const QString &to)
{
    return first_account([&](const QString &email) { return same_text(trim(to), email); });
}

int account_among_recipients(const QString &recipients)
{
    return first_account([&](const QString &email) { return contains_text(recipients, email); });
}

void write_data()
{
    guarded_step("Mailfrm.frm", "write_data", [] {
        if (fetching.use_mapi)
            write_message(*fetching.MAPIMessages1);
        else
            write_item(*fetching.current_item);
    });
}

}
