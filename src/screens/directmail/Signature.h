// The picker of signatures: which ones there are, and which one is chosen. Making one: NewSign.h; changing one:
// EditSign.h. Who opened it is told what was picked (session.signature_for_...).
#pragma once
#include "screens/screen.h"
#include <memory>
#include <optional>

namespace Ui {
class Signature;
}

class Signature : public screen {
    Q_OBJECT
public:
    explicit Signature(QWidget *parent = nullptr);
    ~Signature() override;
    void Load() override;

    QString selected_title() const;
    void add_title(const QString &title);       // of a signature just made
    void show_preview(const QString &signtext); // of the selected one

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void List1_Click();
    void Command1_Click();
    void Command2_Click();
    void Command3_Click();
    void Command4_Click();
    void Command5_Click();
    bool nothing_selected(const QString &command);
    bool is_to_be_removed();
    void remove_selected();
    void choose_selected();
    void tell_opener(const std::optional<QString> &title);

    std::unique_ptr<Ui::Signature> ui;
};
