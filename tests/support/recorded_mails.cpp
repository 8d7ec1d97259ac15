#include "support/recorded_mails.h"

#include <QDebug>
#include <QFile>
#include <fcntl.h>
#include <unistd.h>

namespace {

QString file_in(const QString &folder)
{
    return folder + QStringLiteral("/mails");
}

// "<bytes of the envelope> <bytes of the mail>", the envelope's lines, the mail.
QByteArray entry_of(const recorded_mail &mail)
{
    const QByteArray envelope = mail.from + '\n' + mail.parameters.join(' ') + '\n' + mail.recipients.join('\n');
    return QByteArray::number(envelope.size()) + ' ' + QByteArray::number(mail.bytes.size()) + '\n' + envelope +
           mail.bytes;
}

// Up to the end, or to an entry that a kill cut off. Gives where that is.
qsizetype read_entries(const QByteArray &text, QList<recorded_mail> &mails)
{
    for (qsizetype at = 0;;) {
        const qsizetype end = text.indexOf('\n', at);
        const QByteArrayList sizes = text.mid(at, end - at).split(' ');
        const qsizetype envelope_size = sizes.value(0).toLongLong(), size = sizes.value(1).toLongLong();
        if (end < 0 || text.size() < end + 1 + envelope_size + size)
            return at;
        const QByteArrayList envelope = text.mid(end + 1, envelope_size).split('\n');
        const QByteArray parameters = envelope.value(1);
        mails.append({envelope.value(0), parameters.isEmpty() ? QByteArrayList() : parameters.split(' '),
                      envelope.mid(2), text.mid(end + 1 + envelope_size, size)});
        at = end + 1 + envelope_size + size;
    }
}

QByteArray text_in(const QString &folder)
{
    QFile file(file_in(folder));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}

QList<recorded_mail> recorded_mails(const QString &folder)
{
    QList<recorded_mail> mails;
    read_entries(text_in(folder), mails);
    return mails;
}

mail_recorder::mail_recorder(const QString &folder)
    : file(::open(file_in(folder).toLocal8Bit().constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644))
{
    QList<recorded_mail> there;
    const qsizetype whole = read_entries(text_in(folder), there);
    count = int(there.size());
    if (file < 0 || ::ftruncate(file, whole) != 0)
        qFatal("cannot record mails in %s", qPrintable(folder));
}

mail_recorder::~mail_recorder()
{
    ::close(file);
}

void mail_recorder::record(const recorded_mail &mail)
{
    const QByteArray entry = entry_of(mail);
    if (::write(file, entry.constData(), size_t(entry.size())) != entry.size())
        qFatal("cannot record a mail");
    ++count;
}
