#include "frame/status.h"

namespace {

struct status_sinks {
    std::function<void(const QString &)> line;
    std::function<void(const QString &, qint64, qint64)> progress;
    std::function<void()> mails_changed;
} sinks;

}

void status_line(const QString &text)
{
    if (sinks.line)
        sinks.line(text);
}

void set_status_sink(std::function<void(const QString &)> sink)
{
    sinks.line = std::move(sink);
}

void report_progress(const QString &what, qint64 done, qint64 total)
{
    if (sinks.progress)
        sinks.progress(what, done, total);
}

void set_progress_sink(std::function<void(const QString &, qint64, qint64)> sink)
{
    sinks.progress = std::move(sink);
}

void mails_changed()
{
    if (sinks.mails_changed)
        sinks.mails_changed();
}

void set_mails_changed_sink(std::function<void()> sink)
{
    sinks.mails_changed = std::move(sink);
}
