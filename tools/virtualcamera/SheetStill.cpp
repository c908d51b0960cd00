#include "tools/virtualcamera/SheetStill.h"

#include "tools/virtualcamera/SheetScene.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace SheetScene
{
namespace
{

const QRectF SHEET(-760, -500, 1520, 1000);

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
    static const struct {
        int pixels;
        const char *text;
    } LINES[] = {{48, "Aa Bb Cc 0123"},
                 {36, "The quick brown fox"},
                 {28, "jumps over the lazy dog."},
                 {22, "Pack my box with five dozen jugs."},
                 {17, "Sphinx of black quartz, judge my vow. 17 px"},
                 {13, "How vexingly quick daft zebras jump! 13 px, and still to be read"},
                 {10, "Waltz, bad nymph, for quick jigs vex. 10 px, for those with a zoom"}};
    painter.setPen(INK);
    double y = -384;
    for (const auto &line : LINES) {
        write(painter, QRectF(-730, y, 470, line.pixels * 1.3), line.pixels,
              QString::fromLatin1(line.text), Qt::AlignLeft | Qt::AlignVCenter);
        y += line.pixels * 1.45;
    }
    painter.setPen(QColor(60, 60, 66));
    write(painter, QRectF(-730, y + 6, 450, 130), 18,
          QStringLiteral("A document camera looks down at a sheet of paper, a book or an object on "
                         "the desk and shows it to everybody in the room. Move it, zoom in, draw "
                         "on it: the sheet stays where it is."),
          Qt::AlignLeft | Qt::TextWordWrap);
}

/// A postcard: hills under an evening sky, for smooth gradients.
void paintPostcard(QPainter &painter)
{
    const QRectF card(-216, 84, 432, 268);
    painter.save();
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 40));
    painter.drawRect(card.translated(4, 5));
    painter.setBrush(Qt::white);
    painter.drawRect(card);
    const QRectF view = card.adjusted(12, 12, -12, -12);
    painter.setClipRect(view, Qt::IntersectClip);
    QLinearGradient sky(view.topLeft(), view.bottomLeft());
    sky.setColorAt(0.0, QColor(58, 98, 170));
    sky.setColorAt(0.55, QColor(244, 178, 120));
    sky.setColorAt(0.8, QColor(250, 220, 160));
    painter.fillRect(view, sky);
    painter.setBrush(QColor(255, 244, 214));
    painter.drawEllipse(QPointF(84, 214), 26, 26);
    for (int hill = 0; hill < 3; ++hill) {
        QPainterPath ridge(view.bottomLeft());
        for (int step = 0; 6 * step <= view.width(); ++step) {
            const double x = view.left() + 6 * step;
            ridge.lineTo(x, 252 + 28 * hill + 22 * std::sin(x * (0.011 + 0.006 * hill) + 2 * hill));
        }
        ridge.lineTo(view.bottomRight());
        painter.setBrush(QColor(96 - 26 * hill, 112 - 18 * hill, 110 - 34 * hill));
        painter.drawPath(ridge);
    }
    painter.restore();
}

void paintPatches(QPainter &painter)
{
    static const QRgb COLOURS[] = {0xFF735244, 0xFFC29682, 0xFF627A9D, 0xFF576C43, 0xFF8580B1,
                                   0xFF67BDAA, 0xFFD67E2C, 0xFF505BA6, 0xFFC15A63, 0xFF5E3C6C,
                                   0xFF9DBC40, 0xFFE0A32E, 0xFF383D96, 0xFF469449, 0xFFAF363C,
                                   0xFFE7C71F, 0xFFBB5695, 0xFF0885A1};
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < 18; ++i) {
        const int row = i / 6;
        painter.fillRect(QRectF(262 + i % 6 * 78, -376 + row * 78, 70, 70), QColor(COLOURS[i]));
    }
    for (int i = 0; i < 12; ++i) {
        const int grey = i * 255 / 11;
        painter.fillRect(QRectF(262 + i * 38.5, -136, 38.5, 40), QColor(grey, grey, grey));
    }
}

/// Line pairs that grow finer, and a star, which show how fine the picture resolves.
void paintResolution(QPainter &painter)
{
    painter.save();
    painter.setPen(Qt::NoPen);
    painter.setBrush(INK);
    double x = -720;
    double width = 8;
    while (width >= 1) {
        for (int line = 0; line < 4; ++line, x += 2 * width)
            painter.drawRect(QRectF(x, 70, width, 60));
        x += 12;
        width *= 0.8;
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

/// A right-angled triangle, as a lesson would have it.
void paintTriangle(QPainter &painter)
{
    painter.setPen(QPen(QColor(24, 72, 150), 3));
    painter.setBrush(QColor(24, 72, 150, 30));
    painter.drawPolygon(QPolygonF({{-150, -190}, {90, -190}, {-150, -370}}));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(-150, -214, 24, 24));
    painter.setPen(INK);
    write(painter, QRectF(-190, -300, 36, 36), 26, QStringLiteral("a"), Qt::AlignCenter);
    write(painter, QRectF(-50, -190, 36, 34), 26, QStringLiteral("b"), Qt::AlignCenter);
    write(painter, QRectF(-24, -320, 36, 36), 26, QStringLiteral("c"), Qt::AlignCenter);
    write(painter, QRectF(30, -380, 190, 44), 30, QStringLiteral("a\u00B2 + b\u00B2 = c\u00B2"),
          Qt::AlignCenter);
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

} // namespace

void paintStill(QPainter &painter, const QString &banner)
{
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    paintDesk(painter);
    paintBanner(painter, banner);
    paintTexts(painter);
    paintPatches(painter);
    paintResolution(painter);
    paintTriangle(painter);
    paintPostcard(painter);
    paintHandwriting(painter);
    paintRuler(painter);
}

} // namespace SheetScene
