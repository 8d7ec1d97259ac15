// A note on the text-area boxes of a form: what several lines in one value do to a map.
#pragma once
#include "screens/wizard_screen.h"
#include <memory>

namespace Ui {
class textarea_frm;
}

class textarea_frm : public wizard_screen {
    Q_OBJECT
public:
    explicit textarea_frm(QWidget *parent = nullptr);
    ~textarea_frm() override;
    void Load() override;
    QSize sizeHint() const override;

private:
    void cancel_b_Click() override; // OK, too: there is nothing to decide

    std::unique_ptr<Ui::textarea_frm> ui;
};
