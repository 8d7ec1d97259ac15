// The preferences page "General": auto-fetch, the font for reading, the signature, and the way to the auto-responder.
// What a number of minutes does: frame/auto_fetch.h. Where the signature is chosen: screens/directmail/Signature.h.
#pragma once
#include "screens/screen.h"
#include <memory>
#include <optional>

namespace Ui {
class Preference;
}

class Preference : public screen {
    Q_OBJECT
public:
    explicit Preference(QWidget *parent = nullptr);
    ~Preference() override;
    void Load() override;

    void show_signature(const std::optional<QString> &title); // none: none is chosen; a title may be empty

protected:
    std::optional<unsaved_work> unsaved() const override;

private:
    QString chosen_minutes() const; // "": auto-fetch is off
    void show_auto_fetch();
    void autofetch_ch_Click();
    void Command1_Click();
    void Command2_Click();
    void Command3_Click();
    void set_minutes();

    std::unique_ptr<Ui::Preference> ui;
    QString minutes_shown;
};
