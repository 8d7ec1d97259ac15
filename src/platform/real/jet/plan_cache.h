// The translations of the statement shapes met last.
#pragma once
#include "platform/real/jet/plan.h"
#include <QHash>

namespace jet {

class plan_cache {
public:
    std::shared_ptr<plan> find(const QString &shape);
    void keep(const QString &shape, const std::shared_ptr<plan> &made); // the one not used for longest goes
    void clear();

private:
    struct entry {
        std::shared_ptr<plan> held;
        quint64 used = 0;
    };
    static constexpr qsizetype most_shapes = 500;

    QHash<QString, entry> entries;
    quint64 uses = 0;
};

}
