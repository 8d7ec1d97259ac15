#include "frame/start_up.h"
#include "frame/error_log.h"
#include "frame/messages.h"
#include "frame/setup.h"
#include "frame/store.h"
#include "frame/text.h"
#include "platform/app_folder.h"
#include "platform/settings.h"

namespace {

void keep_install_location()
{
    const QString running = app_folder();
    if (upper_case(GetSetting("main", "install_location")) != upper_case(running))
        SaveSetting("main", "install_location", running);
}

}

start start_up()
{
    if (!lock_app_folder()) {
        say("Another instance of this program is already running");
        return start::another_instance;
    }
    open_store_if_closed();
    session.store_connection->need_sound(); // writing to a damaged file may spoil what can still be read of it
    if (!is_installed())
        return start::first_run;
    keep_install_location();
    return start::console;
}

bool Load_Wizard()
{
    bool no_map_yet = false;
    guarded("frmsplash.frm", "load wizard", [&] {
        auto &rows = *session.shared_rs;
        rows.Open("select * from table_list_tbl", *session.store_connection);
        no_map_yet = rows.RecordCount() < 1;
        rows.Close();
    });
    return no_map_yet;
}
