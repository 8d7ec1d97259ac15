// One real server of each protocol, for tests of what all three have in common.
#pragma once
#include "platform/real/net/stream.h"
#include "support/dovecot.h"
#include "support/smtp_sink.h"
#include <map>
#include <memory>

// Answers for ann with "apple tree" and "token-of-ann". Servers start at their first use and are shared by the rows of
// a test.
class mail_servers {
public:
    explicit mail_servers(const certificates &made) : made(made) {}

    // Where a server of that protocol, encryption and certificate is; already with ann's name and password, and with
    // our authority to trust.
    net::place place_of(net::protocol speaks, mail::security secured, const certificate_files &shown);
    // What the server keeps of who tried to log in.
    QString seen(net::protocol speaks, mail::security secured, const certificate_files &shown);

private:
    dovecot_server &dovecot(const certificate_files &shown);
    smtp_sink &sink(mail::security secured, const certificate_files &shown);

    const certificates &made;
    std::map<QString, std::unique_ptr<dovecot_server>> dovecots;
    std::map<QString, std::unique_ptr<smtp_sink>> sinks;
};

// A place on 127.0.0.1 with ann's name and password.
net::place place_at(net::protocol speaks, mail::security secured, quint16 port);
net::patience short_patience(int connect_ms = 5000, int answer_ms = 2000);

// What failed, or 0 and "" when it connected.
struct connecting {
    quint32 number = 0;
    QString description;
    std::unique_ptr<net::stream> stream;

    connecting(const net::place &where, const net::patience &patience = short_patience());
    bool failed_as(net::trouble kind) const { return number == quint32(kind); }
};

const QList<net::protocol> &all_protocols();
const char *name_of(net::protocol speaks);
const char *name_of(mail::security secured);
