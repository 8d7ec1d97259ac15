// "Code Generation": the reference code of the field on mapmail_frm. The wizard's screen for it: MapWRefcode_frm.h.
#pragma once
#include "screens/screen.h"
#include <memory>

namespace Ui {
class fcodes_frm;
}

class fcodes_frm : public screen {
    Q_OBJECT
public:
    explicit fcodes_frm(QWidget *parent = nullptr);
    ~fcodes_frm() override;
    void Load() override;
    QSize sizeHint() const override;

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override; // Escape is Cancel

private:
    void submit_b_Click();
    void cancel_b_Click();

    std::unique_ptr<Ui::fcodes_frm> ui;
};
