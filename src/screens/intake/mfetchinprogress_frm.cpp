#include "screens/intake/mfetchinprogress_frm.h"
#include "frame/session.h"
#include "platform/network.h"
#include "screens/intake/mailfrm.h"
#include "screens/maps/mapWizardStep3_frm.h"

mfetchinprogress_frm::mfetchinprogress_frm(QWidget *parent)
    : wait_screen("mfetchinprogress_frm", "Fetching mail ...", parent)
{
    offer_cancel();
}

void mfetchinprogress_frm::work()
{
    const bool wizard_waits = session.fetch_then_wizard;
    if (is_loaded<mailfrm>()) // loading is what fetches, so an open one makes room
        the<mailfrm>().unload();
    {
        net::patience usual = net::present_patience();
        usual.give_up = [this] { return cancel_wanted(); };
        const net::patience_scope waiting(usual);
        the<mailfrm>().load();
    }
    session.fetch_then_wizard = false;
    unload();
    if (wizard_waits) {
        the<mailfrm>().unload(); // its list would be an old one by the time somebody opens it
        the<mapWizardStep3_frm>().show();
    } else {
        the<mailfrm>().show();
    }
}
