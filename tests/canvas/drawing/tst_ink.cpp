#include "canvas/drawing/AnnotationLayer.h"
#include "canvas/drawing/DragTool.h"
#include "canvas/picture/ViewGeometry.h"

#include "tests/TestProgram.h"

#include <QPainter>
#include <QPen>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <functional>

namespace
{

constexpr QSize INKED(320, 240);

/// A drag over a layer that is seen whole.
QImage drawn(CanvasModes::MouseMode mode, const QVector<QPoint> &points,
             const DragTool::ShapeStyle &style)
{
    AnnotationLayer layer;
    layer.reset(INKED);
    ViewGeometry view;
    view.setFrameSize(INKED);
    DragTool tool;
    tool.press(mode, points.first(), layer);
    for (int i = 1; i < points.size(); ++i)
        tool.move(mode, points[i], style, layer, view);
    tool.release(layer);
    return layer.image();
}

DragTool::ShapeStyle penOf(int width)
{
    DragTool::ShapeStyle style;
    style.penColor = Qt::red;
    style.penWidth = width;
    return style;
}

QImage plain(const DragTool::ShapeStyle &style, const std::function<void(QPainter &)> &draw)
{
    QImage image(INKED, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QPen pen(style.penColor);
    pen.setWidth(style.penWidth);
    painter.setPen(pen);
    if (style.fillEnabled)
        painter.setBrush(style.fillColor);
    draw(painter);
    return image;
}

int largestDifference(const QImage &one, const QImage &other)
{
    int largest = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x)
            largest =
                std::max(largest, std::abs(qAlpha(one.pixel(x, y)) - qAlpha(other.pixel(x, y))));
    }
    return largest;
}

bool hasPartlyCoveredPixel(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int alpha = qAlpha(image.pixel(x, y));
            if (alpha != 0 && alpha != 255)
                return true;
        }
    }
    return false;
}

/// Whether all pixels within one of the point are opaque and alike.
bool isDeepInside(const QImage &image, int x, int y)
{
    for (int dy = -1; dy <= 1; ++dy) {
        for (int dx = -1; dx <= 1; ++dx) {
            const QPoint near(x + dx, y + dy);
            if (!image.rect().contains(near) || image.pixel(near) != image.pixel(x, y) ||
                qAlpha(image.pixel(near)) != 255)
                return false;
        }
    }
    return true;
}

} // namespace

class InkTest : public QObject
{
    Q_OBJECT

private slots:
    void levelAndUprightLinesCoverWholeRowsAndColumns_data();
    void levelAndUprightLinesCoverWholeRowsAndColumns();
    void slopesAreSmoothAndEndsAreRound();
    void aThinPenStaysPlain();
    void whatIsInsideAShapeStays_data();
    void whatIsInsideAShapeStays();
    void aStrokeOfShortPiecesIsTheLineThatTheyMake_data();
    void aStrokeOfShortPiecesIsTheLineThatTheyMake();
    void aStrokeLiesOverWhatWasDrawnBefore();
    void aStrokeGoesOnAfterATurn();
};

void InkTest::levelAndUprightLinesCoverWholeRowsAndColumns_data()
{
    QTest::addColumn<int>("width");
    for (const int width : {2, 3, 6, 7, 9, 12})
        QTest::addRow("%d", width) << width;
}

void InkTest::levelAndUprightLinesCoverWholeRowsAndColumns()
{
    QFETCH(int, width);
    const DragTool::ShapeStyle style = penOf(width);
    const QImage level = drawn(CanvasModes::Line, {{40, 100}, {200, 100}}, style);
    const QImage upright = drawn(CanvasModes::Line, {{100, 40}, {100, 200}}, style);
    const QImage plainLevel =
        plain(style, [](QPainter &painter) { painter.drawLine(40, 100, 200, 100); });
    const QImage plainUpright =
        plain(style, [](QPainter &painter) { painter.drawLine(100, 40, 100, 200); });
    for (int i = 60; i <= 180; ++i) {
        for (int across = 0; across < 200; ++across) {
            QCOMPARE(level.pixel(i, across), plainLevel.pixel(i, across));
            QCOMPARE(upright.pixel(across, i), plainUpright.pixel(across, i));
        }
    }
}

void InkTest::slopesAreSmoothAndEndsAreRound()
{
    const QImage line = drawn(CanvasModes::Line, {{40, 40}, {200, 130}}, penOf(6));
    QVERIFY(hasPartlyCoveredPixel(line));
    // The corner that a square end has and a round one has not.
    const QImage level = drawn(CanvasModes::Line, {{40, 100}, {200, 100}}, penOf(12));
    QCOMPARE(qAlpha(level.pixel(34, 94)), 0);
    QCOMPARE(qAlpha(level.pixel(35, 100)), 255);
}

void InkTest::aThinPenStaysPlain()
{
    const QImage line = drawn(CanvasModes::Line, {{40, 40}, {200, 130}}, penOf(1));
    QCOMPARE(line, plain(penOf(1), [](QPainter &painter) { painter.drawLine(40, 40, 200, 130); }));
    QVERIFY(!hasPartlyCoveredPixel(drawn(CanvasModes::Freehand, {{9, 9}, {50, 30}}, penOf(1))));
}

void InkTest::whatIsInsideAShapeStays_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("width");
    for (const int width : {3, 6, 9, 12}) {
        QTest::addRow("rectangle %d", width) << int(CanvasModes::Rectangle) << width;
        QTest::addRow("circle %d", width) << int(CanvasModes::Circle) << width;
    }
}

void InkTest::whatIsInsideAShapeStays()
{
    QFETCH(int, mode);
    QFETCH(int, width);
    DragTool::ShapeStyle style = penOf(width);
    style.fillEnabled = true;
    style.fillColor = Qt::blue;
    const QRect box(QPoint(40, 40), QPoint(249, 149));
    const auto tool = static_cast<CanvasModes::MouseMode>(mode);
    const QImage ink = drawn(tool, {box.topLeft(), box.bottomRight() + QPoint(1, 1)}, style);
    const QImage before = plain(style, [&](QPainter &painter) {
        if (tool == CanvasModes::Rectangle)
            painter.drawRect(box);
        else
            painter.drawEllipse(box);
    });
    int inside = 0;
    for (int y = 0; y < before.height(); ++y) {
        for (int x = 0; x < before.width(); ++x) {
            if (!isDeepInside(before, x, y))
                continue;
            ++inside;
            QVERIFY2(ink.pixel(x, y) == before.pixel(x, y),
                     qPrintable(QString("%1 %2").arg(x).arg(y)));
        }
    }
    QVERIFY(inside > 10000);
}

void InkTest::aStrokeOfShortPiecesIsTheLineThatTheyMake_data()
{
    QTest::addColumn<QPoint>("step");
    QTest::addColumn<int>("width");
    QTest::newRow("flat") << QPoint(2, 1) << 12;
    QTest::newRow("steep") << QPoint(1, 3) << 6;
    QTest::newRow("level") << QPoint(1, 0) << 9;
    QTest::newRow("thin") << QPoint(3, 2) << 3;
}

// Pieces drawn one by one would lie twice over each other's smooth edges: beads.
void InkTest::aStrokeOfShortPiecesIsTheLineThatTheyMake()
{
    QFETCH(QPoint, step);
    QFETCH(int, width);
    QVector<QPoint> points{{40, 40}};
    for (int i = 0; i < 50; ++i)
        points.append(points.last() + step);
    const QImage stroke = drawn(CanvasModes::Freehand, points, penOf(width));
    const QImage line = drawn(CanvasModes::Line, {points.first(), points.last()}, penOf(width));
    QVERIFY(qAlpha(stroke.pixel(points[25])) == 255);
    const int difference = largestDifference(stroke, line);
    QVERIFY2(difference <= 24, qPrintable(QString::number(difference)));
}

void InkTest::aStrokeLiesOverWhatWasDrawnBefore()
{
    AnnotationLayer layer;
    layer.reset(INKED);
    ViewGeometry view;
    view.setFrameSize(INKED);
    layer.paint({QRect(0, 0, 160, 240)},
                [](QPainter &painter) { painter.fillRect(0, 0, 160, 240, Qt::blue); });
    DragTool tool;
    tool.press(CanvasModes::Freehand, {100, 100}, layer);
    for (int x = 101; x <= 220; ++x)
        tool.move(CanvasModes::Freehand, {x, 100 + x % 2}, penOf(6), layer, view);
    tool.release(layer);
    QCOMPARE(layer.image().pixel(120, 100), QColor(Qt::red).rgba());
    QCOMPARE(layer.image().pixel(120, 80), QColor(Qt::blue).rgba());
    QCOMPARE(layer.image().pixel(120, 110), QColor(Qt::blue).rgba());
    QCOMPARE(qAlpha(layer.image().pixel(200, 110)), 0);
}

void InkTest::aStrokeGoesOnAfterATurn()
{
    AnnotationLayer layer;
    layer.reset(INKED);
    ViewGeometry view;
    view.setFrameSize(INKED);
    DragTool tool;
    tool.press(CanvasModes::Freehand, {40, 100}, layer);
    tool.move(CanvasModes::Freehand, {100, 100}, penOf(6), layer, view);
    view.turn(true);
    layer.turn(true);
    const QImage turned = layer.image();
    const QPoint old = DragTool::layerPoint({100, 60}, view, layer);
    tool.move(CanvasModes::Freehand, {100, 60}, penOf(6), layer, view);
    tool.release(layer);
    // What was drawn before stays where the turn has put it.
    for (int y = 0; y < turned.height(); ++y) {
        for (int x = 0; x < turned.width(); ++x)
            QVERIFY(qAlpha(layer.image().pixel(x, y)) >= qAlpha(turned.pixel(x, y)));
    }
    QVERIFY(layer.rect().contains(old));
    QCOMPARE(layer.image().pixel(old), QColor(Qt::red).rgba());
}

REGISTER_PLAIN_TEST(InkTest)
#include "tst_ink.moc"
