// The end of the Mail Mapping Wizard: the map is there. Another one, or no more.
#pragma once
#include "screens/wizard_screen.h"
#include <memory>

namespace Ui {
class MapWizardFinalStep_frm;
}

class MapWizardFinalStep_frm : public wizard_screen {
    Q_OBJECT
public:
    explicit MapWizardFinalStep_frm(QWidget *parent = nullptr);
    ~MapWizardFinalStep_frm() override;
    void Load() override;
    QSize sizeHint() const override;

private:
    void autoresp_chk_Click();
    void map_b_Click();
    void Command1_Click();
    void cancel_b_Click() override; // Escape: there is no such button

    std::unique_ptr<Ui::MapWizardFinalStep_frm> ui;
};
