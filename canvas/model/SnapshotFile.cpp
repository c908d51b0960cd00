#include "canvas/model/SnapshotFile.h"

#include <QBuffer>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QImageWriter>

#include <cerrno>

namespace
{

/// A disk that fills up accepts a part of the bytes first and reports the error on the next write.
bool writeAll(QFile &file, const QByteArray &bytes)
{
    for (qint64 done = 0; done < bytes.size();) {
        const qint64 count = file.write(bytes.constData() + done, bytes.size() - done);
        if (count <= 0)
            return false;
        done += count;
    }
    return true;
}

} // namespace

QString SnapshotFile::path(const QString &folder, const QDateTime &time)
{
    return QDir(folder).filePath(time.toString("yyyy-MM-dd_hh-mm-ss.jpg"));
}

QByteArray SnapshotFile::encoded(const QImage &picture)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "jpg");
    return writer.write(picture) ? bytes : QByteArray();
}

std::optional<QString> SnapshotFile::write(const QString &path, const QByteArray &bytes)
{
    if (QFile::exists(path))
        QFile::remove(path);
    if (bytes.isEmpty())
        return qt_error_string(ENOMEM);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    const bool written = writeAll(file, bytes) && file.flush();
    const QString writeReason = file.errorString();
    // A server may report its error only when the file is closed.
    file.close();
    if (written && file.error() == QFileDevice::NoError)
        return std::nullopt;
    const QString reason = written ? file.errorString() : writeReason;
    file.remove();
    return reason;
}
