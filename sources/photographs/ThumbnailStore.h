#pragma once

#include "sources/photographs/PictureFile.h"

#include <QImage>
#include <QSize>
#include <QString>

#include <mutex>
#include <string>
#include <unordered_map>

/// The thumbnails that were made, in memory and in the cache of the desktop, by path, size and time
/// of their files. Any thread; on a drive that does not answer thumbnail() does not return.
class ThumbnailStore
{
public:
    /// What the memory may hold, in bytes: about 15,000 thumbnails of the strip.
    static constexpr qint64 MAX_BYTES = 128LL * 1024 * 1024;

    struct Thumbnail {
        /// Null when the picture cannot be read.
        QImage image;
        /// Whether it is the small picture in a camera's file, which is there at once and need not
        /// show what the file shows now.
        bool isEmbedded = false;
    };

    /// The picture fitted into `bounds`, with its aspect ratio kept; null when it cannot be read.
    [[nodiscard]] QImage thumbnail(const QString &path, QSize bounds);
    /// The same, or what takes a fraction of the time where the file has it.
    [[nodiscard]] Thumbnail quickThumbnail(const QString &path, QSize bounds);
    /// How many pictures were decoded for it, for those who measure.
    [[nodiscard]] int decoded() const;

private:
    struct Kept {
        FileStamp stamp;
        QSize bounds;
        Thumbnail thumbnail;
    };

    /// Null when it is not kept.
    [[nodiscard]] Thumbnail kept(const std::string &key, const FileStamp &stamp,
                                 QSize bounds) const;
    void keep(const std::string &key, const Kept &made);
    [[nodiscard]] Thumbnail thumbnail(const QString &path, QSize bounds, bool takesEmbedded);
    [[nodiscard]] Thumbnail make(const QString &path, PictureFile &file, QSize bounds,
                                 bool takesEmbedded);

    /// Guards the members below.
    mutable std::mutex m_mutex;
    std::unordered_map<std::string, Kept> m_kept;
    qint64 m_bytes = 0;
    int m_decoded = 0;
};
