// A file in a folder of photographs: whole, and as a thumbnail.

#include "sources/photographs/PictureReader.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>

// The name and the parameters are the fuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr QSize THUMBNAIL(126, 96);
    static const QTemporaryDir folder;
    const QString path = folder.filePath("picture");
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(reinterpret_cast<const char *>(data), qint64(size)) != qint64(size))
        return 0;
    file.close();
    const QImage whole = PictureReader::read(path);
    if (qint64(whole.width()) * whole.height() > PictureReader::MAX_PIXELS)
        std::abort();
    const QImage thumbnail = PictureReader::readFitted(path, THUMBNAIL);
    if (thumbnail.width() > THUMBNAIL.width() || thumbnail.height() > THUMBNAIL.height())
        std::abort();
    return 0;
}
