#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QDataStream>
#include <QImage>
#include <QSize>

/// JPEG files with a small picture in their EXIF segment, as cameras write them.
namespace ExifPicture
{

inline QByteArray jpeg(QSize size, const QColor &colour)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "jpg");
    return bytes;
}

/// The TIFF block: a directory with the orientation, and one with the place of the thumbnail.
inline QByteArray tiff(const QByteArray &thumbnail, int orientation, QDataStream::ByteOrder order)
{
    constexpr quint16 SHORT = 3;
    constexpr quint16 LONG = 4;
    constexpr quint32 SECOND = 26;
    constexpr quint32 END = 56;
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setByteOrder(order);
    stream.writeRawData(order == QDataStream::BigEndian ? "MM" : "II", 2);
    stream << quint16(42) << quint32(8);
    stream << quint16(1) << quint16(0x112) << SHORT << quint32(1) << quint16(orientation)
           << quint16(0) << SECOND;
    stream << quint16(2) << quint16(0x201) << LONG << quint32(1) << END << quint16(0x202) << LONG
           << quint32(1) << quint32(thumbnail.size()) << quint32(0);
    return bytes + thumbnail;
}

/// That JPEG file with an EXIF segment in front of its others.
inline QByteArray with(const QByteArray &thumbnail, const QByteArray &jpeg, int orientation = 1,
                       QDataStream::ByteOrder order = QDataStream::BigEndian)
{
    const QByteArray content = QByteArray("Exif\0\0", 6) + tiff(thumbnail, orientation, order);
    QByteArray segment("\xff\xe1", 2);
    segment += char((content.size() + 2) / 256);
    segment += char((content.size() + 2) % 256);
    return QByteArray(jpeg).insert(2, segment + content);
}

} // namespace ExifPicture
