#include "screens/preferences/check_thread.h"

check_thread::check_thread(const routine &check, const mail::check_request &request, QObject *parent) : QObject(parent)
{
    worker = std::thread([this, check, request] {
        net::patience patience;
        patience.give_up = [this] { return cancelled.load(); };
        const mail::check_outcome outcome = check(request, patience, [this](const mail::check_line &line) {
            QMetaObject::invokeMethod(
                this, [this, line] { emit told(line); }, Qt::QueuedConnection);
        });
        QMetaObject::invokeMethod(
            this, [this, outcome] { emit ended(outcome); }, Qt::QueuedConnection);
    });
}

check_thread::~check_thread()
{
    cancel();
    worker.join();
}
