#include "platform/system_information.h"

#include <QProcess>
#include <QStandardPaths>
#include <QStringList>
#include <vector>

namespace {

// With what makes each of them show the machine. The first that is installed is taken.
const std::vector<QStringList> &machine_tools()
{
    static const std::vector<QStringList> tools{
        {"gnome-control-center", "info-overview"},
        {"kinfocenter"},
        {"mate-system-monitor", "--show-system-tab"},
        {"hardinfo2"},
        {"hardinfo"},
        {"gnome-system-monitor"},
        {"xfce4-about"},
    };
    return tools;
}

}

bool start_system_information()
{
    for (const QStringList &tool : machine_tools()) {
        const QString program = QStandardPaths::findExecutable(tool.first());
        if (!program.isEmpty() && QProcess::startDetached(program, tool.mid(1)))
            return true;
    }
    return false;
}
