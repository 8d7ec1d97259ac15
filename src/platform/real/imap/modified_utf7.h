// Folder names on the wire: ASCII, and everything else as "&...-".
#pragma once
#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace imap {

QByteArray to_modified_utf7(const QString &name);
// What is no modified UTF-7 is taken for UTF-8, as servers send it that should not.
QString from_modified_utf7(QByteArrayView name);

QByteArray quoted(QByteArrayView text); // as a quoted string; holds no line end

}
