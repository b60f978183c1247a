// SPDX-License-Identifier: MIT
#include "tests/world/SlowDisk.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <limits.h>
#include <mutex>
#include <sched.h>
#include <string>
#include <string_view>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace
{

using namespace std::chrono_literals;
using Strings = std::vector<std::string>;

/// Not a std::mutex: the thread sanitizer takes part in locking those, and reads files while it
/// writes a report.
class SpinLock
{
public:
    void lock()
    {
        while (m_isTaken.exchange(true, std::memory_order_acquire))
            ::sched_yield();
    }
    void unlock() { m_isTaken.store(false, std::memory_order_release); }

private:
    std::atomic_bool m_isTaken = false;
};

struct State {
    SpinLock lock;
    Strings folders;
    Strings calls;
    std::chrono::milliseconds each = 0ms;
    std::chrono::milliseconds mainThreadDelay = 0ms;
    Strings mainThreadCalls;
    int report = -1;
};

/// Calls also come before this library's statics are constructed and after they are destroyed, so
/// there is nothing to construct and nothing to destroy. Nor is there a guard of a local static:
/// the thread sanitizer replaces guards, and calls from its own start.
union Forever {
    State state;
    constexpr Forever() : state() {}
    ~Forever() {}
};
constinit Forever forever;

State &state()
{
    return forever.state;
}

template <typename Call>
Call nextCall(std::atomic<Call> &known, const char *name)
{
    Call call = known.load(std::memory_order_relaxed);
    if (!call) {
        call = reinterpret_cast<Call>(::dlsym(RTLD_NEXT, name));
        known.store(call, std::memory_order_relaxed);
    }
    return call;
}

std::atomic_bool isWatching = false;

bool isMainThread()
{
    return ::syscall(SYS_gettid) == ::getpid();
}

Strings split(std::string_view text, char separator)
{
    Strings parts;
    while (!text.empty()) {
        const size_t end = std::min(text.find(separator), text.size());
        if (end > 0)
            parts.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

bool isIn(std::string_view path, std::string_view folder)
{
    return path.starts_with(folder) &&
           (path.size() == folder.size() || folder.ends_with('/') || path[folder.size()] == '/');
}

bool isFile(std::string_view path)
{
    return path.starts_with('/') && !path.starts_with("/memfd:") && !isIn(path, "/proc") &&
           !isIn(path, "/sys") && !isIn(path, "/dev");
}

/// Bypasses the functions below, which would end up here again.
std::string linkTarget(const std::string &path)
{
    char target[PATH_MAX];
    const long length = ::syscall(SYS_readlinkat, AT_FDCWD, path.c_str(), target, sizeof(target));
    return length > 0 ? std::string(target, static_cast<size_t>(length)) : std::string();
}

std::string pathOf(int descriptor)
{
    return linkTarget("/proc/self/" + (descriptor == AT_FDCWD
                                           ? std::string("cwd")
                                           : "fd/" + std::to_string(descriptor)));
}

std::string pathOf(int folder, const char *path)
{
    if (!path || !*path)
        return pathOf(folder);
    return *path == '/' ? std::string(path) : pathOf(folder) + '/' + path;
}

/// "open" for "open64" and "__open64_2".
std::string_view plainName(std::string_view name)
{
    if (name.starts_with("__") && name.ends_with("_2")) {
        name.remove_prefix(2);
        name.remove_suffix(2);
    }
    if (name.ends_with("64"))
        name.remove_suffix(2);
    return name;
}

void report(int descriptor, const std::string &line)
{
    const std::string text = line + '\n';
    [[maybe_unused]] const long written =
        ::syscall(SYS_write, descriptor, text.data(), text.size());
}

/// The call's delay; records a call of the main thread.
std::chrono::milliseconds costOf(std::string_view name, const std::string &path)
{
    State &known = state();
    const std::scoped_lock locker(known.lock);
    const auto holds = [&path](const std::string &folder) { return isIn(path, folder); };
    const bool isSlow = std::any_of(known.folders.begin(), known.folders.end(), holds) &&
                        (known.calls.empty() || std::find(known.calls.begin(), known.calls.end(),
                                                          name) != known.calls.end());
    const auto cost = isSlow ? known.each : 0ms;
    if (isMainThread()) {
        known.mainThreadDelay += cost;
        known.mainThreadCalls.push_back(std::string(name) + ' ' + path);
        if (known.report >= 0)
            report(known.report, known.mainThreadCalls.back());
    }
    return cost;
}

void arrive(const char *name, const std::string &path)
{
    if (!isFile(path))
        return;
    const auto cost = costOf(plainName(name), path);
    const timespec time = {cost / 1s, (cost % 1s) / 1ns};
    if (cost > 0ms)
        ::nanosleep(&time, nullptr);
}

void at(const char *name, int folder, const char *path)
{
    if (!isWatching)
        return;
    const int error = errno;
    arrive(name, pathOf(folder, path));
    errno = error;
}

void at(const char *name, const char *path)
{
    at(name, AT_FDCWD, path);
}

void on(const char *name, int descriptor)
{
    at(name, descriptor, "");
}

std::string environment(const char *name)
{
    const char *const value = ::getenv(name);
    return value ? value : "";
}

[[gnu::constructor]] void takeEnvironment()
{
    State &known = state();
    known.folders = split(environment("SLOW_DISK_FOLDERS"), ':');
    known.each =
        std::chrono::milliseconds(std::atoi(environment("SLOW_DISK_MILLISECONDS").c_str()));
    known.calls = split(environment("SLOW_DISK_CALLS"), ',');
    if (const std::string path = environment("SLOW_DISK_REPORT"); !path.empty())
        known.report = static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path.c_str(),
                                                  O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
    isWatching = known.each > 0ms || known.report >= 0;
}

} // namespace

namespace SlowDisk
{

void slow(const QByteArrayList &folders, std::chrono::milliseconds each, const QByteArray &calls)
{
    State &known = state();
    const std::scoped_lock locker(known.lock);
    known.folders.clear();
    for (const QByteArray &folder : folders)
        known.folders.push_back(folder.toStdString());
    known.each = each;
    known.calls = split(calls.toStdString(), ',');
    isWatching = true;
}

void fast()
{
    slow({}, 0ms);
}

void startCounting()
{
    State &known = state();
    const std::scoped_lock locker(known.lock);
    known.mainThreadCalls.clear();
    known.mainThreadDelay = 0ms;
    isWatching = true;
}

QByteArrayList mainThreadCalls()
{
    State &known = state();
    const std::scoped_lock locker(known.lock);
    QByteArrayList calls;
    for (const std::string &call : known.mainThreadCalls)
        calls << QByteArray::fromStdString(call);
    return calls;
}

std::chrono::milliseconds mainThreadDelay()
{
    State &known = state();
    const std::scoped_lock locker(known.lock);
    return known.mainThreadDelay;
}

} // namespace SlowDisk

// The calls themselves. The linker knows each by the C library's name and the compiler by another
// one, because the system's headers declare some in a way that does not allow to redefine them.

#define STAND_BEFORE(name, Result, Parameters, Arguments, Announcement)                            \
    extern "C" Result slow_disk_##name Parameters __asm__(#name);                                  \
    extern "C" Result slow_disk_##name Parameters                                                  \
    {                                                                                              \
        static constinit std::atomic<Result(*) Parameters> known = nullptr;                        \
        const auto next = nextCall(known, #name);                                                  \
        constexpr const char *call = #name;                                                        \
        Announcement;                                                                              \
        return next Arguments;                                                                     \
    }

// A call that takes a path.
#define AT_PATH(name, Result, Parameters, Arguments)                                               \
    STAND_BEFORE(name, Result, Parameters, Arguments, at(call, path))
// A call that takes a path relative to a folder.
#define AT_FOLDER(name, Result, Parameters, Arguments)                                             \
    STAND_BEFORE(name, Result, Parameters, Arguments, at(call, folder, path))
// A call that takes a descriptor.
#define ON_FILE(name, Result, Parameters, Arguments)                                               \
    STAND_BEFORE(name, Result, Parameters, Arguments, on(call, file))

// The mode is passed on even if the caller has given none; it is ignored then.
AT_PATH(open, int, (const char *path, int flags, mode_t mode), (path, flags, mode))
AT_PATH(open64, int, (const char *path, int flags, mode_t mode), (path, flags, mode))
AT_PATH(__open_2, int, (const char *path, int flags), (path, flags))
AT_PATH(__open64_2, int, (const char *path, int flags), (path, flags))
AT_PATH(creat, int, (const char *path, mode_t mode), (path, mode))
AT_PATH(creat64, int, (const char *path, mode_t mode), (path, mode))
AT_FOLDER(openat, int, (int folder, const char *path, int flags, mode_t mode),
          (folder, path, flags, mode))
AT_FOLDER(openat64, int, (int folder, const char *path, int flags, mode_t mode),
          (folder, path, flags, mode))
AT_FOLDER(__openat_2, int, (int folder, const char *path, int flags), (folder, path, flags))
AT_FOLDER(__openat64_2, int, (int folder, const char *path, int flags), (folder, path, flags))
AT_PATH(fopen, void *, (const char *path, const char *mode), (path, mode))
AT_PATH(fopen64, void *, (const char *path, const char *mode), (path, mode))
AT_PATH(opendir, void *, (const char *path), (path))

AT_PATH(stat, int, (const char *path, void *status), (path, status))
AT_PATH(stat64, int, (const char *path, void *status), (path, status))
AT_PATH(lstat, int, (const char *path, void *status), (path, status))
AT_PATH(lstat64, int, (const char *path, void *status), (path, status))
ON_FILE(fstat, int, (int file, void *status), (file, status))
ON_FILE(fstat64, int, (int file, void *status), (file, status))
AT_FOLDER(fstatat, int, (int folder, const char *path, void *status, int flags),
          (folder, path, status, flags))
AT_FOLDER(fstatat64, int, (int folder, const char *path, void *status, int flags),
          (folder, path, status, flags))
AT_FOLDER(statx, int, (int folder, const char *path, int flags, unsigned mask, void *status),
          (folder, path, flags, mask, status))
AT_PATH(statfs, int, (const char *path, void *status), (path, status))
AT_PATH(statfs64, int, (const char *path, void *status), (path, status))
AT_PATH(statvfs, int, (const char *path, void *status), (path, status))
AT_PATH(statvfs64, int, (const char *path, void *status), (path, status))
ON_FILE(fstatfs, int, (int file, void *status), (file, status))
ON_FILE(fstatfs64, int, (int file, void *status), (file, status))
AT_PATH(access, int, (const char *path, int mode), (path, mode))
AT_FOLDER(faccessat, int, (int folder, const char *path, int mode, int flags),
          (folder, path, mode, flags))
AT_PATH(readlink, ssize_t, (const char *path, char *target, size_t size), (path, target, size))
AT_FOLDER(readlinkat, ssize_t, (int folder, const char *path, char *target, size_t size),
          (folder, path, target, size))
AT_PATH(realpath, char *, (const char *path, char *resolved), (path, resolved))

AT_PATH(rename, int, (const char *path, const char *to), (path, to))
AT_FOLDER(renameat, int, (int folder, const char *path, int toFolder, const char *to),
          (folder, path, toFolder, to))
AT_FOLDER(renameat2, int,
          (int folder, const char *path, int toFolder, const char *to, unsigned flags),
          (folder, path, toFolder, to, flags))
AT_PATH(link, int, (const char *path, const char *to), (path, to))
AT_FOLDER(linkat, int, (int folder, const char *path, int toFolder, const char *to, int flags),
          (folder, path, toFolder, to, flags))
AT_PATH(unlink, int, (const char *path), (path))
AT_FOLDER(unlinkat, int, (int folder, const char *path, int flags), (folder, path, flags))
AT_PATH(rmdir, int, (const char *path), (path))
AT_PATH(mkdir, int, (const char *path, mode_t mode), (path, mode))
AT_FOLDER(mkdirat, int, (int folder, const char *path, mode_t mode), (folder, path, mode))
AT_PATH(chmod, int, (const char *path, mode_t mode), (path, mode))
ON_FILE(fchmod, int, (int file, mode_t mode), (file, mode))
AT_FOLDER(fchmodat, int, (int folder, const char *path, mode_t mode, int flags),
          (folder, path, mode, flags))
AT_FOLDER(utimensat, int, (int folder, const char *path, const void *times, int flags),
          (folder, path, times, flags))
ON_FILE(futimens, int, (int file, const void *times), (file, times))
AT_PATH(truncate, int, (const char *path, long size), (path, size))
ON_FILE(ftruncate, int, (int file, long size), (file, size))
ON_FILE(ftruncate64, int, (int file, long size), (file, size))

ON_FILE(read, ssize_t, (int file, void *bytes, size_t count), (file, bytes, count))
ON_FILE(pread, ssize_t, (int file, void *bytes, size_t count, long place),
        (file, bytes, count, place))
ON_FILE(pread64, ssize_t, (int file, void *bytes, size_t count, long place),
        (file, bytes, count, place))
ON_FILE(write, ssize_t, (int file, const void *bytes, size_t count), (file, bytes, count))
ON_FILE(pwrite, ssize_t, (int file, const void *bytes, size_t count, long place),
        (file, bytes, count, place))
ON_FILE(pwrite64, ssize_t, (int file, const void *bytes, size_t count, long place),
        (file, bytes, count, place))
ON_FILE(fsync, int, (int file), (file))
ON_FILE(fdatasync, int, (int file), (file))
ON_FILE(flock, int, (int file, int operation), (file, operation))

AT_PATH(getxattr, ssize_t, (const char *path, const char *name, void *value, size_t size),
        (path, name, value, size))
AT_PATH(lgetxattr, ssize_t, (const char *path, const char *name, void *value, size_t size),
        (path, name, value, size))
ON_FILE(fgetxattr, ssize_t, (int file, const char *name, void *value, size_t size),
        (file, name, value, size))
AT_PATH(listxattr, ssize_t, (const char *path, char *names, size_t size), (path, names, size))
ON_FILE(flistxattr, ssize_t, (int file, char *names, size_t size), (file, names, size))
STAND_BEFORE(inotify_add_watch, int, (int queue, const char *path, uint32_t mask),
             (queue, path, mask), at(call, path))
