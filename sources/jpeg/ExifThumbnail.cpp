#include "sources/jpeg/ExifThumbnail.h"

#include <QtEndian>

namespace
{

constexpr uchar APPLICATION_1 = 0xe1;
constexpr uchar LAST_APPLICATION = 0xef;
constexpr uchar FIRST_APPLICATION = 0xe0;
constexpr int MARKER_BYTES = 2;
/// Stands before the TIFF block in its segment.
const QByteArray EXIF("Exif\0\0", 6);

constexpr quint16 THUMBNAIL_PLACE = 0x0201;
constexpr quint16 THUMBNAIL_BYTES = 0x0202;
constexpr qint64 FIRST_DIRECTORY = 4;
constexpr qint64 ENTRY_BYTES = 12;
constexpr qint64 ENTRY_VALUE = 8;

/// A TIFF block: numbers in the byte order that it names, in directories of tagged entries.
class TiffBlock
{
public:
    explicit TiffBlock(const QByteArray &bytes)
        : m_bytes(bytes)
        , m_isBigEndian(bytes.startsWith("MM"))
    {
    }

    /// 0 outside the block.
    [[nodiscard]] quint16 shortAt(qint64 place) const
    {
        if (place < 0 || place + qint64(sizeof(quint16)) > m_bytes.size())
            return 0;
        const char *at = m_bytes.constData() + place;
        return m_isBigEndian ? qFromBigEndian<quint16>(at) : qFromLittleEndian<quint16>(at);
    }

    [[nodiscard]] quint32 longAt(qint64 place) const
    {
        const quint32 first = shortAt(place);
        const quint32 second = shortAt(place + 2);
        return m_isBigEndian ? first << 16 | second : second << 16 | first;
    }

    /// The number that the directory has under that tag; 0 without one.
    [[nodiscard]] quint32 entry(qint64 directory, quint16 tag) const
    {
        for (qint64 i = 0; i < shortAt(directory); ++i) {
            const qint64 place = directory + 2 + i * ENTRY_BYTES;
            if (shortAt(place) == tag)
                return longAt(place + ENTRY_VALUE);
        }
        return 0;
    }

    [[nodiscard]] qint64 directoryAfter(qint64 directory) const
    {
        return longAt(directory + 2 + shortAt(directory) * ENTRY_BYTES);
    }

private:
    const QByteArray m_bytes;
    const bool m_isBigEndian;
};

uchar byteAt(const QByteArray &bytes, int place)
{
    return place < bytes.size() ? static_cast<uchar>(bytes.at(place)) : uchar(0);
}

/// The TIFF block of the EXIF segment; empty without one. The segment is among those of the
/// applications, which come first.
QByteArray exifBlock(const QByteArray &jpeg)
{
    int place = MARKER_BYTES;
    for (;;) {
        const uchar marker = byteAt(jpeg, place + 1);
        const int length = byteAt(jpeg, place + 2) * 256 + byteAt(jpeg, place + 3);
        if (byteAt(jpeg, place) != 0xff || marker < FIRST_APPLICATION ||
            marker > LAST_APPLICATION || length < MARKER_BYTES)
            return {};
        const QByteArray content = jpeg.mid(place + 4, length - MARKER_BYTES);
        if (marker == APPLICATION_1 && content.startsWith(EXIF))
            return content.mid(EXIF.size());
        place += MARKER_BYTES + length;
    }
}

} // namespace

QByteArray exifThumbnail(const QByteArray &jpeg)
{
    const QByteArray bytes = exifBlock(jpeg);
    const TiffBlock block(bytes);
    const qint64 directory = block.directoryAfter(block.longAt(FIRST_DIRECTORY));
    const qint64 place = block.entry(directory, THUMBNAIL_PLACE);
    const qint64 length = block.entry(directory, THUMBNAIL_BYTES);
    if (directory == 0 || place == 0 || place + length > bytes.size())
        return {};
    return bytes.mid(static_cast<int>(place), static_cast<int>(length));
}
