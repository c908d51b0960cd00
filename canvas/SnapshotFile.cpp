#include "SnapshotFile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileDevice>
#include <QImageWriter>

#include <mutex>

QString SnapshotFile::path(const QString &folder, const QDateTime &time)
{
    return QDir(folder).filePath(time.toString("yyyy-MM-dd_hh-mm-ss.jpg"));
}

bool SnapshotFile::write(const QString &path, const QImage &picture)
{
    // The frame thread and the GUI thread may both save within one second, to one name.
    static std::mutex writing;
    const std::lock_guard<std::mutex> locker(writing);
    if (QFile::exists(path))
        QFile::remove(path);
    bool written = false;
    {
        QImageWriter writer(path, QByteArray());
        written = writer.write(picture);
        // The last bytes reach a full disk only when the file is flushed.
        const auto *file = qobject_cast<QFileDevice *>(writer.device());
        written = written && file && file->error() == QFileDevice::NoError;
    }
    if (!written)
        QFile::remove(path);
    return written;
}
