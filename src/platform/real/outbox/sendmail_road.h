// Out by this machine's own mail system: a program that is fed one mail. No shell stands in between.
#pragma once
#include "platform/real/outbox/road.h"

namespace outbox {

// In the search path, else where mail systems put it; "" when there is none.
QString sendmail_program();

class sendmail_road : public road {
public:
    sendmail_road(QString path, const net::patience &how_long) : program(std::move(path)), patience(how_long) {}
    // The last moment is before the program begins: from then on it goes on by itself, whatever becomes of us.
    smtp::outcome send(const smtp::parcel &what, const std::function<void()> &last_moment,
                       const smtp::parcel *next) override;

private:
    QString program;
    const net::patience &patience;
};

}
