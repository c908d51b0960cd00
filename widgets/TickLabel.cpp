#include "widgets/TickLabel.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace
{

bool standsInCell(QChar letter)
{
    return letter.isDigit() || letter == QLatin1Char(' ');
}

} // namespace

TickLabel::TickLabel(const QString &text, QWidget *parent)
    : QLabel(text, parent)
{
    QFont font("Arial");
    font.setPixelSize(LETTER_HEIGHT);
    setFont(font);
}

void TickLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    const QFontMetricsF metrics(font());
    // Rounded down, because otherwise the tails of letters leave a label that is hardly higher than
    // its font.
    const double baseline = std::floor((height() + metrics.ascent() - metrics.descent()) / 2);
    const QString line = text();
    double x = 0;
    for (int from = 0; from < line.size();) {
        int to = from + 1;
        if (!standsInCell(line[from])) {
            while (to < line.size() && !standsInCell(line[to]))
                ++to;
        }
        const QString piece = line.mid(from, to - from);
        const double advance = metrics.horizontalAdvance(piece);
        const double width = standsInCell(line[from]) ? CELL_WIDTH : advance;
        painter.drawText(QPointF(x + (width - advance) / 2, baseline), piece);
        x += width;
        from = to;
    }
}
