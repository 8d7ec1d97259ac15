#include "frame/help.h"
#include "platform/app_folder.h"
#include "platform/text_file.h"

namespace {

struct help_state {
    std::function<void(const QString &, const QString &)> viewer;
} help_shown;

}

bool show_help(const QString &topic)
{
    const QString file = app_path(u"\\tslhlp.chm");
    if (!FileExists(file) || !help_shown.viewer)
        return false;
    help_shown.viewer(file, topic);
    return true;
}

void set_help_viewer(std::function<void(const QString &, const QString &)> viewer)
{
    help_shown.viewer = std::move(viewer);
}
