// What a map answers by itself: its row of autocontent, as one struct; the tests it must pass, and how a subject and a
// text are made of it. Sending it: auto_responder.h. The screen that edits it: screens/preferences/autoresponder.h.
#pragma once
#include "platform/ado.h"
#include <QString>
#include <QStringList>
#include <optional>

namespace intake {

enum subject_type { standard_subject = 1, dynamic_subject = 2, support_token = 3 }; // as autocontent holds it

struct auto_reply {
    int SubjectType = standard_subject;
    QString Subject;
    QString SubjectPrefix, SubjectDynamic, SubjectSuffix; // SubjectDynamic: a column of the map's table, or ""
    QString GreetText, GreetField;                        // GreetField: the same
    QString LastToken;
    QString autocontent; // the text
    bool enable = false;

    bool operator==(const auto_reply &other) const = default;
};

auto_reply reply_in(ado::Recordset &row);                        // the current row of autocontent
std::optional<auto_reply> stored_auto_reply(const QString &map); // as the screen reads it
QStringList answer_fields(const QString &map);                   // the columns that a subject or a greeting may name
std::optional<QString> newest_value(const QString &map, const QString &column); // none without a column or a row

// "" of another type. The blanks beside an empty part stay. value is the newest row's SubjectDynamic.
QString subject_of(const auto_reply &reply, const QString &value);
QString text_of(const auto_reply &reply, const QString &greeted);
QString next_token(const QString &token);      // "007" is followed by "8"; what is no finite number counts as 0
auto_reply as_stored(const auto_reply &typed); // its parts without their outer blanks

// The first test that fails, and the part to mend. map is "" while none is chosen.
enum class reply_part { map, text, subject, prefix, token };
struct auto_reply_fault {
    QString words;
    reply_part part;
};
std::optional<auto_reply_fault> why_not_saveable(const QString &map, const auto_reply &typed);
void save_auto_reply(const QString &map, const auto_reply &typed); // in the place of the one that is stored

}
