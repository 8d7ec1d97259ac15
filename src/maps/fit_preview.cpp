#include "maps/fit_preview.h"
#include "frame/store.h"
#include "frame/text.h"
#include "intake/map_fit.h"
#include "maps/map_wizard.h"
#include "maps/map_writing.h"

#include <algorithm>

namespace maps {

namespace {

// What stays of a text on its way into the store: quoting trims.
QString stored(const QString &text)
{
    return trim(text);
}

intake::mail_map map_as_stored()
{
    intake::mail_map map;
    map.separator = intake::cutting_separator(stored(map_wizard.map_separator));
    map.subject = stored(map_wizard.map_subject);
    const auto &fields = map_wizard.MapWHiddenA_frm;
    std::transform(fields.rbegin(), fields.rend(), std::back_inserter(map.fields), [](const added_field &field) {
        return intake::map_field{stored(field.fieldname), intake::piece_number(stored(field.position)),
                                 intake::supporting_texts(stored(field.ignore)), true};
    });
    return map;
}

}

fit_count count_fitting_mails()
{
    fit_count count;
    const intake::mail_map map = map_as_stored();
    const bool can_fit = why_save_would_fail().isEmpty(); // a map in half takes no mail
    ado::Recordset mails;
    mails.Open("select * from " + map_wizard.mail_table, *session.store_connection);
    for (; !mails.EOF_(); mails.MoveNext(), ++count.mails) {
        if (can_fit && intake::subject_fits(map, mails["tsl_subject"].text_or_empty()) &&
            intake::pieces_fit(map, pieces(mails["tsl_body"].text_or_empty(), map.separator)))
            ++count.fits;
    }
    mails.Close();
    return count;
}

}
