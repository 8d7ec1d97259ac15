// A piece of work that is killed on its way: the test's own program does it in a process of its own, under the shim,
// and the test looks at what is left in the folder. The program's main says first what it can be started for:
//   int main(int argc, char **argv)
//   {
//       do_killed_work(argc, argv, {{"restore", restore_in}});
//       ... the tests ...
#pragma once
#include <QList>
#include <QString>
#include <functional>

struct killed_work {
    QString name;
    void (*work)(const QString &folder);
};

// Returns unless this process was started for one of the works.
void do_killed_work(int &argc, char **argv, const QList<killed_work> &works);

struct killed_run {
    bool was_killed = false;
    int status = -1;
    int calls = 0; // of the counted kind, so far
    QString errors;
};

// calls: "writes" or "renames" (the shim's words); kill_at: the number from 1 before which it is killed, 0 for never.
// every_statement: time flies, so that each statement is committed before the next one.
killed_run run_killed_work(const QString &name, const QString &folder, const QString &calls, int kill_at,
                           bool every_statement = false);

// Before each of the calls, but no more than most of them, in a folder that make prepares: the work is killed, and
// look says what is wrong with what it left, or "". Gives the first thing that is wrong, with the point; fewer calls
// than least are wrong, too.
struct kill_trial {
    QString work, calls;
    int least = 1, most = 40;
    bool every_statement = false;
    std::function<void(const QString &folder)> make = {};
    std::function<QString(const QString &folder)> look = {};
};
QString what_a_kill_does(const kill_trial &trial);
