#include "platform/real/chm/contents_list.h"

#include <QRegularExpression>

namespace {

constexpr size_t most_contents_lines = 10000;
constexpr int deepest_contents = 20;

QString contents_text(QString text)
{
    return text.replace(QStringLiteral("&lt;"), QStringLiteral("<"))
        .replace(QStringLiteral("&gt;"), QStringLiteral(">"))
        .replace(QStringLiteral("&quot;"), QStringLiteral("\""))
        .replace(QStringLiteral("&amp;"), QStringLiteral("&"))
        .simplified();
}

QString attribute_of(const QString &tag, const char *name)
{
    const QRegularExpression pattern("\\s" + QString::fromLatin1(name) + "\\s*=\\s*\"([^\"]*)\"",
                                     QRegularExpression::CaseInsensitiveOption);
    return contents_text(pattern.match(tag).captured(1));
}

}

std::vector<help::contents_line> chm::contents_in(const QByteArray &sitemap)
{
    static const QRegularExpression tags("<(/?[a-zA-Z]+)([^<>]*)>");
    const QString text = QString::fromUtf8(sitemap);
    std::vector<help::contents_line> lines;
    help::contents_line line;
    int depth = -1;
    for (auto found = tags.globalMatch(text); found.hasNext() && lines.size() < most_contents_lines;) {
        const QRegularExpressionMatch tag = found.next();
        const QString name = tag.captured(1).toLower();
        if (name == u"ul") {
            depth = qMin(depth + 1, deepest_contents);
        } else if (name == u"/ul") {
            depth = qMax(depth - 1, -1);
        } else if (name == u"object") {
            line = {qMax(depth, 0), {}, {}};
        } else if (name == u"param") {
            const QString kind = attribute_of(tag.captured(2), "name").toLower();
            if (kind == u"name")
                line.title = attribute_of(tag.captured(2), "value");
            else if (kind == u"local")
                line.page = attribute_of(tag.captured(2), "value");
        } else if (name == u"/object" && !line.title.isEmpty()) {
            lines.push_back(line);
        }
    }
    return lines;
}
