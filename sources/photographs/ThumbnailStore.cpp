#include "sources/photographs/ThumbnailStore.h"

#include "sources/photographs/DecodingTurn.h"
#include "sources/photographs/FileNames.h"
#include "sources/photographs/PictureColours.h"
#include "sources/photographs/PictureReader.h"
#include "sources/photographs/ThumbnailCache.h"

namespace
{

constexpr QSize SHARED_SIZE(ThumbnailCache::SIDE, ThumbnailCache::SIDE);

/// Whether thumbnails of that size can be made from those of the desktop's cache.
bool fitsShared(QSize bounds)
{
    return bounds.width() <= SHARED_SIZE.width() && bounds.height() <= SHARED_SIZE.height();
}

QImage fitted(const QImage &image, QSize bounds)
{
    const QSize size = image.size().scaled(bounds, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace

QImage ThumbnailStore::thumbnail(const QString &path, QSize bounds)
{
    return thumbnail(path, bounds, false).image;
}

ThumbnailStore::Thumbnail ThumbnailStore::quickThumbnail(const QString &path, QSize bounds)
{
    return thumbnail(path, bounds, true);
}

ThumbnailStore::Thumbnail ThumbnailStore::thumbnail(const QString &path, QSize bounds,
                                                    bool takesEmbedded)
{
    PictureFile file(path);
    if (file.problem() != PictureProblem::None)
        return {};
    const std::string key = FileNames::encode(path).toStdString();
    const FileStamp stamp = file.stamp();
    Thumbnail found = kept(key, stamp, bounds);
    if (!found.image.isNull() && (takesEmbedded || !found.isEmbedded))
        return found;
    found = make(path, file, bounds, takesEmbedded);
    if (!found.image.isNull())
        keep(key, {stamp, bounds, found});
    return found;
}

int ThumbnailStore::decoded() const
{
    const std::lock_guard lock(m_mutex);
    return m_decoded;
}

ThumbnailStore::Thumbnail ThumbnailStore::kept(const std::string &key, const FileStamp &stamp,
                                               QSize bounds) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_kept.find(key);
    const bool isSame =
        found != m_kept.end() && found->second.stamp == stamp && found->second.bounds == bounds;
    return isSame ? found->second.thumbnail : Thumbnail();
}

void ThumbnailStore::keep(const std::string &key, const Kept &made)
{
    const std::lock_guard lock(m_mutex);
    const qint64 bytes = made.thumbnail.image.sizeInBytes();
    if (m_bytes + bytes > MAX_BYTES) {
        m_kept.clear();
        m_bytes = 0;
    }
    Kept &place = m_kept[key];
    m_bytes += bytes - place.thumbnail.image.sizeInBytes();
    place = made;
}

ThumbnailStore::Thumbnail ThumbnailStore::make(const QString &path, PictureFile &file, QSize bounds,
                                               bool takesEmbedded)
{
    const bool shares = fitsShared(bounds);
    if (shares) {
        const QImage shared = ThumbnailCache::read(path, file.stamp());
        if (!shared.isNull())
            return {fitted(PictureColours::prepared(shared, {}), bounds)};
    }
    if (takesEmbedded) {
        const QImage embedded = PictureReader::readEmbedded(file, bounds);
        if (!embedded.isNull())
            return {embedded, true};
    }
    {
        const std::lock_guard lock(m_mutex);
        ++m_decoded;
    }
    DecodingTurn turn({0, PictureReader::need(file).decoder});
    const PictureReader::Reading whole = PictureReader::readFileFitted(
        file, shares ? SHARED_SIZE : bounds, !shares, [&turn, &file](qint64 bytes) {
            turn.noteProgress(PictureReader::isRead(file.stamp(), bytes));
        });
    if (whole.picture.isNull())
        return {};
    // Other programs want to keep transparency, and a small picture needs no thumbnail. A file that
    // was being written meanwhile has no lasting content yet.
    const bool isSmall = whole.wholeSize.width() <= SHARED_SIZE.width() &&
                         whole.wholeSize.height() <= SHARED_SIZE.height();
    if (shares && !isSmall && !whole.isTransparent && PictureFile(path).stamp() == file.stamp())
        ThumbnailCache::write(path, file.stamp(), whole.picture);
    return {fitted(whole.picture, bounds)};
}
