// Mail addresses: out of header fields, and whether one can be written to.
#pragma once
#include <QByteArray>
#include <QString>
#include <QStringList>

namespace mail {

// The bare addresses of a To, From or Reply-To field, groups flattened, names left out. What is no address is skipped.
QStringList addresses_in(const QByteArray &field);

// Why no mail can be sent to this bare address, in plain words; "" when one can. Nothing is mended: an address with
// blanks or a line end anywhere is none.
QString why_not_writable(const QString &address);

// A writable address as it travels: the domain in ASCII letters, whatever script it was written in. The name before
// the "@" stays as it is.
QString wire_address(const QString &address);

}
