// The Mail Mapping Wizard's last question, the map's name; Save writes the map and brings the stored mails over behind
// mapinprogress_frm. What is written: maps/map_writing.h. Afterwards: MapWizardFinalStep_frm.h.
#pragma once
#include "screens/wizard_screen.h"
#include <memory>

namespace Ui {
class mapwizardsave_frm;
}

class mapwizardsave_frm : public wizard_screen {
    Q_OBJECT
public:
    explicit mapwizardsave_frm(QWidget *parent = nullptr);
    ~mapwizardsave_frm() override;
    void Load() override;
    QSize sizeHint() const override;

    bool saved() const { return was_saved; } // afterwards

private:
    void save_b_Click();
    void cancel_b_Click() override;
    bool may_save(QString &name); // false: the user knows why not
    void save_map(const QString &name);
    void bring_mails_over(const QString &name);
    void tell_failed_save(const QString &name);

    std::unique_ptr<Ui::mapwizardsave_frm> ui;
    bool was_saved = false;
};
