// What program this is, who made what it stands on, and the ways to the desktop's system information, to support
// (TechSupport.h), and to a friend who might want the program (frame/tell_a_friend.h).
#pragma once
#include "screens/screen.h"
#include <memory>

namespace Ui {
class frmAbout;
}

class frmAbout : public screen {
    Q_OBJECT
public:
    explicit frmAbout(QWidget *parent = nullptr);
    ~frmAbout() override;
    void Load() override;

private:
    void techsupport_b_Click();
    void tellfriend_b_Click();
    void cmdOK_Click();

    std::unique_ptr<Ui::frmAbout> ui;
};
