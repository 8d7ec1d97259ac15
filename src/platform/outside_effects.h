// What was written to the store must be safe on disk before anything outside the process can see its consequence:
// a mail moved or sent, a file written, a box shown. Whatever causes such an effect calls before_outside_effect()
// first; every open store registers a commit here.
#pragma once
#include <QtGlobal>
#include <functional>

void before_outside_effect();                        // commits every open store; throws run_time_error when one cannot
int on_outside_effect(std::function<void()> commit); // the registration's number
void forget_outside_effect(int registration);

// Written and handed over as one: while it lives nothing is committed, neither before an effect nor by the clock nor by
// an event loop that waits. What is written meanwhile is committed behind the effect, so a kill before it leaves
// neither. Whoever holds commits back calls before_outside_effect() as soon as it is gone. Only for what may happen
// twice, but must not be lost.
class held_commits {
public:
    held_commits();
    ~held_commits();
    held_commits(const held_commits &) = delete;
    held_commits &operator=(const held_commits &) = delete;
};
bool commits_are_held();

// A store that had to give up what it was given since its last commit says so. Whoever holds an effect back until the
// commit (a mail waiting to be moved) compares the count with the one it began with, and drops the effect when it grew.
void writes_were_lost();
quint64 times_writes_were_lost();
