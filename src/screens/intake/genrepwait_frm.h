// Stands while the report on the sent mails is made. Cancel leaves no report; nothing else is lost by it.
#pragma once
#include "screens/wait_screen.h"
#include <functional>

class genrepwait_frm : public wait_screen {
    Q_OBJECT
public:
    // Makes the report; asks its argument whether the user gave up.
    using making = std::function<void(const std::function<bool()> &give_up)>;

    explicit genrepwait_frm(QWidget *parent = nullptr);
    void Load() override;           // without an animation
    void set_work(making new_work); // before it is shown. It is unloaded afterwards

protected:
    void work() override;

private:
    making make_report;
};
