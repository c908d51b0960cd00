#pragma once

#include <QImage>
#include <QSize>
#include <QString>

/// Reads picture files of any origin: turned upright by their orientation tag, and never larger in
/// memory than the limits below. Any thread.
namespace PictureReader
{

/// What a picture may have when it is handed over; 64 megapixels are 256 MiB at 4 bytes each.
constexpr qint64 MAX_PIXELS = 64LL * 1024 * 1024;

/// What decoding may hold at once. A larger picture is decoded reduced where its format can do so
/// (JPEG, and PNG in full colour), and not at all where it cannot.
constexpr qint64 MAX_DECODED_BYTES = 512LL * 1024 * 1024;

/// The first picture of the file, reduced to MAX_PIXELS at most; null when it cannot be read.
[[nodiscard]] QImage read(const QString &path);

/// The picture fitted into `bounds` with its aspect ratio kept; null when it cannot be read. A
/// JPEG file is decoded at reduced size, which costs a fraction of the whole picture. The file is
/// read into memory first, so that a disk that does not answer holds up this call alone.
[[nodiscard]] QImage readFitted(const QString &path, QSize bounds);

} // namespace PictureReader
