#include "sources/photographs/PictureFile.h"

#include "sources/photographs/FileNames.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr qint64 PIECE_BYTES = 1LL << 20;

FileStamp stampOf(const struct stat &status)
{
    return {static_cast<qint64>(status.st_size),
            static_cast<qint64>(status.st_mtim.tv_sec) * NS_PER_SECOND +
                static_cast<qint64>(status.st_mtim.tv_nsec),
            quint64(status.st_dev), quint64(status.st_ino)};
}

} // namespace

qint64 PictureFile::Device::readData(char *data, qint64 mostBytes)
{
    const qint64 count = QFile::readData(data, mostBytes);
    m_untold += std::max<qint64>(count, 0);
    if (m_untold >= PIECE_BYTES && pieceRead) {
        m_untold = 0;
        pieceRead();
    }
    return count;
}

PictureFile::PictureFile(const QString &path)
{
    // Without O_NONBLOCK the call waits for the other end of a pipe; on plain files it does
    // nothing.
    const int descriptor =
        ::open(FileNames::encode(path).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0) {
        m_problem =
            errno == ENOENT || errno == ENOTDIR ? PictureProblem::Gone : PictureProblem::Unreadable;
        return;
    }
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) ||
        !m_file.open(descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered,
                     QFileDevice::AutoCloseHandle)) {
        m_problem = PictureProblem::Unreadable;
        ::close(descriptor);
        return;
    }
    m_stamp = stampOf(status);
}

QByteArray PictureFile::content(const Progress &progress)
{
    QByteArray bytes;
    bytes.reserve(static_cast<int>(m_stamp.bytes));
    for (;;) {
        const int known = bytes.size();
        bytes.resize(static_cast<int>(std::min(m_stamp.bytes, known + PIECE_BYTES)));
        const qint64 count = m_file.read(bytes.data() + known, bytes.size() - known);
        bytes.resize(known + static_cast<int>(std::max<qint64>(count, 0)));
        if (count < 0)
            m_problem = PictureProblem::Unreadable;
        if (count <= 0)
            return bytes;
        if (progress)
            progress(bytes.size());
    }
}
