#include "mainwindow/presentation/PresentationView.h"

#include "canvas/ImageCanvas.h"
#include "canvas/PaintedPixels.h"
#include "canvas/picture/ViewGeometry.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHoverEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QPainter>
#include <QRadialGradient>
#include <QThread>

#include <algorithm>
#include <utility>

namespace
{

/// As a part of the picture's height: the ring is seen from the last row and hides no letter.
constexpr double RING_RADIUS = 0.022;
constexpr double LEAST_RING = 10.0;
/// Rectangles on this grid of the layout have whole pixels as their corners on screens of 1.25, 1.5
/// or 1.75 pixels a unit as well.
constexpr int GRID = 4;

/// Asks for a repaint behind that of the canvas.
const auto LATER = static_cast<QEvent::Type>(QEvent::registerEventType());

QRect onGrid(const QRect &rect)
{
    const auto before = [](int value) { return value - (value % GRID + GRID) % GRID; };
    const QPoint corner(before(rect.left()), before(rect.top()));
    const QPoint end(before(rect.left() + rect.width() + GRID - 1),
                     before(rect.top() + rect.height() + GRID - 1));
    return {corner, QSize(end.x() - corner.x(), end.y() - corner.y())};
}

QRect pixelsOf(const QRect &rect, double ratio)
{
    return QRectF(QPointF(rect.topLeft()) * ratio, QSizeF(rect.size()) * ratio).toAlignedRect();
}

} // namespace

PresentationView::PresentationView(QWidget *window)
    : QWidget(nullptr)
    , m_window(window)
{
    setWindowTitle(tr("Presentation"));
    setWindowIcon(window->windowIcon());
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_ShowWithoutActivating);
    // The program ends when its main window is closed, even if this one is still open.
    setAttribute(Qt::WA_QuitOnClose, false);
    setCursor(Qt::BlankCursor);
}

PresentationView::~PresentationView()
{
    setCanvas(nullptr);
}

// What is shown --------------------------------------------------------------

void PresentationView::setCanvas(ImageCanvas *canvas)
{
    if (m_canvas) {
        m_canvas->setPictureTap(nullptr);
        m_canvas->removeEventFilter(this);
        m_canvas->setAttribute(Qt::WA_Hover, m_canvasHovers);
        m_canvas->disconnect(this);
    }
    m_canvas = canvas;
    m_pointer.reset();
    // Every canvas numbers its pictures for itself.
    if (!m_held)
        m_picturePainter.release();
    if (canvas) {
        m_canvasHovers = canvas->testAttribute(Qt::WA_Hover);
        canvas->setAttribute(Qt::WA_Hover);
        canvas->installEventFilter(this);
        connect(canvas, &ImageCanvas::typedTextChanged, this, [this] { update(); });
        canvas->setPictureTap(this);
    }
    takeLatest();
}

void PresentationView::pictureShown(const CanvasModel::Shown &shown)
{
    {
        const std::lock_guard lock(m_mutex);
        m_latest = shown;
    }
    if (QThread::currentThread() == thread())
        takeLatest();
    else if (!m_updatePosted.exchange(true))
        QMetaObject::invokeMethod(this, &PresentationView::takeLatest, Qt::QueuedConnection);
}

void PresentationView::takeLatest()
{
    m_updatePosted = false;
    if (m_held)
        return;
    {
        const std::lock_guard lock(m_mutex);
        m_shown = m_latest;
    }
    // Both windows are painted on one thread, and the canvas, which the teacher works on, comes
    // first: its own request is on its way by now, or follows at once.
    if (!std::exchange(m_updateWaits, true))
        QCoreApplication::postEvent(this, new QEvent(LATER), Qt::LowEventPriority);
}

bool PresentationView::event(QEvent *event)
{
    if (event->type() != LATER)
        return QWidget::event(event);
    m_updateWaits = false;
    if (!m_blank)
        updatePicture();
    return true;
}

void PresentationView::updatePicture()
{
    const QRect place = picturePlace();
    // What is beside the picture stays black.
    const bool onlyPicture = m_shown.picture && std::exchange(m_place, place) == place;
    update(onlyPicture ? onGrid(place) : rect());
}

void PresentationView::setHeld(bool held)
{
    if (held == m_held)
        return;
    if (held) {
        m_heldText = QPicture();
        QPainter painter(&m_heldText);
        if (m_canvas) {
            m_heldPlace = m_canvas->picturePlace();
            m_canvas->paintTypedText(&painter);
        }
    }
    m_held = held;
    if (!held)
        m_picturePainter.release();
    takeLatest();
    update();
}

void PresentationView::setBlank(bool blank)
{
    m_blank = blank;
    update();
}

void PresentationView::setPointerShown(bool shown)
{
    m_pointerShown = shown;
    update();
}

// Geometry -------------------------------------------------------------------

QRect PresentationView::picturePlace() const
{
    const QSize picture = m_shown.picture ? m_shown.picture->size() : QSize(0, 0);
    const ViewGeometry::Fit fitted = ViewGeometry::fit(picture, size());
    return {fitted.margin, fitted.size};
}

QTransform PresentationView::fromCanvas() const
{
    const QRect to = picturePlace();
    const QRect from = m_held ? m_heldPlace : m_canvas ? m_canvas->picturePlace() : QRect();
    if (from.isEmpty())
        return {};
    return QTransform::fromTranslate(-from.x(), -from.y()) *
           QTransform::fromScale(static_cast<double>(to.width()) / from.width(),
                                 static_cast<double>(to.height()) / from.height()) *
           QTransform::fromTranslate(to.x(), to.y());
}

QRect PresentationView::ringPlace(QPointF canvasPoint) const
{
    const double reach = std::max(LEAST_RING, RING_RADIUS * picturePlace().height()) + 2;
    const QPointF centre = fromCanvas().map(canvasPoint);
    return QRectF(centre - QPointF(reach, reach), QSizeF(2 * reach, 2 * reach)).toAlignedRect();
}

// Painting -------------------------------------------------------------------

void PresentationView::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    if (m_blank || !m_shown.picture) {
        painter.fillRect(rect(), Qt::black);
        return;
    }
    paintPicture(&painter, event->region());
    painter.setClipRect(picturePlace());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.save();
    painter.setTransform(fromCanvas(), true);
    if (m_held)
        painter.drawPicture(0, 0, m_heldText);
    else if (m_canvas)
        m_canvas->paintTypedText(&painter);
    painter.restore();
    if (m_pointer && m_pointerShown && !m_held)
        paintRing(&painter);
}

void PresentationView::paintPicture(QPainter *painter, const QRegion &region)
{
    const double ratio = devicePixelRatioF();
    const QRect place = PicturePainter::pixelPlace(m_shown.picture->size(), size(), ratio);
    QRegion wanted;
    for (const QRect &rect : region)
        wanted += pixelsOf(rect, ratio);
    painter->save();
    painter->scale(1.0 / ratio, 1.0 / ratio);
    for (const QRect &bar : wanted - place)
        painter->fillRect(bar, Qt::black);
    const auto pixels = paintedPixels(*painter, place);
    painter->restore();
    if (!pixels) {
        m_picturePainter.paint(painter, size(), m_shown);
        return;
    }
    // A picture of its own, painted into the window, would be one more way through all pixels.
    for (const QRect &part : wanted &place)
        m_scaler.scale(m_shown.picture->rows(), *pixels, part.translated(-place.topLeft()));
}

void PresentationView::paintRing(QPainter *painter) const
{
    const QRectF place = ringPlace(*m_pointer);
    const double radius = place.width() / 2;
    // Soft on both sides, so that it is seen on black and on white without hiding what it points
    // at.
    QRadialGradient ring(place.center(), radius);
    ring.setColorAt(0.0, QColor(255, 196, 0, 0));
    ring.setColorAt(0.55, QColor(255, 196, 0, 40));
    ring.setColorAt(0.78, QColor(255, 160, 0, 230));
    ring.setColorAt(0.90, QColor(20, 20, 20, 140));
    ring.setColorAt(1.0, QColor(20, 20, 20, 0));
    painter->setPen(Qt::NoPen);
    painter->setBrush(ring);
    painter->drawEllipse(place);
}

// Events ---------------------------------------------------------------------

bool PresentationView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_canvas)
        return QWidget::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
        setPointer(static_cast<QHoverEvent *>(event)->posF());
        break;
    case QEvent::MouseMove:
        // While a button is down there is no hovering.
        setPointer(static_cast<QMouseEvent *>(event)->localPos());
        break;
    case QEvent::HoverLeave:
    case QEvent::Hide:
        setPointer(std::nullopt);
        break;
    case QEvent::Resize:
        update();
        break;
    default:
        break;
    }
    return false;
}

void PresentationView::setPointer(const std::optional<QPointF> &canvasPoint)
{
    if (m_pointer)
        update(onGrid(ringPlace(*m_pointer)));
    m_pointer = canvasPoint;
    if (m_pointer)
        update(onGrid(ringPlace(*m_pointer)));
}

void PresentationView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        emit leaveWanted();
    else
        forward(event);
}

void PresentationView::keyReleaseEvent(QKeyEvent *event)
{
    forward(event);
}

void PresentationView::forward(const QKeyEvent *event)
{
    if (!m_window || QApplication::activeModalWidget())
        return;
    QWidget *focus = m_window->focusWidget();
    QKeyEvent copy(*event);
    QCoreApplication::sendEvent(focus ? focus : m_window.data(), &copy);
}

void PresentationView::closeEvent(QCloseEvent *event)
{
    // The owner closes this window, as it keeps the state that belongs to it.
    event->ignore();
    emit leaveWanted();
}
