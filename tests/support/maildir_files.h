// Mails in a Maildir, as a delivering program would put them there.
#pragma once
#include <QByteArray>
#include <QString>
#include <QStringList>

// A small mail, LF line ends; further header lines stand whole in more ("Reply-To: a@b\n").
struct simple_mail {
    QString to, from, subject, body;
    QString more = {};
};
QByteArray mail_bytes(const simple_mail &mail);

// Into "new", under a name that begins with the delivery time (seconds since 1970); gives the file's name.
QString deliver(const QString &maildir, const QByteArray &bytes, qint64 delivered);
QString deliver(const QString &maildir, const simple_mail &mail, qint64 delivered);
// Into "cur" or "new" under a name of one's own.
void deliver_as(const QString &maildir, const QString &folder_and_name, const QByteArray &bytes);

QStringList files_in(const QString &maildir); // "cur/..." and "new/...", sorted
QByteArray bytes_of_file(const QString &path);
