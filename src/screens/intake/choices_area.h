// Holds what a report is made with, and is as high as that is at the present width: in a narrow window its captions
// take two lines. Where there is less room it scrolls.
#pragma once
#include <QScrollArea>

class choices_area : public QScrollArea {
    Q_OBJECT
public:
    using QScrollArea::QScrollArea;
    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
};
