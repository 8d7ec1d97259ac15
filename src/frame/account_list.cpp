#include "frame/account_list.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/store.h"

void load_accounts()
{
    session.account_ids.clear();
    ado::Recordset accounts;
    accounts.Open("select * from email_tbl", *session.store_connection);
    if (accounts.EOF_())
        return say("Mail ids not yet configured");
    session.account_ids.resize(size_t(accounts.RecordCount()) + 2);
    for (size_t column = 1; !accounts.EOF_(); accounts.MoveNext(), ++column) {
        session.account_ids[column] = {accounts["email"].text_or_empty(), accounts["table_name"].text_or_empty(),
                                       accounts["id"].text_or_empty()};
    }
}

int account_upper_bound()
{
    return session.account_ids.empty() ? 1 : int(session.account_ids.size()) - 1;
}

void add_account_row(const QString &query, const QString &email)
{
    run_sql("insert into email_tbl(query,email,table_name) values(" + quote_sql(query) + ',' + quote_sql(email) + ',' +
            quote_sql(query) + ')');
}
