// Loaded into a driver by LD_PRELOAD: counts the calls that change something on disk, and at a given one of them
// either ends the process as kill -9 does, or begins to answer that the disk is full.
//   DISK_SHIM_CALLS  which calls count: "writes" (pwrite, write, fsync, ftruncate) or "renames" (and every other call
//                    that makes, links or removes a name)
//   DISK_SHIM_KILL   the number, from 1, before which the process is killed
//   DISK_SHIM_FULL   the number from which on writing fails for want of space
//   DISK_SHIM_NAMED  a part of the path that a renamed, removed or made thing must have to count; none: all count
//   DISK_SHIM_ONLY   a part of the path that a written file must have for DISK_SHIM_FULL; none: every file
//   DISK_SHIM_COUNT  a file into which the count is put
//   DISK_SHIM_HASTE  the seconds by which the clock that measures has gone on at each look at it
// Only files count; pipes and terminals do not.
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

namespace {

struct shim_state {
    bool ready = false;
    bool count_writes = false;
    long kill_at = 0;
    long full_from = 0;
    long haste = 0;
    std::atomic<long> looks = 0;
    const char *only = nullptr;
    const char *named = nullptr;
    long own_count = 0;
    long *count = nullptr;
} shim;

long number_in(const char *variable)
{
    const char *text = std::getenv(variable);
    return text ? std::atol(text) : 0;
}

// Shared with the file, so that the count outlives the process however it ends.
long *shared_count(const char *path)
{
    const int file = path ? ::open(path, O_RDWR | O_CREAT | O_CLOEXEC, 0600) : -1;
    if (file < 0 || ::posix_fallocate(file, 0, sizeof(long)) != 0)
        return &shim.own_count;
    void *place = ::mmap(nullptr, sizeof(long), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    ::close(file);
    return place == MAP_FAILED ? &shim.own_count : static_cast<long *>(place);
}

void make_ready()
{
    if (shim.ready)
        return;
    shim.ready = true;
    const char *calls = std::getenv("DISK_SHIM_CALLS");
    shim.count_writes = calls && std::strcmp(calls, "writes") == 0;
    shim.kill_at = number_in("DISK_SHIM_KILL");
    shim.full_from = number_in("DISK_SHIM_FULL");
    shim.haste = number_in("DISK_SHIM_HASTE");
    shim.only = std::getenv("DISK_SHIM_ONLY");
    shim.named = std::getenv("DISK_SHIM_NAMED");
    shim.count = shared_count(std::getenv("DISK_SHIM_COUNT"));
}

bool is_file(int descriptor)
{
    struct stat facts {};
    return ::fstat(descriptor, &facts) == 0 && S_ISREG(facts.st_mode);
}

bool is_meant(int descriptor)
{
    if (!shim.only)
        return true;
    char link[64];
    char path[4096];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    const ssize_t length = ::readlink(link, path, sizeof path - 1);
    if (length < 0)
        return false;
    path[length] = '\0';
    return std::strstr(path, shim.only) != nullptr;
}

long count_call()
{
    const long number = ++*shim.count;
    if (number == shim.kill_at)
        ::raise(SIGKILL);
    return number;
}

// True: the call is to fail for want of space.
bool before_write(int descriptor)
{
    make_ready();
    if (!shim.count_writes || !is_file(descriptor))
        return false;
    const long number = count_call();
    return shim.full_from > 0 && number >= shim.full_from && is_meant(descriptor);
}

void before_rename(const char *path)
{
    make_ready();
    if (!shim.count_writes && (!shim.named || std::strstr(path, shim.named)))
        count_call();
}

template <typename function>
function *real(const char *name)
{
    return reinterpret_cast<function *>(::dlsym(RTLD_NEXT, name));
}

int no_space()
{
    errno = ENOSPC;
    return -1;
}

}

extern "C" {

ssize_t write(int file, const void *bytes, size_t count)
{
    return before_write(file) ? no_space() : real<ssize_t(int, const void *, size_t)>("write")(file, bytes, count);
}

ssize_t pwrite(int file, const void *bytes, size_t count, off_t offset)
{
    if (before_write(file))
        return no_space();
    return real<ssize_t(int, const void *, size_t, off_t)>("pwrite")(file, bytes, count, offset);
}

ssize_t pwrite64(int file, const void *bytes, size_t count, off64_t offset)
{
    if (before_write(file))
        return no_space();
    return real<ssize_t(int, const void *, size_t, off64_t)>("pwrite64")(file, bytes, count, offset);
}

int fsync(int file)
{
    before_write(file);
    return real<int(int)>("fsync")(file);
}

int fdatasync(int file)
{
    before_write(file);
    return real<int(int)>("fdatasync")(file);
}

int ftruncate64(int file, off64_t length) noexcept
{
    before_write(file);
    return real<int(int, off64_t)>("ftruncate64")(file, length);
}

int rename(const char *from, const char *to) noexcept
{
    before_rename(to);
    return real<int(const char *, const char *)>("rename")(from, to);
}

int renameat2(int from_folder, const char *from, int to_folder, const char *to, unsigned int flags) noexcept
{
    before_rename(to);
    return real<int(int, const char *, int, const char *, unsigned int)>("renameat2")(from_folder, from, to_folder, to,
                                                                                      flags);
}

int unlink(const char *path) noexcept
{
    before_rename(path);
    return real<int(const char *)>("unlink")(path);
}

int link(const char *from, const char *to) noexcept
{
    before_rename(to);
    return real<int(const char *, const char *)>("link")(from, to);
}

int unlinkat(int folder, const char *path, int flags) noexcept
{
    before_rename(path);
    return real<int(int, const char *, int)>("unlinkat")(folder, path, flags);
}

int rmdir(const char *path) noexcept
{
    before_rename(path);
    return real<int(const char *)>("rmdir")(path);
}

int mkdir(const char *path, mode_t mode) noexcept
{
    before_rename(path);
    return real<int(const char *, mode_t)>("mkdir")(path, mode);
}

int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    make_ready();
    const int result = real<int(clockid_t, timespec *)>("clock_gettime")(clock, time);
    if (clock == CLOCK_MONOTONIC && shim.haste > 0)
        time->tv_sec += shim.haste * ++shim.looks;
    return result;
}
}
