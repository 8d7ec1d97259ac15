// An outgoing mail as bytes, CR LF line ends, ready for the wire: text, or HTML with a plain part beside it.
#pragma once
#include "platform/outbox.h"
#include <QByteArray>
#include <QDateTime>

namespace mail {

// Why this mail must not go out to anybody, in plain words; "" when it may. Each of its recipients by itself:
// why_not_writable.
QString why_refused(const outbox::outgoing_mail &mail);

// A Subject of several lines becomes one. An address that cannot be written to, and a further header that could
// become two or that is one of ours, are left out: why_refused has told so.
// utc_offset, in seconds, is that of moment (a wall clock); message_id stands without angle brackets.
QByteArray compose(const outbox::outgoing_mail &mail, const QDateTime &moment, int utc_offset,
                   const QByteArray &message_id);

}
