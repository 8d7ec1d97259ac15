// The folder that takes the back-ups: the last step of the first-run setup, and a command of the console afterwards.
// What it tests and makes: frame/back_up_folder.h. The copying itself: Exit_frm.h.
#pragma once
#include "screens/frame/setup_screen.h"
#include <memory>

namespace Ui {
class backup_frm;
}

class backup_frm : public setup_screen {
    Q_OBJECT
public:
    explicit backup_frm(QWidget *parent = nullptr);
    ~backup_frm() override;
    void Load() override;

protected:
    bool holds_unsaved() const override;

private:
    void show_step(); // of the setup, or alone
    void Folder_t_Change();
    void browserforfolders_Click();
    void next_b_Click();
    void later_b_Click();
    void back_b_Click();
    bool end_setup();

    std::unique_ptr<Ui::backup_frm> ui;
    bool in_setup = false;
};
