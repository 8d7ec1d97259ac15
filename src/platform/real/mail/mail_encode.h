// Text into what a mail may carry: header lines folded and encoded, bodies in 7bit, quoted-printable or base64.
#pragma once
#include <QByteArray>
#include <QString>

namespace mail {

// "Name: value" with its CR LF, folded; what is not plain ASCII as encoded words. value must be one line.
QByteArray encode_header(const QByteArray &name, const QString &value);

struct encoded_text {
    QByteArray encoding; // the Content-Transfer-Encoding
    QByteArray bytes;    // CR LF line ends; neither gains nor loses a last one
};

// Any line ends are taken; they become those of a mail.
encoded_text encode_text(const QString &text);

}
