#include "canvas/PicturePainter.h"

#include "canvas/PaintedPixels.h"
#include "canvas/picture/ViewGeometry.h"

#include <QPaintEngine>
#include <QPainter>
#include <QRegion>
#include <QTransform>

#include <cmath>

namespace
{

/// An edge of the layout in whole pixels of the screen.
QPoint onScreen(QPoint point, double ratio)
{
    return (QPointF(point) * ratio).toPoint();
}

/// All but the edge, which is painted over it.
QRect insideEdge(QSize size, double ratio)
{
    const int begin = static_cast<int>(std::floor(2 * ratio));
    return {QPoint(begin, begin),
            QPoint(static_cast<int>(std::ceil((size.width() - 2) * ratio)) - 1,
                   static_cast<int>(std::ceil((size.height() - 2) * ratio)) - 1)};
}

/// Whether all of that place, in pixels of the screen, is to be painted.
bool paintsAllOf(const QPainter &painter, const QRect &place)
{
    const QRegion clip = painter.paintEngine()->systemClip();
    const QTransform &transform = painter.deviceTransform();
    const QRect inside = place.translated(QPointF(transform.dx(), transform.dy()).toPoint());
    return !painter.hasClipping() && (clip.isEmpty() || (QRegion(inside) - clip).isEmpty());
}

} // namespace

void PicturePainter::paint(QPainter *painter, QSize size, const CanvasModel::Shown &shown)
{
    const double ratio = painter->device()->devicePixelRatioF();
    const QRect place =
        pixelPlace(shown.picture ? shown.picture->size() : QSize(0, 0), size, ratio);
    painter->save();
    painter->scale(1.0 / ratio, 1.0 / ratio);
    if (m_barsBlack) {
        // Filling the whole widget would write every pixel of the picture twice.
        for (const QRect &bar : QRegion(insideEdge(size, ratio)) - place)
            painter->fillRect(bar, Qt::black);
    }
    paintInto(*painter, place, shown);
    painter->restore();
}

void PicturePainter::paintInto(QPainter &painter, const QRect &place,
                               const CanvasModel::Shown &shown)
{
    const bool isNew = shown.serial != m_serial || place.size() != m_pixels;
    m_serial = shown.serial;
    m_pixels = place.size();
    if (isNew && shown.picture && !place.isEmpty()) {
        const auto pixels = paintedPixels(painter, place);
        if (pixels && paintsAllOf(painter, place)) {
            m_scaled.scaleInto(*shown.picture, *pixels);
            return;
        }
    }
    const QImage &image = m_scaled.image(shown.picture, shown.serial, place.size());
    if (!image.isNull())
        painter.drawImage(place.topLeft(), image);
}

QRect PicturePainter::pixelPlace(QSize picture, QSize size, double ratio)
{
    const ViewGeometry::Fit fitted = ViewGeometry::fit(picture, size);
    // Whole pixels of the screen, which are not those of the layout at a ratio of 1.5, leave the
    // painter nothing to scale, and no line between the picture and its bars.
    const QPoint corner = onScreen(fitted.margin, ratio);
    const QPoint end =
        onScreen(fitted.margin + QPoint(fitted.size.width(), fitted.size.height()), ratio);
    return {corner, end - QPoint(1, 1)};
}
