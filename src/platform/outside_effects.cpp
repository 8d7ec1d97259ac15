#include "platform/outside_effects.h"

#include <map>

namespace {

struct commit_registry {
    std::map<int, std::function<void()>> commits;
    int next = 1;
    quint64 times_lost = 0;
    int held = 0;
};

commit_registry &registered_commits()
{
    static commit_registry registry;
    return registry;
}

}

void before_outside_effect()
{
    if (commits_are_held())
        return;
    const auto commits = registered_commits().commits; // a commit may end a registration
    for (const auto &[registration, commit] : commits)
        commit();
}

int on_outside_effect(std::function<void()> commit)
{
    auto &registry = registered_commits();
    registry.commits[registry.next] = std::move(commit);
    return registry.next++;
}

void forget_outside_effect(int registration)
{
    registered_commits().commits.erase(registration);
}

held_commits::held_commits()
{
    ++registered_commits().held;
}

held_commits::~held_commits()
{
    --registered_commits().held;
}

bool commits_are_held()
{
    return registered_commits().held > 0;
}

void writes_were_lost()
{
    ++registered_commits().times_lost;
}

quint64 times_writes_were_lost()
{
    return registered_commits().times_lost;
}
