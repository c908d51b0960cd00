#include "canvas/picture/ViewGeometry.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

/// Truncates toward zero. A value outside the range of int gives the nearest int, not-a-number 0.
int truncated(double value)
{
    if (std::isnan(value))
        return 0;
    constexpr double lowest = std::numeric_limits<int>::min();
    constexpr double highest = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(value, lowest, highest));
}

/// Compares with the tolerance of the toolkit's fuzzy comparison.
bool isOne(double scale)
{
    return std::abs(scale - 1.0) * 1e12 <= std::min(std::abs(scale), 1.0);
}

int clampedOffset(int wanted, int scaledExtent, int frameExtent)
{
    const int upper = std::max(scaledExtent - frameExtent - 1, 0);
    return std::max(std::min(wanted, upper), 0);
}

double centreAlong(int scaledExtent, int frameExtent, double scale, int offset)
{
    return (std::min(scaledExtent, frameExtent) * std::min(scale, 1.0) * 0.5 + offset) / scale;
}

} // namespace

QSize ViewGeometry::rotatedSize() const
{
    return m_rotation % 2 != 0 ? m_frame.transposed() : m_frame;
}

QSize ViewGeometry::transformedSize() const
{
    const QSize rotated = rotatedSize();
    return {truncated(rotated.width() * m_scale), truncated(rotated.height() * m_scale)};
}

double ViewGeometry::minimumScale() const
{
    if (isEmpty())
        return 1.0;
    const QSize rotated = rotatedSize();
    return std::min(static_cast<double>(m_frame.width()) / rotated.width(),
                    static_cast<double>(m_frame.height()) / rotated.height());
}

QPointF ViewGeometry::centerPoint() const
{
    if (isEmpty())
        return {};
    const QSize scaled = transformedSize();
    return {centreAlong(scaled.width(), m_frame.width(), m_scale, m_offset.x()),
            centreAlong(scaled.height(), m_frame.height(), m_scale, m_offset.y())};
}

QRect ViewGeometry::visibleRectangle() const
{
    if (isEmpty())
        return {};
    const QSize rotated = rotatedSize();
    const int x = std::clamp(truncated(m_offset.x() / m_scale), 0, rotated.width() - 1);
    const int y = std::clamp(truncated(m_offset.y() / m_scale), 0, rotated.height() - 1);
    // Under a large scale a narrow picture would otherwise leave nothing to see.
    const int width = std::max(truncated(m_frame.width() / m_scale), 1);
    const int height = std::max(truncated(m_frame.height() / m_scale), 1);
    return {x, y, std::min(width, rotated.width() - x), std::min(height, rotated.height() - y)};
}

void ViewGeometry::setFrameSize(QSize size)
{
    m_frame = size;
    refit();
}

void ViewGeometry::refit()
{
    const QPointF centre = centerPoint();
    m_scale = std::max(minimumScale(), static_cast<double>(truncated(m_scale)));
    centreOn(centre);
}

void ViewGeometry::zoom(QPointF centre, int factor)
{
    m_scale = std::max(minimumScale(), static_cast<double>(factor));
    centreOn(centre);
}

bool ViewGeometry::zoomIn()
{
    if (m_scale + 1.0 > LARGEST_SCALE)
        return false;
    const QPointF centre = centerPoint();
    m_scale = stepped(true);
    centreOn(centre);
    return true;
}

void ViewGeometry::zoomOut()
{
    const QPointF centre = centerPoint();
    m_scale = stepped(false);
    centreOn(centre);
}

void ViewGeometry::zoomReset()
{
    const QPointF centre = centerPoint();
    m_scale = minimumScale();
    centreOn(centre);
}

void ViewGeometry::zoomStepsAbout(QPointF processedPoint, int steps)
{
    // One by one, as a step depends on the scale that the one before has left. The point is kept
    // over all of them: each placing rounds.
    const QPointF kept = rotatedPoint(processedPoint);
    for (; steps > 0 && m_scale < LARGEST_SCALE; --steps)
        place(kept, processedPoint, stepped(true));
    for (; steps < 0 && m_scale > minimumScale(); ++steps)
        place(kept, processedPoint, stepped(false));
}

void ViewGeometry::place(QPointF rotatedPoint, QPointF processedPoint, double scale)
{
    if (isEmpty() || std::isnan(scale))
        return;
    m_scale = std::clamp(scale, minimumScale(), LARGEST_SCALE);
    const QPointF corner = rotatedPoint * m_scale - processedPoint + bars();
    setViewport(truncated(std::round(corner.x())), truncated(std::round(corner.y())));
}

QPointF ViewGeometry::rotatedPoint(QPointF processedPoint) const
{
    return isEmpty() ? QPointF() : (processedPoint + m_offset - bars()) / m_scale;
}

double ViewGeometry::stepped(bool in) const
{
    const int scale = truncated(in ? m_scale + 1.0 : m_scale / 1.1);
    return std::max(minimumScale(), static_cast<double>(scale));
}

QPointF ViewGeometry::bars() const
{
    const QSize rotated = rotatedSize();
    return {std::max((m_frame.width() - rotated.width() * m_scale) * 0.5, 0.0),
            std::max((m_frame.height() - rotated.height() * m_scale) * 0.5, 0.0)};
}

void ViewGeometry::setViewport(int x, int y)
{
    if (isEmpty())
        return;
    const QSize scaled = transformedSize();
    m_offset = {clampedOffset(x, scaled.width(), m_frame.width()),
                clampedOffset(y, scaled.height(), m_frame.height())};
}

void ViewGeometry::turn(bool clockwise)
{
    const QPointF old = centerPoint();
    const double scale = m_scale;
    m_rotation = (m_rotation + (clockwise ? 1 : 3)) % 4;
    // Both directions measure from the new rotated width; the clamp keeps the view inside.
    const int extent = truncated(rotatedSize().width() * scale);
    const QPointF centre = clockwise ? QPointF((extent - old.y() * scale - 1) / scale, old.x())
                                     : QPointF(old.y(), (extent - old.x() * scale - 1) / scale);
    m_scale = isOne(scale) ? minimumScale()
                           : std::max(minimumScale(), static_cast<double>(truncated(scale)));
    centreOn(centre);
}

void ViewGeometry::centreOn(QPointF centre)
{
    if (isEmpty()) {
        m_scale = 1.0;
        m_offset = {};
        return;
    }
    const double part = std::min(m_scale, 1.0);
    setViewport(truncated(centre.x() * m_scale - m_frame.width() * part * 0.5),
                truncated(centre.y() * m_scale - m_frame.height() * part * 0.5));
}

ViewGeometry::Fit ViewGeometry::fit(QSize picture, QSize widget)
{
    Fit result;
    if (picture.isEmpty() || widget.isEmpty())
        return result;
    result.factor = std::min(static_cast<double>(widget.width()) / picture.width(),
                             static_cast<double>(widget.height()) / picture.height());
    // A very narrow picture still shows as a line.
    result.size = QSize(truncated(picture.width() * result.factor),
                        truncated(picture.height() * result.factor))
                      .expandedTo(QSize(1, 1));
    result.margin = {(widget.width() - result.size.width()) / 2,
                     (widget.height() - result.size.height()) / 2};
    return result;
}

QPoint ViewGeometry::picturePoint(QPoint widgetPoint, QSize picture, QSize widget)
{
    const QPointF exact = exactPicturePoint(widgetPoint, picture, widget);
    return {truncated(exact.x()), truncated(exact.y())};
}

QPointF ViewGeometry::exactPicturePoint(QPointF widgetPoint, QSize picture, QSize widget)
{
    const Fit fitted = fit(picture, widget);
    if (!(fitted.factor > 0.0))
        return {};
    return {(widgetPoint.x() - fitted.margin.x()) / fitted.factor,
            (widgetPoint.y() - fitted.margin.y()) / fitted.factor};
}

QRectF ViewGeometry::widgetRectangle(const QRect &picturePart, QSize picture, QSize widget)
{
    const Fit fitted = fit(picture, widget);
    const double f = fitted.factor;
    return {picturePart.left() * f + fitted.margin.x(), picturePart.top() * f + fitted.margin.y(),
            picturePart.width() * f, picturePart.height() * f};
}
