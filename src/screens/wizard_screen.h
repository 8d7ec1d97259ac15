// A screen with a default button and a Cancel: Enter presses the default button wherever the keyboard is, Escape and
// the window's cross do what Cancel does.
// The band at its head: wizard_band.h.
#pragma once
#include "screens/screen.h"

class wizard_screen : public screen {
    Q_OBJECT
public:
    using screen::screen;

protected:
    virtual void cancel_b_Click() = 0;

    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
};
