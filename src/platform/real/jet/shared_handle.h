// What two connections to one file share, and two recordsets of them.
#pragma once
#include "platform/real/jet/database.h"

struct ado::Connection::shared_handle {
    explicit shared_handle(const QString &canonical_path) : store(canonical_path) {}
    jet::database store;
};
