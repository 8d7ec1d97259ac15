// The face of the delivery: the process's one worker, and delivering without one. The work: delivery_round.h.
#include "platform/mail_delivery.h"
#include "platform/passwords.h"
#include "platform/real/outbox/delivery_worker.h"
#include "platform/real/outbox/outbox_state.h"
#include <QCoreApplication>

namespace delivery {

namespace {

struct delivery_state {
    std::unique_ptr<QObject> here; // lives on the thread that called start
    std::unique_ptr<outbox::delivery_worker> worker;
    listener heard;
    std::atomic<bool> told = false;
    bool order_is_due = false; // settings changed, and nothing waited that would need them
} state;

outbox::sending_order present_order()
{
    outbox::sending_order order;
    order.settings = mail::read_client_settings();
    if (order.settings.sending == mail::send_by::smtp && order.settings.smtp_logs_in)
        order.password = passwords::read(passwords::of::sending);
    return order;
}

// The keyring is not asked before there is something to send.
void give_order()
{
    state.order_is_due = outbox::count().waiting == 0;
    if (!state.order_is_due)
        state.worker->take(present_order());
}

void something_changed()
{
    if (state.order_is_due)
        give_order();
    else
        state.worker->look();
}

void tell()
{
    state.told = false;
    if (state.worker && state.heard)
        state.heard(state.worker->present());
}

// From any thread; what comes before it was told is told with it.
void post_telling()
{
    if (!state.told.exchange(true))
        QMetaObject::invokeMethod(state.here.get(), tell, Qt::QueuedConnection);
}

// As long as it lives, this thread delivers.
struct delivering {
    explicit delivering(outbox::outbox_shelf &mails) : shelf(mails) { shelf.delivery_begins(); }
    ~delivering() { shelf.delivery_ends(); }
    delivering(const delivering &) = delete;
    delivering &operator=(const delivering &) = delete;
    outbox::outbox_shelf &shelf;
};

outbox::round_result deliver_once(outbox::outbox_shelf &shelf, const outbox::sending_order &order,
                                  const net::patience &patience)
{
    const delivering now(shelf);
    shelf.make_all_due();
    outbox::round_listener listener;
    if (patience.give_up)
        listener.shall_end = patience.give_up;
    return outbox::delivery_round(shelf, order, patience, listener).run();
}

}

void start(listener heard)
{
    stop();
    const auto shelf = outbox::state_in_use().shelf;
    state.here = std::make_unique<QObject>();
    state.heard = std::move(heard);
    state.worker = std::make_unique<outbox::delivery_worker>(shelf, post_telling);
    outbox::state_in_use().changed = [] {
        something_changed();
        post_telling();
    };
    wake();
}

void wake()
{
    if (!state.worker)
        return;
    give_order();
    post_telling();
}

void send_now()
{
    if (!state.worker)
        return;
    outbox::state_in_use().shelf->make_all_due();
    wake();
}

void stop()
{
    outbox::state_in_use().changed = nullptr;
    state.worker.reset();
    state.here.reset(); // with what was still to be told
    state.heard = nullptr;
    state.told = false;
}

report present()
{
    if (state.worker)
        return state.worker->present();
    outbox::delivery_facts facts;
    facts.left = outbox::count();
    facts.keeps_all = outbox::keeps_all(mail::read_client_settings());
    return {facts.left, 0, false, outbox::delivery_line(facts), outbox::trouble_words(facts)};
}

report deliver_all(const net::patience &patience)
{
    if (state.worker)
        throw run_time_error{5, QStringLiteral("Invalid procedure call or argument")}; // two would send twice
    outbox::outbox_shelf &shelf = *outbox::state_in_use().shelf;
    outbox::delivery_facts facts;
    report done;
    if (shelf.count().waiting > 0) {
        const outbox::sending_order order = present_order();
        facts.keeps_all = outbox::keeps_all(order.settings);
        if (!facts.keeps_all) {
            const outbox::round_result result = deliver_once(shelf, order, patience);
            if (result.failure)
                throw *result.failure;
            done.sent = result.sent;
            facts.limited = result.limited_until > 0;
        }
    }
    facts.left = done.left = shelf.count();
    done.line = outbox::delivery_line(facts);
    return done;
}

}
