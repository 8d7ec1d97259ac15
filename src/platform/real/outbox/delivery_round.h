// One go at what waits in the Outbox: mail after mail over one connection, until nothing is due, the way is closed, or
// the round is to end. What becomes of each recipient is kept before the next mail begins.
#pragma once
#include "platform/real/outbox/file_clearing.h"
#include "platform/real/outbox/mail_taking.h"
#include <functional>

namespace outbox {

struct round_result {
    int sent = 0;
    std::optional<run_time_error> failure; // what closed the way
    qint64 limited_until = 0;              // mailings are left for which the hour's limit leaves no room before
};

// What the round asks and tells, on its own thread.
struct round_listener {
    std::function<bool()> shall_end = [] { return false; };
    std::function<void()> sent = [] {};                 // one more
    std::function<void(bool)> at_its_end = [](bool) {}; // a mail is where it cannot be taken back; no more
};

class delivery_round {
public:
    delivery_round(outbox_shelf &from, const sending_order &order, const net::patience &patience,
                   round_listener listener);
    round_result run(); // between the shelf's delivery_begins and delivery_ends

private:
    // Whether the round goes on.
    bool send_next();
    bool send_one(const ready_mail &present);
    bool keep_broken_off(const record &before, record mail, const QString &why);
    bool note_gone(const QString &id);
    bool keep(const record &mail);
    smtp::outcome hand_out(const ready_mail &present);
    void put_back_ready();

    outbox_shelf &shelf;
    sending_order orders;
    std::unique_ptr<road> way;
    round_listener told;
    mailing_rate rate;
    sending_journal journal;
    mail_taking mails;
    round_result result;
    QString broke_the_line;          // the mail that is tried once more
    std::optional<record> in_hand;   // nothing is known of its fate yet
    std::optional<ready_mail> ready; // behind it
    file_clearing clearing;
};

}
