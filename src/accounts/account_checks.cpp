#include "accounts/account_checks.h"
#include "frame/checks.h"
#include "frame/fixed_tables.h"
#include "frame/store.h"
#include "frame/text.h"

namespace accounts {

namespace {

using enum typed_field;

fault invalid_name()
{
    return {"Invalid query name. Special characters, keywords not allowed", query_t};
}

std::optional<fault> why_no_address(const QString &email)
{
    if (!email.contains(u'@') || !email.contains(u'.') || !valid_email(email))
        return fault{"E-mail id not in a proper format", email_t};
    return std::nullopt;
}

std::optional<fault> why_not_well_formed(const QString &query, const QString &email)
{
    if (query.isEmpty())
        return fault{"Please enter a query name.", query_t};
    if (email.isEmpty())
        return fault{"Please enter an e-mail id.", email_t};
    if (const auto wrong = why_no_address(email))
        return wrong;
    if (!valid_query_name(query) || !reserved_word_free(query))
        return invalid_name();
    return std::nullopt;
}

std::optional<fault> why_address_is_taken(const QString &email, const QString &of_others = {})
{
    if (first_value("select count(*) from email_tbl where email=" + quote_sql(email) + of_others).to_number() != 0)
        return fault{"This e-mail id has already been configured for a query, please enter another e-mail id", email_t};
    return std::nullopt;
}

QString but_for(const QString &former)
{
    return " and query <>" + quote_sql(former);
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
    if (const auto taken = why_address_is_taken(email))
        return taken;
    if (finds_row("select * from email_tbl where query=" + quote_sql(query)))
        return fault{"The query with this name already exists. Please specify another name", query_t};
    return why_no_table_of_that_name(query);
}

std::optional<fault> why_not_changeable(const QString &former, const QString &query, const QString &email)
{
    if (const auto malformed = why_not_well_formed(query, email))
        return malformed;
    if (const auto taken = why_address_is_taken(email, but_for(former)))
        return taken;
    const qint64 own = same_text(query, former) ? 1 : 0; // other capitals are no other name
    if (first_value("select count(*) from email_tbl where query=" + quote_sql(query)).to_number() > own)
        return fault{"This query has already been configured, please enter another query name", query_t};
    return why_no_table_of_that_name(query);
}

std::optional<fault> why_not_renamable(const QString &former, QString &query, const QString &email)
{
    if (const auto wrong = why_no_address(email))
        return wrong;
    if (!name_passes(query))
        return invalid_name();
    return why_address_is_taken(email, but_for(former));
}

}
