// Rows set aside in a temporary file, for a recordset whose table is about to change before all of it was read.
#pragma once
#include "platform/real/jet/row_block.h"
#include <QTemporaryFile>
#include <vector>

namespace jet {

class row_file {
public:
    row_file(); // store_failure when there is no room for it
    void append(const row_block &from, size_t row);
    void read(size_t number, row_block &into);

private:
    QTemporaryFile file;
    std::vector<qint64> starts;
};

}
