// First-run setup, the second step: the accounts. What it tests and keeps: frame/setup_pages.h. Before it: Stage1;
// next: backup_frm. Its name in the error log is "Stage2.frm".
#pragma once
#include "screens/frame/setup_screen.h"
#include <memory>

namespace Ui {
class Stage3;
}

class Stage3 : public setup_screen {
    Q_OBJECT
public:
    explicit Stage3(QWidget *parent = nullptr);
    ~Stage3() override;
    void Load() override;

protected:
    bool holds_unsaved() const override;

private:
    void typed_Change();
    void add_b_Click();
    void query_l_Click();
    void Command1_Click();
    void Reset_b_Click();
    void back_b_Click();
    void next_b_Click();
    QString chosen_query() const; // "" with nothing chosen

    std::unique_ptr<Ui::Stage3> ui;
};
