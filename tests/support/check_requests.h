// What the tests of mail settings ask to be checked, as user ann with the password "apple tree", and how they read what
// was heard.
#pragma once
#include "support/certificates.h"
#include "support/dovecot.h"
#include "support/heard_steps.h"
#include "support/smtp_sink.h"
#include <QTest>

using mail::check_state;
using mail::client_kind;
using mail::security;

Q_DECLARE_METATYPE(mail::client_kind)
Q_DECLARE_METATYPE(mail::security)

inline const certificates &made()
{
    static const certificates all;
    return all;
}

inline mail::check_request ann_at(client_kind kind, security secured, const dovecot_server &server)
{
    mail::check_request request;
    request.settings.configured = true;
    request.settings.kind = kind;
    const bool tls = secured == security::tls;
    const bool imap = kind == client_kind::imap;
    const int port = imap ? (tls ? server.imaps_port : server.imap_port) : (tls ? server.pop3s_port : server.pop3_port);
    request.settings.incoming = {server.host(), port, secured, "ann"};
    request.settings.authority_file = made().authority();
    request.password = "apple tree";
    return request;
}

inline mail::check_request imap_at(const QString &host, int port, security secured)
{
    mail::check_request request;
    request.settings.kind = client_kind::imap;
    request.settings.incoming = {host, port, secured, "ann"};
    request.settings.authority_file = made().authority();
    request.password = "apple tree";
    return request;
}

// An mbox file that is not there comes first, and is no server to wait for.
inline mail::check_request sending_at(const smtp_sink &sink, security secured)
{
    mail::check_request request;
    request.settings.kind = client_kind::mbox;
    request.settings.sending = mail::send_by::smtp;
    request.settings.smtp = {"127.0.0.1", sink.port(), secured, "ann"};
    request.settings.from = "shop@example.org";
    request.settings.authority_file = made().authority();
    request.smtp_password = "apple tree";
    return request;
}

inline smtp_options with_login()
{
    smtp_options options;
    options.user = "ann";
    options.password = "apple tree";
    return options;
}

// The step ended in this state, and each of the words stands in it.
#define SAYS(heard, step, wanted, ...)                                                                                 \
    do {                                                                                                               \
        for (const QString &one : QStringList{__VA_ARGS__})                                                            \
            QVERIFY2(heard.words(step).contains(one), qPrintable(heard.text()));                                       \
        QVERIFY2(heard.state(step) == wanted, qPrintable(heard.text()));                                               \
    } while (false)
