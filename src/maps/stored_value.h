// What a map's table will hold of a piece of the sample mail: the parser's own value, with the supporting texts as the
// store keeps them, and whether it is cut. Fields and their texts: field_entry.h.
#pragma once
#include <QString>
#include <QStringList>

namespace maps {

struct kept_value {
    QString text;
    bool was_cut = false;
};
kept_value stored_value(const QString &name, const QString &piece, const QStringList &supporting_texts);

}
