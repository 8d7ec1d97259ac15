// Adding fields to the wizard's list: the tests of "Add this field", the supporting texts, and the list itself.
// What they work on: map_wizard.h.
#pragma once
#include "maps/map_wizard.h"
#include <optional>

namespace maps {

enum class focus { stays, field_t, Values_b };
struct field_fault {
    QString message;
    focus goes_to = focus::stays;
};

// The first test of "Add this field" that fails, in their order. changed is the name of the field being changed
// (hidden_t), "" otherwise; entry the text of Line_c; wants_code whether code_ch is set. Trims name in place.
std::optional<field_fault> why_not_addable(QString &name, const QString &entry, const QString &changed,
                                           bool wants_code);

// The supporting texts that a row of exactly this name holds, and the value with them taken out, case-blind.
QStringList kept_supporting_texts(const QString &name);
QString without_supporting_texts(const QString &value, const QStringList &texts);
// "Ignore this text": every occurrence goes, minding case.
QString ignoring(const QString &value, const QString &text);

// Saves the pending field: replaces the one being changed (it goes to the end), else adds a row; with fixed values its
// code rows too. value is what stays to be stored. The pending code is forgotten then.
void keep_field(const QString &name, const QString &entry, const QStringList &supporting_texts, const QString &value,
                const QString &changed, bool wants_code);

// Takes the field's code back into the pending one, for changing. False: it has none, and the pending one stays.
bool take_back_code(const added_field &field);

void forget_fields(); // both hidden lists and the pending code: a new cut
void forget_pending_code();

QString code_caption(int kind); // "None", "Fixed values", "Dynamically generated"

}
