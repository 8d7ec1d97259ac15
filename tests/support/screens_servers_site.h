// A site whose mailbox and sending server are real ones, for which the page "Mail Client" is filled in by hand.
#pragma once
#include "support/dovecot.h"
#include "support/screens_site.h"
#include "support/smtp_sink.h"

struct servers_site : screens_site {
    servers_site();
    ~servers_site();

    // Opens the page and types all it needs; OK is still to be pressed. port 0: the server's own, by STARTTLS; another
    // one is a proxy's.
    void type_settings(const QString &password = QStringLiteral("apple tree"), const char *kind = "imap_o",
                       quint16 port = 0) const;
    void put_order(int number, const QString &text = QStringLiteral("Name: Ann\n"));

    certificates made;
    dovecot_server mailbox;
    smtp_sink sink;
};
