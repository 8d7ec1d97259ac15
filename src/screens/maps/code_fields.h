// The controls in which a reference code is given: its kind, and pairs of description and code. The screens
// MapWRefcode_frm and fcodes_frm place them; what they keep: maps/reference_codes.h, maps/classic_map.h.
#pragma once
#include "maps/reference_codes.h"
#include <QWidget>
#include <memory>

namespace Ui {
class code_fields;
}

class code_fields : public QWidget {
    Q_OBJECT
public:
    explicit code_fields(QWidget *parent = nullptr);
    ~code_fields() override;

    void set_choice(const maps::code_choice &choice); // and the keyboard to where one goes on
    bool fixed_is_set() const;
    bool dynamic_is_set() const;
    QStringList descriptions() const;
    QStringList codes() const; // parallel to descriptions
    void focus_description();

protected:
    void keyPressEvent(QKeyEvent *event) override; // Enter in one of the boxes adds the pair

private:
    void kind_Click();
    void add_b_Click();

    std::unique_ptr<Ui::code_fields> ui;
};
