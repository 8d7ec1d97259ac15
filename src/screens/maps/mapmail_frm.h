// "MapMail": the fields of a saved map, one at a time, beside a stored mail; and their summary, map.txt. For looking:
// nothing here is written to the store. Its tests and texts: maps/classic_map.h, maps/stored_map.h. It is opened by
// preferences/Format_mail_frm.h, and returns there.
#pragma once
#include "maps/classic_map.h"
#include "screens/screen.h"
#include <memory>

namespace Ui {
class mapmail_frm;
}
class QStringListModel;

class mapmail_frm : public screen {
    Q_OBJECT
public:
    explicit mapmail_frm(QWidget *parent = nullptr);
    ~mapmail_frm() override;
    void Load() override;

    QSize sizeHint() const override;

    // Of the field on screen, for the two companions Ignore and fcodes_frm.
    QStringList ignored_texts() const;
    void set_ignored_texts(const QStringList &texts);
    const maps::classic_code &code() const { return shown_code; } // fcode_type_t, fdesc_l, fcodes_l
    void set_code(const maps::classic_code &code) { shown_code = code; }
    void give_up_code(); // code_ch goes off

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void open_b_Click();
    void sformats_c_Click();
    void separator_c_Click();
    void Line_c_Click();
    void Text1_SelChange();
    void Command5_Click();
    void Command7_Click();
    void Command6_Click();
    void code_ch_Click();
    void values_b_Click();
    void Prev_b_Click();
    void next_b_Click();
    void save_b_Click();
    void Command2_Click();

    void cut(const QString &separator);
    void show_field();
    void show_position(const QString &position);
    maps::stored_field field_on_screen() const;

    std::unique_ptr<Ui::mapmail_frm> ui;
    QStringListModel *positions; // of Line_c; a child of this screen
    QString mail_table;          // whose mail is shown
    QString body;
    QStringList body_pieces;
    QString separator; // that cut them, "" before

    std::vector<maps::stored_field> fields;
    int place = 0;   // in fields; their number: a new one
    QString fignore; // of the field on screen
    maps::classic_code shown_code;
};
