#include "tests/fakes/PulledDisk.h"

#include <QByteArray>
#include <QFile>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <mutex>

#include <dlfcn.h>
#include <unistd.h>

namespace
{

/// Whether there is one. Libraries read before this file's objects are constructed.
std::atomic<bool> pulled{false};
/// Guards pulledFolder.
std::mutex folderMutex;
QByteArray pulledFolder;

bool isPulled(int descriptor)
{
    if (!pulled)
        return false;
    char link[32];
    char path[PATH_MAX];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
    const ssize_t length = readlink(link, path, sizeof path);
    const std::lock_guard<std::mutex> lock(folderMutex);
    return length >= pulledFolder.size() &&
           std::strncmp(path, pulledFolder.constData(),
                        static_cast<std::size_t>(pulledFolder.size())) == 0;
}

} // namespace

PulledDisk::PulledDisk(const QString &path)
{
    const std::lock_guard<std::mutex> lock(folderMutex);
    pulledFolder = QFile::encodeName(path);
    pulled = true;
}

PulledDisk::~PulledDisk()
{
    pulled = false;
}

extern "C" ssize_t read(int descriptor, void *buffer, size_t count)
{
    static const auto next =
        reinterpret_cast<ssize_t (*)(int, void *, size_t)>(dlsym(RTLD_NEXT, "read"));
    if (isPulled(descriptor)) {
        errno = EIO;
        return -1;
    }
    return next(descriptor, buffer, count);
}
