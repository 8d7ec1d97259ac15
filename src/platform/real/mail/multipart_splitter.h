// The parts between the boundaries of a multipart, one after another, as views into its bytes.
#pragma once
#include <QByteArray>
#include <QByteArrayView>
#include <optional>

namespace mime {

class multipart_splitter {
public:
    // text is what stands behind the multipart's header.
    multipart_splitter(QByteArrayView text, const QByteArray &boundary);

    // The next part, without the line end that belongs to the boundary behind it. The closing boundary may be missing.
    std::optional<QByteArrayView> next();

private:
    struct boundary_line {
        qsizetype at = 0;     // of its first "-"
        qsizetype behind = 0; // of the following line
        bool closing = false;
    };
    std::optional<boundary_line> line_from(qsizetype from) const;

    QByteArrayView bytes;
    QByteArray mark;
    std::optional<boundary_line> opened;
};

}
