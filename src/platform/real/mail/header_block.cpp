#include "platform/real/mail/header_block.h"
#include <array>
#include <cstring>

namespace mime {

namespace {

constexpr qsizetype longest_field = 64 * 1024; // what a field holds beyond is left out
constexpr qsizetype longest_field_name = 40;

struct wanted_field {
    const char *name;
    QByteArray header_block::*into;
};

constexpr std::array<wanted_field, 12> wanted_fields{{{"to", &header_block::to},
                                                      {"subject", &header_block::subject},
                                                      {"from", &header_block::from},
                                                      {"reply-to", &header_block::reply_to},
                                                      {"message-id", &header_block::message_id},
                                                      {"references", &header_block::references},
                                                      {"in-reply-to", &header_block::in_reply_to},
                                                      {"received", &header_block::received},
                                                      {"date", &header_block::date},
                                                      {"content-type", &header_block::content_type},
                                                      {"content-transfer-encoding", &header_block::transfer_encoding},
                                                      {"content-disposition", &header_block::disposition}}};

bool is_blank_or_tab(char letter)
{
    return letter == ' ' || letter == '\t';
}

// The line from a place on, without its line end; next is where the following line begins.
QByteArrayView line_at(QByteArrayView mail, qsizetype at, qsizetype &next)
{
    const auto *end = static_cast<const char *>(memchr(mail.data() + at, '\n', size_t(mail.size() - at)));
    qsizetype length = end ? end - (mail.data() + at) : mail.size() - at;
    next = end ? at + length + 1 : mail.size();
    if (length > 0 && mail[at + length - 1] == '\r')
        --length;
    return mail.sliced(at, length);
}

QByteArray header_block::*place_for(QByteArrayView name)
{
    if (name.isEmpty() || name.size() > longest_field_name)
        return nullptr;
    for (const wanted_field &field : wanted_fields)
        if (qstrnicmp(name.data(), name.size(), field.name, qsizetype(strlen(field.name))) == 0)
            return field.into;
    return nullptr;
}

void append_bounded(QByteArray &field, QByteArrayView more)
{
    const qsizetype room = qMax<qsizetype>(0, longest_field - field.size());
    field.append(more.first(qMin(room, more.size())));
}

// The mark that mbox programs put before a mail; some deliver it into a Maildir too.
bool is_mbox_mark(QByteArrayView line)
{
    return line.startsWith("From ") || line.startsWith(">From ");
}

// Gives the field that continuation lines belong to, or nullptr.
QByteArray *begin_field(header_block &block, QByteArrayView line)
{
    const qsizetype colon = line.indexOf(':');
    if (colon < 0)
        return nullptr;
    QByteArray header_block::*place = place_for(line.first(colon).trimmed());
    if (!place)
        return nullptr;
    QByteArray &field = block.*place;
    if (!field.isNull()) {
        if (place != &header_block::to)
            return nullptr;
        append_bounded(field, ", ");
    } else {
        field = QByteArray("");
    }
    append_bounded(field, line.sliced(colon + 1));
    return &field;
}

}

header_block read_header_block(QByteArrayView mail)
{
    header_block block;
    QByteArray *field = nullptr;
    qsizetype next = 0;
    for (qsizetype at = 0; at < mail.size(); at = next) {
        const QByteArrayView line = line_at(mail, at, next);
        if (line.isEmpty()) {
            block.complete = true;
            break;
        }
        if (is_blank_or_tab(line.front()) && at > 0) {
            if (field)
                append_bounded(*field, line);
        } else if (at > 0 || !is_mbox_mark(line)) {
            field = begin_field(block, line);
        }
    }
    block.body_at = next;
    return block;
}

}
