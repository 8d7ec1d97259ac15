// From tokens to the syntax of one statement; anything else is syntax_error. Knows no table.
#pragma once
#include "platform/real/jet/lexer.h"
#include "platform/real/jet/syntax.h"

namespace jet {

statement_syntax parse(const token_list &list);

}
