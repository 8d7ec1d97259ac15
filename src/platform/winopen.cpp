#include "platform/winopen.h"
#include "platform/outside_effects.h"

namespace {

struct winopen_state {
    std::function<bool(const QString &)> opener;
} opening;

}

bool winopen(const QString &path)
{
    before_outside_effect();
    return opening.opener && opening.opener(path);
}

void set_winopen(std::function<bool(const QString &)> opener)
{
    opening.opener = std::move(opener);
}
