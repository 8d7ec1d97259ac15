// First-run setup, the first step: whose site it is. What it keeps: frame/setup_pages.h. Next: Stage3.
#pragma once
#include "screens/frame/setup_screen.h"
#include <memory>

namespace Ui {
class Stage1;
}
namespace setup_pages {
struct owner;
}

class Stage1 : public setup_screen {
    Q_OBJECT
public:
    explicit Stage1(QWidget *parent = nullptr);
    ~Stage1() override;
    void Load() override;

protected:
    bool holds_unsaved() const override;

private:
    void url_T_Change();
    void next_b_Click();
    setup_pages::owner typed() const;

    std::unique_ptr<Ui::Stage1> ui;
};
