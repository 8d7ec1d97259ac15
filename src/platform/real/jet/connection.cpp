#include "platform/real/jet/failures.h"
#include "platform/real/jet/shared_handle.h"
#include <QFileInfo>
#include <QHash>

namespace ado {

namespace {

// The open stores by canonical path: a second connection to a file would else wait on the first one's lock.
struct open_stores {
    QHash<QString, std::weak_ptr<Connection::shared_handle>> by_path;
};

open_stores &registry()
{
    static open_stores stores;
    return stores;
}

std::shared_ptr<Connection::shared_handle> handle_of(const QString &path)
{
    const QString canonical = QFileInfo(path).canonicalFilePath();
    if (canonical.isEmpty() || !QFileInfo(canonical).isFile())
        jet::fail(store_failure, QStringLiteral("Could not find file '") + path + "'.");
    auto &known = registry().by_path[canonical];
    if (auto open = known.lock())
        return open;
    auto made = std::make_shared<Connection::shared_handle>(canonical);
    known = made;
    return made;
}

}

Connection::Connection() = default;

Connection::~Connection() = default;

void Connection::Open()
{
    if (handle)
        jet::fail(object_open, QStringLiteral("Operation is not allowed when the object is open."));
    handle = handle_of(ConnectionString);
}

namespace {

jet::database &store_of(const Connection &connection)
{
    if (!connection.handle)
        jet::fail(object_closed, QStringLiteral("Operation is not allowed when the object is closed."));
    return connection.handle->store;
}

}

void Connection::Close()
{
    store_of(*this).barrier();
    handle.reset();
}

int Connection::State() const
{
    return handle ? 1 : 0;
}

void Connection::Execute(const QString &sql, qint64 *affected)
{
    const qint64 changed = store_of(*this).execute(sql);
    if (affected)
        *affected = changed;
}

void Connection::need_sound()
{
    store_of(*this).need_sound();
}

void Connection::barrier()
{
    store_of(*this).barrier();
}

void Connection::copy_store(const QString &target, const told_pages &told)
{
    store_of(*this).copy_to(target, told);
}

}
