// A store that keeps nothing of what it is given as long as this lives, as on a full disk.
#pragma once
#include "platform/ado.h"
#include "platform/outside_effects.h"

class refusing_store {
public:
    refusing_store() : id(on_outside_effect([] { throw run_time_error{ado::store_failure, "The disk is full"}; })) {}
    ~refusing_store() { forget_outside_effect(id); }
    refusing_store(const refusing_store &) = delete;
    refusing_store &operator=(const refusing_store &) = delete;

private:
    int id;
};
