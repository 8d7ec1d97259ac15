// Keeps a window usable while dialogs are open: a dialog locks every window that does not belong to it, so the window
// belongs to whichever dialog is uppermost, and to its own parent again afterwards.
#pragma once
#include <QObject>

class QWidget;

class beside_dialogs : public QObject {
    Q_OBJECT
public:
    explicit beside_dialogs(QWidget &kept_usable);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void belong_to(const QWidget *dialog);

    QWidget &window;
};
