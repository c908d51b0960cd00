#include "widgets/StatusSign.h"

#include <QPainter>
#include <QPainterPath>

namespace
{

constexpr int SIZE = 28;
/// The sign is drawn on this grid.
constexpr double GRID = 24.0;

const QColor ACCENT(0x0074E6);
const QColor INK(0xD6DAE0);
// Amber: red is for recording alone.
const QColor WARNING(0xFFC83D);
const QColor DARK(0x15181B);

QPen stroke(const QColor &colour)
{
    return QPen(colour, 2.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

void paintFine(QPainter *painter)
{
    painter->setPen(Qt::NoPen);
    painter->setBrush(ACCENT);
    painter->drawEllipse(QPointF(12, 12), 11, 11);
    painter->setPen(stroke(Qt::white));
    painter->drawPolyline(QPolygonF({{7.0, 12.5}, {10.5, 16.0}, {17.0, 8.5}}));
}

void paintWaiting(QPainter *painter)
{
    painter->setPen(stroke(INK));
    painter->drawEllipse(QPointF(12, 12), 10, 10);
    painter->setPen(Qt::NoPen);
    painter->setBrush(INK);
    for (const double x : {7.5, 12.0, 16.5})
        painter->drawEllipse(QPointF(x, 12), 1.5, 1.5);
}

void paintWrong(QPainter *painter)
{
    painter->setPen(stroke(WARNING));
    painter->setBrush(WARNING);
    painter->drawPolygon(QPolygonF({{12.0, 3.0}, {22.0, 20.5}, {2.0, 20.5}}));
    painter->setPen(stroke(DARK));
    painter->drawLine(QPointF(12, 9.5), QPointF(12, 13.5));
    painter->drawPoint(QPointF(12, 17.5));
}

} // namespace

StatusSign::StatusSign(QWidget *parent)
    : QWidget(parent)
{
    setFixedSize(SIZE, SIZE);
}

void StatusSign::setLook(Look look)
{
    m_look = look;
    update();
}

void StatusSign::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(width() / GRID, height() / GRID);
    switch (m_look) {
    case Look::Fine:
        paintFine(&painter);
        break;
    case Look::Waiting:
        paintWaiting(&painter);
        break;
    case Look::Wrong:
        paintWrong(&painter);
        break;
    }
}
