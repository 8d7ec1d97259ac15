#include "maps/stored_value.h"
#include "frame/text.h"
#include "intake/map_fit.h"

namespace maps {

QString stored_value(const QString &name, const QString &piece, const QStringList &supporting_texts)
{
    // On its way into format_tbl the joined text is trimmed, and read back it is cut wherever "@@@" stands in it.
    const QStringList as_kept = intake::supporting_texts(trim(supporting_texts.join(QStringLiteral("@@@"))));
    return intake::field_value({name, 1, as_kept, true}, {piece});
}

}
