// The preferences page "Online Form", and the console's two Open commands. What a form of the program's own is known
// by: onlineforms/form_file.h.
#pragma once
#include "screens/screen.h"
#include <memory>

namespace Ui {
class OnlinePref;
}

class OnlinePref : public screen {
    Q_OBJECT
public:
    explicit OnlinePref(QWidget *parent = nullptr);
    ~OnlinePref() override;
    void Load() override;

    // The page need not be loaded for these.
    static void openex_mnu_Click();
    static void openmy_mnu_Click();

private:
    std::unique_ptr<Ui::OnlinePref> ui;
};
