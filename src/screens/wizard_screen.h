// A screen with a default button and a Cancel: Enter presses the default button wherever the keyboard is, Escape and
// the window's cross do what Cancel does. And the wait pointer, over the screen and the console.
// The band at its head: wizard_band.h.
#pragma once
#include "screens/screen.h"
#include <QPointer>

class wizard_screen : public screen {
    Q_OBJECT
public:
    using screen::screen;

protected:
    virtual void cancel_b_Click() = 0;

    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
};

// While it lives, the pointer says that the program works. The two may go meanwhile.
class wait_pointer {
public:
    explicit wait_pointer(QWidget &screen);
    ~wait_pointer();
    wait_pointer(const wait_pointer &) = delete;
    wait_pointer &operator=(const wait_pointer &) = delete;

private:
    QPointer<QWidget> over;
    QPointer<QWidget> console;
};
