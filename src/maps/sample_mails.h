// The mails that a map can be made from, and the raw mails of one account.
#pragma once
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <vector>

namespace maps {

struct sample_mail {
    QString to; // the account's address
    QString subject;
    QDateTime received; // not valid: none
    QString from;
    QString message_id;
    QString table_name;
    QString account_id;
};

// Every mail of every account, processed or not, in the order of the accounts and their tables. An account whose table
// cannot be read is logged and left out, as it is no fault of the others.
struct sample_mails {
    std::vector<sample_mail> mails;
    int accounts_left_out = 0;
};
sample_mails all_sample_mails();
// Of one account's table; to and account_id stay empty.
std::vector<sample_mail> raw_mails(const QString &table_name);

// tsl_body as it is stored, Null as "". "" when the row is gone.
QString stored_body(const QString &table_name, const QString &message_id);

// One statement for all of them.
void delete_raw_mails(const QString &table_name, const QStringList &message_ids);

QString account_id_of(const QString &table_name); // "" without one

}
