// What must be right before an account is added or changed. What then happens: account_rows.h. The first-run setup has
// tests of its own (frame/setup_pages.h).
#pragma once
#include <QString>
#include <optional>

namespace accounts {

enum class typed_field { query_t, email_t };
struct fault {
    QString message;
    typed_field field; // the one to mend
};

// The first test that fails, in their order.
std::optional<fault> why_not_addable(const QString &query, const QString &email);
// former: the name of the account that is changed.
std::optional<fault> why_not_changeable(const QString &former, const QString &query, const QString &email);
// The Mail Mapping Wizard's own, fewer tests: it only renames. Trims query in place.
std::optional<fault> why_not_renamable(const QString &former, QString &query, const QString &email);

}
