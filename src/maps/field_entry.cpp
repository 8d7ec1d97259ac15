#include "maps/field_entry.h"
#include "frame/checks.h"
#include "frame/text.h"
#include "intake/map_fit.h"
#include "maps/mail_cutting.h"
#include "maps/reference_codes.h"

#include <algorithm>

namespace maps {

namespace {

// The row of the field being changed does not stand in its own way.
template <typename test>
bool another_field(const QString &changed, const test &is_met)
{
    return std::any_of(map_wizard.MapWHiddenA_frm.begin(), map_wizard.MapWHiddenA_frm.end(),
                       [&](const added_field &field) {
                           return (changed.isEmpty() || !same_text(field.fieldname, changed)) && is_met(field);
                       });
}

std::optional<field_fault> name_fault(QString &name)
{
    if (name.isEmpty())
        return field_fault{QStringLiteral("Please enter a field name and then click Add this field"), focus::field_t};
    if (!reserved_word_free(name)) {
        return field_fault{QStringLiteral("This name has been reserved for Microsoft Access. Kindly use another name."),
                           focus::field_t};
    }
    if (!name_passes(name)) {
        return field_fault{
            QStringLiteral("Please define field names without the following characters -, +, %, !, (, ),*,/"),
            focus::field_t};
    }
    return std::nullopt;
}

std::optional<field_fault> duplicate_fault(const QString &name, const QString &entry, const QString &changed)
{
    if (another_field(changed, [&](const added_field &field) { return same_text(field.fieldname, name); }))
        return field_fault{QStringLiteral("You have already added a field by this name")};
    // "Line3" against "Separator3": the two never meet, so that two fields may share a piece. Kept so on purpose.
    if (another_field(changed, [&](const added_field &field) { return field.position == entry; }))
        return field_fault{QStringLiteral("You have already added a field for this position")};
    return std::nullopt;
}

void forget_field(const QString &changed)
{
    auto &fields = map_wizard.MapWHiddenA_frm;
    const auto old = std::find_if(fields.begin(), fields.end(),
                                  [&](const added_field &field) { return same_text(field.fieldname, changed); });
    if (old != fields.end())
        fields.erase(old);
    std::erase_if(map_wizard.MapWHiddenR_frm,
                  [&](const code_value &value) { return same_text(value.fieldname, changed); });
}

void keep_code_values(const QString &name)
{
    const qsizetype count = std::min(map_wizard.code_descs.size(), map_wizard.code_codes.size());
    for (qsizetype at = 0; at < count; ++at)
        map_wizard.MapWHiddenR_frm.push_back({name, map_wizard.code_descs[at], map_wizard.code_codes[at]});
}

}

std::optional<field_fault> why_not_addable(QString &name, const QString &entry, const QString &changed, bool wants_code)
{
    if (auto fault = name_fault(name))
        return fault;
    if (auto fault = duplicate_fault(name, entry, changed))
        return fault;
    if (wants_code && !map_wizard.code_values_set) {
        return field_fault{
            QStringLiteral("Though you selected to generate Reference code, you haven't specified the values. Please "
                           "specify values to generate code by clicking on the Values butoon."),
            focus::Values_b};
    }
    return std::nullopt;
}

QStringList kept_supporting_texts(const QString &name)
{
    for (const added_field &field : map_wizard.MapWHiddenA_frm) {
        if (field.fieldname == name && !field.ignore.isEmpty())
            return intake::supporting_texts(field.ignore);
    }
    return {};
}

QString without_supporting_texts(const QString &value, const QStringList &texts)
{
    QString rest = value;
    for (const QString &text : texts)
        rest = remove_all(rest, text);
    return rest;
}

QString ignoring(const QString &value, const QString &text)
{
    return text.isEmpty() ? value : QString(value).remove(text);
}

void keep_field(const QString &name, const QString &entry, const QStringList &supporting_texts, const QString &value,
                const QString &changed, bool wants_code)
{
    if (!changed.isEmpty())
        forget_field(changed);
    // The kind stays with the field even where its check box was taken off again behind the values.
    map_wizard.MapWHiddenA_frm.push_back(
        {name, as_position(entry), intake::joined_texts(supporting_texts), map_wizard.code_kind, value});
    if (wants_code && map_wizard.code_kind == fixed_values)
        keep_code_values(name);
    forget_pending_code();
}

bool take_back_code(const added_field &field)
{
    if (field.code != fixed_values && field.code != generated_dynamically)
        return false;
    map_wizard.code_kind = field.code;
    map_wizard.code_values_set = true;
    if (field.code == fixed_values) {
        const code_choice values = fixed_values_of(field.fieldname);
        map_wizard.code_descs = values.descriptions;
        map_wizard.code_codes = values.codes;
    }
    return true;
}

void forget_fields()
{
    map_wizard.MapWHiddenA_frm.clear();
    map_wizard.MapWHiddenR_frm.clear();
    forget_pending_code();
}

void forget_pending_code()
{
    map_wizard.code_values_set = false;
    map_wizard.code_kind = no_code;
}

QString code_caption(int kind)
{
    switch (kind) {
    case fixed_values:
        return QStringLiteral("Fixed values");
    case generated_dynamically:
        return QStringLiteral("Dynamically generated");
    default:
        return QStringLiteral("None");
    }
}

}
