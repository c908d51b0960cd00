#include "canvas/model/CanvasModel.h"

#include "canvas/model/PictureSettings.h"
#include "canvas/picture/FrameSteps.h"

using Lock = std::lock_guard<std::mutex>;

// What runs while the mutex is held ----------------------------

bool CanvasModel::State::holdsInput(const PictureSettings &settings) const
{
    return settings.frozen && picture.hasInput();
}

void CanvasModel::State::takeInput(const FramePtr &frame, QSize size)
{
    const bool withoutMemory = !frame && !size.isEmpty();
    if (withoutMemory)
        return;
    picture.setInput(frame);
    const QSize taken = frame ? size : QSize(0, 0);
    if (taken == view.frameSize())
        return;
    if (!view.isEmpty())
        lastTransformedSize = view.transformedSize();
    view.setFrameSize(taken);
    drawing.resize(view.rotatedSize());
}

FramePipeline::Settings CanvasModel::State::steps(const PictureSettings &settings) const
{
    return {view, settings.effectMode, settings.maskMode};
}

FramePtr CanvasModel::State::untouched(const void *pixels, QSize size,
                                       const FramePipeline::Settings &steps)
{
    const std::shared_ptr<Frame> frame = lent.lock();
    const bool same =
        frame && frame->rows().data == pixels && frame->size() == size && size == view.frameSize();
    return same && FramePipeline::changesNothing(drawing.layer(), steps) ? frame : nullptr;
}

bool CanvasModel::State::renewPicture(const FramePipeline::Settings &steps)
{
    const AnnotationLayer &layer = drawing.layer();
    return picture.renew(layer, layer.revision(), steps);
}

CanvasModel::Shot CanvasModel::State::dueShot(std::int64_t nowMs) const
{
    if (!picture.picture() || !snapshotClock.isDue(nowMs))
        return {};
    return {picture.picture(), armedFolder};
}

QPoint CanvasModel::State::picturePoint(QPoint widgetPoint, QSize widgetSize) const
{
    return ViewGeometry::picturePoint(widgetPoint, picture.size(), widgetSize);
}

QPointF CanvasModel::State::exactPicturePoint(QPointF widgetPoint, QSize widgetSize) const
{
    return ViewGeometry::exactPicturePoint(widgetPoint, picture.size(), widgetSize);
}

void CanvasModel::State::publishTo(Published &published) const
{
    const QSize frame = view.frameSize();
    const auto part = [](int extent) { return static_cast<std::uint64_t>(extent) & 0x7fffffffU; };
    published.shape = part(frame.width()) << 33 | part(frame.height()) << 2 |
                      static_cast<std::uint64_t>(view.rotation());
    published.scale = view.scale();
    published.canUndo = drawing.canUndo();
    published.canRedo = drawing.canRedo();
}

// Frames ------------------------------------------------------

CanvasModel::CanvasModel(const PictureSettings &settings)
    : m_settings(settings)
{
    m_clock.start();
}

CanvasModel::Shot CanvasModel::take(const QImage &image)
{
    const QImage rgb = image.convertToFormat(QImage::Format_RGB888);
    const Lock lock(m_mutex);
    m_lastFrameMs = m_clock.elapsed();
    m_untouched = false;
    if (!m_state.holdsInput(m_settings)) {
        m_state.takeInput(m_state.picture.frameOf(rgb), image.size());
        m_state.publishTo(m_published);
    }
    return m_state.renewPicture(m_state.steps(m_settings)) ? m_state.dueShot(m_clock.elapsed())
                                                           : Shot{};
}

std::shared_ptr<std::uint8_t> CanvasModel::lend(QSize size)
{
    const Lock lock(m_mutex);
    const std::shared_ptr<Frame> frame = m_state.picture.emptyFrame(size);
    m_state.lent = frame;
    return frame ? std::shared_ptr<std::uint8_t>(frame, frame->rows().data) : nullptr;
}

CanvasModel::Shot CanvasModel::take(void *pixels, QSize size, bool mirror, bool rgb32)
{
    const Lock lock(m_mutex);
    m_lastFrameMs = m_clock.elapsed();
    m_untouched = false;
    if (rgb32)
        FrameSteps::makeOpaque(pixels, size);
    FramePipeline::Settings steps = m_state.steps(m_settings);
    FramePtr frame;
    if (!m_state.holdsInput(m_settings)) {
        if (!mirror && !rgb32)
            frame = m_state.untouched(pixels, size, steps);
        if (!frame)
            frame = m_state.picture.copyOf(pixels, size, mirror, rgb32);
        m_state.takeInput(frame, size);
        m_state.publishTo(m_published);
        steps.view = m_state.view;
    }
    const bool renewed = m_state.renewPicture(steps);
    // A picture that is the frame itself, or its copy, already stands in the caller's buffer.
    if (m_state.picture.picture() != frame)
        m_state.picture.copyTo(pixels, size, mirror, rgb32);
    return renewed ? m_state.dueShot(m_clock.elapsed()) : Shot{};
}

void CanvasModel::take(const FramePtr &frame)
{
    const Lock lock(m_mutex);
    m_state.takeInput(frame, frame ? frame->size() : QSize(0, 0));
    m_state.publishTo(m_published);
    static_cast<void>(m_state.renewPicture(m_state.steps(m_settings)));
}

CanvasModel::Shot CanvasModel::refresh()
{
    // The mutex is held without a gap, so that no newer frame can come between and be overwritten.
    const Lock lock(m_mutex);
    const bool renewed =
        m_state.picture.hasInput() && m_state.renewPicture(m_state.steps(m_settings));
    return renewed ? m_state.dueShot(m_clock.elapsed()) : Shot{};
}

CanvasModel::Shown CanvasModel::shown() const
{
    const Lock lock(m_mutex);
    return {m_state.picture.picture(), m_state.picture.serial()};
}

void CanvasModel::forgetFrames()
{
    const Lock lock(m_mutex);
    m_untouched = !m_state.holdsInput(m_settings) && !m_state.drawing.dragging() &&
                  m_state.drawing.layer().isBlank();
}

QSize CanvasModel::pictureSize() const
{
    const Lock lock(m_mutex);
    return m_state.picture.size();
}

// Snapshots ---------------------------------------------------

void CanvasModel::arm(const std::shared_ptr<OutputFolder> &folder,
                      const SnapshotClock::Schedule &schedule)
{
    const Lock lock(m_mutex);
    m_state.armedFolder = folder;
    m_state.snapshotClock.arm(schedule, m_clock.elapsed());
}

void CanvasModel::disarm()
{
    const Lock lock(m_mutex);
    m_state.snapshotClock.disarm();
}

bool CanvasModel::seriesArmed() const
{
    const Lock lock(m_mutex);
    return m_state.snapshotClock.isSeriesArmed();
}

bool CanvasModel::claim(const Shot &shot)
{
    const Lock lock(m_mutex);
    return shot.folder == m_state.armedFolder &&
           m_state.snapshotClock.takePicture(m_clock.elapsed());
}

// View --------------------------------------------------------

ViewGeometry CanvasModel::viewShape() const
{
    const std::uint64_t shape = m_published.shape;
    const QSize frame(static_cast<int>(shape >> 33), static_cast<int>(shape >> 2 & 0x7fffffffU));
    return {frame, static_cast<int>(shape & 3U), m_published.scale};
}

QPointF CanvasModel::centerPoint() const
{
    const Lock lock(m_mutex);
    return m_state.view.centerPoint();
}

void CanvasModel::zoom(QPointF centre, int factor)
{
    const Lock lock(m_mutex);
    m_state.view.zoom(centre, factor);
    m_state.publishTo(m_published);
}

bool CanvasModel::zoomIn()
{
    const Lock lock(m_mutex);
    const bool changed = m_state.view.zoomIn();
    m_state.publishTo(m_published);
    return changed;
}

void CanvasModel::zoomOut()
{
    const Lock lock(m_mutex);
    m_state.view.zoomOut();
    m_state.publishTo(m_published);
}

void CanvasModel::zoomReset()
{
    const Lock lock(m_mutex);
    m_state.view.zoomReset();
    m_state.publishTo(m_published);
}

void CanvasModel::setViewport(QPoint corner)
{
    const Lock lock(m_mutex);
    m_state.view.setViewport(corner.x(), corner.y());
}

void CanvasModel::zoomSteps(int steps, QPointF widgetPoint, QSize widgetSize)
{
    const Lock lock(m_mutex);
    m_state.view.zoomStepsAbout(m_state.exactPicturePoint(widgetPoint, widgetSize), steps);
    m_state.publishTo(m_published);
}

void CanvasModel::gripView(QPointF widgetPoint, QSize widgetSize)
{
    const Lock lock(m_mutex);
    m_state.grippedPoint =
        m_state.view.rotatedPoint(m_state.exactPicturePoint(widgetPoint, widgetSize));
    m_state.grippedScale = m_state.view.scale();
}

void CanvasModel::moveView(QPointF widgetPoint, double factor, QSize widgetSize)
{
    const Lock lock(m_mutex);
    m_state.view.place(m_state.grippedPoint, m_state.exactPicturePoint(widgetPoint, widgetSize),
                       m_state.grippedScale * factor);
    m_state.publishTo(m_published);
}

void CanvasModel::refit()
{
    const Lock lock(m_mutex);
    m_state.view.refit();
    m_state.publishTo(m_published);
}

void CanvasModel::turn(bool clockwise)
{
    const Lock lock(m_mutex);
    m_state.view.turn(clockwise);
    m_state.drawing.turn(clockwise);
    m_state.publishTo(m_published);
}

// Drawing -----------------------------------------------------

void CanvasModel::press(CanvasModes::MouseMode mode, QPoint widgetPoint, QSize widgetSize)
{
    const Lock lock(m_mutex);
    if (mode != CanvasModes::Hand && mode != CanvasModes::Clip)
        m_untouched = false;
    m_state.drawing.press(mode, m_state.picturePoint(widgetPoint, widgetSize));
    m_state.publishTo(m_published);
}

void CanvasModel::move(CanvasModes::MouseMode mode, QPoint widgetPoint, QSize widgetSize,
                       const DragTool::ShapeStyle &style)
{
    const Lock lock(m_mutex);
    m_state.drawing.move(mode, m_state.picturePoint(widgetPoint, widgetSize), style, m_state.view);
    m_state.publishTo(m_published);
}

std::optional<QRect> CanvasModel::release()
{
    const Lock lock(m_mutex);
    if (!m_state.drawing.dragging())
        return std::nullopt;
    const QRect selection = m_state.drawing.release();
    m_state.publishTo(m_published);
    return selection;
}

void CanvasModel::cancel()
{
    const Lock lock(m_mutex);
    if (!m_state.drawing.dragging())
        return;
    m_state.drawing.cancel();
    m_state.publishTo(m_published);
}

QRect CanvasModel::clipRectangle() const
{
    const Lock lock(m_mutex);
    return m_state.drawing.clipRectangle();
}

QRectF CanvasModel::clippingRect(QSize widgetSize) const
{
    const Lock lock(m_mutex);
    return ViewGeometry::widgetRectangle(m_state.drawing.clipRectangle(), m_state.picture.size(),
                                         widgetSize);
}

QImage CanvasModel::part(const QRect &picturePart) const
{
    // QRect's intersection would take an invalid rectangle as its mirror image.
    if (!picturePart.isValid())
        return {};
    const Lock lock(m_mutex);
    const QRect inside = picturePart & QRect({0, 0}, m_state.picture.size());
    return inside.isEmpty() ? QImage() : frameImage(m_state.picture.picture()).copy(inside);
}

void CanvasModel::clearDrawing()
{
    const Lock lock(m_mutex);
    m_state.drawing.clear();
    m_state.publishTo(m_published);
}

void CanvasModel::placeText(QPoint widgetPoint, QSize widgetSize)
{
    const Lock lock(m_mutex);
    m_untouched = false;
    m_state.drawing.placeText(m_state.picturePoint(widgetPoint, widgetSize), m_state.view);
}

void CanvasModel::commitText(QTextDocument &document, QSize widgetSize)
{
    const Lock lock(m_mutex);
    const QSize transformed =
        m_state.view.isEmpty() ? m_state.lastTransformedSize : m_state.view.transformedSize();
    m_state.drawing.commitText(document, transformed, widgetSize);
    m_state.publishTo(m_published);
}

bool CanvasModel::undo()
{
    const Lock lock(m_mutex);
    const bool undone = m_state.drawing.undo();
    m_state.publishTo(m_published);
    return undone;
}

bool CanvasModel::redo()
{
    const Lock lock(m_mutex);
    const bool redone = m_state.drawing.redo();
    m_state.publishTo(m_published);
    return redone;
}

void CanvasModel::packHistory()
{
    // Packing can wait, a frame cannot.
    const std::unique_lock lock(m_mutex, std::try_to_lock);
    if (lock)
        m_state.drawing.packHistory(m_clock.elapsed());
}
