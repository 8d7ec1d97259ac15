#include "support/open_folder.h"

#include <QDebug>
#include <QDir>
#include <QTemporaryDir>
#include <sys/stat.h>

QString folder_template(const char *name)
{
    return QDir::tempPath() + u'/' + QString::fromLatin1(name) + QStringLiteral(".XXXXXX");
}

void open_to_servers(const QTemporaryDir &folder)
{
    if (!folder.isValid())
        qFatal("no temporary folder: %s", qPrintable(folder.errorString()));
    if (::chmod(folder.path().toLocal8Bit().constData(), 0755) != 0)
        qFatal("cannot open %s to servers", qPrintable(folder.path()));
}
