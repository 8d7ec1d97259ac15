// One test of the mail client's settings, in a thread of its own, heard in this one. Gone, it is cancelled and over.
// What is tested: platform/mail_client_check.h.
#pragma once
#include "platform/mail_client_check.h"
#include <QObject>
#include <atomic>
#include <thread>

class check_thread : public QObject {
    Q_OBJECT
public:
    using routine = std::function<mail::check_outcome(const mail::check_request &, const net::patience &,
                                                      const std::function<void(const mail::check_line &)> &)>;

    check_thread(const routine &check, const mail::check_request &request, QObject *parent);
    ~check_thread() override;
    void cancel() { cancelled = true; }

signals:
    void told(const mail::check_line &line);
    void ended(const mail::check_outcome &outcome);

private:
    std::atomic<bool> cancelled = false;
    std::thread worker; // last: it uses what stands above
};
