// What a map's table will hold of a piece of the sample mail: the parser's own value, with the supporting texts as the
// store keeps them. Fields and their texts: field_entry.h.
#pragma once
#include <QString>
#include <QStringList>

namespace maps {

QString stored_value(const QString &name, const QString &piece, const QStringList &supporting_texts);

}
