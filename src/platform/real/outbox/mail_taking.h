// The mails of a round, taken from the shelf in their order and made ready to go: announced in the journal, claimed,
// and read. One that cannot go at all is kept with the reason, and passed over.
#pragma once
#include "platform/real/outbox/mailing_rate.h"
#include "platform/real/outbox/outbox_shelf.h"
#include "platform/real/outbox/road.h"
#include <QElapsedTimer>
#include <functional>

namespace outbox {

struct ready_mail {
    record mail;
    smtp::parcel parcel;
};

class mail_taking {
public:
    mail_taking(outbox_shelf &mails, const mail::client_settings &settings, mailing_rate &rate,
                sending_journal &journal, const std::function<bool()> &shall_end);

    // Nothing when none is due, or the round is to end. So many mailings are ready that the hour's limit has not
    // counted yet.
    std::optional<ready_mail> next(qsizetype ready_mailings);

private:
    void announce_some();
    std::optional<ready_mail> made_ready(record mail);
    void keep_unread(record mail, const file_content &eml);

    outbox_shelf &shelf;
    const mail::client_settings &settings;
    mailing_rate &rate;
    sending_journal &journal;
    const std::function<bool()> &shall_end;
    qsizetype announced_at_once = 0;
    QElapsedTimer since_announced;
};

}
