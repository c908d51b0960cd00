#include "tools/virtualcamera/SheetScene.h"

#include "tools/virtualcamera/SheetCounter.h"

#include <QPainter>
#include <QTransform>

#include <cmath>

namespace SheetScene
{
namespace
{

const QRectF DIGITS(-206, -152, 412, 102);
constexpr double CELL = 12.0;
const QRectF CELLS(-CELL *SheetCounter::CELL_COUNT / 2, -24, CELL *SheetCounter::CELL_COUNT, 48);

/// One digit out of the seven bars a to g of a calculator, in an area 1 wide and 1.7 high. The
/// bars are pointed at both ends and stand a little apart.
void paintDigit(QPainter &painter, int digit)
{
    static constexpr int BARS[] = {0x3F, 0x06, 0x5B, 0x4F, 0x66, 0x6D, 0x7D, 0x07, 0x7F, 0x6F};
    static constexpr struct {
        double x, y;
        bool upright;
    } STARTS[] = {{0.1, 0.1, false}, {0.9, 0.1, true}, {0.9, 0.85, true}, {0.1, 1.6, false},
                  {0.1, 0.85, true}, {0.1, 0.1, true}, {0.1, 0.85, false}};
    static const QPolygonF ACROSS(
        {{0.03, 0}, {0.12, -0.09}, {0.68, -0.09}, {0.77, 0}, {0.68, 0.09}, {0.12, 0.09}});
    static const QPolygonF UPRIGHT(
        {{0, 0.03}, {0.09, 0.12}, {0.09, 0.63}, {0, 0.72}, {-0.09, 0.63}, {-0.09, 0.12}});
    for (int bar = 0; bar < 7; ++bar) {
        if (BARS[digit] >> bar & 1) {
            const QPolygonF &shape = STARTS[bar].upright ? UPRIGHT : ACROSS;
            painter.drawPolygon(shape.translated(STARTS[bar].x, STARTS[bar].y));
        }
    }
}

QPointF pencilTip(quint32 frameNumber)
{
    const double time = frameNumber / 30.0;
    return {480 + 170 * std::sin(time * 1.1), 262 + 36 * std::sin(time * 2.7)};
}

constexpr double PENCIL_LENGTH = 190, PENCIL_WIDTH = 18, PENCIL_ANGLE = -38;

} // namespace

QTransform toPixels(const QSize &size, double zoom)
{
    const double scale = size.width() / DESK_WIDTH * zoom;
    return QTransform::fromTranslate(size.width() / 2.0, size.height() / 2.0).scale(scale, scale);
}

QRectF counterArea()
{
    // With a pixel of margin it fills two columns of the encoder's tiles, and no more.
    return DIGITS.united(CELLS).adjusted(-22, -6, 22, 12);
}

void paintCounter(QPainter &painter, quint32 frameNumber)
{
    painter.setPen(QPen(QColor(150, 156, 168), 2));
    painter.setBrush(Qt::white);
    painter.drawRect(counterArea().adjusted(2, 2, -2, -2));
    painter.setPen(Qt::NoPen);
    painter.setBrush(INK);
    const QString digits = QStringLiteral("%1").arg(frameNumber % 1000000, 6, 10, QLatin1Char('0'));
    const double unit = DIGITS.height() / 1.7;
    for (int i = 0; i < digits.size(); ++i) {
        painter.save();
        painter.translate(DIGITS.left() + i * (DIGITS.width() - unit) / 5, DIGITS.top());
        painter.scale(unit, unit);
        paintDigit(painter, digits[i].digitValue());
        painter.restore();
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setBrush(Qt::black);
    const auto cells = SheetCounter::cells(frameNumber);
    for (int i = 0; i < SheetCounter::CELL_COUNT; ++i) {
        if (cells[static_cast<std::size_t>(i)])
            painter.drawRect(QRectF(CELLS.left() + i * CELL, CELLS.top(), CELL, CELLS.height()));
    }
    painter.setRenderHint(QPainter::Antialiasing, true);
}

QRectF pencilArea(quint32 frameNumber)
{
    const double reach = PENCIL_LENGTH + PENCIL_WIDTH;
    const QRectF lying(-PENCIL_WIDTH, -PENCIL_WIDTH, reach + PENCIL_WIDTH, 2 * PENCIL_WIDTH);
    return QTransform().rotate(PENCIL_ANGLE).mapRect(lying).translated(pencilTip(frameNumber));
}

void paintPencil(QPainter &painter, quint32 frameNumber)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(pencilTip(frameNumber));
    painter.rotate(PENCIL_ANGLE);
    painter.setPen(Qt::NoPen);
    const double half = PENCIL_WIDTH / 2, cone = 34;
    painter.setBrush(QColor(226, 190, 140));
    painter.drawPolygon(QPolygonF({{0, 0}, {cone, -half}, {cone, half}}));
    painter.setBrush(QColor(50, 50, 54));
    painter.drawPolygon(QPolygonF({{0, 0}, {11, -half * 0.33}, {11, half * 0.33}}));
    const double body = PENCIL_LENGTH - cone - 26;
    painter.fillRect(QRectF(cone, -half, body, half * 0.7), QColor(250, 196, 40));
    painter.fillRect(QRectF(cone, -half * 0.3, body, half * 0.8), QColor(232, 170, 24));
    painter.fillRect(QRectF(cone, half * 0.5, body, half * 0.5), QColor(190, 132, 14));
    painter.fillRect(QRectF(cone + body, -half, 10, 2 * half), QColor(176, 178, 184));
    painter.fillRect(QRectF(cone + body + 10, -half, 16, 2 * half), QColor(214, 104, 112));
    painter.restore();
}

} // namespace SheetScene
