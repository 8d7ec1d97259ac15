#include "maps/classic_map.h"
#include "frame/checks.h"
#include "frame/text.h"
#include "maps/map_wizard.h"

namespace maps {

namespace {

bool has_code(const classic_code &code)
{
    return same_text(code.type, u"dynamic") || (same_text(code.type, u"fixed") && !code.codes.isEmpty());
}

template <typename test>
bool another_of(const std::vector<stored_field> &fields, int shown, const test &is_met)
{
    for (size_t at = 0; at < fields.size(); ++at) {
        if (int(at) != shown && is_met(fields[at]))
            return true;
    }
    return false;
}

}

const std::vector<separator_choice> &classic_separators()
{
    static const std::vector<separator_choice> choices{{QStringLiteral("Line"), QStringLiteral("Line")},
                                                       {QStringLiteral("Colon(:)"), QStringLiteral(":")},
                                                       {QStringLiteral("Comma(,)"), QStringLiteral(",")},
                                                       {QStringLiteral("Semi-colon(;)"), QStringLiteral(";")}};
    return choices;
}

QString line_entry(int piece)
{
    return QStringLiteral("Line") + QString::number(piece);
}

classic_code code_of(const stored_field &field)
{
    if (field.fcodegen == fixed_values)
        return {QStringLiteral("fixed"), field.descriptions, field.codes};
    if (field.fcodegen == generated_dynamically)
        return {QStringLiteral("dynamic"), {}, {}};
    return {};
}

void set_code(stored_field &field, const classic_code &code)
{
    const code_choice choice = choice_in(code);
    field.fcodegen = choice.kind;
    field.descriptions = choice.descriptions;
    field.codes = choice.codes;
}

code_choice choice_in(const classic_code &code)
{
    if (same_text(code.type, u"fixed"))
        return {fixed_values, code.descriptions, code.codes};
    return {same_text(code.type, u"dynamic") ? int(generated_dynamically) : int(no_code), {}, {}};
}

QString why_no_classic_code(bool fixed, bool dynamic, bool has_values)
{
    if (!fixed && !dynamic)
        return QStringLiteral("Please select any one of the type");
    return fixed && !has_values ? QStringLiteral("Please enter values") : QString();
}

QString why_not_next(QString &name, const QString &position, bool wants_code, const classic_code &code,
                     const std::vector<stored_field> &fields, int shown)
{
    if (!name_passes(name))
        return QStringLiteral("Please define field names without the following characters -, +, %, !, (, ),*,/");
    if (wants_code && !has_code(code))
        return QStringLiteral("Add code values");
    if (another_of(fields, shown, [&](const stored_field &field) { return same_text(field.fname, name); }))
        return QStringLiteral("This field has been added earlier.");
    if (another_of(fields, shown, [&](const stored_field &field) { return field.fposition == position; }))
        return QStringLiteral("This position has been selected earlier.");
    return {};
}

int code_field_of(const std::vector<stored_field> &fields)
{
    for (int at = int(fields.size()) - 1; at >= 0; --at) {
        if (has_code(code_of(fields[size_t(at)])))
            return at;
    }
    return -1;
}

}
