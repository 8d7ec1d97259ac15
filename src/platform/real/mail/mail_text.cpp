#include "platform/mail_text.h"
#include "platform/real/mail/mime_body.h"

namespace mail {

QString readable_text(const QByteArray &bytes)
{
    return mime::body_text(bytes, mime::read_header_block(bytes));
}

}
