#include "sources/photographs/PictureColours.h"

#include <QColorTransform>

#include <algorithm>

namespace
{

/// Rows that are converted at once.
constexpr int BLOCK_ROWS = 64;

bool isScreenColours(const QColorSpace &space)
{
    return !space.isValid() || space == QColorSpace(QColorSpace::SRgb);
}

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

void leaveOutColumns(const QRgb *source, int sourceWidth, QRgb *target, int width)
{
    for (int x = 0; x < width; ++x)
        target[x] = source[static_cast<qint64>(x) * sourceWidth / width];
}

} // namespace

QImage PictureColours::prepared(const QImage &image, const QColorSpace &space)
{
    return prepared(image, space, image.size());
}

QImage PictureColours::prepared(const QImage &image, const QColorSpace &space, QSize size)
{
    const bool inScreenColours = isScreenColours(space);
    const bool sameSize = size == image.size();
    if (image.format() == QImage::Format_RGB888 && inScreenColours && sameSize)
        return image;
    QImage result(size, QImage::Format_RGB888);
    if (image.isNull() || result.isNull())
        return {};
    const QColorTransform transform =
        inScreenColours ? QColorTransform()
                        : space.transformationToColorSpace(QColorSpace(QColorSpace::SRgb));
    const bool isOpaque = !image.hasAlphaChannel();
    const QImage::Format between = isOpaque ? QImage::Format_RGB32 : QImage::Format_ARGB32;
    const int step = sameSize ? BLOCK_ROWS : 1;
    QVector<QRgb> narrow(size.width());
    for (int y = 0; y < size.height(); y += step) {
        const int rows = std::min(step, size.height() - y);
        const int from =
            sameSize ? y
                     : static_cast<int>(static_cast<qint64>(y) * image.height() / size.height());
        QImage block = image.copy(0, from, image.width(), rows).convertToFormat(between);
        if (!inScreenColours)
            block.applyColorTransform(transform);
        for (int i = 0; i < rows; ++i) {
            auto *pixels = reinterpret_cast<const QRgb *>(block.constScanLine(i));
            if (!sameSize) {
                leaveOutColumns(pixels, image.width(), narrow.data(), size.width());
                pixels = narrow.constData();
            }
            (isOpaque ? takeOpaque : layOverWhite)(pixels, result.scanLine(y + i), size.width());
        }
    }
    return result;
}
