// Making a signature; opens over the picker (Signature.h), whose list gets its title.
#pragma once
#include "screens/directmail/signature_entry.h"
#include <memory>

namespace Ui {
class NewSign;
}

class NewSign : public signature_entry {
    Q_OBJECT
public:
    explicit NewSign(QWidget *parent = nullptr);
    ~NewSign() override;
    void Load() override;

protected:
    bool holds_changes() const override;

private:
    void Command1_Click();
    void Command2_Click();
    void add_signature();

    std::unique_ptr<Ui::NewSign> ui;
    QString offered_title;
};
