// The band at the head of every wizard screen: what this step is, what to do in it, and how far the wizard is. The
// buttons stand at the foot, from left to right: help, a space, back, next, cancel.
#pragma once
#include <QFrame>

class QLabel;

class wizard_band : public QFrame {
    Q_OBJECT
    Q_PROPERTY(QString title READ title WRITE set_title)
    Q_PROPERTY(QString hint READ hint WRITE set_hint)
    Q_PROPERTY(QString step READ step WRITE set_step)
public:
    explicit wizard_band(QWidget *parent = nullptr);

    QString title() const;
    QString hint() const;
    QString step() const;
    void set_title(const QString &text);
    void set_hint(const QString &text); // a sentence or two; "" takes no room
    void set_step(const QString &text); // "Step 2 of 4"

private:
    QLabel *title_l;
    QLabel *hint_l;
    QLabel *step_l;
};
