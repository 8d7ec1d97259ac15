// A server as a process of its own, which ends with the test however that ends.
#pragma once
#include <QString>
#include <QStringList>
#include <csignal>
#include <sys/types.h>

// The user as whom a server runs: nobody where the test is root, as servers refuse to read mail for root.
struct server_user {
    uid_t uid;
    gid_t gid;
    QString name, group;
    static server_user ours();
    void give(const QString &path) const; // makes the file or folder the server's own
};

// Belongs to the thread that made it: when that ends, the system ends the server.
class server_process {
public:
    server_process() = default;
    ~server_process() { end(SIGKILL); }
    server_process(const server_process &) = delete;
    server_process &operator=(const server_process &) = delete;

    // What it says goes to the file. Ends the test when the program is not there.
    void start(const QStringList &command, const QString &says, const server_user &user);
    bool ends_within(int milliseconds) const; // waits for its end
    bool running() const { return process > 0 && !ends_within(0); }
    void end(int signal); // sends it, waits, and takes whatever the process left behind with it
    pid_t pid() const { return process; }

private:
    pid_t process = 0;
    int ended = -1; // becomes readable when it has ended
};
