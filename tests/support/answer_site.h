// Automatic replies in tests: a site with one map and a real Outbox, replies made and looked at.
#pragma once
#include "intake/auto_reply.h"
#include "platform/outbox.h"
#include "platform/real/mail_session/real_mail_session.h"
#include "platform/services.h"
#include "support/wizard_site.h"

inline const QString unprocessed_mails = "select message_id from orders where tsl_processed=no";

inline intake::auto_reply reply_with(int type, const QString &prefix = "Order")
{
    intake::auto_reply reply;
    reply.SubjectType = type;
    reply.Subject = "Thank you";
    reply.SubjectPrefix = prefix;
    reply.SubjectDynamic = "full_name";
    reply.SubjectSuffix = "at the nursery";
    reply.LastToken = "7";
    reply.autocontent = "We have your order.";
    reply.enable = true;
    return reply;
}

// One account, one map "names" over full_name and city.
struct answer_site : wizard_site {
    answer_site()
    {
        services.mail_session = &mail_session;
        add_name_map("names");
    }
    void add_name_map(const QString &name, int account = 1)
    {
        add_map(name, account, "Order", "Line", {{"full_name", "Line1", ":"}, {"city", "Line2", ":"}});
    }
    void answer(const intake::auto_reply &reply, const QString &map = "names") { intake::save_auto_reply(map, reply); }
    void come(const QString &visitor, const QString &sender = "bob@example.net", const QString &account = "orders")
    {
        add_stored_mail(account, "Order", "full_name: " + visitor + "\r\ncity: Rome");
        run("update " + account + " set tsl_Email='" + sender + "' where message_id=(select max(message_id) from " +
            account + ")");
    }
    QString token(const QString &map = "names") const
    {
        return column("select LastToken from autocontent where Mapname='" + map + "'").value(0);
    }

    real_mail_session mail_session;
};

inline QStringList replies() // "to|subject|state"
{
    QStringList lines;
    for (const outbox::kept_mail &mail : outbox::contents()) {
        const char *state = mail.state == outbox::mail_state::waiting ? "waiting"
                            : mail.state == outbox::mail_state::held  ? "held"
                                                                      : "refused";
        lines += mail.To.join(",") + u'|' + mail.Subject + u'|' + state;
    }
    return lines;
}

inline QByteArray head_of(size_t number)
{
    const QByteArray bytes = outbox::bytes_of(outbox::contents().at(number).id);
    return bytes.first(bytes.indexOf("\r\n\r\n") + 2);
}

inline QString text_of_mail(size_t number)
{
    const QByteArray bytes = outbox::bytes_of(outbox::contents().at(number).id);
    return QString::fromUtf8(bytes.sliced(bytes.indexOf("\r\n\r\n") + 4)).remove("=\r\n"); // of quoted-printable
}
