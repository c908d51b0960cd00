#pragma once

#include <QImage>
#include <QString>

class QPainter;

/// The one loader of skin images. On a screen with a device pixel ratio above 1 it takes the copy
/// at twice the size and says so in the image, so that layouts count in device-independent pixels
/// everywhere. Any thread, once the application object stands.
namespace SkinImages
{

/// The image of a resource path, with or without ".png"; null when there is none.
[[nodiscard]] QImage load(const QString &path);
/// The size in device-independent pixels; empty for a null image.
[[nodiscard]] QSize layoutSize(const QImage &image);
/// Lets the painter average where the screen has neither the images' pixels nor twice as many: at
/// a scale of one and a half, lines of one pixel would come out thick, thin or not at all.
void smoothAtFractions(QPainter *painter);
/// The image stretched to that size, in device-independent pixels, as sharp as it is itself and
/// without smoothing; null when either side is not positive.
[[nodiscard]] QImage stretched(const QImage &image, QSize size);

} // namespace SkinImages
