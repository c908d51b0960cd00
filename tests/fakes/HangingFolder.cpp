#include "tests/fakes/HangingFolder.h"

#include <QFile>

#include <atomic>
#include <climits>
#include <condition_variable>
#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <string>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

/// Whether there is one. Libraries make these calls before this file's objects are constructed.
std::atomic<bool> active{false};
/// Guards all the others.
std::mutex mutex;
std::condition_variable back;
HangingFolder::Calls hanging = HangingFolder::Everything;
int waitingCalls = 0;
/// The folder's path. It is written while `active` is false.
char prefix[PATH_MAX];

/// Whether the path lies in the folder, without a lock and unseen by sanitizers: while one
/// reports, it opens the programs and libraries of this process, and neither a lock nor what
/// is looked at here may make it report again.
__attribute__((no_sanitize("thread"))) bool isBelow(const char *path)
{
    if (path == nullptr)
        return false;
    for (std::size_t i = 0; prefix[i] != 0; ++i) {
        if (path[i] != prefix[i])
            return false;
    }
    return true;
}

/// `kind` is what the call does.
void waitForServer(const char *path, HangingFolder::Calls kind)
{
    if (!active || !isBelow(path))
        return;
    std::unique_lock lock(mutex);
    const auto isMeant = [kind] {
        return hanging == kind || hanging == HangingFolder::EverythingAndRemoving ||
               (hanging == HangingFolder::Everything &&
                kind != HangingFolder::EverythingAndRemoving);
    };
    const auto hangs = [&] { return active && isMeant() && isBelow(path); };
    if (!hangs())
        return;
    ++waitingCalls;
    back.wait(lock, [&] { return !hangs(); });
    --waitingCalls;
}

/// The next definition of the function: the library's, or that of a preloaded one in between.
template <typename Call>
Call nextOf(Call, const char *name)
{
    return reinterpret_cast<Call>(dlsym(RTLD_NEXT, name));
}

mode_t modeOf(int flags, va_list arguments)
{
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): the caller has begun it.
    return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
}

} // namespace

HangingFolder::HangingFolder(const QString &path, Calls calls)
{
    const std::lock_guard lock(mutex);
    std::strncpy(prefix, QFile::encodeName(path).constData(), sizeof prefix - 1);
    hanging = calls;
    active = true;
}

HangingFolder::~HangingFolder()
{
    const std::lock_guard lock(mutex);
    active = false;
    back.notify_all();
}

int HangingFolder::waiting() const
{
    const std::lock_guard lock(mutex);
    return waitingCalls;
}

// The calls that the toolkit and the program ask for a folder, watch it, open and remove a file,
// and bring a movie to the disk with.
extern "C" {

int statx(int directory, const char *path, int flags, unsigned int mask, struct statx *result)
{
    static const auto next = nextOf(&statx, "statx");
    waitForServer(path, HangingFolder::Everything);
    return next(directory, path, flags, mask, result);
}

DIR *opendir(const char *path)
{
    static const auto next = nextOf(&opendir, "opendir");
    waitForServer(path, HangingFolder::Listing);
    return next(path);
}

int inotify_add_watch(int watcher, const char *path, std::uint32_t events)
{
    static const auto next = nextOf(&inotify_add_watch, "inotify_add_watch");
    waitForServer(path, HangingFolder::Everything);
    return next(watcher, path, events);
}

int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    static const auto next = nextOf(&open, "open");
    waitForServer(path, HangingFolder::Opening);
    return next(path, flags, mode);
}

int open64(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    static const auto next = nextOf(&open64, "open64");
    waitForServer(path, HangingFolder::Opening);
    return next(path, flags, mode);
}

int access(const char *path, int mode)
{
    static const auto next = nextOf(&access, "access");
    waitForServer(path, HangingFolder::EverythingAndRemoving);
    return next(path, mode);
}

int unlink(const char *path)
{
    static const auto next = nextOf(&unlink, "unlink");
    waitForServer(path, HangingFolder::EverythingAndRemoving);
    return next(path);
}

int fdatasync(int descriptor)
{
    static const auto next = nextOf(&fdatasync, "fdatasync");
    char path[PATH_MAX] = {};
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    if (readlink(link.c_str(), path, sizeof path - 1) > 0)
        waitForServer(path, HangingFolder::Syncing);
    return next(descriptor);
}
}
