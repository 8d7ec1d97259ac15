// What the screens of the first-run setup ask, test and keep: Stage1 (whose site it is) and Stage3 (its accounts). No
// account has a table before the end: setup.h. Later changes to accounts: accounts/account_rows.h.
#pragma once
#include <QString>
#include <QStringList>

namespace setup_pages {

struct owner {
    QString admin, org, url;
};
owner kept_owner();
QString why_not_kept(const owner &typed); // the message; "" where nothing is missing
void keep_owner(const owner &typed);
QString site_ending(const QString &url); // "example" of "www.rosecottage.example/shop"; "" without one

QStringList account_names();
// The first test that fails, as its message; "". listed: the names in the list of Stage3.
QString why_not_addable(const QString &query, const QString &email, const QStringList &listed);
void delete_account(const QString &query);
QString account_details(const QString &query); // two lines; with "" the request to choose one
// Why the setup cannot go on from Stage3; typed_email: what still stands in the field.
QString why_not_on(const QString &typed_email);

}
