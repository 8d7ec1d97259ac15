#include "maps/stored_value.h"
#include "frame/text.h"
#include "intake/map_fit.h"

namespace maps {

kept_value stored_value(const QString &name, const QString &piece, const QStringList &supporting_texts)
{
    // On its way into format_tbl the joined text is trimmed, and read back it is cut wherever "@@@" stands in it.
    const QStringList as_kept = intake::supporting_texts(trim(intake::joined_texts(supporting_texts)));
    const intake::map_field field{name, 1, as_kept, true};
    const QString kept = intake::field_value(field, {piece});
    return {kept, kept != intake::whole_value(field, {piece})};
}

}
