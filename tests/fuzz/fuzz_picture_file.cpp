// A file in a folder of photographs: whole, and as a thumbnail; and the same file as another
// program's thumbnail in the cache of the desktop.

#include "sources/photographs/PictureReader.h"
#include "sources/photographs/ThumbnailCache.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>
#include <unistd.h>

// The name and the parameters are the fuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace
{

constexpr qint64 KEPT_TIME_NS = 1'000'000'000'000;
/// To read a picture of 67 million takes this instrumented build half a minute, more than all other
/// inputs of a short run.
constexpr qint64 MANY_PIXELS = 4'000'000;

/// A file of which the cache's thumbnail has the same bytes. The name is short, as it stands in the
/// corpus: "/p".
QString picturePath(const QTemporaryDir &folder)
{
    qputenv("XDG_CACHE_HOME", folder.path().toLocal8Bit());
    QString path = folder.filePath("picture");
    const QString kept = ThumbnailCache::fileFor("/p");
    QDir().mkpath(QFileInfo(kept).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) ||
        link(QFile::encodeName(path).constData(), QFile::encodeName(kept).constData()) != 0)
        std::abort();
    return path;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr QSize THUMBNAIL(126, 96);
    static const QTemporaryDir folder;
    static const QString path = picturePath(folder);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(reinterpret_cast<const char *>(data), qint64(size)) != qint64(size))
        return 0;
    file.close();
    const QImage whole = PictureReader::read(path);
    const qint64 pixels = qint64(whole.width()) * whole.height();
    if (pixels > PictureReader::MAX_PIXELS)
        std::abort();
    if (pixels > MANY_PIXELS)
        return -1; // is not kept for later runs
    const QImage thumbnail = PictureReader::readFitted(path, THUMBNAIL);
    if (thumbnail.width() > THUMBNAIL.width() || thumbnail.height() > THUMBNAIL.height())
        std::abort();
    FileStamp stamp;
    stamp.modifiedNs = KEPT_TIME_NS;
    stamp.bytes = 3;
    const QImage kept = ThumbnailCache::read("/p", stamp);
    if (kept.width() > ThumbnailCache::SIDE || kept.height() > ThumbnailCache::SIDE)
        std::abort();
    return 0;
}
