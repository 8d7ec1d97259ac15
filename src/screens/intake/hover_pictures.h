// A row of toolbar pictures that light up under the pointer. That it has left is found out by a timer, as no event
// tells of it when a menu or a box opened meanwhile. The pictures: icons.h.
#pragma once
#include <QObject>
#include <vector>

class QTimer;
class QToolButton;

class hover_pictures : public QObject {
    Q_OBJECT
public:
    hover_pictures(const QString &timer_name, QObject *parent);

    void add(QToolButton &button, const QString &picture);
    void MouseOver();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct toolbar_picture {
        QToolButton *button;
        QString name;
        bool lit = false;
    };
    static void light(toolbar_picture &picture, bool lit);

    std::vector<toolbar_picture> pictures;
    QTimer *timer;
};
