#include "canvas/drawing/Drawing.h"

#include "canvas/drawing/TextPainter.h"
#include "canvas/picture/ViewGeometry.h"

#include <utility>
#include <vector>

namespace
{

AnnotationLayer emptyLayer(QSize size)
{
    AnnotationLayer layer;
    layer.reset(size);
    return layer;
}

} // namespace

AnnotationLayer &Drawing::drawnLayer()
{
    m_tool.drawPending(m_layer);
    return m_layer;
}

// Steps -------------------------------------------------------

void Drawing::endStep()
{
    AnnotationLayer::Shape shape = drawnLayer().endShape();
    if (m_tool.dragging())
        m_layer.beginShape();
    if (!shape.isComplete && m_original) {
        // The earlier steps belong to a drawing of another size, over which this one has been
        // drawn.
        m_history.clear();
        m_original.reset();
        return;
    }
    if (shape.changed.empty())
        return;
    if (m_original) {
        // From here on the drawing is what the layer shows.
        m_history.add({std::move(*m_original), m_turns}, LayerHistory::Kind::BeforeStep);
        m_original.reset();
    }
    // Each record exchanges all pixels of its parts. The pixels of a step that could not be kept
    // are therefore removed and restored together with the earlier steps that cover them.
    m_history.add({std::move(shape.changed), m_turns},
                  shape.isComplete ? LayerHistory::Kind::Step : LayerHistory::Kind::AfterStep);
}

void Drawing::discard(QSize size)
{
    AnnotationLayer before = emptyLayer(size);
    drawing().exchange(before);
    m_history.add({std::move(before), m_turns});
}

void Drawing::showDrawing()
{
    if (drawing().size() == m_size) {
        if (m_original)
            m_layer.exchange(*m_original);
        m_original.reset();
        return;
    }
    if (!m_original) {
        m_original = std::make_unique<AnnotationLayer>();
        m_original->exchange(m_layer);
    }
    m_layer.reset(m_size);
    // Without memory the drawing cannot be shown, but it is kept.
    static_cast<void>(m_layer.showScaled(*m_original));
}

bool Drawing::undo()
{
    if (m_tool.dragging() && isShapeBegun()) {
        m_tool.cancel(m_layer);
        return true;
    }
    return m_history.canUndo() && step(&LayerHistory::undo);
}

bool Drawing::redo()
{
    endStep();
    return m_history.canRedo() && step(&LayerHistory::redo);
}

bool Drawing::step(bool (LayerHistory::*way)(const LayerHistory::Exchange &))
{
    m_isEmptied = false;
    const bool done = (m_history.*way)(
        [this](LayerRecord &record) { return record.exchangeWith(drawing(), m_turns); });
    showDrawing();
    return done;
}

bool Drawing::canUndo() const
{
    return m_history.canUndo() || (m_tool.dragging() && isShapeBegun());
}

// The layer as a whole ----------------------------------------

void Drawing::resize(QSize size)
{
    endStep();
    const bool isBlank = drawing().isBlank();
    if (!isBlank) {
        discard(size);
        m_original.reset();
    } else if (!m_history.isEmpty() && !m_original) {
        // What redo brings back belongs on a layer of the old size.
        m_original = std::make_unique<AnnotationLayer>(emptyLayer(m_size));
    }
    m_isEmptied = !isBlank && size.isEmpty();
    m_size = size.isEmpty() ? QSize(0, 0) : size;
    m_layer.reset(m_size);
    if (m_original && m_original->size() == m_size)
        m_original.reset();
    if (!size.isEmpty())
        m_lastSize = size;
    m_textAnchor.layerReplaced();
}

void Drawing::clear()
{
    endStep();
    if (!drawing().isBlank())
        discard(drawing().size());
    m_layer.clear();
}

void Drawing::turn(bool clockwise)
{
    endStep();
    m_textAnchor.turn(clockwise, m_size);
    m_layer.turn(clockwise);
    if (m_original)
        m_original->turn(clockwise);
    m_turns = (m_turns + (clockwise ? 1 : 3)) % 4;
    m_size.transpose();
    m_lastSize.transpose();
}

// Drag and text -----------------------------------------------

void Drawing::press(CanvasModes::MouseMode mode, QPoint picturePoint)
{
    // The release went to another window.
    if (m_tool.dragging())
        release();
    m_tool.press(mode, picturePoint, m_layer);
}

void Drawing::move(CanvasModes::MouseMode mode, QPoint picturePoint,
                   const DragTool::ShapeStyle &style, ViewGeometry &view)
{
    m_tool.move(mode, picturePoint, style, m_layer, view);
}

QRect Drawing::release()
{
    endStep();
    return m_tool.release(m_layer);
}

void Drawing::placeText(QPoint picturePoint, const ViewGeometry &view)
{
    m_textAnchor.place(DragTool::layerPoint(picturePoint, view, m_layer));
}

void Drawing::commitText(QTextDocument &document, QSize transformedSize, QSize canvasSize)
{
    endStep();
    const bool isSeen = !m_size.isEmpty();
    const QSize shown = m_size;
    if (!isSeen) {
        if (m_isEmptied)
            undo();
        m_size = m_lastSize;
        showDrawing();
    }
    m_layer.beginShape();
    TextPainter::paint(document, m_layer, m_textAnchor, transformedSize, canvasSize);
    endStep();
    if (!isSeen)
        resize(shown);
}
