// What lies in the folders data and html of a back-up folder, and whether it is a back-up of ours.
#pragma once
#include <QStringList>

// What a back-up would not have put there, as "html/letter.txt", at most so many: in data all but the copy of a store,
// in html all that the program's folder forms has not under the same name.
QStringList strangers_in(const QString &folder, int most);

QString time_of_store_in(const QString &folder); // when its store was copied, as a person reads it; "" without one
