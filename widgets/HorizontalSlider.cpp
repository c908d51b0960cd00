#include "widgets/HorizontalSlider.h"

#include "resources/SkinImages.h"

#include <QMouseEvent>
#include <QPainter>

#include <cmath>

namespace
{

// The width that stays free at either end of the strip.
constexpr int MARGIN = 6;

} // namespace

HorizontalSlider::HorizontalSlider(const QImage &handle, QWidget *parent)
    : QWidget(parent)
    , m_background(SkinImages::load(":/icons/Background/FILM_SCROLL_BACKGROUND.png"))
    , m_handle(handle)
{
    setCursor(Qt::PointingHandCursor);
}

void HorizontalSlider::setRange(int minimum, int maximum)
{
    m_minimum = minimum;
    m_maximum = maximum;
}

void HorizontalSlider::setHandleWidth(int width)
{
    m_handleWidth = width;
}

void HorizontalSlider::setValue(int value)
{
    m_value = value;
    repaint();
}

double HorizontalSlider::strip() const
{
    // Real numbers are needed because a range may be empty or span every int.
    const double steps = static_cast<double>(m_maximum) - static_cast<double>(m_minimum) + 1.0;
    return (width() - 2 * MARGIN) / qMax(1.0, steps);
}

void HorizontalSlider::translateMouseEvent(QMouseEvent *event)
{
    const double pixelsPerStep = strip();
    const int x = qRound(event->localPos().x());
    double value = m_minimum;
    if (pixelsPerStep > 0.0)
        value = std::trunc(m_minimum + (x - MARGIN) / pixelsPerStep);
    m_value = static_cast<int>(
        qBound(static_cast<double>(m_minimum), value, static_cast<double>(m_maximum)));
    emit valueChanged(m_value);
    repaint();
}

void HorizontalSlider::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    SkinImages::smoothAtFractions(&painter);
    painter.drawImage(QPoint(0, 0), SkinImages::stretched(m_background, size()));
    painter.drawImage(QPointF(handleX(), 0.0),
                      SkinImages::stretched(m_handle, {m_handleWidth, height() - 4}));
}

void HorizontalSlider::mousePressEvent(QMouseEvent *event)
{
    translateMouseEvent(event);
}

void HorizontalSlider::mouseMoveEvent(QMouseEvent *event)
{
    translateMouseEvent(event);
}

void HorizontalSlider::mouseReleaseEvent(QMouseEvent *event)
{
    translateMouseEvent(event);
}

double HorizontalSlider::handleX() const
{
    const double middle =
        (static_cast<double>(m_value) - static_cast<double>(m_minimum) + 0.5) * strip() + MARGIN;
    const double rightmost = width() - MARGIN - m_handleWidth;
    const int half = m_handleWidth / 2;
    return qMax(qMin(middle - half, rightmost), static_cast<double>(MARGIN));
}
