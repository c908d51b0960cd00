#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

class QDateTime;
class QImage;

/// Snapshot files. Any thread; nobody else may write the same file meanwhile.
namespace SnapshotFile
{

/// The file of a picture taken at that time: "yyyy-MM-dd_hh-mm-ss.jpg" in the folder. Two pictures
/// of one second have one name.
[[nodiscard]] QString path(const QString &folder, const QDateTime &time);

/// The picture as a JPEG file of usual quality; empty for a null picture and without memory.
[[nodiscard]] QByteArray encoded(const QImage &picture);

/// Replaces the file by the bytes. On a failure there is no file, and the answer says why, in the
/// system's words; bytes that are empty are a failure too.
[[nodiscard]] std::optional<QString> write(const QString &path, const QByteArray &bytes);

} // namespace SnapshotFile
