#pragma once

#include "sources/photographs/PictureFile.h"

#include <QImage>
#include <QString>

/// The thumbnails that the programs of a desktop share, as freedesktop.org's "Thumbnail Managing
/// Standard" has them: PNG files of at most 128 x 128 pixels in the user's cache folder, named for
/// the picture's address. Any thread; on a drive that does not answer the functions do not return.
namespace ThumbnailCache
{

/// The longer side of what is kept.
constexpr int SIDE = 128;

/// The address of a file of that absolute path, and the file that its thumbnail has.
[[nodiscard]] QByteArray uriOf(const QString &path);
[[nodiscard]] QString fileFor(const QString &path);

/// The thumbnail of a file that has that stamp; null when there is none, or one of another content.
[[nodiscard]] QImage read(const QString &path, const FileStamp &stamp);

/// Stores a thumbnail of at most SIDE pixels a side, whole or not at all, readable for this user
/// alone. Nothing is written for the cache's own files or where the folder is not writable.
void write(const QString &path, const FileStamp &stamp, const QImage &thumbnail);

} // namespace ThumbnailCache
