#include "screens/exact_text.h"

#include <QMimeData>
#include <QTextBlock>
#include <algorithm>

namespace {

constexpr qsizetype most_shown = 300000; // mail is hostile: many megabytes would be laid out for minutes

// What the document would take for the start of a line, of a frame or of a picture, or would not draw.
QChar drawable(QChar letter)
{
    switch (letter.unicode()) {
    case u'\r':
    case QChar::ParagraphSeparator:
    case QChar::LineSeparator:
    case 0xfdd0:
    case 0xfdd1:
        return u'\n';
    case u'\0':
    case QChar::ObjectReplacementCharacter:
        return QChar::ReplacementCharacter;
    default:
        return letter;
    }
}

bool is_inside_pair(const QString &text, qsizetype place)
{
    return place > 0 && place < text.size() && text[place].isLowSurrogate() && text[place - 1].isHighSurrogate();
}

QColor between(const QColor &a, const QColor &b, double part)
{
    return QColor::fromRgbF(float(a.redF() + (b.redF() - a.redF()) * part),
                            float(a.greenF() + (b.greenF() - a.greenF()) * part),
                            float(a.blueF() + (b.blueF() - a.blueF()) * part));
}

}

void clear_text(QPlainTextEdit &box)
{
    QTextCursor all(box.document());
    all.select(QTextCursor::Document);
    all.removeSelectedText();
}

QString typed_text(const QPlainTextEdit &box)
{
    QString text = box.document()->toRawText();
    for (QChar &letter : text)
        if (letter == QChar::ParagraphSeparator || letter == QChar::LineSeparator)
            letter = u'\n';
    return text;
}

exact_text::exact_text(QWidget *parent) : QPlainTextEdit(parent), places{0}
{
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    setUndoRedoEnabled(false);
}

// One position of the document for each letter of the text, but one for a CR LF.
void exact_text::set_text(const QString &text)
{
    whole = text;
    quiet.clear();
    marked = {};
    show_stretches(); // cursors left in the document would be moved at each of its lines
    qsizetype end = std::min(whole.size(), most_shown);
    if (is_inside_pair(whole, end))
        --end;
    QString shown;
    shown.reserve(end);
    places.clear();
    for (qsizetype place = 0; place < end; ++place) {
        places.push_back(place);
        if (whole[place] == u'\r' && place + 1 < end && whole[place + 1] == u'\n')
            ++place;
        shown += drawable(whole[place]);
    }
    if (end < whole.size()) {
        const QString notice = QStringLiteral("\n\n(The text is longer than what is shown here.)");
        places.resize(places.size() + size_t(notice.size()), end);
        shown += notice;
    }
    places.push_back(end);
    setPlainText(shown);
}

qsizetype exact_text::place_at(int position) const
{
    return places[std::clamp<size_t>(size_t(position), 0, places.size() - 1)];
}

int exact_text::position_at(qsizetype place) const
{
    return int(std::lower_bound(places.begin(), places.end(), place) - places.begin());
}

text_stretch exact_text::selection() const
{
    const QTextCursor cursor = textCursor();
    qsizetype from = place_at(cursor.selectionStart());
    qsizetype end = place_at(cursor.selectionEnd());
    if (from < end) {
        from -= is_inside_pair(whole, from) ? 1 : 0;
        end += is_inside_pair(whole, end) ? 1 : 0;
    }
    return {from, end - from};
}

QString exact_text::selected_text() const
{
    const text_stretch chosen = selection();
    return whole.mid(chosen.from, chosen.length);
}

QTextCursor exact_text::cursor_over(const text_stretch &stretch) const
{
    const int last = int(places.size()) - 1;
    QTextCursor cursor(document());
    cursor.setPosition(std::min(position_at(stretch.from), last));
    cursor.setPosition(std::min(position_at(stretch.from + stretch.length), last), QTextCursor::KeepAnchor);
    return cursor;
}

void exact_text::select(const text_stretch &stretch)
{
    setTextCursor(cursor_over(stretch));
}

void exact_text::show_quietly(const std::vector<text_stretch> &stretches)
{
    quiet = stretches;
    show_stretches();
}

void exact_text::show_marked(const text_stretch &stretch)
{
    marked = stretch;
    show_mark();
    if (stretch.length == 0 || textCursor().hasSelection()) // what is selected stays so, and in sight
        return;
    QTextCursor start(document());
    start.setPosition(cursor_over(stretch).selectionStart());
    setTextCursor(start); // where the keyboard goes on, too
}

// In the present colours, so again whenever they change.
void exact_text::show_stretches()
{
    const QColor ground = palette().color(QPalette::Base);
    const QColor letters = palette().color(QPalette::Text);
    const QColor dimmed = between(letters, ground, 0.45);
    quiet_marks.clear();
    for (const text_stretch &one : quiet) {
        if (one.from >= places.back()) // behind what is shown, as are all others
            break;
        QTextEdit::ExtraSelection selection;
        selection.cursor = cursor_over(one);
        selection.format.setForeground(dimmed);
        quiet_marks += selection;
    }
    show_mark();
}

void exact_text::show_mark()
{
    QList<QTextEdit::ExtraSelection> all = quiet_marks;
    if (marked.length > 0) {
        const QColor ground = palette().color(QPalette::Base);
        QTextEdit::ExtraSelection selection;
        selection.cursor = cursor_over(marked);
        selection.format.setBackground(between(ground, palette().color(QPalette::Highlight), 0.35));
        all += selection;
    }
    setExtraSelections(all);
}

QMimeData *exact_text::createMimeDataFromSelection() const
{
    auto *data = new QMimeData;
    data->setText(selected_text());
    return data;
}

void exact_text::mouseDoubleClickEvent(QMouseEvent *event)
{
    QPlainTextEdit::mouseDoubleClickEvent(event);
    const QString word = selected_text();
    if (!word.isEmpty())
        emit word_chosen(word);
}

void exact_text::changeEvent(QEvent *event)
{
    QPlainTextEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        show_stretches();
}
