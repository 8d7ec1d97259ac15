#include "platform/network.h"
#include <utility>

namespace net {

namespace {

thread_local struct network_state {
    patience in_force;
} state;

}

run_time_error failure(trouble kind, const QString &description)
{
    return {quint32(kind), description};
}

bool is_network_failure(const run_time_error &error)
{
    return error.number >= quint32(trouble::name_not_found) && error.number <= quint32(trouble::nobody_let_in);
}

bool is(const run_time_error &error, trouble kind)
{
    return error.number == quint32(kind);
}

const patience &present_patience()
{
    return state.in_force;
}

patience_scope::patience_scope(patience in_force) : before(std::exchange(state.in_force, std::move(in_force))) {}

patience_scope::~patience_scope()
{
    state.in_force = std::move(before);
}

}
