// The base of the screens of the first-run setup. They stand alone, without the console: whoever closes one, or presses
// Escape, ends the program, and the next start goes on with what was kept. Once the console is there, such a screen
// closes like any other.
#pragma once
#include "screens/screen.h"
#include <QPointer>

class setup_screen : public screen {
    Q_OBJECT
public:
    using screen::screen;
    QSize sizeHint() const override { return {600, 450}; } // one size for all steps, also on the smallest desktop

protected:
    void leave_setup();                                  // also for a button Cancel
    void go_back_to(setup_screen &former);               // what is typed here is there again on the way forward
    virtual bool holds_unsaved() const { return false; } // true: leaving asks first

    bool closes_on_escape() const override { return false; } // not by itself
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    bool any_unsaved() const; // here or in a later step
    bool may_be_lost() const;
    void unload_with_later_steps();

    QPointer<setup_screen> later; // the step that Back came from
};
