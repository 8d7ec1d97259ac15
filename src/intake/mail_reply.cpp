#include "intake/mail_reply.h"
#include "frame/account_list.h"
#include "frame/store.h"
#include "frame/text.h"
#include "platform/clock.h"
#include "platform/mail_session.h"
#include "platform/services.h"

namespace intake {

namespace {

QString with_lf_line_ends(QString text)
{
    return text.replace("\r\n", "\n").replace(u'\r', u'\n');
}

}

mail_reply reply_to(const mail_text &mail)
{
    return {trim(mail.who), "Re: " + on_one_line(mail.subject),
            "\n-----Your Original Message-----\n" + with_lf_line_ends(text_to_show(mail.body))};
}

bool lacks_subject(const QString &subject)
{
    const QString words = trim(subject);
    return words.isEmpty() || same_text(words, u"Re:");
}

std::vector<sending_account> sending_accounts()
{
    std::vector<sending_account> found;
    for (const stored_account &each : stored_accounts())
        found.push_back({each.query, each.email});
    return found;
}

void hand_over_reply(const mail_reply &reply, const sending_account &account)
{
    const auto MAPISession1 = services.mail_session->session();
    MAPISession1->SignOn();
    const auto MAPIMessages1 = services.mail_session->messages();
    MAPIMessages1->SessionID = MAPISession1->SessionID();
    MAPIMessages1->Compose();
    MAPIMessages1->Kind = outbox::mail_kind::single;
    MAPIMessages1->SendingAccount = account.email;
    MAPIMessages1->set_RecipDisplayName(reply.to);
    MAPIMessages1->set_RecipAddress(reply.to);
    MAPIMessages1->ResolveName();
    MAPIMessages1->set_MsgSubject(reply.subject);
    MAPIMessages1->set_MsgNoteText(crlf_line_ends(reply.body));
    MAPIMessages1->Send();
    MAPISession1->SignOff();
}

QString reply_insert(const mail_reply &reply, const sending_account &account)
{
    return "insert into sentitems_tbl (tsl_to,tsl_subject,tsl_sentdate,tsl_body,tsl_sentaccount,tsl_sentmailid) "
           "values(" +
           quote_sql(reply.to) + ',' + quote_sql(reply.subject) + ',' + quote_sql(us_date_time(now())) + ',' +
           quote_sql(crlf_line_ends(reply.body)) + ',' + quote_sql(account.query) + ',' + quote_sql(account.email) +
           ')';
}

void log_reply(const mail_reply &reply, const sending_account &account)
{
    run_sql(reply_insert(reply, account));
}

}
