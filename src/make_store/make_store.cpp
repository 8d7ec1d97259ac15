// make_store TARGET DELIVERED_FOLDER: the build's tool for the store that is delivered with the program.
#include "make_store/store_maker.h"
#include <cstdio>

int main(int count, char **texts)
{
    if (count != 3) {
        std::fprintf(stderr, "usage: make_store TARGET DELIVERED_FOLDER\n");
        return 2;
    }
    const std::string failure = make_store(texts[1], texts[2]);
    if (!failure.empty())
        std::fprintf(stderr, "make_store: %s\n", failure.c_str());
    return failure.empty() ? 0 : 1;
}
