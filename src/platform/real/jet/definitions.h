// Statements that make, change or drop tables: several steps of SQLite's, all or none of which are done.
#pragma once
#include "platform/real/jet/expression_writer.h"

namespace jet {

void write_definition(const token_list &list, const statement_syntax &syntax, const schema &tables,
                      expression_writer &text, plan &into);

}
