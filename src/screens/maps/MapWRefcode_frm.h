// The reference code of the field that is being added. Its controls: code_fields.h. What it keeps:
// maps/reference_codes.h.
#pragma once
#include "screens/wizard_screen.h"
#include <memory>

namespace Ui {
class MapWRefcode_frm;
}

class MapWRefcode_frm : public wizard_screen {
    Q_OBJECT
public:
    explicit MapWRefcode_frm(QWidget *parent = nullptr);
    ~MapWRefcode_frm() override;
    void Load() override;
    QSize sizeHint() const override;

    void set_changed_field(const QString &name) { changed_field = name; } // before it is shown; "" for a new field

private:
    void submit_b_Click();
    void cancel_b_Click() override;

    std::unique_ptr<Ui::MapWRefcode_frm> ui;
    QString changed_field;
};
