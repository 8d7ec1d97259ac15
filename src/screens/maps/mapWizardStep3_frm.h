// The Mail Mapping Wizard's second step: one stored mail is chosen as the sample. Its list: sample_mail_list.h.
// Next: MapWizardStep4_frm.h.
#pragma once
#include "screens/wizard_screen.h"
#include <memory>

namespace Ui {
class mapWizardStep3_frm;
}
class sample_mail_list;

class mapWizardStep3_frm : public wizard_screen {
    Q_OBJECT
public:
    explicit mapWizardStep3_frm(QWidget *parent = nullptr);
    ~mapWizardStep3_frm() override;
    void Load() override;
    QSize sizeHint() const override;

private:
    bool show_mails();
    void inbox_lv_Click();
    void mail_client_b_Click();
    void back_b_Click();
    void Open_b_Click();
    void cancel_b_Click() override;

    std::unique_ptr<Ui::mapWizardStep3_frm> ui;
    sample_mail_list *rows; // a child of this screen
};
