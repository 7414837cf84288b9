// Preloaded into the program: ends it by SIGKILL at the CRASH_AT-th operation that changes the
// database or an answer file, or sends something to the database's server. The operation is then
// not done, a write is done by half. Without CRASH_AT the operations are counted; their number is
// written to the file CRASH_COUNT at the end.

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

std::atomic<long> operations = 0;

bool IsWatched(std::string_view path)
{
    for (const std::string_view end : {"TLDB0010.MDB", "TLDB0010.MDB-journal", ".TXT"})
        if (path.ends_with(end))
            return true;
    return false;
}

bool IsWatched(int descriptor)
{
    char link[64];
    char path[4096];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    const ssize_t length = ::readlink(link, path, sizeof path);
    return length > 0 && IsWatched({path, size_t(length)});
}

/// Whether a database server is at the socket's other end.
bool IsServer(int descriptor)
{
    sockaddr_un peer = {};
    socklen_t size = sizeof peer - 1;
    return ::getpeername(descriptor, reinterpret_cast<sockaddr *>(&peer), &size) == 0
           && peer.sun_family == AF_UNIX && std::strstr(peer.sun_path, "/.s.PGSQL.");
}

/// Counts an operation; true when it is the last one.
bool IsCrash()
{
    static const char *const at = std::getenv("CRASH_AT");
    return ++operations == (at ? std::atol(at) : -1);
}

[[noreturn]] void Crash()
{
    ::kill(::getpid(), SIGKILL);
    for (;;)
        ::pause();
}

template <typename Function>
Function *Real(const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

template <typename Function, typename... Arguments>
auto Do(const char *name, bool isWatched, Arguments... arguments)
{
    if (isWatched && IsCrash())
        Crash();
    return Real<Function>(name)(arguments...);
}

template <typename Function, typename... Position>
ssize_t Write(const char *name, int descriptor, const void *data, size_t size, Position... position)
{
    Function *const real = Real<Function>(name);
    if ((IsWatched(descriptor) || IsServer(descriptor)) && IsCrash()) {
        real(descriptor, data, size / 2, position...);
        Crash();
    }
    return real(descriptor, data, size, position...);
}

struct Count
{
    ~Count()
    {
        const char *const path = std::getenv("CRASH_COUNT");
        if (FILE *const file = path ? std::fopen(path, "w") : nullptr) {
            std::fprintf(file, "%ld", operations.load());
            std::fclose(file);
        }
    }
} count;

} // namespace

extern "C" {

ssize_t write(int descriptor, const void *data, size_t size)
{
    return Write<decltype(write)>("write", descriptor, data, size);
}

ssize_t pwrite(int descriptor, const void *data, size_t size, off_t position)
{
    return Write<decltype(pwrite)>("pwrite", descriptor, data, size, position);
}

ssize_t pwrite64(int descriptor, const void *data, size_t size, off64_t position)
{
    return Write<decltype(pwrite64)>("pwrite64", descriptor, data, size, position);
}

ssize_t send(int descriptor, const void *data, size_t size, int flags)
{
    return Write<decltype(send)>("send", descriptor, data, size, flags);
}

int fsync(int descriptor)
{
    return Do<decltype(fsync)>("fsync", IsWatched(descriptor), descriptor);
}

int fdatasync(int descriptor)
{
    return Do<decltype(fdatasync)>("fdatasync", IsWatched(descriptor), descriptor);
}

int ftruncate(int descriptor, off_t length) noexcept
{
    return Do<decltype(ftruncate)>("ftruncate", IsWatched(descriptor), descriptor, length);
}

int ftruncate64(int descriptor, off64_t length) noexcept
{
    return Do<decltype(ftruncate64)>("ftruncate64", IsWatched(descriptor), descriptor, length);
}

int unlink(const char *path) noexcept
{
    return Do<decltype(unlink)>("unlink", IsWatched(path), path);
}
}
