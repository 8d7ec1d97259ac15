#include "maps/reference_codes.h"
#include "frame/text.h"
#include "maps/map_wizard.h"

#include <algorithm>

namespace maps {

code_choice choice_of(const QString &changed)
{
    const auto &fields = map_wizard.MapWHiddenA_frm;
    const auto field = std::find_if(fields.begin(), fields.end(),
                                    [&](const added_field &each) { return same_text(each.fieldname, changed); });
    if (changed.isEmpty() || field == fields.end())
        return {};
    if (field->code != fixed_values)
        return {generated_dynamically, {}, {}};
    return fixed_values_of(changed);
}

code_choice fixed_values_of(const QString &fieldname)
{
    code_choice choice{fixed_values, {}, {}};
    for (const code_value &value : map_wizard.MapWHiddenR_frm) {
        if (!same_text(value.fieldname, fieldname))
            continue;
        choice.descriptions += value.description;
        choice.codes += value.code;
    }
    return choice;
}

QString why_no_code_value(const QString &description, const QString &code)
{
    if (description.isEmpty())
        return QStringLiteral("Please enter description");
    return trim(code).isEmpty() ? QStringLiteral("Please enter code") : QString();
}

void submit_code(bool fixed, const QStringList &descriptions, const QStringList &codes)
{
    if (fixed) {
        map_wizard.code_descs = descriptions;
        map_wizard.code_codes = codes;
    }
    map_wizard.code_kind = fixed ? fixed_values : generated_dynamically;
    map_wizard.code_values_set = true;
}

void cancel_code()
{
    map_wizard.code_values_set = false;
}

}
