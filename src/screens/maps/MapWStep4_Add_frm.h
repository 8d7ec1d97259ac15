// Adding the pending field: what is no part of its value is taken out of the piece, and what a table will hold of it is
// shown all the while (maps/stored_value.h). The texts taken out: maps/field_entry.h.
#pragma once
#include "screens/wizard_screen.h"
#include <memory>

namespace Ui {
class MapWStep4_Add_frm;
}

class MapWStep4_Add_frm : public wizard_screen {
    Q_OBJECT
public:
    explicit MapWStep4_Add_frm(QWidget *parent = nullptr);
    ~MapWStep4_Add_frm() override;
    void Load() override;
    QSize sizeHint() const override;

    // Before it is shown: the name of the field that is being changed, "" for a new one; whether it has a code.
    void set_field(const QString &changed, bool wants_code);
    bool saved() const { return was_saved; } // afterwards: the field is in the list

private:
    void fieldval_t_SelChange();
    void ignore_b_Click();
    void save_b_Click();
    void cancel_b_Click() override;
    void show_ignored_texts();
    void show_stored_value();

    std::unique_ptr<Ui::MapWStep4_Add_frm> ui;
    QString changed_field;
    bool with_code = false;
    bool was_saved = false;
    QStringList ignored; // letter for letter; the list shows them to the eye
};
