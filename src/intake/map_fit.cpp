#include "intake/map_fit.h"
#include "frame/text.h"

namespace intake {

namespace {

constexpr auto between_texts = "@@@";
constexpr int longest_value = 255;
constexpr int cut_value = 250; // not 255: two numbers, on purpose

QString without_line_ends(QString text)
{
    return text.remove(u'\n').remove(u'\r');
}

// The label is compared over the length of the untrimmed name, but against the trimmed one.
bool label_fits(const map_field &field, const QString &piece)
{
    return same_text(left(piece, field.name.size()), trim(field.name));
}

// One after another on the shrinking text, with the label still on. The first that does not occur, null without one.
const QString *missing_text(const map_field &field, QString piece)
{
    for (const QString &text : field.supporting_texts) {
        QString rest = remove_all(piece, text);
        if (rest.size() == piece.size() && !text.isEmpty())
            return &text;
        piece = std::move(rest);
    }
    return nullptr;
}

std::optional<misfit> field_misfit(const map_field &field, const QStringList &mail_pieces)
{
    using condition = misfit::condition;
    if (field.piece < 1 || field.piece > mail_pieces.size())
        return misfit{condition::piece_count, field.piece, {}};
    const QString piece = without_line_ends(trim(mail_pieces[field.piece - 1]));
    if (!field.label_left_out && !label_fits(field, piece))
        return misfit{condition::label, field.piece, field.name};
    if (const QString *text = missing_text(field, piece))
        return misfit{condition::supporting_text, field.piece, *text};
    return std::nullopt;
}

}

QString cutting_separator(const QString &seperator)
{
    // "Tab" stays these three letters, on purpose: such a map fits no tab-separated mail.
    return same_text(seperator, u"LINE") ? QStringLiteral("\r\n") : seperator;
}

int piece_number(const QString &fposition)
{
    return leading_number(QStringView(fposition).sliced(qMin<qsizetype>(4, fposition.size())));
}

QStringList supporting_texts(const QString &fignore)
{
    return pieces(fignore, between_texts);
}

QString joined_texts(const QStringList &texts)
{
    return texts.join(between_texts);
}

std::optional<misfit> subject_misfit(const mail_map &map, const QString &subject)
{
    if (same_text(trim(map.subject), trim(subject)))
        return std::nullopt;
    return misfit{misfit::condition::subject, 0, map.subject};
}

std::optional<misfit> pieces_misfit(const mail_map &map, const QStringList &mail_pieces)
{
    if (map.fields.empty())
        return misfit{};
    for (const map_field &field : map.fields) {
        if (auto failed = field_misfit(field, mail_pieces))
            return failed;
    }
    return std::nullopt;
}

bool subject_fits(const mail_map &map, const QString &subject)
{
    return !subject_misfit(map, subject);
}

bool pieces_fit(const mail_map &map, const QStringList &mail_pieces)
{
    return !pieces_misfit(map, mail_pieces);
}

QString whole_value(const map_field &field, const QStringList &mail_pieces)
{
    QString value = trim(mail_pieces[field.piece - 1]);
    if (!field.label_left_out)
        value = remove_first(value, field.name);
    for (const QString &text : field.supporting_texts)
        value = remove_all(value, text);
    return trim(without_line_ends(value));
}

QString field_value(const map_field &field, const QStringList &mail_pieces)
{
    const QString value = whole_value(field, mail_pieces);
    return value.size() > longest_value ? left(value, cut_value) : value;
}

}
