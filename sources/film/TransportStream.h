#pragma once

class QString;

/// MPEG transport streams of a few pictures. The media library learns their length only as they
/// play, and errs in their seeks, as it guesses the places of pictures from a few of their times.
namespace TransportStream
{

/// From the first picture to the end of the last one, in seconds; 0 when the file is no such
/// stream, has no pictures with times, or is larger than half a mebibyte. Waits for the disk.
[[nodiscard]] double seconds(const QString &path);

} // namespace TransportStream
