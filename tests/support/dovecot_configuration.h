// The settings of a test's Dovecot.
#pragma once
#include "support/dovecot.h"

struct dovecot_place {
    QString folder, host;
    server_user user;
    quint16 imap = 0, imaps = 0, pop3 = 0, pop3s = 0;
};

QString dovecot_configuration(const dovecot_options &options, const dovecot_place &place);
