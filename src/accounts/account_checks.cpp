#include "accounts/account_checks.h"
#include "frame/checks.h"
#include "frame/fixed_tables.h"
#include "frame/store.h"
#include "frame/text.h"

namespace accounts {

namespace {

using enum typed_field;

qint64 count(const QString &sql)
{
    ado::Recordset rows;
    rows.Open(sql, *session.store_connection);
    return rows[0].to_number();
}

bool finds_row(const QString &sql)
{
    ado::Recordset rows;
    rows.Open(sql, *session.store_connection);
    return !rows.EOF_();
}

std::optional<fault> why_not_well_formed(const QString &query, const QString &email)
{
    if (query.isEmpty())
        return fault{"Please enter a query name.", query_t};
    if (email.isEmpty())
        return fault{"Please enter an e-mail id.", email_t};
    if (!email.contains(u'@') || !email.contains(u'.') || !valid_email(email))
        return fault{"E-mail id not in a proper format", email_t};
    if (!valid_query_name(query) || !reserved_word_free(query))
        return fault{"Invalid query name. Special characters, keywords not allowed", query_t};
    return std::nullopt;
}

fault address_is_taken()
{
    return {"This e-mail id has already been configured for a query, please enter another e-mail id", email_t};
}

std::optional<fault> why_no_table_of_that_name(const QString &query)
{
    if (finds_row("select * from table_list_tbl where table_name=" + quote_sql(query)) || harms_fixed_table(query))
        return fault{"A table with this name already exists. Please specify another name", query_t};
    return std::nullopt;
}

}

std::optional<fault> why_not_addable(const QString &query, const QString &email)
{
    if (const auto malformed = why_not_well_formed(query, email))
        return malformed;
    if (count("select count(*) from email_tbl where email=" + quote_sql(email)) != 0)
        return address_is_taken();
    if (finds_row("select * from email_tbl where query=" + quote_sql(query)))
        return fault{"The query with this name already exists. Please specify another name", query_t};
    return why_no_table_of_that_name(query);
}

std::optional<fault> why_not_changeable(const QString &former, const QString &query, const QString &email)
{
    if (const auto malformed = why_not_well_formed(query, email))
        return malformed;
    if (count("select count(*) from email_tbl where email=" + quote_sql(email) + " and query <>" + quote_sql(former)) !=
        0)
        return address_is_taken();
    const qint64 own = same_text(query, former) ? 1 : 0; // other capitals are no other name
    if (count("select count(*) from email_tbl where query=" + quote_sql(query)) > own)
        return fault{"This query has already been configured, please enter another query name", query_t};
    return why_no_table_of_that_name(query);
}

}
