#include "canvas/PaintedPixels.h"

#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QTransform>

std::optional<PixelRows> paintedPixels(const QPainter &painter, const QRect &place)
{
    const QPaintEngine *engine = painter.paintEngine();
    if (!engine || engine->paintDevice()->devType() != QInternal::Image)
        return {};
    auto &image = static_cast<QImage &>(*engine->paintDevice());
    const bool opaque = image.format() == QImage::Format_RGB32 ||
                        image.format() == QImage::Format_ARGB32_Premultiplied;
    const QTransform &transform = painter.deviceTransform();
    const QPointF offset(transform.dx(), transform.dy());
    const bool oneForOne =
        transform.type() <= QTransform::TxTranslate && offset == QPointF(offset.toPoint());
    const QRect inside = place.translated(offset.toPoint());
    // A picture that is shared would be copied.
    if (!opaque || !oneForOne || !image.rect().contains(inside) || !image.isDetached())
        return {};
    const PixelRows rows{image.bits(), image.width(), image.height(), image.bytesPerLine(), 4};
    return rows.part(inside);
}
