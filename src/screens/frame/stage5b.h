// First-run setup, a last step without a back-up folder: makes the account tables, and the console opens. What it does:
// frame/setup.h. Its name in the error log is "Stage5b.frm".
#pragma once
#include "screens/frame/setup_screen.h"
#include <memory>

namespace Ui {
class stage5b;
}

class stage5b : public setup_screen {
    Q_OBJECT
public:
    explicit stage5b(QWidget *parent = nullptr);
    ~stage5b() override;
    void Load() override;

private:
    void finish_b_Click();

    std::unique_ptr<Ui::stage5b> ui;
};
