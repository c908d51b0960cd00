#include "sources/photographs/PictureColours.h"

#include "sources/photographs/PictureBuilder.h"

#include <algorithm>

namespace
{

/// Rows that are converted at once.
constexpr int BLOCK_ROWS = 64;

/// One row of 32-bit pixels that are not premultiplied, laid over white.
void layOverWhite(const QRgb *source, uchar *target, int width)
{
    for (int x = 0; x < width; ++x, target += 3) {
        const QRgb pixel = qPremultiply(source[x]);
        const int white = 255 - qAlpha(pixel);
        target[0] = static_cast<uchar>(qRed(pixel) + white);
        target[1] = static_cast<uchar>(qGreen(pixel) + white);
        target[2] = static_cast<uchar>(qBlue(pixel) + white);
    }
}

void takeOpaque(const QRgb *source, uchar *target, int width)
{
    for (int x = 0; x < width; ++x, target += 3) {
        target[0] = static_cast<uchar>(qRed(source[x]));
        target[1] = static_cast<uchar>(qGreen(source[x]));
        target[2] = static_cast<uchar>(qBlue(source[x]));
    }
}

} // namespace

PictureColours::PictureColours(const QColorSpace &space)
    : m_inScreenColours(!space.isValid() || space == QColorSpace(QColorSpace::SRgb))
{
    if (!m_inScreenColours)
        m_transform = space.transformationToColorSpace(QColorSpace(QColorSpace::SRgb));
}

QImage PictureColours::rgb(const QImage &rows) const
{
    if (rows.format() == QImage::Format_RGB888 && m_inScreenColours)
        return rows;
    const bool isOpaque = !rows.hasAlphaChannel();
    QImage between = rows.convertToFormat(isOpaque ? QImage::Format_RGB32 : QImage::Format_ARGB32);
    QImage result(rows.size(), QImage::Format_RGB888);
    if (between.isNull() || result.isNull())
        return {};
    if (!m_inScreenColours)
        between.applyColorTransform(m_transform);
    for (int y = 0; y < result.height(); ++y) {
        const auto *pixels = reinterpret_cast<const QRgb *>(between.constScanLine(y));
        (isOpaque ? takeOpaque : layOverWhite)(pixels, result.scanLine(y), result.width());
    }
    return result;
}

QImage PictureColours::prepared(const QImage &image, const QColorSpace &space)
{
    return prepared(image, space, image.size());
}

QImage PictureColours::prepared(const QImage &image, const QColorSpace &space, QSize size)
{
    if (image.isNull())
        return {};
    const PictureColours colours(space);
    if (image.format() == QImage::Format_RGB888 && colours.m_inScreenColours &&
        size == image.size())
        return image;
    PictureBuilder builder(image.size(), size);
    for (int y = 0; y < image.height() && !builder.isNull(); y += BLOCK_ROWS) {
        const int rows = std::min(BLOCK_ROWS, image.height() - y);
        builder.addRows(colours.rgb(image.copy(0, y, image.width(), rows)));
    }
    return builder.picture();
}
