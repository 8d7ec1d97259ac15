// Rows set aside in a temporary file, for a recordset whose table is about to change before all of it was read.
#pragma once
#include "platform/ado.h"
#include <QTemporaryFile>
#include <vector>

namespace jet {

using row = std::vector<ado::Value>;

class row_file {
public:
    row_file(); // store_failure when there is no room for it
    void append(const row &values);
    row read(size_t number);
    size_t size() const { return starts.size(); }

private:
    QTemporaryFile file;
    std::vector<qint64> starts;
};

}
