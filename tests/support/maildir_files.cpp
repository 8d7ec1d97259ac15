#include "support/maildir_files.h"
#include <QDir>
#include <QFile>

QByteArray mail_bytes(const simple_mail &mail)
{
    return ("To: " + mail.to + "\nFrom: " + mail.from + "\nSubject: " + mail.subject + "\n" + mail.more + "\n" +
            mail.body)
        .toUtf8();
}

void deliver_as(const QString &maildir, const QString &folder_and_name, const QByteArray &bytes)
{
    for (const char *part : {"cur", "new", "tmp"})
        QDir().mkpath(maildir + u'/' + QString::fromLatin1(part));
    QFile file(maildir + u'/' + folder_and_name);
    const bool written = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    if (!written)
        qFatal("cannot deliver %s", qPrintable(file.fileName()));
}

QString deliver(const QString &maildir, const QByteArray &bytes, qint64 delivered)
{
    const qsizetype count = files_in(maildir).size();
    const QString name = QStringLiteral("%1.M%2P1.host").arg(delivered).arg(count, 6, 10, QChar(u'0'));
    deliver_as(maildir, QStringLiteral("new/") + name, bytes);
    return name;
}

QString deliver(const QString &maildir, const simple_mail &mail, qint64 delivered)
{
    return deliver(maildir, mail_bytes(mail), delivered);
}

QStringList files_in(const QString &maildir)
{
    QStringList files;
    for (const char *part : {"cur", "new"}) {
        const QStringList names = QDir(maildir + u'/' + QString::fromLatin1(part)).entryList(QDir::Files, QDir::Name);
        for (const QString &name : names)
            files.append(QString::fromLatin1(part) + u'/' + name);
    }
    return files;
}

QByteArray bytes_of_file(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(path));
    return file.readAll();
}
