// Out by a server: one connection, opened for the first mail and again after it broke.
#pragma once
#include "platform/real/outbox/road.h"

namespace outbox {

class smtp_road : public road {
public:
    smtp_road(const sending_order &order, const net::patience &how_long) : orders(order), patience(how_long) {}
    smtp::outcome send(const smtp::parcel &what, const std::function<void()> &last_moment,
                       const smtp::parcel *next) override;
    void close() override;

private:
    smtp::outcome send_once(const smtp::parcel &what, const std::function<void()> &last_moment,
                            const smtp::parcel *next);
    bool has_another_token(); // once
    void connect();

    sending_order orders;
    const net::patience &patience;
    std::unique_ptr<smtp::session> session;
    QString token; // that the session was opened with
    bool token_was_renewed = false;
};

// Where the settings say that mail goes out: what the sending server leaves open is as for the mailbox.
net::place sending_place(const sending_order &order, const net::patience &patience);

}
