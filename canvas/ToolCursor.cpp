#include "canvas/ToolCursor.h"

#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <cmath>
#include <functional>

namespace
{

/// Smaller rings are lost on a projector.
constexpr double LEAST_RING = 9.0;
/// Larger pictures of a pointer are refused by some screens.
constexpr double LARGEST = 200.0;
constexpr double CROSS_ARM = 10.0;
constexpr double CORNER = 8.0;

struct Sharpness {
    double pixelRatio;
    double hotSpotRatio;
};

/// A square picture with its hot spot in the middle, in which `draw` finds the origin there.
QCursor drawn(double side, const Sharpness &sharpness, const std::function<void(QPainter &)> &draw)
{
    // An odd number of pixels has a middle one.
    const int edge = 2 * static_cast<int>(std::ceil(side / 2.0)) + 1;
    QPixmap picture(QSize(edge, edge) * sharpness.pixelRatio);
    picture.setDevicePixelRatio(sharpness.pixelRatio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(edge / 2.0, edge / 2.0);
    draw(painter);
    painter.end();
    const auto middle = static_cast<int>(edge * sharpness.hotSpotRatio / 2.0);
    return QCursor(picture, middle, middle);
}

/// Black inside white: one of the two is seen on every picture.
void drawTwice(QPainter &painter, const std::function<void()> &draw, Qt::PenStyle style)
{
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::white, 3.0, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    draw();
    painter.setPen(QPen(Qt::black, 1.0, style, Qt::FlatCap, Qt::MiterJoin));
    draw();
}

void drawCross(QPainter &painter)
{
    drawTwice(
        painter,
        [&painter] {
            painter.drawLine(QPointF(-CROSS_ARM, 0), QPointF(CROSS_ARM, 0));
            painter.drawLine(QPointF(0, -CROSS_ARM), QPointF(0, CROSS_ARM));
        },
        Qt::SolidLine);
}

QCursor ring(double diameter, const QColor &color, const Sharpness &sharpness)
{
    const double outer = std::clamp(diameter, LEAST_RING, LARGEST);
    return drawn(outer + 6.0, sharpness, [&](QPainter &painter) {
        const auto circle = [&painter](double radius, const QColor &line, double width) {
            painter.setPen(QPen(line, width));
            painter.drawEllipse(QPointF(0, 0), radius, radius);
        };
        painter.setBrush(Qt::NoBrush);
        const double radius = outer / 2.0;
        circle(radius - 1.0, color, 2.0);
        // Both around the ink, so that its size is seen on a picture of its own colour as well.
        circle(radius + 0.5, Qt::white, 1.0);
        circle(radius + 1.5, Qt::black, 1.0);
    });
}

QCursor cross(const Sharpness &sharpness)
{
    return drawn(2.0 * CROSS_ARM + 4.0, sharpness, drawCross);
}

QCursor eraser(double side, const Sharpness &sharpness)
{
    // Whole pixels to either side of the middle one: the hairline is then sharp.
    const double edge = 2.0 * std::round((std::clamp(side, 5.0, LARGEST) - 1.0) / 2.0);
    return drawn(edge + 4.0, sharpness, [&](QPainter &painter) {
        drawTwice(
            painter,
            [&painter, edge] { painter.drawRect(QRectF(-edge / 2.0, -edge / 2.0, edge, edge)); },
            Qt::SolidLine);
    });
}

QCursor clip(const Sharpness &sharpness)
{
    return drawn(2.0 * (CROSS_ARM + CORNER) + 4.0, sharpness, [](QPainter &painter) {
        drawCross(painter);
        drawTwice(
            painter,
            [&painter] {
                const double far = CROSS_ARM + CORNER;
                painter.drawLine(QPointF(5, far), QPointF(far, far));
                painter.drawLine(QPointF(far, 5), QPointF(far, far));
            },
            Qt::DotLine);
    });
}

} // namespace

bool ToolCursor::operator==(const ToolCursor &other) const
{
    return tool == other.tool && penColor == other.penColor && penWidth == other.penWidth &&
           eraserSide == other.eraserSide && dragging == other.dragging &&
           pixelRatio == other.pixelRatio && hotSpotOnScreen == other.hotSpotOnScreen;
}

QCursor ToolCursor::cursor() const
{
    // Where a pixel is larger than a unit, as on small screens, pointers are drawn in pixels:
    // hairlines stay sharp, and a painter would leave out such a ratio.
    const double unit = std::min(pixelRatio, 1.0);
    const double ratio = std::max(pixelRatio, 1.0);
    const Sharpness sharpness{ratio, hotSpotOnScreen ? ratio : 1.0};
    switch (tool) {
    case CanvasModes::Hand:
        return dragging ? Qt::ClosedHandCursor : Qt::OpenHandCursor;
    case CanvasModes::Freehand:
        return ring(penWidth * unit, penColor, sharpness);
    case CanvasModes::Eraser:
        return eraser(eraserSide * unit, sharpness);
    case CanvasModes::Clip:
        return clip(sharpness);
    case CanvasModes::Text:
        return Qt::IBeamCursor;
    default:
        return cross(sharpness);
    }
}
