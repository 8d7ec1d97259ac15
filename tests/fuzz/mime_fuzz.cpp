// Any bytes as a mail: header fields, body, HTML. What comes out must be clean whatever goes in.
#include "platform/real/mail/charset.h"
#include "platform/real/mail/html_to_text.h"
#include "platform/real/mail/mail_address.h"
#include "platform/real/mail/mime_body.h"
#include "platform/real/mail/mime_parse.h"
#include <cstdlib>

namespace {

void require(bool good)
{
    if (!good)
        abort();
}

bool is_one_clean_line(const QString &text)
{
    return !text.contains(u'\n') && !text.contains(u'\r') && !text.contains(QChar(0)) && text.isValidUtf16();
}

}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    const QByteArrayView bytes(data, qsizetype(size));
    const mime::header_block head = mime::read_header_block(bytes);
    require(head.body_at >= 0 && head.body_at <= bytes.size());
    require(is_one_clean_line(mime::to_line(head)));
    require(is_one_clean_line(mime::subject_of(head)));
    require(is_one_clean_line(mime::answer_address(head)));
    require(is_one_clean_line(mime::references_of_answer(head)));
    const QString body = mime::body_text(bytes, head);
    require(!body.contains(QChar(0)) && body.isValidUtf16());
    require(mime::html_to_text(mime::text_in_charset(bytes, {})).isValidUtf16());
    return 0;
}
