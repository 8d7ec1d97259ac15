// A label whose text may be longer than its place: it is cut with an ellipsis, and the whole of it is the tool tip. Its
// width is whatever the layout leaves it.
#pragma once
#include <QLabel>

class elided_label : public QLabel {
public:
    explicit elided_label(QWidget *parent = nullptr);

    bool is_cut() const;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};
