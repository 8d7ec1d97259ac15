// An imap_box whose line is recorded: what was said over it can be counted.
#pragma once
#include "support/imap_box.h"
#include "support/wire_proxy.h"
#include <QTest>

struct watched_imap_box : imap_box {
    explicit watched_imap_box(const dovecot_options &options = {})
        : imap_box(options), proxy(server.imap_port, {.record = true})
    {
        port = proxy.port;
    }
    qsizetype said(const QByteArray &command) const { return proxy.recorded(wire::to_server).count(command); }

    wire_proxy proxy;
};

inline outlook::wanted_mails no_mails()
{
    return {"none", [](const QString &, const QString &) { return false; }};
}

// Rows of a test: what the server hides of what it can do.
inline void rows_of_hidden_capabilities()
{
    QTest::addColumn<QStringList>("hidden");
    QTest::newRow("QRESYNC") << QStringList();
    QTest::newRow("no QRESYNC") << QStringList{"QRESYNC"};
    QTest::newRow("nothing of all that") << QStringList{"QRESYNC", "CONDSTORE", "ESEARCH", "ENABLE"};
}
