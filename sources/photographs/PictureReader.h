#pragma once

#include "sources/photographs/DecodingTurn.h"
#include "sources/photographs/PictureFile.h"
#include "sources/photographs/PictureProblem.h"

#include <QImage>
#include <QSize>
#include <QString>

/// Reads picture files of any origin: turned upright by their orientation tag, in the colours that
/// their profile means, over white where they are transparent, and never larger in memory than the
/// limits below. A file that ends early gives the part that is there. Any thread; on a drive that
/// does not answer the functions do not return.
namespace PictureReader
{

/// What a picture may have when it is handed over: those of 50 megapixels are whole. At 3 bytes
/// each they are 144 MiB, which the canvas that shows it takes again.
constexpr qint64 MAX_PIXELS = 48LL * 1024 * 1024;

/// What decoding may hold at once, the answer included. JPEG, PNG and bitmap files that are not
/// compressed are decoded row by row. A picture of another kind, or a JPEG file in several scans,
/// is reduced until it fits, or not decoded at all when the decoder alone would hold more.
constexpr qint64 MAX_DECODED_BYTES = 336LL * 1024 * 1024;

/// Larger files are decoded from the disk: with their bytes in memory too there would be too much
/// of it.
constexpr qint64 MAX_CONTENT_BYTES = 64LL * 1024 * 1024;

/// Whether decoding needs the drive no more, once progress has told of so many bytes.
[[nodiscard]] inline bool isRead(const FileStamp &stamp, qint64 bytes)
{
    return bytes >= stamp.bytes && stamp.bytes <= MAX_CONTENT_BYTES;
}

/// A picture, and what else its file told.
struct Reading {
    /// RGB888; null exactly when there is a problem.
    QImage picture;
    PictureProblem problem = PictureProblem::None;
    FileStamp stamp;
    /// Of the whole picture as it stands upright, before it was reduced.
    QSize wholeSize;
    /// Whether the file has an alpha channel.
    bool isTransparent = false;
};

/// The first picture of the file, reduced to MAX_PIXELS at most.
[[nodiscard]] Reading readFile(const QString &path, const PictureFile::Progress &progress = {});
[[nodiscard]] Reading readFile(PictureFile &file, const PictureFile::Progress &progress = {});

/// What reading the whole picture takes. Reads the beginning of the file.
[[nodiscard]] PictureNeed need(PictureFile &file);

/// The picture fitted into `bounds` with its aspect ratio kept; nothing is made larger than it is
/// unless `enlarge`. A JPEG file is decoded at reduced size, which costs a fraction of the whole
/// picture.
[[nodiscard]] Reading readFileFitted(PictureFile &file, QSize bounds, bool enlarge,
                                     const PictureFile::Progress &progress = {});

/// The small picture that the camera has put into a JPEG file, fitted into `bounds`, if it has the
/// shape of the whole one; null without one. Costs the beginning of the file. It shows what the
/// camera saw, even if the file was changed since then.
[[nodiscard]] QImage readEmbedded(PictureFile &file, QSize bounds);

/// The pictures of those, null when they cannot be read; a fitted one is as large as fits.
[[nodiscard]] QImage read(const QString &path);
[[nodiscard]] QImage readFitted(const QString &path, QSize bounds);

} // namespace PictureReader
