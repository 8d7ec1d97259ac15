// What lies in the folders data and html of a back-up folder, and whether it is a back-up of ours.
#pragma once
#include <QStringList>

// The names for a question, one a line; of many only the first ones.
QString list_of(const QStringList &names);

// What a back-up would not have put there, as "html/letter.txt", and no more than a question names: in data all but
// the copy of a store, in html all that the program's folder forms has not under the same name.
QStringList strangers_in(const QString &folder);

// The names in that folder html, as "html/letter.txt".
QStringList names_in_html(const QString &html);

QString time_of_store_in(const QString &folder); // when its store was copied, as a person reads it; "" without one
