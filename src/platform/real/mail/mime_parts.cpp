#include "platform/real/mail/mime_parts.h"
#include "platform/real/mail/gmime_headers.h"
#include "platform/real/mail/multipart_splitter.h"
#include <algorithm>
#include <memory>

namespace mime {

namespace {

constexpr int most_parts_looked_at = 10000;
constexpr int deepest_part = 30;
constexpr size_t most_candidates = 4;

using content_type = std::unique_ptr<GMimeContentType, unref_object>;

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

bool is_type(const content_type &type, const char *group, const char *kind)
{
    return g_mime_content_type_is_type(type.get(), group, kind);
}

bool is_html_type(const content_type &type)
{
    return type && (is_type(type, "text", "html") || is_type(type, "application", "xhtml+xml"));
}

bool is_text_type(const content_type &type)
{
    return !type || is_type(type, "text", "*") || is_html_type(type);
}

bool is_mail_type(const content_type &type)
{
    return is_type(type, "message", "rfc822") || is_type(type, "message", "global") || is_type(type, "message", "news");
}

QByteArray parameter(const content_type &type, const char *name)
{
    const char *value = type ? g_mime_content_type_get_parameter(type.get(), name) : nullptr;
    return value ? QByteArray(value) : QByteArray();
}

bool is_attached(const header_block &head)
{
    return head.disposition.trimmed().toLower().startsWith("attachment");
}

// Looks only as far as it must: what stands behind the candidates is never split. The tree is not built, because
// neither its depth nor its size may depend on what a mail claims.
class part_finder {
public:
    std::vector<text_part> found;

    void look_at(QByteArrayView entity, const header_block &head, int depth)
    {
        if (++looked_at > most_parts_looked_at || depth > deepest_part || is_attached(head))
            return;
        const content_type type = parsed_type(head.content_type);
        const QByteArrayView text = entity.sliced(head.body_at);
        if (is_text_type(type))
            take(text, head, type);
        else if (is_type(type, "multipart", "*"))
            look_at_parts(text, type, depth);
        else if (is_mail_type(type))
            look_at(text, read_header_block(text), depth + 1);
    }

private:
    void look_at_parts(QByteArrayView text, const content_type &type, int depth)
    {
        const size_t before = found.size();
        multipart_splitter parts(text, parameter(type, "boundary"));
        std::optional<QByteArrayView> part = parts.next();
        if (!part)
            return found.push_back({text, GMIME_CONTENT_ENCODING_DEFAULT, {}, false});
        for (; part && found.size() < most_candidates && looked_at < most_parts_looked_at; part = parts.next())
            look_at(*part, read_header_block(*part), depth + 1);
        if (is_type(type, "multipart", "alternative"))
            std::stable_partition(found.begin() + std::ptrdiff_t(before), found.end(),
                                  [](const text_part &one) { return !one.is_html; });
    }

    void take(QByteArrayView text, const header_block &head, const content_type &type)
    {
        const QByteArray encoding = head.transfer_encoding.trimmed();
        found.push_back({text, int(g_mime_content_encoding_from_string(encoding.constData())),
                         parameter(type, "charset"), is_html_type(type)});
    }

    int looked_at = 0;
};

}

std::vector<text_part> text_parts(QByteArrayView mail, const header_block &head)
{
    start_gmime();
    part_finder finder;
    finder.look_at(mail, head, 0);
    return finder.found;
}

}
