#include "canvas/ImageCanvas.h"

#include "canvas/CanvasStrokes.h"
#include "canvas/OSDProcessor.h"
#include "canvas/PointerEvents.h"
#include "canvas/StartPicture.h"
#include "canvas/TextEditor.h"
#include "canvas/ToolPointer.h"
#include "canvas/model/ShotSaver.h"
#include "diagnostics/TerminalLines.h"

#include <QFileInfo>
#include <QMouseEvent>
#include <QPainter>
#include <QTextDocument>
#include <QThread>

#include <algorithm>
#include <cerrno>

namespace
{

constexpr QSize BOARD_SIZE(1280, 720);

} // namespace

ImageCanvas::ImageCanvas(QWidget *parent)
    : QWidget(parent)
    , m_text(this)
{
    setFont(QFont(m_text.fontFace(), m_text.fontSize()));
    setAttribute(Qt::WA_OpaquePaintEvent);
    connect(&m_timers, &RefreshTimers::due, this, &ImageCanvas::autoRefresh);
    connect(&m_timers, &RefreshTimers::viewDue, this, &ImageCanvas::showView);
    connect(&m_timers, &RefreshTimers::idle, this, [this] { m_model.packHistory(); });

    connect(m_text.editor(), &TextEditor::finished, this, &ImageCanvas::endTextEditing);
    connect(m_text.editor(), &TextEditor::undoAvailable, this, &ImageCanvas::announceHistory);
    connect(m_text.editor(), &TextEditor::redoAvailable, this, &ImageCanvas::announceHistory);
    connect(m_text.editor(), &TextEditor::textChanged, this, &ImageCanvas::typedTextChanged);

    m_strokes = std::make_unique<CanvasStrokes>(*this, m_model);
    m_pointer = new ToolPointer(this, m_strokes.get());
    connect(m_strokes.get(), &CanvasStrokes::drawn, this, &ImageCanvas::showStroke);
    connect(m_strokes.get(), &CanvasStrokes::viewMoved, &m_timers, &RefreshTimers::viewMoved);
    connect(m_strokes.get(), &CanvasStrokes::historyTouched, this, &ImageCanvas::announceHistory);
    connect(m_strokes.get(), &CanvasStrokes::clipDone, this, &ImageCanvas::clipDone);
    connect(m_strokes.get(), &CanvasStrokes::textPlaced, this, &ImageCanvas::openTextEditor);
    connect(m_strokes.get(), &CanvasStrokes::zoomed, this, [this](bool in) {
        if (m_osd)
            in ? m_osd->osdZoomIn() : m_osd->osdZoomOut();
    });
    if (const FramePtr picture = startPicture())
        m_model.take(picture);
}

ImageCanvas::~ImageCanvas() = default;

// Frames ------------------------------------------------------

void ImageCanvas::imageCaptured(const QImage &image)
{
    const CanvasModel::Shot shot = m_model.take(image);
    requestRepaint();
    save(shot);
}

void ImageCanvas::imageCaptured(void *pixels, int width, int height, bool mirror, bool rgb32)
{
    const QSize size = pixels ? QSize(std::max(width, 0), std::max(height, 0)) : QSize(0, 0);
    const CanvasModel::Shot shot = m_model.take(pixels, size, mirror, rgb32);
    requestRepaint();
    save(shot);
}

std::shared_ptr<std::uint8_t> ImageCanvas::memoryForFrame(int width, int height)
{
    return m_model.lend({width, height});
}

void ImageCanvas::startAutoRefresh()
{
    m_timers.start();
}

void ImageCanvas::stopAutoRefresh()
{
    m_timers.stop();
}

void ImageCanvas::autoRefresh()
{
    const CanvasModel::Shot shot = m_model.refresh();
    requestRepaint();
    save(shot);
}

void ImageCanvas::showView()
{
    // A snapshot that is armed is one of the next frame.
    static_cast<void>(m_model.refresh());
    requestRepaint();
}

void ImageCanvas::fillCanvas(const QColor &color)
{
    m_boardColor = color;
    QImage board(BOARD_SIZE, QImage::Format_RGB888);
    board.fill(color);
    imageCaptured(board);
}

void ImageCanvas::setDrawingBoardMode(bool on)
{
    // The drawing board shows its parent's background beside the picture, not black bars.
    m_picturePainter.setBarsBlack(!on);
    setAttribute(Qt::WA_OpaquePaintEvent, !on);
}

QImage ImageCanvas::currentImage() const
{
    return frameImage(m_model.shown().picture);
}

// Snapshots ---------------------------------------------------

void ImageCanvas::snapshot()
{
    const std::shared_ptr<OutputFolder> folder = OutputFolder::of(snapshotFolder);
    const OutputFolder::State state = folder->state();
    if (state == OutputFolder::State::Missing) {
        // No picture is taken then, and only the terminal reports it.
        TerminalLines::tell(TerminalLines::Line::SnapshotNotWritten,
                            {snapshotFolder, qt_error_string(ENOENT)}, snapshotFolder);
        return;
    }
    if (state != OutputFolder::State::Exists)
        reportSnapshotFailure(snapshotFolder, qt_error_string(ETIMEDOUT));
    m_model.arm(folder, {snapshotMode, snapshotInterval, seriesLimit});
}

void ImageCanvas::save(const CanvasModel::Shot &shot)
{
    const ShotSaver::Outcome outcome = ShotSaver::save(m_model, shot);
    if (!outcome.reason.isNull())
        reportSnapshotFailure(outcome.failedPath, outcome.reason);
    // A failed write shows the same indication as a good one.
    if (outcome.taken)
        QMetaObject::invokeMethod(this, "showSnapshotTaken");
}

void ImageCanvas::reportSnapshotFailure(const QString &path, const QString &reason)
{
    qWarning("%s: %s", qPrintable(path), qPrintable(reason));
    TerminalLines::tell(TerminalLines::Line::SnapshotNotWritten, {path, reason},
                        QFileInfo(path).path() + reason);
    QMetaObject::invokeMethod(this, "keepSnapshotFailure", Q_ARG(QString, path),
                              Q_ARG(QString, reason));
}

void ImageCanvas::keepSnapshotFailure(const QString &path, const QString &reason)
{
    m_snapshotFailure = SnapshotFailure{QDateTime::currentDateTime(), path, reason};
    emit snapshotFailed(path, reason);
}

void ImageCanvas::showSnapshotTaken()
{
    if (m_osd)
        m_osd->osdSnapshot();
}

// View --------------------------------------------------------

void ImageCanvas::zoomIn()
{
    if (m_model.zoomIn())
        requestRepaint();
}

void ImageCanvas::zoomOut()
{
    m_model.zoomOut();
    requestRepaint();
}

void ImageCanvas::setViewport(int x, int y)
{
    m_model.setViewport({x, y});
}

void ImageCanvas::rotate()
{
    m_model.turn(true);
    requestRepaint();
}

void ImageCanvas::rotateRev()
{
    m_model.turn(false);
    requestRepaint();
}

QPoint ImageCanvas::transformMousePoint(QPoint widgetPoint) const
{
    return ViewGeometry::picturePoint(widgetPoint, m_model.pictureSize(), size());
}

void ImageCanvas::resizeEvent(QResizeEvent *event)
{
    m_model.refit();
    m_text.keepInside();
    QWidget::resizeEvent(event);
}

// Drawing and text --------------------------------------------

void ImageCanvas::setMouseMode(MouseMode mode)
{
    m_mouseMode = mode;
    if (mode != Text)
        endTextEditing();
}

void ImageCanvas::endTextEditing()
{
    if (!m_text.isOpen())
        return;
    m_text.close();
    m_model.commitText(m_text.document(), size());
    announceHistory();
    emit typedTextChanged();
}

void ImageCanvas::clearPainting()
{
    m_model.clearDrawing();
    announceHistory();
}

bool ImageCanvas::canUndo() const
{
    return m_text.isOpen() ? m_text.document().isUndoAvailable() : m_model.canUndo();
}

bool ImageCanvas::canRedo() const
{
    return m_text.isOpen() ? m_text.document().isRedoAvailable() : m_model.canRedo();
}

void ImageCanvas::undo()
{
    if (m_text.isOpen())
        m_text.editor()->undo();
    else if (m_model.undo())
        showStroke();
    announceHistory();
}

void ImageCanvas::redo()
{
    if (m_text.isOpen())
        m_text.editor()->redo();
    else if (m_model.redo())
        showStroke();
    announceHistory();
}

void ImageCanvas::announceHistory()
{
    const bool undoable = canUndo();
    const bool redoable = canRedo();
    if (undoable == m_canUndo && redoable == m_canRedo)
        return;
    m_canUndo = undoable;
    m_canRedo = redoable;
    emit historyChanged();
}

void ImageCanvas::showStroke()
{
    m_timers.drawn();
    announceHistory();
}

void ImageCanvas::setPenPressure(bool on)
{
    m_strokes->setPressure(on);
}

bool ImageCanvas::takePointer(QEvent *event)
{
    const bool taken = m_strokes->take(event);
    m_pointer->show();
    return taken;
}

bool ImageCanvas::event(QEvent *event)
{
    return PointerEvents::isOfFingers(*event) ? takePointer(event) : QWidget::event(event);
}

void ImageCanvas::mousePressEvent(QMouseEvent *event)
{
    takePointer(event);
}

void ImageCanvas::mouseMoveEvent(QMouseEvent *event)
{
    takePointer(event);
}

void ImageCanvas::mouseReleaseEvent(QMouseEvent *event)
{
    takePointer(event);
}

void ImageCanvas::tabletEvent(QTabletEvent *event)
{
    takePointer(event);
}

void ImageCanvas::wheelEvent(QWheelEvent *event)
{
    takePointer(event);
}

void ImageCanvas::openTextEditor(QPoint widgetPoint)
{
    if (m_text.isOpen()) {
        endTextEditing();
        return;
    }
    // A release outside the canvas is not a click, and an editor there would not be visible.
    if (!rect().contains(widgetPoint))
        return;
    m_model.placeText(widgetPoint, size());
    m_text.open(widgetPoint);
    announceHistory();
}

// Indications and painting ------------------------------------

void ImageCanvas::setOsdProcessor(OSDProcessor *processor)
{
    m_osd = processor;
}

void ImageCanvas::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    m_picturePainter.paint(&painter, size(), m_model.shown());
    if (m_osd) {
        painter.save();
        m_osd->postPaint(&painter);
        painter.restore();
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor("#484848"), 2.0, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(rect().adjusted(1, 1, -1, -1));
}

void ImageCanvas::hideEvent(QHideEvent *event)
{
    // A window has four canvases and shows one; only that one needs a picture in screen pixels.
    m_picturePainter.release();
    QWidget::hideEvent(event);
}

void ImageCanvas::requestRepaint()
{
    // The tap comes last, so that what it asks for is painted behind this canvas, even if its
    // thread is held up here.
    if (QThread::currentThread() == thread()) {
        update();
        announceHistory();
    } else if (!m_updatePosted.exchange(true)) {
        // Widgets may be touched on their own thread only; one pending request is enough.
        QMetaObject::invokeMethod(this, "updatePosted", Qt::QueuedConnection);
    }
    m_tap.tell(m_model);
}

void ImageCanvas::updatePosted()
{
    m_updatePosted = false;
    update();
    // A frame of another size discards the drawing.
    announceHistory();
}
