#include "frame/back_up.h"
#include "frame/messages.h"
#include "frame/store.h"
#include "platform/dialogs.h"
#include "platform/services.h"
#include "platform/settings.h"
#include "platform/text_file.h"

#include <QFileInfo>

namespace {

QString configured_target()
{
    const QString folder = GetSetting("main", "backup");
    const QString data = folder + "/data";
    return !folder.isEmpty() && QFileInfo(data).isDir() ? data + "/Tessaly.mdb" : QString();
}

QString chosen_target()
{
    while (services.dialogs) {
        const auto chosen = services.dialogs->ShowSave("Tessaly.mdb", "*.mdb");
        if (!chosen || !FileExists(*chosen) || yes_no("File already exists! Overwrite?"))
            return chosen.value_or(QString());
    }
    return {};
}

}

QString run_backup()
{
    const QString configured = configured_target();
    const QString target = configured.isEmpty() ? chosen_target() : configured;
    if (!target.isEmpty()) {
        open_store_if_closed();
        session.store_connection->copy_store(target);
    }
    return target;
}
