#include "tools/virtualcamera/SheetScene.h"

#include "tools/virtualcamera/SheetCounter.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QTransform>

#include <cmath>

namespace SheetScene
{
namespace
{

const QRectF SHEET(-760, -500, 1520, 1000);
const QColor INK(30, 32, 40);
const QRectF DIGITS(-210, -150, 420, 96);
constexpr double CELL = 12.0;
const QRectF CELLS(-CELL *SheetCounter::CELL_COUNT / 2, -24, CELL *SheetCounter::CELL_COUNT, 48);

bool hasFonts()
{
    return qobject_cast<QGuiApplication *>(QCoreApplication::instance()) != nullptr;
}

void write(QPainter &painter, const QRectF &area, int pixels, const QString &text, int flags,
           bool bold = false)
{
    if (!hasFonts())
        return;
    QFont font(QStringLiteral("Liberation Sans"));
    font.setPixelSize(pixels);
    font.setBold(bold);
    painter.setFont(font);
    painter.drawText(area, flags, text);
}

/// Boards of planed wood; the grain is a sum of slow waves with a fixed seed.
QImage woodTexture()
{
    QImage wood(480, 360, QImage::Format_RGB32);
    quint32 seed = 7;
    for (int y = 0; y < wood.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(wood.scanLine(y));
        const int board = y / 90;
        seed = seed * 1664525u + 1013904223u;
        const double streak = (seed >> 24) / 255.0 - 0.5;
        for (int x = 0; x < wood.width(); ++x) {
            const double wave =
                std::sin(y * 0.21 + board * 3.0 + 2.2 * std::sin(x * 0.013 + board));
            const double seam = y % 90 == 0 ? 0.55 : 1.0;
            const double tone = seam * (1.0 + 0.06 * wave + 0.10 * streak + 0.03 * (board % 2));
            row[x] = qRgb(qBound(0, static_cast<int>(158 * tone), 255),
                          qBound(0, static_cast<int>(112 * tone), 255),
                          qBound(0, static_cast<int>(70 * tone), 255));
        }
    }
    return wood;
}

void paintDesk(QPainter &painter)
{
    painter.drawImage(QRectF(-960, -720, 1920, 1440), woodTexture());
    painter.setPen(Qt::NoPen);
    for (int i = 6; i > 0; --i) {
        painter.setBrush(QColor(0, 0, 0, 18));
        painter.drawRoundedRect(SHEET.adjusted(-2 * i, -i, 3 * i, 4 * i), 3 * i, 3 * i);
    }
    painter.setBrush(QColor(246, 245, 240));
    painter.drawRect(SHEET);
}

void paintBanner(QPainter &painter, const QString &banner)
{
    painter.setPen(QColor(24, 72, 150));
    write(painter, QRectF(-720, -490, 1440, 84), 60, banner, Qt::AlignCenter, true);
    painter.fillRect(QRectF(-720, -402, 1440, 4), QColor(24, 72, 150));
}

void paintTexts(QPainter &painter)
{
    painter.setPen(INK);
    double y = -380;
    for (const int pixels : {48, 36, 28, 22, 17, 13, 10}) {
        const QString text =
            QStringLiteral("%1 px  The quick brown fox jumps over the lazy dog").arg(pixels);
        write(painter, QRectF(-730, y, 470, pixels * 1.3), pixels, text,
              Qt::AlignLeft | Qt::AlignVCenter);
        y += pixels * 1.45;
    }
    painter.setPen(QColor(60, 60, 66));
    write(painter, QRectF(-730, y + 6, 470, 130), 18,
          QStringLiteral("A document camera looks down at a sheet of paper, a book or an object on "
                         "the desk and shows it to everybody in the room. Move it, zoom in, draw "
                         "on it: the sheet stays where it is."),
          Qt::AlignLeft | Qt::TextWordWrap);
}

void paintPatches(QPainter &painter)
{
    static const QRgb COLOURS[] = {0xFF735244, 0xFFC29682, 0xFF627A9D, 0xFF576C43, 0xFF8580B1,
                                   0xFF67BDAA, 0xFFD67E2C, 0xFF505BA6, 0xFFC15A63, 0xFF5E3C6C,
                                   0xFF9DBC40, 0xFFE0A32E, 0xFF383D96, 0xFF469449, 0xFFAF363C,
                                   0xFFE7C71F, 0xFFBB5695, 0xFF0885A1};
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < 18; ++i)
        painter.fillRect(QRectF(262 + i % 6 * 78, -376 + i / 6 * 78, 70, 70), QColor(COLOURS[i]));
    for (int i = 0; i < 12; ++i) {
        const int grey = i * 255 / 11;
        painter.fillRect(QRectF(262 + i * 38.5, -136, 38.5, 40), QColor(grey, grey, grey));
    }
}

/// Line pairs that grow finer, and a star: where they blur the picture ends.
void paintResolution(QPainter &painter)
{
    painter.save();
    painter.setPen(Qt::NoPen);
    painter.setBrush(INK);
    double x = -720;
    for (double width = 8; width >= 1; width *= 0.8) {
        for (int line = 0; line < 4; ++line, x += 2 * width)
            painter.drawRect(QRectF(x, 70, width, 60));
        x += 12;
    }
    painter.translate(-590, 250);
    for (int ray = 0; ray < 36; ++ray) {
        QPainterPath wedge;
        wedge.moveTo(0, 0);
        wedge.arcTo(QRectF(-100, -100, 200, 200), ray * 10, 5);
        painter.drawPath(wedge);
    }
    painter.restore();
    painter.setPen(QPen(INK, 2));
    painter.setBrush(Qt::NoBrush);
    for (int ring = 1; ring <= 9; ++ring)
        painter.drawEllipse(QPointF(-350, 250), ring * 11, ring * 11);
}

/// Where the pencil has written.
void paintHandwriting(QPainter &painter)
{
    painter.setPen(QPen(QColor(150, 170, 205), 1));
    for (int line = 0; line < 6; ++line)
        painter.drawLine(QPointF(250, 110 + line * 44), QPointF(730, 110 + line * 44));
    painter.setPen(QPen(QColor(70, 72, 80), 3));
    for (int line = 0; line < 3; ++line) {
        QPainterPath script;
        for (int step = 0; step <= 400; ++step) {
            const QPointF point(260 + step + 10 * std::sin(step * 0.23 + line),
                                104 + line * 44 - 10 * std::sin(step * 0.31 + line) -
                                    6 * std::sin(step * 0.057));
            step == 0 ? script.moveTo(point) : script.lineTo(point);
        }
        painter.drawPath(script);
    }
}

void paintRuler(QPainter &painter)
{
    const QRectF ruler(-720, 392, 1440, 84);
    painter.setPen(QPen(QColor(120, 92, 20), 2));
    painter.setBrush(QColor(240, 205, 92));
    painter.drawRoundedRect(ruler, 6, 6);
    painter.setPen(QPen(INK, 1.5));
    constexpr double MILLIMETRE = 4.8;
    for (int mm = 0; mm <= 290; ++mm) {
        const double x = ruler.left() + 24 + mm * MILLIMETRE;
        const double length = mm % 10 == 0 ? 34 : mm % 5 == 0 ? 24 : 15;
        painter.drawLine(QPointF(x, ruler.top()), QPointF(x, ruler.top() + length));
        if (mm % 10 == 0) {
            write(painter, QRectF(x - 24, ruler.top() + 36, 48, 34), 26, QString::number(mm / 10),
                  Qt::AlignCenter);
        }
    }
}

/// One digit out of the seven bars a to g of a calculator, in an area 1 wide and 1.6 high.
void paintDigit(QPainter &painter, int digit)
{
    static constexpr int BARS[] = {0x3F, 0x06, 0x5B, 0x4F, 0x66, 0x6D, 0x7D, 0x07, 0x7F, 0x6F};
    static const QRectF AREAS[] = {{0.1, 0.0, 0.8, 0.2}, {0.8, 0.1, 0.2, 0.7}, {0.8, 0.8, 0.2, 0.7},
                                   {0.1, 1.4, 0.8, 0.2}, {0.0, 0.8, 0.2, 0.7}, {0.0, 0.1, 0.2, 0.7},
                                   {0.1, 0.7, 0.8, 0.2}};
    for (int bar = 0; bar < 7; ++bar) {
        if (BARS[digit] >> bar & 1)
            painter.drawRect(AREAS[bar]);
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

void paintStill(QPainter &painter, const QString &banner)
{
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    paintDesk(painter);
    paintBanner(painter, banner);
    paintTexts(painter);
    paintPatches(painter);
    paintResolution(painter);
    paintHandwriting(painter);
    paintRuler(painter);
}

QRectF counterArea()
{
    return DIGITS.united(CELLS).adjusted(-36, -6, 36, 12);
}

void paintCounter(QPainter &painter, quint32 frameNumber)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawRect(counterArea());
    painter.setBrush(INK);
    const QString digits = QStringLiteral("%1").arg(frameNumber % 1000000, 6, 10, QLatin1Char('0'));
    const double unit = DIGITS.height() / 1.6;
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
