#include "support/fake_sendmail.h"

#include "support/maildir_files.h"
#include "support/open_folder.h"
#include <QDebug>
#include <QDir>
#include <QFile>

namespace {

// A call is a folder; mkdir finds the next free number also when two call at once.
constexpr const char *recorder = R"sh(#!/bin/sh
here=$(dirname "$0")
number=1000000
until mkdir "$here/call.$number" 2>/dev/null; do number=$((number + 1)); done
for argument in "$@"; do printf '%s\n' "$argument"; done >"$here/call.$number/arguments"
cat >"$here/call.$number/bytes"
cat "$here/says" >&2
exit "$(cat "$here/status")"
)sh";

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

}

fake_sendmail::fake_sendmail(int exit_status, const QString &says) : folder(folder_template("sendmail"))
{
    open_to_servers(folder);
    write(program(), recorder);
    QFile::setPermissions(program(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    ends_with(exit_status, says);
}

void fake_sendmail::ends_with(int exit_status, const QString &says)
{
    write(folder.filePath("status"), QByteArray::number(exit_status));
    write(folder.filePath("says"), says.toUtf8());
}

QList<fake_sendmail::call> fake_sendmail::calls() const
{
    QList<call> found;
    for (const QString &name : QDir(folder.path()).entryList({"call.*"}, QDir::Dirs, QDir::Name)) {
        const QString at = folder.filePath(name);
        QStringList arguments = QString::fromUtf8(bytes_of_file(at + "/arguments")).split(u'\n');
        arguments.removeLast(); // behind the last line end
        found.append({arguments, bytes_of_file(at + "/bytes")});
    }
    return found;
}
