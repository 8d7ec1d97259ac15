// The base of the screens of the first-run setup. They stand alone, without the console: whoever closes one, or presses
// Escape, ends the program, and the next start goes on with what was kept. Once the console is there, such a screen
// closes like any other.
#pragma once
#include "screens/screen.h"

class setup_screen : public screen {
    Q_OBJECT
public:
    using screen::screen;
    QSize sizeHint() const override { return {600, 450}; } // one size for all steps, also on the smallest desktop

protected:
    void leave_setup();                                  // also for a button Cancel
    virtual bool holds_unsaved() const { return false; } // true: leaving asks first

    bool closes_on_escape() const override { return false; } // not by itself
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
};
