// The Mail Mapping Wizard's welcome, for the first map. Next: MapWizardStep2_frm.h. The wizard's memory and decisions:
// maps/map_wizard.h.
#pragma once
#include "screens/wizard_screen.h"
#include <memory>

namespace Ui {
class MapWizardStep1_frm;
}

class MapWizardStep1_frm : public wizard_screen {
    Q_OBJECT
public:
    explicit MapWizardStep1_frm(QWidget *parent = nullptr);
    ~MapWizardStep1_frm() override;
    void Load() override;
    QSize sizeHint() const override;

private:
    void next_b_Click();
    void cancel_b_Click() override;

    std::unique_ptr<Ui::MapWizardStep1_frm> ui;
};
