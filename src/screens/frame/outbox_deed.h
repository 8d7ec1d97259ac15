// What the user wants done to selected mails of the Outbox, thousands perhaps: in slices of a tenth of a second,
// between which the window gets its turn. Nothing of it is dropped: whoever closes waits for ended(), or calls
// finish().
#pragma once
#include <QObject>
#include <QStringList>

class QTimer;

class outbox_deed : public QObject {
    Q_OBJECT
public:
    explicit outbox_deed(QObject *parent);

    // The first slice at once. what does it to some of them and says how many it left alone.
    void begin(const char *routine, qsizetype (*what)(const QStringList &ids), const QStringList &ids);
    void finish(); // all that is left of it, at once

    bool is_under_way() const { return under_way; }
    qsizetype left() const { return ids.size(); }
    qsizetype left_alone() const { return alone; }
    QString failure() const { return why; } // what broke it off; "" otherwise

signals:
    void slice_done(); // and more is to come
    void ended();      // all is done, or it broke off

private:
    void go_on();
    void do_some(bool all);

    QTimer *Timer2;
    const char *routine = "";
    qsizetype (*what)(const QStringList &ids) = nullptr;
    QStringList ids;
    qsizetype alone = 0;
    QString why;
    bool under_way = false;
};
