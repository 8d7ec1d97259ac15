// Any text given to the store as a statement: it is carried out or refused with an error number, and the store stays
// whole. What is refused by SQLite instead of by the translation is a fault of the translation.
#include "support/statement_effects.h"
#include <cstdlib>

namespace {

test_store *sample = nullptr;

bool is_known(quint32 number)
{
    switch (number) {
    case ado::syntax_error:
    case ado::type_mismatch:
    case ado::unknown_table:
    case ado::value_too_long:
    case ado::unknown_column:
    case ado::column_exists:
    case ado::duplicate_key:
        return true;
    default:
        return false;
    }
}

}

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    sample = new test_store;
    fill_sample_store(*sample);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size)
{
    const QString statement = QString::fromUtf8(reinterpret_cast<const char *>(bytes), qsizetype(size));
    const quint32 number = error_number_of([&] {
        ado::Recordset rows;
        rows.Open(statement, sample->connection());
        while (rows.State() == 1 && !rows.EOF_()) {
            for (int i = 0; i < rows.field_count(); ++i)
                (void)rows[i];
            rows.MoveNext();
        }
    });
    if (number == ado::store_failure || (number != 0 && !is_known(number)))
        std::abort();
    return 0;
}
