#include "canvas/ImageCanvas.h"

#include "canvas/OSDProcessor.h"
#include "canvas/StartPicture.h"
#include "canvas/TextEditor.h"
#include "canvas/picture/FrameSteps.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QPainter>
#include <QThread>

#include <algorithm>
#include <cstring>

namespace
{

/// A source that was silent for this long no longer carries the canvas's own changes to the screen.
constexpr int SILENT_SOURCE_MS = 200;
/// How long a stroke over a standing picture may wait for others to be shown together with it.
constexpr int STROKE_DELAY_MS = 10;
constexpr QSize BOARD_SIZE(1280, 720);

} // namespace

ImageCanvas::ImageCanvas(QWidget *parent)
    : QWidget(parent)
    , m_text(this)
{
    m_clock.start();
    setFont(QFont(m_text.fontFace(), m_text.fontSize()));
    // A stroke takes every point that the window system delivers, not only the latest one. The
    // platform's plugin settles this anew while the application starts, so that it cannot be
    // settled before.
    QCoreApplication::setAttribute(Qt::AA_CompressHighFrequencyEvents, false);
    QCoreApplication::setAttribute(Qt::AA_CompressTabletEvents, false);
    setAttribute(Qt::WA_OpaquePaintEvent);
    m_refreshTimer.setInterval(REFRESH_INTERVAL_MS);
    connect(&m_refreshTimer, SIGNAL(timeout()), this, SLOT(autoRefresh()));
    m_idleTimer.setInterval(REFRESH_INTERVAL_MS);
    connect(&m_idleTimer, SIGNAL(timeout()), this, SLOT(refreshWhenIdle()));
    m_idleTimer.start();
    m_strokeTimer.setInterval(STROKE_DELAY_MS);
    m_strokeTimer.setSingleShot(true);
    m_strokeTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_strokeTimer, SIGNAL(timeout()), this, SLOT(autoRefresh()));

    connect(m_text.editor(), &TextEditor::finished, this, &ImageCanvas::endTextEditing);

    if (const FramePtr picture = startPicture()) {
        const std::lock_guard<std::mutex> locker(m_lock);
        takeInput(picture, picture->size());
        static_cast<void>(renewResult());
    }
}

ImageCanvas::~ImageCanvas() = default;

// Frames ------------------------------------------------------

void ImageCanvas::imageCaptured(const QImage &image)
{
    const QImage picture = image.convertToFormat(QImage::Format_RGB888);
    Shot shot;
    {
        const std::lock_guard<std::mutex> locker(m_lock);
        m_lastFrameMs = m_clock.elapsed();
        if (!holdsInput())
            takeInput(copyIn(picture), image.size());
        if (renewResult())
            shot = dueShot();
    }
    requestRepaint();
    take(shot);
}

void ImageCanvas::imageCaptured(void *pixels, int width, int height, bool mirror, bool rgb32)
{
    const QSize size = pixels ? QSize(std::max(width, 0), std::max(height, 0)) : QSize(0, 0);
    Shot shot;
    {
        const std::lock_guard<std::mutex> locker(m_lock);
        m_lastFrameMs = m_clock.elapsed();
        if (rgb32)
            FrameSteps::makeOpaque(pixels, size);
        FramePtr taken;
        if (!holdsInput()) {
            taken = copyIn(pixels, size, mirror, rgb32);
            takeInput(taken, size);
        }
        if (renewResult())
            shot = dueShot();
        // A result that is the very frame copied in stands in the caller's buffer already.
        if (m_result != taken)
            copyOut(pixels, size, mirror, rgb32);
    }
    requestRepaint();
    take(shot);
}

void ImageCanvas::startAutoRefresh()
{
    m_refreshTimer.start();
}

void ImageCanvas::stopAutoRefresh()
{
    m_refreshTimer.stop();
}

void ImageCanvas::autoRefresh()
{
    Shot shot;
    {
        // One stretch under the lock: a newer frame cannot come between and be overwritten.
        const std::lock_guard<std::mutex> locker(m_lock);
        if (m_input && renewResult())
            shot = dueShot();
    }
    requestRepaint();
    take(shot);
}

void ImageCanvas::refreshWhenIdle()
{
    if (m_refreshTimer.isActive() || !isVisible() ||
        m_clock.elapsed() - m_lastFrameMs < SILENT_SOURCE_MS)
        return;
    // Indications come and go by the clock alone, so that there is always a reason to repaint.
    autoRefresh();
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
    m_drawingBoardMode = on;
    // The board leaves the bars beside the picture to what lies behind the canvas.
    setAttribute(Qt::WA_OpaquePaintEvent, !on);
}

QImage ImageCanvas::currentImage() const
{
    const std::lock_guard<std::mutex> locker(m_lock);
    return frameImage(m_result);
}

QSize ImageCanvas::pictureSize() const
{
    const std::lock_guard<std::mutex> locker(m_lock);
    return resultSize();
}

// The pipeline, with the lock held ----------------------------

bool ImageCanvas::holdsInput() const
{
    return frozen && m_input;
}

FramePtr ImageCanvas::copyIn(const void *pixels, QSize size, bool mirror, bool rgb32)
{
    const std::shared_ptr<Frame> frame =
        m_pipeline.pool().acquire(size, rgb32 ? QImage::Format_ARGB32 : QImage::Format_RGB888);
    if (!frame)
        return nullptr;
    const auto count =
        static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height());
    const std::size_t bytes = count * (rgb32 ? 4 : 3);
    // One block, though the frame's rows are padded: the bytes keep their order on the way in and
    // on the way out, so that a picture of any width comes back as it was handed over.
    unsigned char *target = frame->rows().data;
    std::memcpy(target, pixels, bytes);
    std::memset(target + bytes, 0, frame->byteCount() - bytes);
    if (mirror)
        FrameSteps::mirrorInPlace(frame->rows());
    return frame;
}

FramePtr ImageCanvas::copyIn(const QImage &image)
{
    // Pictures that wrap foreign memory may have rows of their own length.
    const bool usual = image.bytesPerLine() == (image.width() * 3 + 3) / 4 * 4;
    const QImage picture = usual ? image : image.copy();
    const std::shared_ptr<Frame> frame =
        m_pipeline.pool().acquire(picture.size(), QImage::Format_RGB888);
    if (!frame)
        return nullptr;
    // The rows are padded alike on both sides, so that no width costs a pixel.
    std::memcpy(frame->rows().data, picture.constBits(), frame->byteCount());
    return frame;
}

void ImageCanvas::takeInput(const FramePtr &frame, QSize size)
{
    const bool withoutMemory = !frame && !size.isEmpty();
    if (withoutMemory)
        return;
    m_input = frame;
    ++m_inputSerial;
    const QSize taken = frame ? size : QSize(0, 0);
    if (taken == m_view.frameSize())
        return;
    m_view.setFrameSize(taken);
    drawnLayer().reset(m_view.rotatedSize());
    m_textAnchor.layerReplaced();
    publishView();
}

bool ImageCanvas::renewResult()
{
    const AnnotationLayer &layer = drawnLayer();
    const ResultKey key = currentKey();
    if (m_resultSerial != 0 && key == m_resultKey)
        return true;
    const FramePtr result = m_pipeline.run(m_input, layer, {key.view, key.effect, key.mask});
    const bool withoutMemory = !result && m_input;
    if (withoutMemory)
        return false;
    m_result = result;
    m_resultKey = key;
    ++m_resultSerial;
    return true;
}

AnnotationLayer &ImageCanvas::drawnLayer()
{
    m_tools.drawPending(m_layer);
    return m_layer;
}

ImageCanvas::ResultKey ImageCanvas::currentKey() const
{
    return {m_inputSerial, m_view, effectMode, maskMode, m_layer.revision()};
}

QSize ImageCanvas::resultSize() const
{
    return m_result ? m_result->size() : QSize(0, 0);
}

ImageCanvas::Shot ImageCanvas::dueShot() const
{
    if (!m_result || !m_snapshotClock.isDue(m_clock.elapsed()))
        return {};
    return {m_result, m_armedFolder};
}

void ImageCanvas::copyOut(void *pixels, QSize size, bool mirror, bool rgb32)
{
    if (!m_result || size.isEmpty())
        return;
    const FramePtr fitted = m_pipeline.fitted(m_result, size);
    if (fitted)
        FrameSteps::copyOut(*fitted, pixels, mirror, rgb32);
}

// Indications and painting ------------------------------------

void ImageCanvas::setOsdProcessor(OSDProcessor *processor)
{
    m_osd = processor;
}

void ImageCanvas::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintPicture(&painter);
    if (m_osd) {
        painter.save();
        m_osd->postPaint(&painter);
        painter.restore();
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor("#484848"), 2.0, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.drawRect(rect().adjusted(1, 1, -1, -1));
}

void ImageCanvas::paintPicture(QPainter *painter)
{
    FramePtr picture;
    std::uint64_t serial = 0;
    {
        const std::lock_guard<std::mutex> locker(m_lock);
        picture = m_result;
        serial = m_resultSerial;
    }
    const ViewGeometry::Fit fitted =
        ViewGeometry::fit(picture ? picture->size() : QSize(0, 0), size());
    const QRect place(fitted.margin, fitted.size);
    if (!m_drawingBoardMode) {
        // Only what the picture leaves free: filling it all would write every pixel twice.
        const QRegion bars = QRegion(rect().adjusted(2, 2, -2, -2)) - place;
        for (const QRect &bar : bars)
            painter->fillRect(bar, Qt::black);
    }
    // In whole pixels of the screen, which are not those of the layout at a ratio of 1.5: the
    // painter has nothing to scale then.
    const double ratio = devicePixelRatioF();
    const QPoint corner = (QPointF(place.topLeft()) * ratio).toPoint();
    const QPoint end =
        (QPointF(place.topLeft() + QPoint(place.width(), place.height())) * ratio).toPoint();
    const QSize pixels(end.x() - corner.x(), end.y() - corner.y());
    const QImage &image = m_scaledPicture.image(picture, serial, pixels);
    if (!image.isNull())
        painter->drawImage(QRectF(QPointF(corner) / ratio, QSizeF(pixels) / ratio), image);
}

void ImageCanvas::hideEvent(QHideEvent *event)
{
    // Four canvases share a window and one is seen: only that one needs its screen's worth.
    m_scaledPicture.release();
    QWidget::hideEvent(event);
}

void ImageCanvas::requestRepaint()
{
    if (onGuiThread()) {
        update();
        return;
    }
    // Widgets may be touched on their own thread only; one request under way is enough.
    if (m_updatePosted.exchange(true))
        return;
    QMetaObject::invokeMethod(this, "updatePosted", Qt::QueuedConnection);
}

void ImageCanvas::updatePosted()
{
    m_updatePosted = false;
    update();
}

bool ImageCanvas::onGuiThread() const
{
    return QThread::currentThread() == thread();
}
