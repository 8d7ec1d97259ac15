#include "accounts/account_rows.h"
#include "frame/account_list.h"
#include "frame/messages.h"
#include "frame/status.h"
#include "frame/store.h"

namespace accounts {

namespace {

// A table of that name from an earlier account keeps its mails under the name with "_old" behind it. Where such a one
// lies there too, the store refuses, and nothing is lost.
void make_table(const QString &query)
{
    const QString sql = "select * into " + query + " from model_for_first";
    const quint32 number = error_of(sql);
    if (number == 0)
        return;
    if (number == ado::syntax_error) { // the table is there
        run_sql("select * into " + query + "_old from " + query);
        run_sql("drop table " + query);
    }
    run_sql(sql); // whatever else it was goes up to the handler from here
}

}

QStringList query_list()
{
    QStringList names{"Select query"};
    for (const stored_account &each : stored_accounts())
        names += each.query;
    return names;
}

std::optional<entry> find(const QString &query)
{
    ado::Recordset rows;
    rows.Open("select * from email_tbl where query=" + quote_sql(query), *session.store_connection);
    if (rows.EOF_())
        return std::nullopt;
    return entry{rows["query"].text_or_empty(), rows["email"].text_or_empty()};
}

QString not_there(const QString &query)
{
    return "The account " + query + " is not there any more. The list is filled anew.";
}

void add(const QString &query, const QString &email)
{
    add_account_row(query, email);
    say("New Account successfully added");
    make_table(query);
}

void change(const QString &former, const QString &query, const QString &email)
{
    rename(former, query, email);
    make_table(query);
    mails_changed();
}

void rename(const QString &former, const QString &query, const QString &email)
{
    run_sql("update email_tbl set query=" + quote_sql(query) + ", email=" + quote_sql(email) +
            " where query=" + quote_sql(former));
}

bool remove(const QString &query)
{
    if (row_count("select * from email_tbl") <= 1) {
        say("This query cannot be deleted. Atleast one query must exist.", "Tessaly", message_icon::critical);
        return false;
    }
    run_sql("delete from email_tbl where query=" + quote_sql(query));
    mails_changed();
    return true;
}

}
