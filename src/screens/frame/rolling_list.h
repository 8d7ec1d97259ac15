// Lets a list roll by itself, slowly and round and round, as credits do. It stops for good as soon as the user takes it
// up (pointer, wheel, keyboard), and never begins on a desktop that wants no motion.
#pragma once
#include <QObject>

class QAbstractItemView;
class QTimer;

class rolling_list : public QObject {
    Q_OBJECT
public:
    explicit rolling_list(QAbstractItemView &list); // its child
    void begin();
    bool rolls() const;
    void roll(); // one step

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QAbstractItemView &view;
    QTimer *timer;
    int steps_at_end = 0;
};
