#include "frame/status.h"

namespace {

struct status_sinks {
    std::function<void(const QString &)> line;
    std::function<void(const QString &, qint64, qint64)> progress;
    std::function<void()> mails_changed;
    quint64 mail_changes = 0;
    int fetch_scopes = 0;
    bool shows_fetch_line = false;
} sinks;

}

void status_line(const QString &text)
{
    sinks.shows_fetch_line = sinks.fetch_scopes > 0;
    if (sinks.line)
        sinks.line(text);
}

fetch_lines_scope::fetch_lines_scope()
{
    ++sinks.fetch_scopes;
}

fetch_lines_scope::~fetch_lines_scope()
{
    --sinks.fetch_scopes;
}

void take_away_fetch_line()
{
    if (sinks.shows_fetch_line)
        status_line({});
}

void set_status_sink(std::function<void(const QString &)> sink)
{
    sinks.line = std::move(sink);
    sinks.shows_fetch_line = false;
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
    ++sinks.mail_changes;
    if (sinks.mails_changed)
        sinks.mails_changed();
}

quint64 mail_changes()
{
    return sinks.mail_changes;
}

void set_mails_changed_sink(std::function<void()> sink)
{
    sinks.mails_changed = std::move(sink);
}
