#include "platform/widgets/table_report.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>

namespace {

// All in page units: 10 are one point.
constexpr double side_margin = 540, top_margin = 540, bottom_margin = 640;
constexpr double gap = 90;          // between two columns
constexpr double row_air = 50;      // above and below a row's text, together
constexpr double section_gap = 140; // between title, head and table
constexpr int most_row_lines = 3, most_head_lines = 6;
constexpr qsizetype most_letters = 3000; // of one text; more than those lines can hold

const QColor ink(0x1a, 0x1a, 0x1a), quiet_ink(0x59, 0x59, 0x59), rule(0xbf, 0xbf, 0xbf);

QFont paper_font(int size, bool bold = false)
{
    QFont font(QStringLiteral("Liberation Sans"));
    font.setStyleHint(QFont::SansSerif);
    font.setHintingPreference(QFont::PreferNoHinting); // the same widths on the screen as on paper
    font.setPixelSize(size);
    font.setBold(bold);
    return font;
}

QFont title_font()
{
    return paper_font(160, true);
}
QFont head_font()
{
    return paper_font(95);
}
QFont caption_font()
{
    return paper_font(95, true);
}
QFont row_font()
{
    return paper_font(90);
}
QFont column_font()
{
    return paper_font(90, true);
}
QFont foot_font()
{
    return paper_font(80);
}

// Line ends and other marks without a shape would begin lines of their own.
QString printable(const QString &text)
{
    QString made = text.left(most_letters);
    if (!made.isEmpty() && made.back().isHighSurrogate())
        made.chop(1);
    for (QChar &letter : made) {
        if (letter.isSpace() || letter.category() == QChar::Other_Control)
            letter = u' ';
    }
    return made.trimmed();
}

// Broken between words where that is possible; the last line ends in an ellipsis where more would follow.
QStringList wrapped(const QString &raw, const QFont &font, double width, int most_lines)
{
    const QString text = printable(raw);
    const QFontMetricsF metrics(font);
    if (metrics.horizontalAdvance(text) <= width)
        return {text};
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    QStringList lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        const bool is_last = lines.size() + 1 == most_lines;
        const QString rest = text.mid(line.textStart());
        lines += is_last ? metrics.elidedText(rest, Qt::ElideRight, width) : rest.left(line.textLength()).trimmed();
        if (is_last)
            break;
    }
    layout.endLayout();
    return lines;
}

double line_height(const QFont &font)
{
    return QFontMetricsF(font).lineSpacing();
}

void draw_lines(QPainter &painter, double left, double top, double width, const QStringList &lines)
{
    const double height = line_height(painter.font());
    for (const QString &line : lines) {
        painter.drawText(QRectF(left, top, width, height), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, line);
        top += height;
    }
}

}

table_report::table_report(content what) : text(std::move(what))
{
    for (const column &each : text.columns)
        shares += each.share;
    for (QStringList &row : text.rows)
        row.resize(qsizetype(text.columns.size()));
}

double table_report::column_width(size_t column) const
{
    const double room = paper.width() - 2 * side_margin - gap * double(text.columns.size() - 1);
    return room * text.columns[column].share / shares;
}

double table_report::row_height(size_t row) const
{
    qsizetype lines = 1;
    const QFont font = row_font();
    for (size_t column = 0; column < text.columns.size(); ++column)
        lines =
            qMax(lines, wrapped(text.rows[row][qsizetype(column)], font, column_width(column), most_row_lines).size());
    return double(lines) * line_height(font) + row_air;
}

// Gives where it ends.
double table_report::place_head()
{
    head.clear();
    caption_width = 0;
    for (const head_line &line : text.head)
        caption_width = qMax(caption_width, QFontMetricsF(caption_font()).horizontalAdvance(line.caption));
    double top = top_margin + line_height(title_font()) + section_gap / 2;
    const double width = paper.width() - 2 * side_margin - caption_width - gap;
    for (const head_line &line : text.head) {
        head.push_back({top, line.caption, wrapped(line.value, head_font(), width, most_head_lines)});
        top += double(head.back().lines.size()) * line_height(head_font());
    }
    return top + section_gap;
}

void table_report::lay_out(const QSizeF &page)
{
    paper = page;
    first_rows.clear();
    if (text.rows.empty())
        return;
    head_end = place_head();
    const double heads = line_height(column_font()) + row_air;
    const double end = paper.height() - bottom_margin;
    first_rows.push_back(0);
    double top = head_end + heads;
    for (size_t row = 0; row < text.rows.size(); ++row) {
        const double height = row_height(row);
        if (top + height > end && row > first_rows.back()) {
            first_rows.push_back(row);
            top = top_margin + heads;
        }
        top += height;
    }
}

void table_report::paint_page(QPainter &painter, int page) const
{
    if (page < 0 || page >= page_count()) // whoever asks may still count on other paper
        return;
    painter.setPen(ink);
    if (page == 0)
        paint_head(painter);
    double top = paint_column_heads(painter, page == 0 ? head_end : top_margin);
    const size_t first = first_rows[size_t(page)];
    const size_t end = page + 1 < page_count() ? first_rows[size_t(page) + 1] : text.rows.size();
    for (size_t row = first; row < end; ++row) {
        const double height = row_height(row);
        paint_row(painter, row, top, height);
        top += height;
    }
    paint_foot(painter, page);
}

void table_report::paint_head(QPainter &painter) const
{
    const double width = paper.width() - 2 * side_margin;
    painter.setFont(title_font());
    draw_lines(painter, side_margin, top_margin, width, wrapped(text.title, title_font(), width, 1));
    for (const placed_line &line : head) {
        painter.setFont(caption_font());
        draw_lines(painter, side_margin, line.top, caption_width + gap, {line.caption});
        painter.setFont(head_font());
        draw_lines(painter, side_margin + caption_width + gap, line.top, width - caption_width - gap, line.lines);
    }
}

// Gives where the rows begin.
double table_report::paint_column_heads(QPainter &painter, double top) const
{
    painter.setFont(column_font());
    double left = side_margin;
    for (size_t column = 0; column < text.columns.size(); ++column) {
        const double width = column_width(column);
        draw_lines(painter, left, top, width, wrapped(text.columns[column].caption, column_font(), width, 1));
        left += width + gap;
    }
    const double bottom = top + line_height(column_font()) + row_air / 2;
    painter.setPen(QPen(ink, 8));
    painter.drawLine(QLineF(side_margin, bottom, paper.width() - side_margin, bottom));
    painter.setPen(ink);
    return bottom + row_air / 2;
}

void table_report::paint_row(QPainter &painter, size_t row, double top, double height) const
{
    painter.setFont(row_font());
    double left = side_margin;
    for (size_t column = 0; column < text.columns.size(); ++column) {
        const double width = column_width(column);
        const QString &cell = text.rows[row][qsizetype(column)];
        draw_lines(painter, left, top + row_air / 2, width, wrapped(cell, row_font(), width, most_row_lines));
        left += width + gap;
    }
    painter.setPen(QPen(rule, 4));
    painter.drawLine(QLineF(side_margin, top + height, paper.width() - side_margin, top + height));
    painter.setPen(ink);
}

void table_report::paint_foot(QPainter &painter, int page) const
{
    const double width = paper.width() - 2 * side_margin;
    const QRectF line(side_margin, paper.height() - bottom_margin + 150, width, line_height(foot_font()));
    painter.setFont(foot_font());
    painter.setPen(quiet_ink);
    const QString number = QStringLiteral("Page %1 of %2").arg(page + 1).arg(page_count());
    const double room = width - QFontMetricsF(foot_font()).horizontalAdvance(number) - gap;
    painter.drawText(line, Qt::AlignLeft | Qt::TextSingleLine, wrapped(text.foot, foot_font(), room, 1).first());
    painter.drawText(line, Qt::AlignRight | Qt::TextSingleLine, number);
    painter.setPen(ink);
}
