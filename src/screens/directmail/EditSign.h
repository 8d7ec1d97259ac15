// Changing the text of a signature; opens over the picker (Signature.h), whose selected title it is about.
#pragma once
#include "screens/screen.h"
#include <memory>

namespace Ui {
class EditSign;
}

class EditSign : public screen {
    Q_OBJECT
public:
    explicit EditSign(QWidget *parent = nullptr);
    ~EditSign() override;
    void Load() override;

protected:
    std::optional<unsaved_work> unsaved() const override;

private:
    void Command1_Click();
    void Command2_Click();
    void update_signature();

    std::unique_ptr<Ui::EditSign> ui;
    QString stored_text; // as its box shows it
};
