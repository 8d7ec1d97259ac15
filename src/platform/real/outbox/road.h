// A way out for mails. What becomes of each recipient is told in the words of the smtp session, whichever way it is.
#pragma once
#include "platform/mail_settings.h"
#include "platform/network.h"
#include "platform/real/smtp/smtp_session.h"
#include <QByteArray>
#include <memory>

namespace outbox {

class road {
public:
    virtual ~road() = default;
    // As smtp::session::send; throws a net::failure where the way itself cannot be gone. next is of use to some ways.
    virtual smtp::outcome send(const smtp::parcel &what, const std::function<void()> &last_moment,
                               const smtp::parcel *next) = 0;
    virtual void close() {} // nothing more comes for now
};

// What delivering needs to know, taken by value on the thread that may ask for it.
struct sending_order {
    mail::client_settings settings;
    QString password; // of the sending server
};

bool keeps_all(const mail::client_settings &settings); // nothing goes out
// patience must outlive the road, and is asked whether to give up.
std::unique_ptr<road> road_of(const sending_order &order, const net::patience &patience);

}
