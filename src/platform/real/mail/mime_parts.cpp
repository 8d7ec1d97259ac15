#include "platform/real/mail/mime_parts.h"
#include "platform/real/mail/gmime_headers.h"
#include <algorithm>
#include <memory>

namespace mime {

namespace {

constexpr int most_parts_looked_at = 10000;
constexpr int deepest_part = 100;
constexpr size_t most_candidates = 4;

using content_type = std::unique_ptr<GMimeContentType, unref_object>;
using mime_object = std::unique_ptr<GMimeObject, unref_object>;

// A field that cannot be read, such as the bare "text" of old programs, gives nullptr.
content_type parsed_type(const QByteArray &field)
{
    const qsizetype slash = field.indexOf('/');
    const qsizetype semicolon = field.indexOf(';');
    if (slash < 0 || (semicolon >= 0 && slash > semicolon))
        return nullptr;
    QByteArray text = field.trimmed();
    text.replace('\0', ' ');
    return content_type(g_mime_content_type_parse(nullptr, text.constData()));
}

QByteArray charset_of(GMimeContentType *type)
{
    const char *charset = type ? g_mime_content_type_get_parameter(type, "charset") : nullptr;
    return charset ? QByteArray(charset) : QByteArray();
}

bool is_html_type(GMimeContentType *type)
{
    return type && (g_mime_content_type_is_type(type, "text", "html") ||
                    g_mime_content_type_is_type(type, "application", "xhtml+xml"));
}

text_part whole_text(QByteArrayView mail, const header_block &head, GMimeContentType *type)
{
    text_part part;
    part.raw = mail.sliced(head.body_at);
    part.encoding = int(g_mime_content_encoding_from_string(head.transfer_encoding.trimmed().constData()));
    part.charset = charset_of(type);
    part.is_html = is_html_type(type);
    return part;
}

// The tree lives over the mail's own bytes: nothing is copied, and the part's place is read off its stream.
class part_finder {
public:
    part_finder(QByteArrayView bytes, std::vector<text_part> &into) : mail(bytes), found(into) {}

    void look_at(GMimeObject *object, int depth)
    {
        if (!object || ++looked_at > most_parts_looked_at || depth > deepest_part || found.size() >= most_candidates)
            return;
        if (GMIME_IS_MULTIPART(object))
            look_at_children(GMIME_MULTIPART(object), depth);
        else if (GMIME_IS_MESSAGE_PART(object))
            look_at_message(GMIME_MESSAGE_PART(object), depth);
        else if (GMIME_IS_PART(object))
            take(GMIME_PART(object));
    }

private:
    void look_at_children(GMimeMultipart *multipart, int depth)
    {
        GMimeContentType *type = g_mime_object_get_content_type(GMIME_OBJECT(multipart));
        const size_t before = found.size();
        for (int index = 0; index < g_mime_multipart_get_count(multipart); ++index)
            look_at(g_mime_multipart_get_part(multipart, index), depth + 1);
        if (g_mime_content_type_is_type(type, "multipart", "alternative"))
            plain_ones_first(before);
    }

    void plain_ones_first(size_t from)
    {
        std::stable_partition(found.begin() + std::ptrdiff_t(from), found.end(),
                              [](const text_part &part) { return !part.is_html; });
    }

    void look_at_message(GMimeMessagePart *part, int depth)
    {
        GMimeMessage *message = g_mime_message_part_get_message(part);
        if (message)
            look_at(g_mime_message_get_mime_part(message), depth + 1);
    }

    void take(GMimePart *part)
    {
        GMimeContentType *type = g_mime_object_get_content_type(GMIME_OBJECT(part));
        const char *disposition = g_mime_object_get_disposition(GMIME_OBJECT(part));
        const bool attached = disposition && qstricmp(disposition, "attachment") == 0;
        const bool readable = g_mime_content_type_is_type(type, "text", "*") || is_html_type(type);
        GMimeDataWrapper *content = g_mime_part_get_content(part);
        if (attached || !readable || !content)
            return;
        const GMimeStream *stream = g_mime_data_wrapper_get_stream(content);
        const qint64 from = stream->bound_start, end = stream->bound_end < 0 ? mail.size() : stream->bound_end;
        if (from < 0 || end < from || end > mail.size())
            return;
        text_part one;
        one.raw = mail.sliced(qsizetype(from), qsizetype(end - from));
        one.encoding = int(g_mime_part_get_content_encoding(part));
        one.charset = charset_of(type);
        one.is_html = is_html_type(type);
        found.push_back(one);
    }

    QByteArrayView mail;
    std::vector<text_part> &found;
    int looked_at = 0;
};

// Bytes that GMime reads in place; they stay ours.
struct borrowed_bytes {
    explicit borrowed_bytes(QByteArrayView bytes)
    {
        array.data = reinterpret_cast<guint8 *>(const_cast<char *>(bytes.data()));
        array.len = guint(bytes.size());
        stream.reset(g_mime_stream_mem_new_with_byte_array(&array));
        g_mime_stream_mem_set_owner(GMIME_STREAM_MEM(stream.get()), FALSE);
    }
    GByteArray array{};
    std::unique_ptr<GMimeStream, unref_object> stream;
};

bool boundary_occurs(QByteArrayView text, GMimeContentType *type)
{
    const char *boundary = g_mime_content_type_get_parameter(type, "boundary");
    return boundary && *boundary && text.contains(QByteArray("--").append(boundary));
}

std::vector<text_part> parts_of_tree(QByteArrayView mail)
{
    std::vector<text_part> found;
    const borrowed_bytes bytes(mail);
    const std::unique_ptr<GMimeParser, unref_object> parser(g_mime_parser_new_with_stream(bytes.stream.get()));
    const mime_object tree(g_mime_parser_construct_part(parser.get(), nullptr));
    part_finder(mail, found).look_at(tree.get(), 0);
    return found;
}

}

std::vector<text_part> text_parts(QByteArrayView mail, const header_block &head)
{
    start_gmime();
    const content_type type = parsed_type(head.content_type);
    if (!type || is_html_type(type.get()) || g_mime_content_type_is_type(type.get(), "text", "*"))
        return {whole_text(mail, head, type.get())};
    const bool multipart = g_mime_content_type_is_type(type.get(), "multipart", "*");
    if (multipart && !boundary_occurs(mail.sliced(head.body_at), type.get()))
        return {text_part{mail.sliced(head.body_at), GMIME_CONTENT_ENCODING_DEFAULT, {}, false}};
    if (multipart || g_mime_content_type_is_type(type.get(), "message", "*"))
        return parts_of_tree(mail);
    return {};
}

}
