// Where a server is, as the library wants it: "imaps://mail.example.org:993/".
#pragma once
#include "platform/real/net/stream.h"

namespace net {

// Throws where host, user, password or token are such that they must not go on the wire.
QByteArray url_of(const place &where);

}
