// The store's file, while another one takes its place: nobody may have the store open then.
#pragma once
#include <QStringList>

namespace store_file {

bool is_of_ours(const QString &path); // by its first bytes; whether it is sound they do not say

// Puts a copy of the chosen file, with what was left unfinished in it brought to its end, beside the store, and looks
// at the copy. A journal or log beside the file counts when that file left it. What speaks against it as a store, such
// as "it is damaged": the copy is then gone again; "" when nothing does. The chosen file and the store stay as they
// are. Throws 53, 61, 70 or 75.
QString lay_copy_beside(const QString &chosen, const QString &store, const QStringList &tables);
void drop_copy_beside(const QString &store); // nothing when it is not there

// The copy beside becomes the store, which stays under the kept name, where nothing may be. At every moment there is
// the one or the other under the store's name. Throws 58, 61, 70 or 75, and the store is then as it was.
void take_place(const QString &store, const QString &kept);

}
