// Where a screen's window stands in the console's area: in the middle, as large as it asks for, and so again whenever
// the area gets another size, until the user moves it or gives it a size. From then on it is only kept inside.
#pragma once
#include <QObject>
#include <QRect>

class QMdiArea;
class QMdiSubWindow;

class area_place : public QObject {
    Q_OBJECT
public:
    area_place(QMdiSubWindow &placed, QMdiArea &around); // goes with the window; places it at once

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void place();
    void follow_area();
    bool is_free() const; // neither an icon nor as large as the area

    QMdiSubWindow &window;
    QMdiArea &area;
    const QSize wanted; // what the screen asked for when it opened: later its contents may ask for less
    QRect given;        // where this put it last
};
