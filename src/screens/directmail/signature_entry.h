// The base of the two screens that take a signature's text (NewSign.h, EditSign.h): Escape and the window's cross ask
// before they lose what was typed; Cancel does not.
#pragma once
#include "screens/screen.h"

class signature_entry : public screen {
    Q_OBJECT
public:
    using screen::screen;

protected:
    virtual bool holds_changes() const = 0;
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
};
