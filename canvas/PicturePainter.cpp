#include "canvas/PicturePainter.h"

#include "canvas/picture/ViewGeometry.h"

#include <QPainter>
#include <QRegion>

namespace
{

/// `corner` is in pixels of the screen, as the image is: the painter then copies, where it would
/// scale by way of the layout's units.
void drawPixels(QPainter *painter, QPoint corner, const QImage &image, double ratio)
{
    painter->save();
    painter->scale(1.0 / ratio, 1.0 / ratio);
    painter->drawImage(corner, image);
    painter->restore();
}

} // namespace

void PicturePainter::paint(QPainter *painter, QSize size, const CanvasModel::Shown &shown)
{
    const ViewGeometry::Fit fitted =
        ViewGeometry::fit(shown.picture ? shown.picture->size() : QSize(0, 0), size);
    const QRect place(fitted.margin, fitted.size);
    if (m_barsBlack) {
        // Filling the whole widget would write every pixel of the picture twice.
        const QRegion bars = QRegion(QRect({0, 0}, size).adjusted(2, 2, -2, -2)) - place;
        for (const QRect &bar : bars)
            painter->fillRect(bar, Qt::black);
    }
    // Whole pixels of the screen, which are not those of the layout at a ratio of 1.5, leave the
    // painter nothing to scale.
    const double ratio = painter->device()->devicePixelRatioF();
    const QPoint corner = (QPointF(place.topLeft()) * ratio).toPoint();
    const QPoint end =
        (QPointF(place.topLeft() + QPoint(place.width(), place.height())) * ratio).toPoint();
    const QSize pixels(end.x() - corner.x(), end.y() - corner.y());
    const QImage &image = m_scaled.image(shown.picture, shown.serial, pixels);
    if (!image.isNull())
        drawPixels(painter, corner, image, ratio);
}
