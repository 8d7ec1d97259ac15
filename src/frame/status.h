// One line for the user that is no box: in the console's status bar, where it stays until the next one and an empty
// text takes it away, or on the driver's stderr. And the progress of long work.
#pragma once
#include <QString>
#include <functional>

void status_line(const QString &text);
void set_status_sink(std::function<void(const QString &)> sink);

// As long as it lives every line is one that a fetch tells. The next fetch by itself takes away such a line, and no
// line that something else told.
class fetch_lines_scope {
public:
    fetch_lines_scope();
    ~fetch_lines_scope();
    fetch_lines_scope(const fetch_lines_scope &) = delete;
    fetch_lines_scope &operator=(const fetch_lines_scope &) = delete;
};
void take_away_fetch_line();

// Long work tells how far it is; the wait screens show it. total 0: not known.
void report_progress(const QString &what, qint64 done, qint64 total);
void set_progress_sink(std::function<void(const QString &, qint64, qint64)> sink);

// The stored mails are not what they were (fetched, mapped, deleted): whoever shows their number counts anew. To be
// told once a change, not once a mail.
void mails_changed();
quint64 mail_changes(); // how often that was told: whoever keeps the number sees later that its list is old
void set_mails_changed_sink(std::function<void()> sink);
