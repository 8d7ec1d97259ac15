#include "platform/real/folder_names.h"

#include <QStringDecoder>
#include <QStringEncoder>

namespace folder_names {

namespace {

constexpr ushort first_odd = 0xDC00; // and the byte
constexpr int longest_character = 4;

bool is_odd(QChar unit)
{
    return unit.unicode() >= first_odd + 0x80 && unit.unicode() <= first_odd + 0xFF;
}

// How many bytes from there make one character; 0 when they make none.
int character_at(const QByteArray &name, qsizetype at)
{
    for (int bytes = 1; bytes <= longest_character && at + bytes <= name.size(); ++bytes) {
        QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString one = decode(QByteArrayView(name).sliced(at, bytes));
        if (!decode.hasError() && !one.isEmpty() && !one.contains(QChar::ReplacementCharacter))
            return bytes;
    }
    return 0;
}

bool is_utf8(const QByteArray &name)
{
    return QString::fromUtf8(name).toUtf8() == name;
}

}

QString text_of(const QByteArray &name)
{
    if (is_utf8(name))
        return QString::fromUtf8(name);
    QString text;
    for (qsizetype at = 0; at < name.size();) {
        const int bytes = character_at(name, at);
        text += bytes > 0 ? QString::fromUtf8(name.mid(at, bytes)) : QString(QChar(first_odd + uchar(name[at])));
        at += qMax(bytes, 1);
    }
    return text;
}

QByteArray bytes_of(const QString &path)
{
    QByteArray bytes;
    qsizetype start = 0;
    for (qsizetype at = 0; at < path.size(); ++at) {
        const bool is_alone = is_odd(path[at]) && (at == 0 || !path[at - 1].isHighSurrogate());
        if (!is_alone)
            continue;
        bytes += QStringView(path).sliced(start, at - start).toUtf8();
        bytes += char(path[at].unicode() - first_odd);
        start = at + 1;
    }
    return bytes + QStringView(path).sliced(start).toUtf8();
}

QString shown(const QByteArray &path)
{
    return QString::fromUtf8(path);
}

}
