#include "maps/mail_cutting.h"
#include "frame/text.h"

namespace maps {

namespace {

bool is_line_mode(const QString &map_separator)
{
    return same_text(map_separator, u"Line");
}

// Unlike the parser, which takes the stored three letters as they stand: a Tab map is seen here and never fits there,
// on purpose.
QString cutting_text(const QString &map_separator)
{
    if (is_line_mode(map_separator))
        return QStringLiteral("\n");
    return map_separator == u"Tab" ? QStringLiteral("\t") : map_separator;
}

}

const std::vector<separator_choice> &separator_choices()
{
    static const std::vector<separator_choice> choices{
        {QStringLiteral("Comma(,)"), QStringLiteral(",")},      {QStringLiteral("Tab"), QStringLiteral("Tab")},
        {QStringLiteral("Full stop(.)"), QStringLiteral(".")},  {QStringLiteral("Hyphen(-)"), QStringLiteral("-")},
        {QStringLiteral("Underscore(_)"), QStringLiteral("_")}, {QStringLiteral("Colon(:)"), QStringLiteral(":")},
        {QStringLiteral("Semi colon(;)"), QStringLiteral(";")}};
    return choices;
}

QStringList cut_sample(const QString &body, const QString &map_separator)
{
    return pieces(trim(body), cutting_text(map_separator));
}

QString shown_piece(const QString &piece, const QString &map_separator)
{
    QString shown = piece;
    shown.remove(u'\r');
    return is_line_mode(map_separator) ? shown : shown.remove(u'\n');
}

QString numbered_body(const QStringList &pieces, const QString &map_separator)
{
    QString body;
    for (qsizetype at = 0; at < pieces.size(); ++at) {
        body += shown_piece(pieces[at], map_separator) + QStringLiteral("  <") + separator_entry(int(at) + 1) +
                QStringLiteral(">\r\n");
    }
    return body;
}

QString separator_entry(int piece)
{
    return QStringLiteral("Separator") + QString::number(piece);
}

QString as_position(const QString &entry)
{
    return replace_first(entry, u"Separator", u"Line");
}

QString as_separator(const QString &position)
{
    return replace_first(position, u"Line", u"Separator");
}

}
