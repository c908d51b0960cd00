#include "tests/fakes/HangingFolder.h"

#include <QByteArray>
#include <QFile>

#include <condition_variable>
#include <cstdarg>
#include <cstring>
#include <mutex>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace
{

/// Guards all the others.
std::mutex mutex;
std::condition_variable back;
QByteArray folder;
bool hangsAll = false;
int waitingCalls = 0;

void waitForServer(const char *path, bool opening)
{
    std::unique_lock<std::mutex> lock(mutex);
    const auto hangs = [&] {
        return !folder.isEmpty() && (opening || hangsAll) && path != nullptr &&
               std::strncmp(path, folder.constData(), std::size_t(folder.size())) == 0;
    };
    if (!hangs())
        return;
    ++waitingCalls;
    back.wait(lock, [&] { return !hangs(); });
    --waitingCalls;
}

/// The library's function, or that of a preloaded one between.
template <typename Call>
Call nextOf(Call, const char *name)
{
    return reinterpret_cast<Call>(dlsym(RTLD_NEXT, name));
}

mode_t modeOf(int flags, va_list arguments)
{
    return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
}

} // namespace

HangingFolder::HangingFolder(const QString &path, Calls calls)
{
    const std::lock_guard<std::mutex> lock(mutex);
    folder = QFile::encodeName(path);
    hangsAll = calls == Everything;
}

HangingFolder::~HangingFolder()
{
    const std::lock_guard<std::mutex> lock(mutex);
    folder.clear();
    back.notify_all();
}

int HangingFolder::waiting() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return waitingCalls;
}

// The calls that the toolkit and the program ask for a folder and open a file with.
extern "C" {

int statx(int directory, const char *path, int flags, unsigned int mask, struct statx *result)
{
    static const auto next = nextOf(&statx, "statx");
    waitForServer(path, false);
    return next(directory, path, flags, mask, result);
}

DIR *opendir(const char *path)
{
    static const auto next = nextOf(&opendir, "opendir");
    waitForServer(path, false);
    return next(path);
}

int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    static const auto next = nextOf(&open, "open");
    waitForServer(path, true);
    return next(path, flags, mode);
}

int open64(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    static const auto next = nextOf(&open64, "open64");
    waitForServer(path, true);
    return next(path, flags, mode);
}
}
