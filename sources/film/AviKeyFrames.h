#pragma once

#include <QString>

#include <vector>

/// AVI films without an index, as a recording that was cut off leaves them. The media library then
/// takes each picture for one that needs no other.
namespace AviKeyFrames
{

/// When the pictures come that need no other, in nanoseconds rounded up, rising. Empty when the
/// file is no AVI film, has an index, holds no other pictures, or is too long to be looked through
/// in a second. Waits for the disk.
[[nodiscard]] std::vector<qint64> nanosecondsOf(const QString &path);

} // namespace AviKeyFrames
