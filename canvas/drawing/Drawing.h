#pragma once

#include "canvas/drawing/AnnotationLayer.h"
#include "canvas/drawing/DragTool.h"
#include "canvas/drawing/TextAnchor.h"
#include "settings/CanvasModes.h"

#include <QPoint>
#include <QRect>
#include <QSize>

class QTextDocument;
class ViewGeometry;

/// What the speaker has drawn on the picture: the layer, the drag that is under way and the place
/// of the text that is being written. Points are in processed-picture coordinates.
/// Not locked: its owner's lock guards it.
class Drawing
{
public:
    /// The layer with the shape that is being dragged.
    [[nodiscard]] const AnnotationLayer &layer() { return drawnLayer(); }

    /// A new empty layer of that size, in rotated-picture coordinates.
    void resize(QSize size);
    void clear();
    /// Turns everything by a quarter, an unfinished text's place too.
    void turn(bool clockwise);

    void press(CanvasModes::MouseMode mode, QPoint picturePoint);
    /// The hand moves the view.
    void move(CanvasModes::MouseMode mode, QPoint picturePoint, const DragTool::ShapeStyle &style,
              ViewGeometry &view);
    /// Ends the drag. Returns the clip selection, invalid when there is none.
    QRect release();
    [[nodiscard]] bool dragging() const { return m_tool.dragging(); }
    /// The clip selection while it is dragged; null at other times.
    [[nodiscard]] QRect clipRectangle() const { return m_tool.clipRectangle(); }

    /// Notes where the text that is begun now will stand.
    void placeText(QPoint picturePoint, const ViewGeometry &view);
    /// Paints the text there, scaled as the view (`transformedSize`, in output pixels) is to the
    /// canvas.
    void commitText(QTextDocument &document, QSize transformedSize, QSize canvasSize);

private:
    AnnotationLayer &drawnLayer();

    AnnotationLayer m_layer;
    DragTool m_tool;
    TextAnchor m_textAnchor;
};
