// The thread that empties the Outbox. It is given what it needs by value and tells what happened; it knows neither the
// store nor the settings nor the keyring. What it does with the mails: delivery_round.h.
#pragma once
#include "platform/mail_delivery.h"
#include "platform/real/outbox/delivery_line.h"
#include "platform/real/outbox/delivery_round.h"
#include <QElapsedTimer>
#include <atomic>
#include <condition_variable>
#include <thread>

namespace outbox {

class delivery_worker {
public:
    // tell is called on the worker's thread.
    delivery_worker(std::shared_ptr<outbox_shelf> mails, std::function<void()> tell);
    ~delivery_worker(); // ends it: the mail in hand is through or given up, after some seconds at most
    delivery_worker(const delivery_worker &) = delete;
    delivery_worker &operator=(const delivery_worker &) = delete;

    void take(const sending_order &order); // and look at once, also when it was to be tried later
    void look();                           // something was handed over
    delivery::report present();

private:
    void run();
    void go_once(const sending_order &once, int number);
    void note_result(const round_result &result, int number);
    bool is_time() const; // to go once
    int seconds_to_wait() const;
    bool is_given_up() const; // of a mail in hand

    std::shared_ptr<outbox_shelf> shelf;
    std::function<void()> told;
    std::atomic<bool> ending = false, at_its_end = false;
    std::atomic<int> newest = 0; // number of the order; a round by an older one ends behind the mail in hand
    QElapsedTimer since_ending;  // set before ending is

    mutable std::mutex guard; // of all below
    std::condition_variable woken;
    std::optional<sending_order> order;
    bool something_came = false, busy = false, to_settle = true, limited = false;
    int sent = 0, failures = 0;
    QString failure;
    bool disk_fails = false; // is the failure
    qint64 next_look = 0;    // a moment, seconds since 1970; 0: none
    std::thread thread;      // last: it uses all the others
};

}
