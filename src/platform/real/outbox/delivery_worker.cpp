#include "platform/real/outbox/delivery_worker.h"
#include "platform/clock.h"
#include "platform/real/outbox/retry_plan.h"
#include <QDateTime>

namespace outbox {

namespace {

constexpr qint64 grace_ms = 5000; // for the server's word on a mail that has gone
constexpr int longest_wait = 60;  // a clock may be set

qint64 earlier_of(qint64 one, qint64 other)
{
    return one == 0 || other == 0 ? qMax(one, other) : qMin(one, other);
}

}

delivery_worker::delivery_worker(std::shared_ptr<outbox_shelf> mails, std::function<void()> tell)
    : shelf(std::move(mails)), told(std::move(tell)), thread([this] { run(); })
{
}

delivery_worker::~delivery_worker()
{
    since_ending.start();
    {
        const std::lock_guard lock(guard);
        ending = true;
    }
    woken.notify_one();
    thread.join();
}

void delivery_worker::take(const sending_order &new_order)
{
    const std::lock_guard lock(guard);
    order = new_order;
    ++newest;
    something_came = true;
    failures = 0;
    failure.clear();
    next_look = 0;
    woken.notify_one();
}

void delivery_worker::look()
{
    const std::lock_guard lock(guard);
    something_came = true;
    woken.notify_one();
}

delivery::report delivery_worker::present()
{
    delivery_facts facts;
    facts.left = shelf->count();
    const std::lock_guard lock(guard);
    facts.busy = busy;
    facts.keeps_all = order && keeps_all(order->settings);
    facts.failure = failure;
    facts.of_disk = disk_fails;
    facts.limited = limited;
    if (!failure.isEmpty()) // in the form of the other times that are shown
        facts.next_try = wall_clock(next_look).toString(QStringLiteral("h:mm:ss AP"));
    return {facts.left, sent, busy, delivery_line(facts), trouble_words(facts)};
}

bool delivery_worker::is_time() const
{
    if (!order || keeps_all(order->settings))
        return false;
    return (something_came && failures == 0) || (next_look > 0 && next_look <= seconds_now());
}

int delivery_worker::seconds_to_wait() const
{
    const qint64 left = next_look == 0 ? longest_wait : next_look - seconds_now();
    return int(qBound(qint64(1), left, qint64(longest_wait)));
}

bool delivery_worker::is_given_up() const
{
    return ending && (!at_its_end || since_ending.hasExpired(grace_ms));
}

void delivery_worker::run()
{
    std::unique_lock lock(guard);
    while (!ending) {
        if (!is_time()) {
            woken.wait_for(lock, std::chrono::seconds(seconds_to_wait()));
            continue;
        }
        something_came = false;
        busy = true;
        const sending_order once = *order;
        const int number = newest;
        lock.unlock();
        told();
        go_once(once, number);
        lock.lock();
        busy = false;
        lock.unlock();
        told();
        lock.lock();
    }
    lock.unlock();
    shelf->delivery_ends();
}

void delivery_worker::go_once(const sending_order &once, int number)
{
    round_result result;
    net::patience patience;
    patience.give_up = [this] { return is_given_up(); };
    round_listener listener;
    listener.shall_end = [this, number] { return ending || newest != number; };
    listener.at_its_end = [this](bool is_there) { at_its_end = is_there; };
    listener.sent = [this] {
        {
            const std::lock_guard lock(guard);
            ++sent;
        }
        told();
    };
    try {
        if (to_settle)
            shelf->delivery_begins();
        result = delivery_round(*shelf, once, patience, listener).run();
    } catch (const run_time_error &error) { // the Outbox cannot be put right: the disk
        result.failure = error;
    }
    note_result(result, number);
}

void delivery_worker::note_result(const round_result &result, int number)
{
    const std::lock_guard lock(guard);
    to_settle = result.failure.has_value(); // its journal may be left
    limited = result.limited_until > 0;
    if (number != newest) // what holds the old order up says nothing about the new one
        return;
    if (!result.failure) {
        failures = 0;
        failure.clear();
        next_look = earlier_of(result.limited_until, shelf->next_moment());
        return;
    }
    if (result.sent > 0)
        failures = 0;
    failure = result.failure->description;
    disk_fails = !net::is_network_failure(*result.failure);
    next_look = seconds_now() + seconds_until_reconnecting(++failures);
}

}
