// A mail's bytes as something to read: for looking at what waits in the Outbox.
#pragma once
#include <QByteArray>
#include <QString>

namespace mail {

QString readable_text(const QByteArray &bytes); // its text part, decoded; HTML turned into text

}
