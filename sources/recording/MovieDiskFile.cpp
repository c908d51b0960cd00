#include "sources/recording/MovieDiskFile.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace
{

void closeDescriptor(int &descriptor)
{
    if (descriptor >= 0)
        ::close(descriptor);
    descriptor = -1;
}

/// Whether the name leads to what is open. One that does not answer counts as leading there.
bool leadsTo(const QByteArray &name, int descriptor)
{
    struct stat open {
    };
    struct stat now {
    };
    if (fstat(descriptor, &open) != 0)
        return true;
    if (stat(name.constData(), &now) != 0)
        return errno != ENOENT && errno != ENOTDIR;
    return now.st_ino == open.st_ino && now.st_dev == open.st_dev;
}

} // namespace

MovieDiskFile::MovieDiskFile(QByteArray fileName)
    : m_fileName(std::move(fileName))
    , m_folderName(QFile::encodeName(QFileInfo(QFile::decodeName(m_fileName)).absolutePath()))
{
}

MovieDiskFile::~MovieDiskFile()
{
    close();
}

bool MovieDiskFile::open()
{
    // No right to list the folder is needed for that.
    m_folder = ::open(m_folderName.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    return (m_folder >= 0 && canBeMade()) || noteFailure();
}

void MovieDiskFile::close()
{
    closeDescriptor(m_descriptor);
    closeDescriptor(m_folder);
}

bool MovieDiskFile::inPlace() const
{
    return m_descriptor >= 0 ? leadsTo(m_fileName, m_descriptor) : leadsTo(m_folderName, m_folder);
}

qint64 MovieDiskFile::size() const
{
    struct stat now {
    };
    return fstat(m_descriptor, &now) == 0 ? qint64(now.st_size) : 0;
}

qint64 MovieDiskFile::freeBytes() const
{
    struct statvfs disk {
    };
    // Some file systems tell of no blocks at all.
    if (fstatvfs(m_folder, &disk) != 0 || disk.f_blocks == 0)
        return -1;
    return qint64(disk.f_bavail) * qint64(disk.f_frsize);
}

void MovieDiskFile::remove()
{
    if (m_descriptor >= 0 && inPlace())
        unlink(m_fileName.constData());
}

bool MovieDiskFile::write(qint64 offset, const QByteArray &bytes)
{
    if (m_descriptor < 0 && !make())
        return noteFailure();
    const char *data = bytes.constData();
    auto left = static_cast<size_t>(bytes.size());
    while (left > 0) {
        const ssize_t written = pwrite(m_descriptor, data, left, offset);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return noteFailure();
        data += written;
        offset += written;
        left -= static_cast<size_t>(written);
    }
    return true;
}

bool MovieDiskFile::resize(qint64 size)
{
    return ftruncate(m_descriptor, size) == 0 || noteFailure();
}

bool MovieDiskFile::sync()
{
    if (fdatasync(m_descriptor) != 0)
        return noteFailure();
    // A file is found after a power cut only if its folder is on the disk as well. Some file
    // systems cannot sync a folder, so a refusal means nothing.
    if (!m_folderSynced) {
        const int descriptor = ::open(m_folderName.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (descriptor >= 0) {
            fsync(descriptor);
            ::close(descriptor);
        }
        m_folderSynced = true;
    }
    return true;
}

/// Only an attempt says so for certain.
bool MovieDiskFile::canBeMade() const
{
    int attempt = ::open(m_fileName.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (attempt >= 0)
        unlink(m_fileName.constData());
    else if (errno == EEXIST)
        attempt = ::open(m_fileName.constData(), O_RDWR | O_CLOEXEC);
    const bool can = attempt >= 0;
    closeDescriptor(attempt);
    return can;
}

/// In the folder that was there at the beginning, whatever it is called by now.
bool MovieDiskFile::make()
{
    const QByteArray name = m_fileName.mid(m_fileName.lastIndexOf('/') + 1);
    m_descriptor = openat(m_folder, name.constData(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    return m_descriptor >= 0;
}

bool MovieDiskFile::noteFailure()
{
    if (m_error == 0)
        m_error = errno;
    return false;
}
