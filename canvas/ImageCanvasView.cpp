// The canvas's view: zoom, turn, pan, and the coordinates that follow from them.
#include "canvas/ImageCanvas.h"

#include <QResizeEvent>

int ImageCanvas::actualWidth() const
{
    return publishedView().rotatedSize().width();
}

int ImageCanvas::actualHeight() const
{
    return publishedView().rotatedSize().height();
}

int ImageCanvas::transformedWidth() const
{
    return publishedView().transformedSize().width();
}

int ImageCanvas::transformedHeight() const
{
    return publishedView().transformedSize().height();
}

double ImageCanvas::minimumScale() const
{
    return publishedView().minimumScale();
}

double ImageCanvas::zoomScale() const
{
    return m_publishedScale;
}

int ImageCanvas::rotation() const
{
    return publishedView().rotation();
}

QPointF ImageCanvas::centerPoint() const
{
    const std::lock_guard<std::mutex> locker(m_lock);
    return m_view.centerPoint();
}

template <typename Change>
void ImageCanvas::changeView(Change change)
{
    const std::lock_guard<std::mutex> locker(m_lock);
    change(m_view);
    publishView();
}

void ImageCanvas::zoom(const QPointF &centre, int factor)
{
    changeView([&](ViewGeometry &view) { view.zoom(centre, factor); });
}

void ImageCanvas::zoomIn()
{
    bool changed = false;
    changeView([&](ViewGeometry &view) { changed = view.zoomIn(); });
    if (changed)
        requestRepaint();
}

void ImageCanvas::zoomOut()
{
    changeView([](ViewGeometry &view) { view.zoomOut(); });
    requestRepaint();
}

void ImageCanvas::zoomReset()
{
    changeView([](ViewGeometry &view) { view.zoomReset(); });
}

void ImageCanvas::setViewport(int x, int y)
{
    changeView([=](ViewGeometry &view) { view.setViewport(x, y); });
}

void ImageCanvas::rotate()
{
    turn(true);
}

void ImageCanvas::rotateRev()
{
    turn(false);
}

void ImageCanvas::turn(bool clockwise)
{
    changeView([this, clockwise](ViewGeometry &view) {
        view.turn(clockwise);
        m_textAnchor.turn(clockwise, m_layer.size());
        drawnLayer().turn(clockwise);
    });
    requestRepaint();
}

QPoint ImageCanvas::transformMousePoint(QPoint widgetPoint) const
{
    return ViewGeometry::picturePoint(widgetPoint, pictureSize(), size());
}

QRectF ImageCanvas::clippingRect() const
{
    const std::lock_guard<std::mutex> locker(m_lock);
    return ViewGeometry::widgetRectangle(m_tools.clipRectangle(), resultSize(), size());
}

QRect ImageCanvas::clipRectangle() const
{
    const std::lock_guard<std::mutex> locker(m_lock);
    return m_tools.clipRectangle();
}

void ImageCanvas::publishView()
{
    const QSize frame = m_view.frameSize();
    const auto part = [](int extent) { return static_cast<std::uint64_t>(extent) & 0x7fffffffU; };
    m_publishedShape = part(frame.width()) << 33 | part(frame.height()) << 2 |
                       static_cast<std::uint64_t>(m_view.rotation());
    m_publishedScale = m_view.scale();
}

ViewGeometry ImageCanvas::publishedView() const
{
    const std::uint64_t shape = m_publishedShape;
    const QSize frame(static_cast<int>(shape >> 33), static_cast<int>(shape >> 2 & 0x7fffffffU));
    return {frame, static_cast<int>(shape & 3U), m_publishedScale};
}

void ImageCanvas::resizeEvent(QResizeEvent *event)
{
    changeView([](ViewGeometry &view) { view.refit(); });
    m_text.keepInside();
    QWidget::resizeEvent(event);
}
