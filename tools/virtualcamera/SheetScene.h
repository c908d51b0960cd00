#pragma once

#include <QColor>
#include <QRectF>
#include <QtGlobal>

class QPainter;
class QTransform;
class QSize;

/// The things that move on the emulated desk, painted in scene units: 1920 across the whole desk,
/// the origin in its middle.
namespace SheetScene
{

constexpr double DESK_WIDTH = 1920.0;
inline const QColor INK(30, 32, 40);

/// From scene units to pixels of a picture that shows the middle of the desk `zoom` times enlarged.
[[nodiscard]] QTransform toPixels(const QSize &size, double zoom);

/// The frame number in big digits and as a row of cells.
void paintCounter(QPainter &painter, quint32 frameNumber);
[[nodiscard]] QRectF counterArea();

void paintPencil(QPainter &painter, quint32 frameNumber);
[[nodiscard]] QRectF pencilArea(quint32 frameNumber);

} // namespace SheetScene
