#include "screens/maps/map_wizard_doors.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/status.h"
#include "frame/store.h"
#include "maps/map_wizard.h"
#include "screens/maps/MapWizardFinalStep_frm.h"
#include "screens/maps/MapWizardStep1_frm.h"
#include "screens/maps/MapWizardStep2_frm.h"
#include "screens/maps/MapWizardStep4_frm.h"
#include "screens/maps/mapWizardStep3_frm.h"

namespace {

const char *const quit_question =
    "If you exit the Wizard without setting-up the application, you would be reminded again the next time you launch "
    "the application.\r\n\r\nWould you like to quit the wizard?";

template <typename T>
bool brought_to_front()
{
    if (!is_visible<T>())
        return false;
    the<T>().show();
    return true;
}

void begin_anew()
{
    if (is_loaded<MapWizardFinalStep_frm>()) // of the map before
        the<MapWizardFinalStep_frm>().unload();
    maps::map_wizard = {};
}

}

bool bring_map_wizard_to_front()
{
    return brought_to_front<MapWizardStep4_frm>() || brought_to_front<mapWizardStep3_frm>() ||
           brought_to_front<MapWizardStep2_frm>() || brought_to_front<MapWizardStep1_frm>();
}

void open_map_wizard()
{
    if (bring_map_wizard_to_front())
        return;
    qint64 maps_there = 0;
    const bool counted = guarded("menuFrm.frm", "mmw", [&] {
        open_store_if_closed();
        maps_there = row_count("select * from table_list_tbl");
    });
    if (!counted)
        return status_line("The Mail Mapping Wizard cannot be opened: " + session.err_description);
    begin_anew();
    if (maps_there > 0)
        the<MapWizardStep2_frm>().show();
    else
        the<MapWizardStep1_frm>().show();
}

void open_map_wizard_welcome()
{
    if (bring_map_wizard_to_front())
        return;
    begin_anew();
    the<MapWizardStep1_frm>().show();
}

bool quits_map_wizard(const char *form)
{
    bool quits = false;
    const bool counted = guarded(form, "cancelb click", [&] {
        open_store_if_closed();
        quits = first_value("select count(*) from table_list_tbl").to_number() > 0 || yes_no(quit_question);
    });
    if (counted && !quits)
        return false;
    maps::map_wizard = {}; // a store that cannot be read holds nobody here
    return true;
}
