#include "screens/frame/outbox_deed.h"
#include "frame/error_log.h"
#include "frame/session.h"

#include <QElapsedTimer>
#include <QTimer>

namespace {

constexpr int slice_ms = 100;
constexpr qsizetype most_at_once = 20;

}

outbox_deed::outbox_deed(QObject *parent) : QObject(parent), Timer2(new QTimer(this))
{
    Timer2->setObjectName("Timer2");
    Timer2->setSingleShot(true);
    Timer2->setInterval(0);
    connect(Timer2, &QTimer::timeout, this, &outbox_deed::go_on);
}

void outbox_deed::begin(const char *its_routine, qsizetype (*deed)(const QStringList &ids), const QStringList &of_mails)
{
    routine = its_routine;
    what = deed;
    ids = of_mails;
    alone = 0;
    why.clear();
    under_way = true;
    go_on();
}

void outbox_deed::go_on()
{
    do_some(false);
    if (!under_way)
        return emit ended();
    Timer2->start();
    emit slice_done();
}

void outbox_deed::finish()
{
    if (!under_way)
        return;
    Timer2->stop();
    do_some(true);
    emit ended();
}

void outbox_deed::do_some(bool all)
{
    const bool went = guarded("outbox_frm.frm", routine, [&] {
        QElapsedTimer since;
        since.start();
        while (!ids.isEmpty() && (all || !since.hasExpired(slice_ms))) {
            const QStringList some = ids.mid(0, most_at_once);
            alone += what(some);
            ids.remove(0, some.size());
        }
    });
    if (!went)
        why = session.err_description;
    under_way = went && !ids.isEmpty();
}
