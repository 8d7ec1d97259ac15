// The confirmation that answers an unsubscribe: its subject and text, from unsubconfirm_tbl and sign.
#pragma once
#include <QString>

namespace intake {

struct confirmation {
    QString subject;
    QString body;
};

// table_name is the account's, "" for a mail to no account. Throws when no confirmation is configured.
confirmation unsubscribe_confirmation(const QString &table_name);

// signature is a blank for "-1", the signtext of that title else, "" when there is none.
QString confirmation_body(const QString &content, bool add_query, const QString &table_name, const QString &signature);

}
