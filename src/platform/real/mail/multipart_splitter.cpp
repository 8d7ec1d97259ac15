#include "platform/real/mail/multipart_splitter.h"

namespace mime {

multipart_splitter::multipart_splitter(QByteArrayView text, const QByteArray &boundary)
    : bytes(text), mark("--" + boundary)
{
    if (!boundary.isEmpty())
        opened = line_from(0);
}

// A line that only begins like the boundary is none: an inner boundary may be an outer one with a letter more.
std::optional<multipart_splitter::boundary_line> multipart_splitter::line_from(qsizetype from) const
{
    for (qsizetype at = bytes.indexOf(mark, from); at >= 0; at = bytes.indexOf(mark, at + 1)) {
        if (at > 0 && bytes[at - 1] != '\n')
            continue;
        boundary_line line{at, at + mark.size(), false};
        line.closing = bytes.sliced(line.behind).startsWith("--");
        if (line.closing)
            line.behind += 2;
        while (line.behind < bytes.size() &&
               (bytes[line.behind] == ' ' || bytes[line.behind] == '\t' || bytes[line.behind] == '\r'))
            ++line.behind;
        if (line.behind < bytes.size() && bytes[line.behind] != '\n')
            continue;
        line.behind = qMin(line.behind + 1, bytes.size());
        return line;
    }
    return std::nullopt;
}

std::optional<QByteArrayView> multipart_splitter::next()
{
    if (!opened || opened->closing)
        return std::nullopt;
    const qsizetype from = opened->behind;
    opened = from < bytes.size() ? line_from(from) : std::nullopt;
    qsizetype end = opened ? opened->at : bytes.size();
    if (opened && end > from)
        end -= end - from > 1 && bytes[end - 2] == '\r' ? 2 : 1;
    return bytes.sliced(from, end - from);
}

}
