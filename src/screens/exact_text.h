// Text to read and to select from, which gives back exactly what it was given: QPlainTextEdit turns no-break blanks,
// line separators, a lone CR and CR LF into something else, so what is selected is looked up here by its place.
// Mouse and keyboard select. A very long text is shown up to a limit; text() is always whole.
#pragma once
#include <QPlainTextEdit>
#include <QTextEdit>
#include <vector>

struct text_stretch { // places in the text as it was given
    qsizetype from = 0;
    qsizetype length = 0;
};

// As typed: a no-break blank stays one. Lines end in LF.
QString typed_text(const QPlainTextEdit &box);

void clear_text(QPlainTextEdit &box); // as if it were typed: Ctrl+Z brings it back

class exact_text : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit exact_text(QWidget *parent = nullptr);

    void set_text(const QString &text); // nothing is selected or marked afterwards
    QString text() const { return whole; }

    text_stretch selection() const; // whole letters: never half of a surrogate pair, never half of a CR LF
    QString selected_text() const;  // "" without one; what Ctrl+C and dragging give too
    void select(const text_stretch &stretch);

    void show_quietly(const std::vector<text_stretch> &stretches); // in a dimmer colour; in the order of the text
    void show_marked(const text_stretch &stretch);                 // on a coloured ground, and in sight; empty: none

signals:
    void word_chosen(const QString &word); // by a double-click

protected:
    QMimeData *createMimeDataFromSelection() const override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    qsizetype place_at(int position) const;
    int position_at(qsizetype place) const;
    QTextCursor cursor_over(const text_stretch &stretch) const;
    void show_stretches();
    void show_mark();

    QString whole;
    std::vector<qsizetype> places; // of each position in the document; the end is the last
    std::vector<text_stretch> quiet;
    text_stretch marked;
    QList<QTextEdit::ExtraSelection> quiet_marks; // of quiet: made once, not at every move of the mark
};
