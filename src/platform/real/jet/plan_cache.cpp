#include "platform/real/jet/plan_cache.h"
#include <algorithm>

namespace jet {

std::shared_ptr<plan> plan_cache::find(const QString &shape)
{
    const auto found = entries.find(shape);
    if (found == entries.end())
        return {};
    found->used = ++uses;
    return found->held;
}

void plan_cache::keep(const QString &shape, const std::shared_ptr<plan> &made)
{
    if (entries.size() >= most_shapes) {
        const auto oldest = std::min_element(entries.begin(), entries.end(),
                                             [](const entry &a, const entry &b) { return a.used < b.used; });
        oldest->held->release_statements();
        entries.erase(oldest);
    }
    QString key(shape.constData(), shape.size()); // a copy of its own: the shape's memory is used again
    entries.insert(std::move(key), {made, ++uses});
}

void plan_cache::clear()
{
    for (entry &each : entries)
        each.held->release_statements();
    entries.clear();
}

}
