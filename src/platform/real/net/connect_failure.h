// Why a connection or a login did not come about, in words for the user.
#pragma once
#include "platform/real/net/stream.h"

namespace net {

// code is libcurl's; detail its own words; lines what the server said.
run_time_error connect_failure(const place &where, int code, bool given_up, const QString &detail,
                               const QByteArrayList &lines);

// Why a certificate is refused, from the library's words.
QString certificate_words(const place &where, const QString &detail);

// The last line of the server without its protocol's head ("A003 NO ", "-ERR ", "535 5.7.8 "), one line, bounded;
// "" when it said nothing.
QString server_words(protocol speaks, const QByteArrayList &lines);

}
