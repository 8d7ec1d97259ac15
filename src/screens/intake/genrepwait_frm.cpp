#include "screens/intake/genrepwait_frm.h"
#include "frame/session.h"

genrepwait_frm::genrepwait_frm(QWidget *parent) : wait_screen("genrepwait_frm", "Generating the report ...", parent)
{
    setMinimumWidth(400); // room for the counts
    offer_cancel();
}

void genrepwait_frm::Load()
{
    session.animation_file.clear();
    wait_screen::Load();
}

void genrepwait_frm::set_work(making new_work)
{
    make_report = std::move(new_work);
}

void genrepwait_frm::work()
{
    if (make_report)
        make_report([this] { return cancel_wanted(); });
    unload();
}
