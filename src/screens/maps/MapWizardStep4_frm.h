// The Mail Mapping Wizard's third step: (A) how the sample mail is cut, (B) its fields, one after another. Around it:
// MapWStep4_Add_frm.h, MapWRefcode_frm.h, MapWizardPView_frm.h, and mapwizardsave_frm.h behind Finish.
// Cutting: maps/mail_cutting.h. The tests of a field: maps/field_entry.h.
#pragma once
#include "screens/exact_text.h"
#include "screens/wizard_screen.h"
#include <memory>

namespace Ui {
class MapWizardStep4_frm;
}
namespace maps {
struct added_field;
}

class QStringListModel;

class MapWizardStep4_frm : public wizard_screen {
    Q_OBJECT
public:
    explicit MapWizardStep4_frm(QWidget *parent = nullptr);
    ~MapWizardStep4_frm() override;
    void Load() override;
    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    // Cutting.
    void seplines_op_Click();
    void textarea_b_Click();
    void cut_mail();
    bool choose_separator();
    void show_numbered_pieces();
    void show_step(const QString &new_step);
    void return_to_cutting();

    // The fields.
    void body_t_SelChange();
    void copy_b_Click();
    void paste_b_Click();
    void word_chosen(const QString &word);
    void Line_c_Click();
    void hidden_t_Change(const QString &changed);
    void code_ch_Click();
    void Values_b_Click();
    bool take_pending_field();
    void add_pending_field();
    void make_ready_for_next_field();
    void show_field_count();
    void pfields_b_Click();
    void finish_b_Click();
    bool read_account_address(const char *form, const char *routine, QString &address);
    void change_field(const maps::added_field &field);

    void next_b_Click();
    void back_b_Click();
    void cancel_b_Click() override;

    std::unique_ptr<Ui::MapWizardStep4_frm> ui;
    QString step;        // "step3a" or "step3b"
    QString stored_body; // as it came from the store
    QStringList pieces;
    QStringListModel *positions;            // the entries of Line_c
    std::vector<text_stretch> piece_places; // where each one is shown
};
