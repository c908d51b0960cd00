#pragma once

#include "canvas/drawing/Ink.h"
#include "settings/CanvasModes.h"

#include <QColor>
#include <QPoint>
#include <QRect>

#include <cstdint>
#include <optional>

class AnnotationLayer;
class ViewGeometry;
struct ShapeTool;

/// What the left button does between press and release: draws on the layer, erases, pans the view
/// or selects a clip. All points are in processed-picture coordinates.
///
/// Knows no widget and no lock: the canvas calls it under the lock that guards the layer and the
/// view it hands over. Moves and releases without a press do nothing.
class DragTool
{
public:
    /// The colours and widths that shapes are drawn with.
    struct ShapeStyle {
        QColor penColor = Qt::black;
        /// In layer pixels, and the measure of the eraser; 0 or less draws lines 1 wide.
        int penWidth = 3;
        bool fillEnabled = false;
        QColor fillColor = Qt::black;
        /// What the width of a freehand line is multiplied by.
        double widthFactor = 1.0;
    };

    void press(CanvasModes::MouseMode mode, QPoint picturePoint, AnnotationLayer &layer);
    /// Freehand and eraser take effect at once, because each of their points counts. Of a shape
    /// only the last position counts, and drawing it may take longer than the mouse takes to the
    /// next one: it waits for drawPending().
    void move(CanvasModes::MouseMode mode, QPoint picturePoint, const ShapeStyle &style,
              AnnotationLayer &layer, ViewGeometry &view);
    /// Draws the shape of the last move, if it is not drawn yet. To be called before the layer is
    /// shown, turned, painted on or replaced.
    void drawPending(AnnotationLayer &layer);
    /// Ends the drag and the clip selection. Returns the selection, invalid when there is none.
    QRect release(AnnotationLayer &layer);

    /// Ends the drag and takes back what it has drawn.
    void cancel(AnnotationLayer &layer);
    /// Whether drawPending() would draw.
    [[nodiscard]] bool isPending() const { return m_pending.has_value(); }

    [[nodiscard]] bool dragging() const { return m_dragging; }
    /// The clip selection while it is dragged; null at other times.
    [[nodiscard]] QRect clipRectangle() const { return m_clipRectangle; }

    /// The pixel of the layer that is shown at a point of the processed picture.
    [[nodiscard]] static QPoint layerPoint(QPoint picturePoint, const ViewGeometry &view,
                                           const AnnotationLayer &layer);

private:
    struct Stroke {
        QPoint from;
        QPoint to;
    };

    struct Shape {
        const ShapeTool *tool;
        Stroke stroke;
        ShapeStyle style;
    };

    void pan(QPoint picturePoint, ViewGeometry &view);
    static void draw(const Shape &shape, AnnotationLayer &layer);
    void drawFreehand(const Stroke &piece, const ShapeStyle &style, AnnotationLayer &layer);

    bool m_dragging = false;
    /// Where the drag began; for the hand and freehand, its latest point.
    QPoint m_pressPoint;
    /// The shape that was moved to but is not drawn yet.
    std::optional<Shape> m_pending;
    /// The freehand stroke since the press, or since the drawing was turned or replaced under it.
    FreehandStroke m_freehand;
    std::uint64_t m_freehandBase = 0;
    /// Another tool has drawn in this drag: what it did would be lost if the stroke were redrawn.
    bool m_isMixed = false;
    QRect m_clipRectangle;
};
