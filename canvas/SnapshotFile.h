#pragma once

class QDateTime;
class QImage;
class QString;

/// Snapshot files. Any thread; one file is written at a time.
namespace SnapshotFile
{

/// The file of a picture taken at that time: "yyyy-MM-dd_hh-mm-ss.jpg" in the folder. Two pictures
/// of one second have one name.
[[nodiscard]] QString path(const QString &folder, const QDateTime &time);

/// Replaces the file by the picture in the format of the path's suffix. On a failure there is no
/// file and the answer is false.
bool write(const QString &path, const QImage &picture);

} // namespace SnapshotFile
