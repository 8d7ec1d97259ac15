// The console's lasting line: it stays while the status bar shows its passing tips beside it, and goes when it is given
// no text. Too long a text is cut with an ellipsis; the whole of it is the tool tip. Never taken for HTML.
#pragma once
#include <QLabel>

class status_text : public QLabel {
public:
    explicit status_text(QWidget *parent);
    void set_whole_text(const QString &text);
    QString whole_text() const { return whole; }

    QSize sizeHint() const override; // of the whole text
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void show_what_fits();
    QString whole;
};
