#include "intake/unsubscribe_intake.h"
#include "frame/store.h"
#include "frame/text.h"
#include "platform/settings.h"

namespace intake {

unsubscribe_rules read_unsubscribe_rules()
{
    unsubscribe_rules rules;
    ado::Recordset row;
    row.Open("select unsub_keyword,enable_unsub from unsub_detail", *session.store_connection);
    if (!row.EOF_()) {
        rules.keyword = row["unsub_keyword"].text_or_empty();
        rules.enabled = row["enable_unsub"].to_flag();
    }
    rules.since = GetSetting("main", "enabledUnsubDate");
    return rules;
}

std::optional<QString> entry_number_in(const QString &subject, const QDateTime &received,
                                       const unsubscribe_rules &rules)
{
    if (!rules.enabled || !contains_text(subject, rules.keyword)) // an empty keyword is contained in nothing
        return std::nullopt;
    if (rules.since.isEmpty() || received < ado::Value(rules.since).to_date())
        return std::nullopt;
    const QString number = trim(remove_all(remove_all(subject, rules.keyword), u":"));
    return is_numeric(number) ? std::optional(number) : std::nullopt;
}

std::optional<QString> address_of_entry(const QString &entry_number)
{
    ado::Recordset entry;
    entry.Open("select * from unsub_entryno where entryno=" + quote_sql(entry_number), *session.store_connection);
    if (entry.EOF_())
        return std::nullopt;
    return entry["email"].text_or_empty();
}

bool is_blocked(const QString &address)
{
    ado::Recordset count;
    count.Open("select count(*) from unsubscribe_tbl where email=" + quote_sql(address), *session.store_connection);
    return count[0].to_number() > 0;
}

void block_address(const QString &address)
{
    run_sql("insert into unsubscribe_tbl (email) values(" + quote_sql(address) + ")");
}

void replace_blocked_sender(const QString &entry_address, const QString &sender, bool sender_was_blocked)
{
    const QString address = remove_all(entry_address, u"smtp:");
    run_sql("update unsubscribe_tbl set email=" + quote_sql(address) + " where email=" + quote_sql(sender));
    if (sender_was_blocked && !is_blocked(sender))
        block_address(sender);
}

}
