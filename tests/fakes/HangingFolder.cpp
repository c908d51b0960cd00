#include "tests/fakes/HangingFolder.h"

#include <QByteArray>
#include <QFile>

#include <condition_variable>
#include <cstdarg>
#include <cstring>
#include <mutex>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

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

// The two calls that the toolkit asks for a folder and opens a file with.
extern "C" {

int statx(int directory, const char *path, int flags, unsigned int mask, struct statx *result)
{
    waitForServer(path, false);
    return int(syscall(SYS_statx, directory, path, flags, mask, result));
}

int open64(const char *path, int flags, ...)
{
    mode_t mode = 0;
    if ((flags & O_CREAT) != 0) {
        va_list arguments;
        va_start(arguments, flags);
        mode = va_arg(arguments, mode_t);
        va_end(arguments);
    }
    waitForServer(path, true);
    return int(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}
}
