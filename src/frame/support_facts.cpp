#include "frame/support_facts.h"
#include "frame/mail_client_page.h"
#include "platform/app_folder.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>
#include <QSysInfo>

namespace {

QString size_words(const QString &path)
{
    const QFileInfo file(path);
    return file.isFile() ? QString::number((file.size() + 1023) / 1024) + " KB" : QStringLiteral("not there");
}

}

QString error_log_path()
{
    return app_path(u"\\errorlog.txt");
}

QString support_facts()
{
    const QString store = app_path(u"\\mailapp.mdb");
    const QStringList lines{
        QStringLiteral("Tessaly " TESSALY_VERSION),
        "System: " + QSysInfo::prettyProductName() + ", " + QSysInfo::kernelType() + " " + QSysInfo::kernelVersion() +
            ", " + QSysInfo::currentCpuArchitecture(),
        QStringLiteral("Qt ") + qVersion(),
        "Folder: " + QDir::toNativeSeparators(app_folder()),
        "Store: mailapp.mdb, " + size_words(store),
        "Error log: errorlog.txt, " + size_words(error_log_path()),
        "Mail client: " + mail_page::in_force_text(),
    };
    return lines.join(u'\n');
}
