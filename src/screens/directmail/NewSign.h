// Making a signature; opens over the picker (Signature.h), whose list gets its title.
#pragma once
#include "screens/screen.h"
#include <memory>

namespace Ui {
class NewSign;
}

class NewSign : public screen {
    Q_OBJECT
public:
    explicit NewSign(QWidget *parent = nullptr);
    ~NewSign() override;
    void Load() override;

protected:
    std::optional<unsaved_work> unsaved() const override;

private:
    void Command1_Click();
    void Command2_Click();
    bool is_complete();
    void add_signature();

    std::unique_ptr<Ui::NewSign> ui;
    QString offered_title;
};
