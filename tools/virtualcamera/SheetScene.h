#pragma once

#include <QRectF>
#include <QString>
#include <QtGlobal>

class QPainter;
class QTransform;
class QSize;

/// The things on the emulated desk, each painted in scene units: 1920 across the whole desk, the
/// origin in its middle.
namespace SheetScene
{

constexpr double DESK_WIDTH = 1920.0;

/// From scene units to pixels of a picture that shows the middle of the desk `zoom` times enlarged.
[[nodiscard]] QTransform toPixels(const QSize &size, double zoom);

/// Desk, sheet and all that lies still. Texts are left out where no fonts are to be had, which is
/// in a program without a QGuiApplication.
void paintStill(QPainter &painter, const QString &banner);

/// The frame number in big digits and as a row of cells.
void paintCounter(QPainter &painter, quint32 frameNumber);
[[nodiscard]] QRectF counterArea();

void paintPencil(QPainter &painter, quint32 frameNumber);
[[nodiscard]] QRectF pencilArea(quint32 frameNumber);

} // namespace SheetScene
