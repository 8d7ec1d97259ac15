// Paths between bytes, as the disk has them, and texts. A byte that is no UTF-8 becomes a code point that no text holds
// (U+DC80 and up), so that every name finds back.
#pragma once
#include <QByteArray>
#include <QString>

namespace folder_names {

QString text_of(const QByteArray &name);
QByteArray bytes_of(const QString &path);
QString shown(const QByteArray &path); // for a message

}
