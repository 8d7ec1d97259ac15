#include "support/fault_points.h"
#include <csignal>
#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct fault_state {
    int die_before = 0;
    int calls = 0;
} faults;

void count_disk_call()
{
    if (++faults.calls == faults.die_before)
        raise(SIGKILL);
}

template <typename function>
function *next_of(const char *name)
{
    return reinterpret_cast<function *>(dlsym(RTLD_NEXT, name));
}

}

void die_before_disk_call(int number)
{
    faults = {number, 0};
}

int disk_calls()
{
    return faults.calls;
}

// The program's own calls come here instead of to the C library, because the linker meets these first.
extern "C" {

ssize_t write(int file, const void *bytes, size_t count)
{
    count_disk_call();
    return next_of<ssize_t(int, const void *, size_t)>("write")(file, bytes, count);
}

int fsync(int file)
{
    count_disk_call();
    return next_of<int(int)>("fsync")(file);
}

int rename(const char *from, const char *to) noexcept
{
    count_disk_call();
    return next_of<int(const char *, const char *)>("rename")(from, to);
}

int renameat2(int from_folder, const char *from, int to_folder, const char *to, unsigned int flags) noexcept
{
    count_disk_call();
    return next_of<int(int, const char *, int, const char *, unsigned int)>("renameat2")(from_folder, from, to_folder,
                                                                                         to, flags);
}

int unlink(const char *path) noexcept
{
    count_disk_call();
    return next_of<int(const char *)>("unlink")(path);
}

int mkdir(const char *path, mode_t mode) noexcept
{
    count_disk_call();
    return next_of<int(const char *, mode_t)>("mkdir")(path, mode);
}
}
