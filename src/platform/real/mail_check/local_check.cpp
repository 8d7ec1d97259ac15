#include "platform/real/mail_check/local_check.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <fcntl.h>
#include <unistd.h>

namespace mail {

namespace {

constexpr qsizetype chunk = 1024 * 1024;

bool is_open_for(const QString &path, int mode)
{
    return faccessat(AT_FDCWD, QFile::encodeName(path).constData(), mode, AT_EACCESS) == 0;
}

QString folder_contents(qlonglong count)
{
    if (count == 0)
        return QStringLiteral("%1 holds no mail now.");
    return count == 1 ? QStringLiteral("%1 holds one mail.") : QStringLiteral("%1 holds %2 mails.");
}

step_end holds(const QString &path, qlonglong count)
{
    const QString sentence = folder_contents(count);
    return {check_state::good, count > 1 ? sentence.arg(path, QString::number(count)) : sentence.arg(path)};
}

qlonglong files_in(const QString &path)
{
    return qlonglong(QDir(path).entryList(QDir::Files | QDir::Hidden, QDir::NoSort).size());
}

step_end look_at_maildir(const maildir_place &place)
{
    const QFileInfo folder(place.path);
    if (!folder.exists() && place.made_on_demand)
        return {check_state::good, QStringLiteral("%1 is made at the first fetch.").arg(place.path)};
    if (!folder.exists())
        return {check_state::failed, QStringLiteral("There is no folder %1. Check its name.").arg(place.path)};
    const QString read = folder.filePath() + QStringLiteral("/cur");
    const QString fresh = folder.filePath() + QStringLiteral("/new");
    const int all = R_OK | W_OK | X_OK;
    if (!is_open_for(place.path, R_OK | X_OK))
        return {check_state::failed, QStringLiteral("You may not read %1.").arg(place.path)};
    for (const QString &one : {place.path, read, fresh})
        if (QFileInfo::exists(one) && !is_open_for(one, all))
            return {check_state::failed,
                    QStringLiteral("You may not write to %1, so fetched mail cannot be moved out of it.").arg(one)};
    const bool is_maildir = QFileInfo(read).isDir() && QFileInfo(fresh).isDir();
    if (!is_maildir && !QDir(place.path).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot))
        return {check_state::warning,
                QStringLiteral("%1 is no Maildir yet: the folders \"cur\" and \"new\" are not in it. "
                               "Fetching makes them; is it the right folder?")
                    .arg(place.path)};
    return holds(place.path, files_in(read) + files_in(fresh));
}

// Each mail begins with a line "From ", behind an empty line or at the head of the file.
qlonglong mails_in(QFile &file, const net::patience &patience)
{
    qlonglong count = 0;
    QByteArray tail = "\n\n";
    while (!file.atEnd()) {
        const QByteArray bytes = file.read(chunk);
        if (bytes.isEmpty())
            break;
        if (patience.give_up && patience.give_up())
            throw net::failure(net::trouble::cancelled, QStringLiteral("Cancelled."));
        const QByteArray text = tail + bytes;
        for (const QByteArrayView mark : {QByteArrayView("\n\nFrom "), QByteArrayView("\n\r\nFrom ")})
            for (qsizetype at = text.indexOf(mark); at >= 0; at = text.indexOf(mark, at + 1))
                if (at + mark.size() > tail.size()) // else the chunk before has counted it
                    ++count;
        tail = text.last(qMin<qsizetype>(text.size(), 7));
    }
    return count;
}

step_end look_at_mbox(const QString &path, const net::patience &patience)
{
    if (path.isEmpty())
        return {check_state::failed, QStringLiteral("No file is set. Choose the mbox file that holds your mail.")};
    const QFileInfo info(path);
    if (!info.exists())
        return {check_state::failed, QStringLiteral("There is no file %1. Check its name.").arg(path)};
    if (info.isDir())
        return {check_state::failed,
                QStringLiteral("%1 is a folder. Choose the mbox file itself, or Maildir as the kind.").arg(path)};
    QFile file(path);
    if (!info.isFile() || !is_open_for(path, R_OK) || !file.open(QFile::ReadOnly))
        return {check_state::failed, QStringLiteral("You may not read %1.").arg(path)};
    if (info.size() > 0 && file.peek(5) != "From ")
        return {check_state::failed,
                QStringLiteral("%1 is no mbox file: it does not begin with a line \"From \".").arg(path)};
    return holds(path, mails_in(file, patience));
}

}

bool check_maildir(check_run &run)
{
    const maildir_place place = maildir_path(run.request.settings.maildir);
    const bool works = run.step(QStringLiteral("Maildir"), [&place] { return look_at_maildir(place); });
    if (works) {
        const bool is_there = QFileInfo(place.path + QStringLiteral("/.Tessaly_Inbox")).isDir();
        run.tell(QStringLiteral("Folder Tessaly_Inbox"),
                 {check_state::good, is_there ? QStringLiteral("It is there; fetched mail moves to it.")
                                              : QStringLiteral("It is made at the first fetch.")});
    }
    return works;
}

bool check_mbox(check_run &run)
{
    return run.step(QStringLiteral("mbox file"),
                    [&run] { return look_at_mbox(mbox_path(run.request.settings.mbox), run.patience); });
}

}
