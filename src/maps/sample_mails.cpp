#include "maps/sample_mails.h"
#include "frame/error_log.h"
#include "frame/status.h"
#include "frame/store.h"

namespace maps {

namespace {

QDateTime date_of(const ado::Value &value)
{
    const auto *date = std::get_if<QDateTime>(&value.held);
    return date ? *date : QDateTime();
}

void add_mails(const sample_mail &account, std::vector<sample_mail> &mails)
{
    ado::Recordset rows;
    rows.Open("select * from " + account.table_name, *session.store_connection);
    mails.reserve(mails.size() + size_t(rows.RecordCount()));
    for (; !rows.EOF_(); rows.MoveNext()) {
        sample_mail mail = account;
        mail.subject = rows["tsl_subject"].text_or_empty();
        mail.received = date_of(rows["tsl_recdate"]);
        mail.from = rows["tsl_Email"].text_or_empty();
        mail.message_id = rows["message_id"].to_text();
        mails.push_back(std::move(mail));
    }
    rows.Close();
}

}

sample_mails all_sample_mails()
{
    sample_mails all;
    ado::Recordset accounts;
    accounts.Open("Select * from email_tbl", *session.store_connection);
    for (; !accounts.EOF_(); accounts.MoveNext()) {
        sample_mail account;
        account.to = accounts["email"].text_or_empty();
        account.table_name = accounts["table_name"].text_or_empty();
        account.account_id = accounts["id"].to_text();
        if (!guarded("mapwizardstep3.frm", "form load", [&] { add_mails(account, all.mails); }))
            ++all.accounts_left_out;
    }
    accounts.Close();
    return all;
}

std::vector<sample_mail> raw_mails(const QString &table_name)
{
    std::vector<sample_mail> mails;
    sample_mail account;
    account.table_name = table_name;
    add_mails(account, mails);
    return mails;
}

QString stored_body(const QString &table_name, const QString &message_id)
{
    ado::Recordset row;
    row.Open("select * from " + table_name + " where message_id=" + message_id, *session.store_connection);
    return row.EOF_() ? QString() : row["tsl_body"].text_or_empty();
}

void delete_raw_mails(const QString &table_name, const QStringList &message_ids)
{
    if (message_ids.isEmpty())
        return;
    run_sql("delete from " + table_name + " where message_id in (" + message_ids.join(QStringLiteral(",")) + ")");
    mails_changed();
}

QString account_id_of(const QString &table_name)
{
    ado::Recordset row;
    row.Open("select id from email_tbl where table_name=" + quote_sql(table_name), *session.store_connection);
    return row.EOF_() ? QString() : row["id"].text_or_empty();
}

}
