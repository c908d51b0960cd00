#pragma once

#include "canvas/drawing/AnnotationLayer.h"
#include "canvas/drawing/DragTool.h"
#include "canvas/drawing/LayerHistory.h"
#include "canvas/drawing/TextAnchor.h"
#include "settings/CanvasModes.h"

#include <QPoint>
#include <QRect>
#include <QSize>

#include <cstdint>
#include <memory>

class QTextDocument;
class ViewGeometry;

/// What the speaker has drawn on the picture: the layer, the drag that is under way, the place of
/// the text that is being written, and the steps that can be taken back. Points are in
/// processed-picture coordinates.
/// Not locked: its owner's lock guards it.
class Drawing
{
public:
    /// The layer with the shape that is being dragged.
    [[nodiscard]] const AnnotationLayer &layer() { return drawnLayer(); }

    /// A new empty layer of that size, in rotated-picture coordinates. The drawing is discarded,
    /// which is a step.
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
    /// Ends the drag and takes back what it has drawn; that was no step.
    void cancel() { m_tool.cancel(m_layer); }
    [[nodiscard]] bool dragging() const { return m_tool.dragging(); }
    /// The clip selection while it is dragged; null at other times.
    [[nodiscard]] QRect clipRectangle() const { return m_tool.clipRectangle(); }

    /// Notes where the text that is begun now will stand.
    void placeText(QPoint picturePoint, const ViewGeometry &view);
    /// Paints the text there, scaled as the view (`transformedSize`, in output pixels) is to the
    /// canvas. On an empty picture, the drawing that was discarded with the last one takes the
    /// text, and undo() brings both back.
    void commitText(QTextDocument &document, QSize transformedSize, QSize canvasSize);

    /// Takes back the shape that is being dragged and ends the drag, or takes back the last step. A
    /// drawing of a layer of another size is shown scaled, its aspect kept, until something is
    /// drawn on it. False when there is nothing to take back, or no memory to do so.
    bool undo();
    bool redo();
    [[nodiscard]] bool canUndo() const;
    [[nodiscard]] bool canRedo() const { return m_history.canRedo(); }
    [[nodiscard]] const LayerHistory &history() const { return m_history; }
    /// See LayerHistory::packSome().
    void packHistory(std::int64_t nowMs) { m_history.packSome(nowMs); }

private:
    AnnotationLayer &drawnLayer();
    /// The drawing in its own size.
    [[nodiscard]] AnnotationLayer &drawing() { return m_original ? *m_original : m_layer; }
    /// Makes a step of what the drag has drawn so far; the drag goes on.
    void endStep();
    /// Makes a step of all that is drawn, and leaves an empty drawing of that size.
    void discard(QSize size);
    bool step(bool (LayerHistory::*way)(const LayerHistory::Exchange &));
    /// Shows the drawing on a layer of the picture's size, wherever an exchange has left it.
    void showDrawing();
    [[nodiscard]] bool isShapeBegun() const { return m_tool.isPending() || m_layer.isShapeDrawn(); }

    AnnotationLayer m_layer;
    /// The drawing, when it is of another size than the layer, which then shows it scaled; else
    /// null.
    std::unique_ptr<AnnotationLayer> m_original;
    DragTool m_tool;
    TextAnchor m_textAnchor;
    LayerHistory m_history;
    /// Quarter turns of the layer clockwise, 0 to 3.
    int m_turns = 0;
    /// The size of the picture that is drawn on, and of the last picture that was not empty.
    QSize m_size{0, 0};
    QSize m_lastSize{0, 0};
    /// Whether the last step discarded the drawing because the picture became empty.
    bool m_isEmptied = false;
};
