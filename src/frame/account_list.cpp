#include "frame/account_list.h"
#include "frame/messages.h"
#include "frame/session.h"
#include "frame/store.h"

std::vector<stored_account> stored_accounts()
{
    std::vector<stored_account> found;
    ado::Recordset rows;
    rows.Open("select * from email_tbl", *session.store_connection);
    for (; !rows.EOF_(); rows.MoveNext())
        found.push_back({rows["id"].text_or_empty(), rows["query"].text_or_empty(), rows["email"].text_or_empty(),
                         rows["table_name"].text_or_empty()});
    return found;
}

void load_accounts()
{
    session.account_ids.clear();
    const std::vector<stored_account> accounts = stored_accounts();
    if (accounts.empty())
        return say("Mail ids not yet configured");
    session.account_ids.resize(accounts.size() + 2);
    for (size_t number = 0; number < accounts.size(); ++number)
        session.account_ids[number + 1] = {accounts[number].email, accounts[number].table_name, accounts[number].id};
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
