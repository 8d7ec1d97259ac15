#include "platform/real/net/connect_failure.h"
#include <QRegularExpression>
#include <curl/curl.h>

namespace net {

namespace {

constexpr qsizetype longest_words = 300;

QString with_words(const QString &sentence, const QString &words)
{
    return words.isEmpty() ? sentence : sentence + QStringLiteral(" It said: ") + words;
}

run_time_error resolve_failure(const place &where)
{
    return failure(trouble::name_not_found,
                   QStringLiteral("There is no server called %1. Check the spelling, and that the network is up.")
                       .arg(name_of(where)));
}

run_time_error reach_failure(const place &where)
{
    const QString port = where.server.port == 0 ? QString() : QStringLiteral(" at port %1").arg(where.server.port);
    return failure(trouble::not_reached,
                   QStringLiteral("%1 cannot be reached%2: nobody answers there.").arg(name_of(where), port));
}

run_time_error silence_failure(const place &where, const QByteArrayList &lines)
{
    // Who speaks TLS from the first byte on waits for ours, as we wait for its greeting.
    const bool other_encryption = lines.isEmpty() && where.server.secured != mail::security::tls;
    return failure(trouble::timed_out,
                   name_of(where) + (other_encryption
                                         ? QStringLiteral(" does not answer. Does it expect another kind of encryption "
                                                          "at this port (TLS from the first byte)?")
                                         : QStringLiteral(" does not answer.")));
}

// "421 Too busy", "* BYE", "-ERR [SYS/TEMP] ...": it speaks the protocol, and it says no.
bool is_no(protocol speaks, const QByteArray &line)
{
    switch (speaks) {
    case protocol::imap:
        return line.startsWith("* BYE") || line.contains(" NO ") || line.contains(" BAD ");
    case protocol::pop3:
        return line.startsWith("-ERR");
    case protocol::smtp:
        break;
    }
    return line.startsWith('4') || line.startsWith('5');
}

// A no that has nothing to do with the password.
bool is_no_for_now(protocol speaks, const QByteArray &line)
{
    switch (speaks) {
    case protocol::imap:
        return line.startsWith("* BYE") || line.contains("[UNAVAILABLE]") || line.contains("[INUSE]") ||
               line.contains("[LIMIT]");
    case protocol::pop3:
        return line.startsWith("-ERR [SYS/TEMP]") || line.startsWith("-ERR [IN-USE]") ||
               line.startsWith("-ERR [LOGIN-DELAY]");
    case protocol::smtp:
        break;
    }
    return line.startsWith('4');
}

run_time_error login_failure(const place &where, const QByteArrayList &lines)
{
    if (!lines.isEmpty() && is_no_for_now(where.speaks, lines.last()))
        return failure(trouble::nobody_let_in,
                       with_words(QStringLiteral("%1 lets nobody in at the moment.").arg(name_of(where)),
                                  server_words(where.speaks, lines)));
    const QString sentence = where.token.isEmpty()
                                 ? QStringLiteral("%1 does not accept this user name and password.")
                                 : QStringLiteral("%1 does not accept the access token for this user name.");
    return failure(trouble::login_refused, with_words(sentence.arg(name_of(where)), server_words(where.speaks, lines)));
}

run_time_error protocol_failure(const place &where, const QByteArrayList &lines)
{
    const QString words = server_words(where.speaks, lines);
    if (!lines.isEmpty() && is_no(where.speaks, lines.last()))
        return failure(trouble::refused,
                       with_words(QStringLiteral("%1 refuses the connection.").arg(name_of(where)), words));
    return failure(
        trouble::not_understood,
        with_words(QStringLiteral("%1 does not answer like a mail server of this kind.").arg(name_of(where)), words));
}

run_time_error encryption_failure(const place &where, int code, const QString &detail)
{
    if (code == CURLE_USE_SSL_FAILED)
        return failure(trouble::no_encryption,
                       QStringLiteral("%1 does not offer to encrypt the connection (STARTTLS).").arg(name_of(where)));
    return failure(trouble::no_encryption,
                   QStringLiteral("No encrypted connection to %1 came about. Does it expect another kind of encryption "
                                  "at this port? (%2)")
                       .arg(name_of(where), detail));
}

}

run_time_error connect_failure(const place &where, int code, bool given_up, const QString &detail,
                               const QByteArrayList &lines)
{
    if (given_up)
        return failure(trouble::cancelled, QStringLiteral("Cancelled."));
    switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST:
        return resolve_failure(where);
    case CURLE_COULDNT_CONNECT:
        return reach_failure(where);
    case CURLE_OPERATION_TIMEDOUT:
        return silence_failure(where, lines);
    case CURLE_PEER_FAILED_VERIFICATION:
        return failure(trouble::certificate_refused, certificate_words(where, detail));
    case CURLE_SSL_CACERT_BADFILE:
        return failure(trouble::not_configured,
                       QStringLiteral("The file with the further certificate authority cannot be read: %1")
                           .arg(where.authority_file));
    case CURLE_LOGIN_DENIED:
        return login_failure(where, lines);
    case CURLE_USE_SSL_FAILED:
    case CURLE_SSL_CONNECT_ERROR:
        return encryption_failure(where, code, detail);
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
    case CURLE_GOT_NOTHING:
        return failure(trouble::closed, with_words(name_of(where) + QStringLiteral(" closed the connection."),
                                                   server_words(where.speaks, lines)));
    default:
        return protocol_failure(where, lines);
    }
}

QString certificate_words(const place &where, const QString &detail)
{
    const auto why = [&]() -> QString {
        if (detail.contains(u"expired"))
            return QStringLiteral("it has expired");
        if (detail.contains(u"not yet valid"))
            return QStringLiteral("it is not valid yet; is this computer's date right?");
        if (detail.contains(u"alternative certificate subject") || detail.contains(u"does not match"))
            return QStringLiteral("it was made out for another server name");
        if (detail.contains(u"local issuer") || detail.contains(u"in certificate chain"))
            return QStringLiteral("it is signed by an authority that this computer does not know");
        if (detail.contains(u"self-signed") || detail.contains(u"self signed"))
            return QStringLiteral("it is signed by itself, by no authority at all");
        return detail;
    };
    return QStringLiteral("The certificate of %1 is not accepted: %2. Nothing was sent.").arg(name_of(where), why());
}

QString server_words(protocol speaks, const QByteArrayList &lines)
{
    if (lines.isEmpty())
        return {};
    static const QRegularExpression imap(QStringLiteral("^(\\*|[A-Za-z0-9]+) (OK|NO|BAD|BYE) *(\\[[^\\]]*\\])? *"));
    static const QRegularExpression pop3(QStringLiteral("^(\\+OK|-ERR) *(\\[[^\\]]*\\])? *"));
    static const QRegularExpression smtp(QStringLiteral("^[0-9]{3}[ -]"));
    QString words = QString::fromUtf8(lines.last());
    words.remove(speaks == protocol::imap ? imap : speaks == protocol::pop3 ? pop3 : smtp);
    for (QChar &letter : words)
        if (letter.category() == QChar::Other_Control)
            letter = u' ';
    return words.trimmed().left(longest_words);
}

}
