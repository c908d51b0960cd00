#include "sources/recording/MovieDiskFile.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

MovieDiskFile::MovieDiskFile(QByteArray fileName)
    : m_fileName(std::move(fileName))
{
}

MovieDiskFile::~MovieDiskFile()
{
    close();
}

bool MovieDiskFile::open()
{
    m_descriptor = ::open(m_fileName.constData(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (m_descriptor < 0 || fstat(m_descriptor, &m_file) != 0)
        return noteFailure();
    return true;
}

void MovieDiskFile::close()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
}

/// Whether the name still leads to the file that is being written.
bool MovieDiskFile::inPlace() const
{
    struct stat now {
    };
    if (stat(m_fileName.constData(), &now) != 0)
        return errno != ENOENT && errno != ENOTDIR;
    return now.st_ino == m_file.st_ino && now.st_dev == m_file.st_dev;
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
    if (fstatvfs(m_descriptor, &disk) != 0 || disk.f_blocks == 0)
        return -1;
    return qint64(disk.f_bavail) * qint64(disk.f_frsize);
}

void MovieDiskFile::remove()
{
    if (inPlace())
        unlink(m_fileName.constData());
}

bool MovieDiskFile::write(qint64 offset, const QByteArray &bytes)
{
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
        const QString folder = QFileInfo(QFile::decodeName(m_fileName)).absolutePath();
        const int descriptor =
            ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (descriptor >= 0) {
            fsync(descriptor);
            ::close(descriptor);
        }
        m_folderSynced = true;
    }
    return true;
}

bool MovieDiskFile::noteFailure()
{
    if (m_error == 0)
        m_error = errno;
    return false;
}
