// Cutting one mail by one map: does it fit, and what goes into each column. Pure; how maps are read: map_reading.h; the
// pass over the store: map_parser.h.
#pragma once
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace intake {

struct map_field {
    QString name;                 // fname: the label in the mail and the column
    int piece = 0;                // from fposition, counted from 1
    QStringList supporting_texts; // fignore, split
    bool label_left_out = false;  // finclude: the piece holds no label, so none is tested or removed
};

struct mail_map {
    QString table_name;
    QString separator; // as it cuts: CR LF for "Line"
    QString subject;
    std::vector<map_field> fields;
};

QString cutting_separator(const QString &seperator);  // the stored word to the text that cuts
int piece_number(const QString &fposition);           // "Line3" is 3; 0 without a number
QStringList supporting_texts(const QString &fignore); // split on "@@@"
QString joined_texts(const QStringList &texts);       // the way back

// The one fit test, of the parser and of whoever asks why: the first condition that fails, in the parser's order.
struct misfit {
    enum class condition { no_fields, subject, piece_count, label, supporting_text };
    condition failed = condition::no_fields;
    int piece = 0; // the field's, counted from 1
    QString text;  // the label or the supporting text that is missing
};
std::optional<misfit> subject_misfit(const mail_map &map, const QString &subject);
std::optional<misfit> pieces_misfit(const mail_map &map, const QStringList &mail_pieces);

bool subject_fits(const mail_map &map, const QString &subject);
bool pieces_fit(const mail_map &map, const QStringList &mail_pieces);
QString whole_value(const map_field &field, const QStringList &mail_pieces);
QString field_value(const map_field &field, const QStringList &mail_pieces); // that, cut to 250 when longer than 255

}
