// The Mail Mapping Wizard's first step: the accounts, and changes to them. Next fetches, then comes
// mapWizardStep3_frm.h.
#pragma once
#include "screens/wizard_screen.h"
#include <memory>

namespace Ui {
class MapWizardStep2_frm;
}
class QStandardItemModel;

class MapWizardStep2_frm : public wizard_screen {
    Q_OBJECT
public:
    explicit MapWizardStep2_frm(QWidget *parent = nullptr);
    ~MapWizardStep2_frm() override;
    void Load() override;
    void Activate() override;
    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void PopulateQuery();
    void Edit_b_Click();
    void change_b_Click();
    void cancelc_b_Click();
    void back_b_Click();
    void next_b_Click();
    void cancel_b_Click() override;
    void show_editing(bool edits);
    void read_accounts(const char *routine); // whose failure is logged under that word

    std::unique_ptr<Ui::MapWizardStep2_frm> ui;
    QStandardItemModel *rows; // a child of this screen
    QString old_query;        // of the account that is being changed
};
