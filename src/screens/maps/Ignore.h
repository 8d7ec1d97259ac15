// "Ignore characters": the supporting texts of the field on mapmail_frm, typed in. The wizard takes them from the mail
// instead: MapWStep4_Add_frm.h.
#pragma once
#include "screens/screen.h"
#include <memory>

namespace Ui {
class Ignore;
}

class Ignore : public screen {
    Q_OBJECT
public:
    explicit Ignore(QWidget *parent = nullptr);
    ~Ignore() override;
    void Load() override;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void Add_b_Click();
    void remove_b_Click();
    void Submit_b_Click();

    std::unique_ptr<Ui::Ignore> ui;
};
