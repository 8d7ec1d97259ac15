// Where to look when something does not work: the facts of this installation, the error log, and the way to the
// desktop's system information. The facts: frame/support_facts.h.
#pragma once
#include "screens/screen.h"
#include <memory>

namespace Ui {
class TechSupport;
}

class TechSupport : public screen {
    Q_OBJECT
public:
    explicit TechSupport(QWidget *parent = nullptr);
    ~TechSupport() override;
    void Load() override;

private:
    void copy_b_Click();
    void log_b_Click();

    std::unique_ptr<Ui::TechSupport> ui;
};
