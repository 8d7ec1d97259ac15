// The fields so far, in two uses (map_wizard.finish_mode): to look at them and take one back for changing, and as the
// last look before the map is saved, which tells how many stored mails it would take (maps/fit_preview.h).
#pragma once
#include "screens/wizard_screen.h"
#include <memory>

namespace Ui {
class MapWizardPView_frm;
}
class QStandardItemModel;

class MapWizardPView_frm : public wizard_screen {
    Q_OBJECT
public:
    explicit MapWizardPView_frm(QWidget *parent = nullptr);
    ~MapWizardPView_frm() override;
    void Load() override;
    QSize sizeHint() const override;

    void set_account(const QString &address);          // before it is shown
    int field_to_change() const { return taken_back; } // afterwards: an index of MapWHiddenA_frm, -1 none
    bool save_wanted() const { return leads_to_save; } // afterwards

private:
    void show_fields();
    void show_fit();
    void Open_b_Click();
    void save_b_Click();
    void ok_b_Click();
    void cancel_b_Click() override;

    std::unique_ptr<Ui::MapWizardPView_frm> ui;
    QStandardItemModel *rows; // a child of this screen
    int taken_back = -1;
    bool leads_to_save = false;
};
