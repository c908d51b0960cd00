#include "canvas/drawing/AnnotationLayer.h"
#include "canvas/drawing/DragTool.h"
#include "canvas/drawing/Ink.h"
#include "canvas/drawing/ShapeTools.h"
#include "canvas/picture/ViewGeometry.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QPainter>
#include <QRandomGenerator>
#include <QSet>

namespace
{

constexpr QSize SHAPES(320, 180);

QImage transparent()
{
    QImage picture(SHAPES, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    return picture;
}

int pixelsOf(const QImage &picture, const QColor &color)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            count += picture.pixelColor(x, y) == color ? 1 : 0;
    }
    return count;
}

/// What a drag leaves on the layer.
AnnotationLayer dragged(CanvasModes::MouseMode mode, QPoint from, QPoint to,
                        const DragTool::ShapeStyle &style)
{
    AnnotationLayer layer;
    ViewGeometry view;
    view.setFrameSize(SHAPES);
    layer.reset(SHAPES);
    DragTool tool;
    tool.press(mode, from, layer);
    tool.move(mode, to, style, layer, view);
    tool.release(layer);
    return layer;
}

/// What of the layer is laid over a picture and taken back: the parts that it knows of.
QImage shown(const AnnotationLayer &layer)
{
    QImage picture = transparent();
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    layer.forEachTouched(layer.rect(), [&](const QRect &part) {
        painter.drawImage(part.topLeft(), layer.image(), part);
    });
    return picture;
}

/// The shape painted on the whole of a picture, whatever its row says it covers.
QImage painted(const ShapeTool &tool, QPoint from, QPoint to, const DragTool::ShapeStyle &style)
{
    QImage picture = transparent();
    QPainter painter(&picture);
    Ink(style.penColor, style.penWidth).applyTo(painter);
    if (style.fillEnabled)
        painter.setBrush(style.fillColor);
    tool.paint(painter, from, to);
    return picture;
}

} // namespace

/// What must hold for each row of the table, those to come too.
class ShapeToolsTest : public QObject
{
    Q_OBJECT

private slots:
    void eachModeHasOneRow()
    {
        QSet<int> modes;
        for (const ShapeTool &tool : ShapeTools::ALL) {
            QVERIFY(!modes.contains(tool.mode));
            modes.insert(tool.mode);
            QCOMPARE(ShapeTools::of(tool.mode), &tool);
        }
    }

    void toolsOfAnotherKindHaveNone()
    {
        for (const auto mode : {CanvasModes::Hand, CanvasModes::Freehand, CanvasModes::Eraser,
                                CanvasModes::Clip, CanvasModes::Text})
            QVERIFY(!ShapeTools::of(mode));
        QVERIFY(!ShapeTools::of(static_cast<CanvasModes::MouseMode>(-1)));
        QVERIFY(!ShapeTools::of(static_cast<CanvasModes::MouseMode>(1000)));
    }

    void aDragIsSeenAndFilled_data() { addRows(); }

    void aDragIsSeenAndFilled()
    {
        QFETCH(int, row);
        const ShapeTool &tool = ShapeTools::ALL[static_cast<std::size_t>(row)];
        const DragTool::ShapeStyle style{Qt::red, 3, true, Qt::blue};
        const AnnotationLayer layer = dragged(tool.mode, {60, 40}, {250, 130}, style);
        // A layer that does not count as used is not laid over the picture.
        QVERIFY(layer.isUsed());
        QVERIFY(pixelsOf(layer.image(), Qt::red) > 100);
        QCOMPARE(pixelsOf(layer.image(), Qt::blue) > 100, tool.fillable);
    }

    void theOutlineGoesRoundAllThatIsPainted_data() { addRows(); }

    void theOutlineGoesRoundAllThatIsPainted()
    {
        QFETCH(int, row);
        const ShapeTool &tool = ShapeTools::ALL[static_cast<std::size_t>(row)];
        QRandomGenerator random(7);
        for (int i = 0; i < 400; ++i) {
            const QPoint from(random.bounded(-40, 360), random.bounded(-40, 220));
            // Short, long and flat ones.
            const int far = i % 3 == 0 ? 8 : 300;
            const QPoint to = from + QPoint(random.bounded(-far, far + 1),
                                            random.bounded(-far, far + 1) / (i % 5 == 0 ? 40 : 1));
            const DragTool::ShapeStyle style{Qt::red, random.bounded(1, 13),
                                             tool.fillable && i % 2 == 0, Qt::blue};
            QVERIFY2(shown(dragged(tool.mode, from, to, style)) == painted(tool, from, to, style),
                     qPrintable(QString("drag %1").arg(i)));
        }
    }

    void eachMoveReplacesTheShape_data() { addRows(); }

    void eachMoveReplacesTheShape()
    {
        QFETCH(int, row);
        const ShapeTool &tool = ShapeTools::ALL[static_cast<std::size_t>(row)];
        const DragTool::ShapeStyle style{Qt::red, 1, tool.fillable, Qt::blue};
        AnnotationLayer layer;
        ViewGeometry view;
        view.setFrameSize(SHAPES);
        layer.reset(SHAPES);
        DragTool drag;
        drag.press(tool.mode, {150, 90}, layer);
        for (const QPoint to :
             {QPoint(10, 5), QPoint(310, 92), QPoint(158, 175), QPoint(160, 99)}) {
            drag.move(tool.mode, to, style, layer, view);
            drag.drawPending(layer);
            QCOMPARE(shown(layer), painted(tool, {150, 90}, to, style));
        }
    }

private:
    static void addRows()
    {
        QTest::addColumn<int>("row");
        for (int row = 0; row < int(ShapeTools::ALL.size()); ++row) {
            const int mode = ShapeTools::ALL[static_cast<std::size_t>(row)].mode;
            QTest::addRow("mode %d", mode) << row;
        }
    }
};

REGISTER_TEST(ShapeToolsTest)
#include "tst_shape_tools.moc"
