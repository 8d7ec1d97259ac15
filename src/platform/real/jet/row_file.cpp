#include "platform/real/jet/row_file.h"
#include "platform/real/jet/failures.h"
#include <QDataStream>

namespace jet {

row_file::row_file()
{
    if (!file.open())
        fail(ado::store_failure, QStringLiteral("No temporary file: ") + file.errorString());
}

void row_file::append(const row_block &from, size_t row)
{
    starts.push_back(file.pos());
    QDataStream out(&file);
    from.write(row, out);
    if (out.status() != QDataStream::Ok)
        fail(ado::store_failure, QStringLiteral("No room for a temporary file: ") + file.errorString());
}

void row_file::read(size_t number, row_block &into)
{
    file.seek(starts[number]);
    QDataStream in(&file);
    into.read(in);
}

}
