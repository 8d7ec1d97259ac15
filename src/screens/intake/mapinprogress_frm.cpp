#include "screens/intake/mapinprogress_frm.h"
#include "frame/error_log.h"

mapinprogress_frm::mapinprogress_frm(QWidget *parent) : wait_screen("mapinprogress_frm", "Mapping mails ...", parent) {}

void mapinprogress_frm::set_work(std::function<void()> new_work)
{
    mapping = std::move(new_work);
}

void mapinprogress_frm::work()
{
    if (mapping)
        guarded("mapinprogress_frm.frm", "Timer1", mapping);
    unload();
}
