// Stands while the mails of a new map are cut into its columns.
#pragma once
#include "screens/wait_screen.h"
#include <functional>

class mapinprogress_frm : public wait_screen {
    Q_OBJECT
public:
    explicit mapinprogress_frm(QWidget *parent = nullptr);

    // What runs when the screen has painted; set before it is shown. It is unloaded afterwards.
    void set_work(std::function<void()> new_work);

protected:
    void work() override;

private:
    std::function<void()> mapping;
};
