#pragma once

#include <QPoint>
#include <QPointF>
#include <QPolygon>
#include <QPolygonF>
#include <QRect>
#include <QSize>
#include <QVector>

/// The geometry of the drawing tools, from points to shapes. Pure; any thread.
namespace AnnotationShapes
{

/// The last step of the way from the widget into the layer: a point of the processed picture
/// (`outputSize`, black bars included) to the pixel of the layer (`layerSize`, the rotated picture)
/// that is shown there, at the view's scale and offset. A scale of 0 or less maps to (0, 0).
[[nodiscard]] QPoint layerPoint(QPoint picturePoint, QSize outputSize, QSize layerSize,
                                double scale, QPoint offset);

/// Seven points round the shaft and the head, ending at `tip`: the shaft is a tenth of the length
/// wide and four fifths long, the head a fifth wide. The first point is not repeated at the end.
[[nodiscard]] QPolygonF arrow(QPoint tail, QPoint tip);

/// The equilateral triangle with that apex whose base is centred on the given point, at right
/// angles to the way from one to the other; the base's ends are rounded to whole pixels.
[[nodiscard]] QPolygon triangle(QPoint apex, QPoint baseCentre);

/// The box of the rectangle and circle tools. Drawn with a painter its outline passes through both
/// points, whichever way the drag went; it is therefore not normalised.
[[nodiscard]] QRect dragBox(QPoint press, QPoint current);

/// What the painter's ellipse in that box may paint past its two ends, under a pen at most one
/// pixel wide: with an odd height it overruns, by a tenth of the width when it is 3 pixels high.
[[nodiscard]] QVector<QRect> ellipseOverruns(const QRect &box);

/// The square that the eraser clears round a point, not yet clipped to the layer.
[[nodiscard]] QRect eraserSquare(QPoint centre, int penWidth);

/// The clip selection between two points of the processed picture, kept at 0 or above and at the
/// frame's size or below; invalid when the drag lies left of or above the picture.
[[nodiscard]] QRect clipRectangle(QPoint press, QPoint current, QSize frameSize);

/// What drawing the line through the points changes: for each band of `bandHeight` rows of the
/// layer and each piece of the line its extent in the band, `reach` pixels wider on every side.
/// With `filled`, one extent a band from the leftmost to the rightmost point there.
[[nodiscard]] QVector<QRect> coveredParts(const QPolygonF &points, double reach, bool filled,
                                          QSize layerSize, int bandHeight);

} // namespace AnnotationShapes
