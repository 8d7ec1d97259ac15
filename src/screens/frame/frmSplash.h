// The splash with the tips, over the console at its start. It goes at a click or a key, and then looks whether there is
// a map yet. The tips: tips.h.
#pragma once
#include "screens/frame/tips.h"
#include "screens/screen.h"
#include <memory>

namespace Ui {
class frmSplash;
}

class frmSplash : public screen {
    Q_OBJECT
public:
    explicit frmSplash(QWidget *parent = nullptr);
    ~frmSplash() override;
    void Load() override;

    void show_tips(); // asked for: the tips are shown whatever was chosen for the start
    void Load_Wizard();

protected:
    bool opens_in_area() const override { return false; }
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    void dismiss();
    void show_current_tip();
    void nexttip_b_Click();
    void prevtip_b_Click();
    void showtips_ch_Click(bool checked);

    std::unique_ptr<Ui::frmSplash> ui;
    tip_list tips;
};
