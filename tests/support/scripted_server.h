// A server that says exactly what a test wrote down, for servers that lie. One script a connection, in a thread.
#pragma once
#include <QByteArray>
#include <QList>
#include <QString>
#include <mutex>
#include <thread>

// "%t" in what is said or expected is the first word of the client's last line: IMAP's tag.
struct script_step {
    enum kind_of { say, expect, hang_up, reset, wait_for_end, say_for_ever, answer_all };
    kind_of kind;
    QByteArray bytes = {};
};
using script = QList<script_step>;

namespace scripted {
inline script_step say(const QByteArray &bytes)
{
    return {script_step::say, bytes};
} // as it stands, no CRLF added
inline script_step expect(const QByteArray &prefix)
{
    return {script_step::expect, prefix};
} // of the client's next line
inline script_step hang_up()
{
    return {script_step::hang_up};
} // also what happens behind the last step
inline script_step reset()
{
    return {script_step::reset};
}
inline script_step wait_for_end()
{
    return {script_step::wait_for_end};
} // silent until the client goes
inline script_step say_for_ever(const QByteArray &bytes)
{
    return {script_step::say_for_ever, bytes};
} // again and again, until the client goes
inline script_step answer_all(const QByteArray &bytes)
{
    return {script_step::answer_all, bytes};
} // to each line, until the client goes
}

class scripted_server {
public:
    explicit scripted_server(const script &each) : scripted_server(QList<script>{each}) {}
    explicit scripted_server(const QList<script> &in_turn); // the last one for all further connections
    ~scripted_server();
    scripted_server(const scripted_server &) = delete;
    scripted_server &operator=(const scripted_server &) = delete;

    quint16 port = 0;
    int connections() const;
    QByteArray received() const;   // all lines, LF between them
    QByteArray unexpected() const; // the first line that was not the expected one, and what was; empty: all went well

private:
    void run();
    void play(const script &steps, int client);
    bool step(const script_step &each, int client);
    void serve_until_it_goes(const script_step &each, int client);
    void note(const QByteArray &line);
    bool read_line(int client, QByteArray &line);
    bool readable(int socket) const;

    const QList<script> scripts;
    int listener = -1, waker = -1;
    QByteArray waiting, tag;   // the thread's
    mutable std::mutex in_use; // for what follows
    int connected = 0;
    QByteArray lines, surprise;
    std::thread thread;
};
