// Statements with one text that come again and again with another text in it, as a mail's columns do. They are known by
// what stands before and behind the text, so that they need not be taken apart each time.
#pragma once
#include "platform/real/jet/lexer.h"
#include "platform/real/jet/plan.h"
#include <memory>
#include <vector>

namespace jet {

class repeated_statements {
public:
    // The plan of a statement like one that was kept, with the text as the list's only literal; else nothing.
    std::shared_ptr<plan> find(QStringView sql, token_list &list);
    void keep(const token_list &list, const std::shared_ptr<plan> &of); // when its one literal is a text in '..'
    void clear();

private:
    struct entry {
        QString before, behind; // without the quotes
        std::shared_ptr<plan> held;
    };
    static constexpr size_t most = 64;
    std::vector<entry> entries;
    size_t next = 0; // columns come in their order: the one behind the last one found
};

}
