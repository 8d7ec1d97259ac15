// From the syntax of a statement and the tables of the store to a plan. Every fault that can be seen without the rows
// and the literals' contents fails here, before anything is changed.
#pragma once
#include "platform/real/jet/lexer.h"
#include "platform/real/jet/plan.h"
#include "platform/real/jet/schema.h"
#include <QStringView>

namespace jet {

std::shared_ptr<plan> translate(const token_list &list, const schema &tables);

// An insert of the columns whose places are given, in that order, one parameter each.
QByteArray insert_text(const table &into, const std::vector<int> &places);
QByteArray update_text(const table &of, const std::vector<int> &places); // the row's key is the last parameter

}
