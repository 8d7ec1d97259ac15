#include "intake/auto_responder.h"
#include "frame/store.h"
#include "frame/text.h"
#include "intake/auto_reply.h"
#include "platform/mail_session.h"
#include "platform/services.h"

namespace intake {

namespace {

// Nothing where the map has no reply, or one that is switched off.
std::optional<auto_reply> enabled_reply(const QString &map_table)
{
    ado::Recordset row;
    row.Open("SELECT SubjectType,Subject,SubjectPrefix,SubjectDynamic,SubjectSuffix,GreetText,GreetField,LastToken,"
             "autocontent,enable FROM autocontent WHERE Mapname=" +
                 quote_sql(map_table),
             *session.store_connection);
    return row.EOF_() || !row["enable"].to_flag() ? std::nullopt : std::optional(reply_in(row));
}

QString address_of_account(const QString &map_table)
{
    ado::Recordset row;
    row.Open("select email from email_tbl where id=(select query_id from table_list_tbl where table_name=" +
                 quote_sql(map_table) + ")",
             *session.store_connection);
    return row.EOF_() ? QString() : trim(row[0].text_or_empty());
}

void address(mapi::MAPIMessages &mail, const QString &map_table, const QString &sender)
{
    mail.Kind = outbox::mail_kind::answer;
    mail.SendingAccount = address_of_account(map_table);
    mail.Headers = {{"Auto-Submitted", "auto-replied"}};
    mail.set_RecipDisplayName(sender);
    mail.set_RecipAddress(sender);
}

void raise_token(const auto_reply &reply, const QString &map_table)
{
    run_sql("UPDATE autocontent SET LASTTOKEN = " + next_token(reply.LastToken) +
            " WHERE Mapname = " + quote_sql(map_table));
}

void write_mail(mapi::MAPIMessages &mail, const auto_reply &reply, const QString &map_table)
{
    const auto newest = [&map_table](const QString &column) {
        return newest_value(map_table, column).value_or(QString());
    };
    const bool names_a_value = reply.SubjectType == dynamic_subject;
    mail.set_MsgSubject(subject_of(reply, names_a_value ? newest(reply.SubjectDynamic) : QString()));
    if (reply.SubjectType == support_token)
        raise_token(reply, map_table);
    const bool greets = !reply.GreetText.isEmpty();
    mail.set_MsgNoteText(text_of(reply, greets ? newest(reply.GreetField) : QString()));
}

}

bool answers_by_itself(const QString &map_table)
{
    return enabled_reply(map_table).has_value();
}

// A session of its own: the one that fetches may be reading the same mailbox at this moment.
void send_auto_reply(const QString &map_table, const QString &sender)
{
    const std::optional<auto_reply> reply = enabled_reply(map_table);
    if (!reply)
        return;
    const auto MAPISession1 = services.mail_session->session();
    MAPISession1->DownLoadMail = true;
    MAPISession1->SignOn();
    const auto MAPIMessages1 = services.mail_session->messages();
    MAPIMessages1->SessionID = MAPISession1->SessionID();
    MAPIMessages1->Compose();
    address(*MAPIMessages1, map_table, sender);
    write_mail(*MAPIMessages1, *reply, map_table);
    MAPIMessages1->Send();
    MAPISession1->SignOff();
}

}
