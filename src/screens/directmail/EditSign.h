// Changing the text of a signature; opens over the picker (Signature.h), whose selected title it is about.
#pragma once
#include "screens/directmail/signature_entry.h"
#include <memory>

namespace Ui {
class EditSign;
}

class EditSign : public signature_entry {
    Q_OBJECT
public:
    explicit EditSign(QWidget *parent = nullptr);
    ~EditSign() override;
    void Load() override;

protected:
    bool holds_changes() const override;

private:
    void Command1_Click();
    void Command2_Click();
    void update_signature();

    std::unique_ptr<Ui::EditSign> ui;
    QString stored_text; // as its box shows it
};
