// One connection to the server that mail goes out by. Knows nothing of the Outbox: it is given bytes and recipients and
// says what became of each recipient. Whoever keeps the mails: real/outbox.
#pragma once
#include "platform/real/net/stream.h"
#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

namespace smtp {

enum class fate {
    sent,    // the server has taken it
    refused, // for good: 5xx, or the server cannot carry the mail (size, letters beyond ASCII in an address)
    later,   // 4xx, or the line broke at a point where the server cannot have taken it
    unknown  // the line broke between the final dot and the answer
};

struct recipient_fate {
    QString address;
    fate became = fate::later;
    QString words; // the server's, or why
};

struct outcome {
    std::vector<recipient_fate> recipients; // in the order asked for
    bool sender_refused = false;            // the server does not send as this address
    bool line_is_broken = false;            // the session is of no use any more
    QString why_broken;
};

struct parcel {
    QString from;
    QStringList to;
    QByteArray mail; // whole, with CR LF line ends, not stuffed
    bool operator==(const parcel &) const = default;
};

class dialogue;
class mail_transfer;

class session {
public:
    // Connected, logged in, and asked what the server can. Throws a net::failure.
    session(const net::place &where, const net::patience &patience);
    ~session();

    // last_moment is called at most once, when the server waits for the mail and its end (at most 16 KiB, so all of a
    // short one) is left to be sent: from its return on the outcome may be unknown. What it throws passes through; the
    // mail has then not gone, and the session is broken. Throws login_refused when the server takes no mail without
    // another login. Whatever else it says or does, the outcome tells it. For its word on a whole mail it waits four
    // times as long as for others, as many look into the mail first, and passes over patience.give_up for 3 s.
    //
    // next is what the following call will send: it is asked for in the same breath, where the server allows that.
    // Nothing of it goes before that call. Another call than that one finds the session broken.
    outcome send(const parcel &what, const std::function<void()> &last_moment, const parcel *next = nullptr);

    void quit(); // a polite end; waits a second at most

private:
    std::unique_ptr<dialogue> self;
    std::unique_ptr<mail_transfer> ahead; // the server was asked for it
};

}
