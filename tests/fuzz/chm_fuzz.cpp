// Any bytes as a help file, as its packed part and as its table of contents. The first byte says which.
#include "platform/help_file.h"
#include "platform/real/chm/contents_list.h"
#include "platform/real/chm/lzx.h"
#include "platform/run_time_error.h"
#include <cstdlib>

namespace {

void require(bool good)
{
    if (!good)
        abort();
}

void read_whole(const QByteArray &bytes)
{
    try {
        const help::help_file held = help::help_file_in(bytes);
        require(!held.pages().isEmpty());
        for (const QString &page : held.pages())
            require(held.bytes_of(page).has_value());
    } catch (const run_time_error &error) {
        require(error.number == 57);
    }
}

void unpack(QByteArrayView packed, int choice)
{
    const qsizetype wanted = chm::lzx_frame * (1 + choice % 3) - choice % 5;
    const auto plain = chm::unpack_lzx(packed, wanted, 15 + choice % 7);
    require(!plain || plain->size() == wanted);
}

}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    if (size < 1)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char *>(data) + 1, qsizetype(size) - 1);
    if (data[0] < 0x80)
        read_whole(bytes);
    else if (data[0] < 0xf0)
        unpack(bytes, data[0]);
    else
        require(chm::contents_in(bytes).size() <= 10000);
    return 0;
}
