#include "frame/setup_pages.h"
#include "frame/account_list.h"
#include "frame/checks.h"
#include "frame/fixed_tables.h"
#include "frame/store.h"
#include "frame/text.h"
#include "platform/settings.h"

#include <QUrl>
#include <algorithm>

namespace setup_pages {

namespace {

bool is_configured(const QString &email)
{
    return first_value("select count(*) from email_tbl where email=" + quote_sql(email)).to_number() != 0;
}

bool is_listed(const QString &query, const QStringList &listed)
{
    return std::any_of(listed.begin(), listed.end(), [&query](const QString &name) { return same_text(name, query); });
}

}

owner kept_owner()
{
    return {GetSetting("main", "admin"), GetSetting("main", "org"), GetSetting("main", "url")};
}

QString why_not_kept(const owner &typed)
{
    if (typed.admin.isEmpty())
        return "Enter Administrator Name";
    if (typed.org.isEmpty())
        return "Enter Organisation name";
    return {};
}

void keep_owner(const owner &typed)
{
    std::vector<key_value> values{{"admin", typed.admin}, {"org", typed.org}};
    if (typed.url != kept_owner().url)
        values.push_back({"url", typed.url});
    SaveSettings("main", values);
}

QString site_ending(const QString &url)
{
    const QString host = QUrl::fromUserInput(url).host();
    return host.contains(u'.') ? host.section(u'.', -1) : QString();
}

QStringList account_names()
{
    QStringList names;
    for (const stored_account &each : stored_accounts())
        names += each.query;
    return names;
}

QString why_not_addable(const QString &query, const QString &email, const QStringList &listed)
{
    if (query.isEmpty())
        return "Please enter query name and then click Add.";
    if (!valid_query_name(query)) // and no more: words that only statements reserve are fine here
        return "Invalid query name. Keywords, special characters,spaces not allowed.";
    if (email.isEmpty())
        return "Please enter e-mail id and then click Add.";
    if (!valid_email(email) || !email.contains(u'@') || !email.contains(u'.'))
        return "Invalid email id. Keywords, special characters,spaces not allowed";
    if (is_configured(email))
        return "This e-mail id has already been configured for a query, please enter another e-mail id";
    if (is_listed(query, listed))
        return "The query names should be unique";
    if (harms_fixed_table(query))
        return "A table with this name already exists. Please specify another name";
    return {};
}

void delete_account(const QString &query)
{
    run_sql("delete from email_tbl where query=" + quote_sql(query));
}

QString account_details(const QString &query)
{
    if (query.isEmpty())
        return "Select a query to view its details.";
    ado::Recordset rows;
    rows.Open("select * from email_tbl where query=" + quote_sql(query), *session.store_connection);
    if (rows.EOF_())
        return {};
    return "Query Name= " + rows["query"].text_or_empty() + "\nE-mail ID= " + rows["email"].text_or_empty();
}

QString why_not_on(const QString &typed_email)
{
    if (account_names().isEmpty())
        return "You must configure atleast one query/e-mail id to proceed.";
    if (!typed_email.isEmpty() && !is_configured(typed_email))
        return "Please click on the ADD button next to the e-mail id you entered for the confirmation.";
    return {};
}

}
