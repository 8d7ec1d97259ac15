// What program this is, who made what it stands on, and the way to the desktop's system information.
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
    void cmdSysInfo_Click();
    void cmdOK_Click();

    std::unique_ptr<Ui::frmAbout> ui;
};
