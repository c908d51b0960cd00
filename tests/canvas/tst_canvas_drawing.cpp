#include "tests/TestProgram.h"
#include "tests/canvas/DrawnCanvas.h"
#include "tests/canvas/GoldenPicture.h"

#include <QtTest>

#include <functional>

using namespace DrawnCanvas;

namespace
{

constexpr int WIDTHS[] = {3, 6, 9, 12};

struct View {
    const char *name;
    std::function<void(ImageCanvas &)> enter;
};

void turn(ImageCanvas &canvas, int quarters)
{
    for (int i = 0; i < quarters; ++i)
        canvas.rotate();
}

const View VIEWS[] = {
    {"whole", [](ImageCanvas &) {}},
    {"zoomed",
     [](ImageCanvas &canvas) {
         canvas.zoomIn();
         canvas.zoomIn();
         canvas.setViewport(100, 50);
     }},
    {"turned-1", [](ImageCanvas &canvas) { turn(canvas, 1); }},
    {"turned-2", [](ImageCanvas &canvas) { turn(canvas, 2); }},
    {"turned-3", [](ImageCanvas &canvas) { turn(canvas, 3); }},
};

} // namespace

/// What the tools draw, and where.
class CanvasDrawingTest : public QObject
{
    Q_OBJECT

private slots:
    void everyToolDrawsAtEveryWidthInEveryView_data()
    {
        QTest::addColumn<int>("tool");
        QTest::addColumn<int>("view");
        for (int tool = 0; tool < int(std::size(TOOLS)); ++tool) {
            for (int view = 0; view < int(std::size(VIEWS)); ++view)
                QTest::addRow("%s-%s", TOOLS[tool].name, VIEWS[view].name) << tool << view;
        }
    }

    // One row of pictures with the pen 3, 6, 9 and 12 wide, and one more with a fill.
    void everyToolDrawsAtEveryWidthInEveryView()
    {
        QFETCH(int, tool);
        QFETCH(int, view);
        const int rows = TOOLS[tool].closed ? 2 : 1;
        QImage sheet(4 * FRAME.width(), rows * FRAME.height(), QImage::Format_RGB32);
        QPainter painter(&sheet);
        for (int row = 0; row < rows; ++row) {
            const auto canvas = canvasOf();
            VIEWS[view].enter(*canvas);
            canvas->fillEnabled = row == 1;
            for (int column = 0; column < 4; ++column) {
                canvas->clearPainting();
                canvas->penWidth = WIDTHS[column];
                use(*canvas, TOOLS[tool]);
                painter.drawImage(column * FRAME.width(), row * FRAME.height(), shown(*canvas));
            }
        }
        painter.end();
        COMPARE_GOLDEN(sheet, QString("drawing-%1").arg(QTest::currentDataTag()));
    }

    void drawingTurnsWithThePicture()
    {
        const auto canvas = canvasOf();
        canvas->fillEnabled = true;
        use(*canvas, TOOLS[2]);
        const QImage upright = shown(*canvas);
        canvas->rotate();
        QVERIFY(shown(*canvas) != upright);
        canvas->rotate();
        QCOMPARE(shown(*canvas), upright.transformed(QTransform().rotate(180)));
        canvas->rotate();
        canvas->rotate();
        QCOMPARE(shown(*canvas), upright);
        canvas->rotateRev();
        canvas->rotateRev();
        QCOMPARE(shown(*canvas), upright.transformed(QTransform().rotate(180)));
    }

    void aQuarterTurnedDrawingIsShownWholeBetweenBars()
    {
        const auto canvas = canvasOf({120, 120}, {120, 120});
        canvas->fillEnabled = true;
        use(*canvas, TOOLS[2]);
        const QImage upright = shown(*canvas);
        canvas->rotate();
        QCOMPARE(shown(*canvas), upright.transformed(QTransform().rotate(90)));
    }

    void drawingStaysUnderNewFrames()
    {
        const auto canvas = canvasOf();
        use(*canvas, TOOLS[1]);
        const QImage drawn = shown(*canvas);
        canvas->imageCaptured(paper());
        QCOMPARE(canvas->currentImage(), drawn);
    }

    void aFrameOfAnotherSizeDiscardsAllDrawing()
    {
        const auto canvas = canvasOf();
        use(*canvas, TOOLS[1]);
        canvas->imageCaptured(paper({200, 150}));
        QCOMPARE(redPixels(shown(*canvas)), 0);
        canvas->imageCaptured(paper());
        QCOMPARE(redPixels(shown(*canvas)), 0);
    }

    void erasingAllLeavesThePicture()
    {
        const auto canvas = canvasOf();
        const QImage clean = shown(*canvas);
        use(*canvas, TOOLS[4]);
        QVERIFY(shown(*canvas) != clean);
        canvas->clearPainting();
        QCOMPARE(shown(*canvas), clean);
        use(*canvas, TOOLS[4]);
        QVERIFY(shown(*canvas) != clean);
    }

    void drawingIsInThePictureHandedBackToTheSource()
    {
        const auto canvas = canvasOf();
        use(*canvas, TOOLS[1]);
        QImage frame = paper();
        canvas->imageCaptured(frame.bits(), FRAME.width(), FRAME.height(), false, false);
        QVERIFY(redPixels(frame) > 100);
        QCOMPARE(frame, canvas->currentImage().convertToFormat(QImage::Format_RGB888));
    }

    void aStrokeLandsUnderThePointerInACanvasOfAnySize_data()
    {
        QTest::addColumn<QSize>("widget");
        QTest::addColumn<QPoint>("from");
        QTest::addColumn<QPoint>("to");
        // The picture's row 60 from column 40 to 120.
        QTest::newRow("smaller") << QSize(80, 60) << QPoint(20, 30) << QPoint(60, 30);
        QTest::newRow("larger") << QSize(480, 360) << QPoint(120, 180) << QPoint(360, 180);
        QTest::newRow("bars beside") << QSize(420, 240) << QPoint(130, 120) << QPoint(290, 120);
        QTest::newRow("bars above") << QSize(160, 300) << QPoint(40, 150) << QPoint(120, 150);
    }

    void aStrokeLandsUnderThePointerInACanvasOfAnySize()
    {
        QFETCH(QSize, widget);
        QFETCH(QPoint, from);
        QFETCH(QPoint, to);
        const auto canvas = canvasOf(widget);
        canvas->setMouseMode(CanvasModes::Line);
        canvas->penWidth = 1;
        CanvasMouse::drag(*canvas, {from, to});
        const QImage picture = shown(*canvas);
        for (int x = 40; x <= 120; ++x)
            QVERIFY(isRed(picture, x, 60));
        QCOMPARE(redPixels(picture), 81);
    }

    void fractionalPointsOfAPenAreRounded()
    {
        const auto canvas = canvasOf();
        canvas->setMouseMode(CanvasModes::Line);
        canvas->penWidth = 1;
        CanvasMouse::press(*canvas, {10, 50});
        CanvasMouse::move(*canvas, QPointF(29.6, 50.4));
        CanvasMouse::release(*canvas, {29, 50});
        QVERIFY(isRed(shown(*canvas), 30, 50));
        QCOMPARE(redPixels(shown(*canvas)), 21);
    }

    void dragsFromAndToAnywhereDrawWhatFallsOnThePicture_data()
    {
        QTest::addColumn<QPoint>("from");
        QTest::addColumn<QPoint>("to");
        QTest::newRow("from the bar") << QPoint(5, 60) << QPoint(150, 60);
        QTest::newRow("into the bar") << QPoint(150, 60) << QPoint(235, 60);
        QTest::newRow("from outside the widget") << QPoint(-300, 60) << QPoint(150, 60);
        QTest::newRow("far out of the widget") << QPoint(150, 60) << QPoint(30000, 60);
        QTest::newRow("right across") << QPoint(-30000, 60) << QPoint(30000, 60);
    }

    void dragsFromAndToAnywhereDrawWhatFallsOnThePicture()
    {
        QFETCH(QPoint, from);
        QFETCH(QPoint, to);
        // The picture begins 40 pixels right of the widget's edge.
        for (const Tool &tool : TOOLS) {
            const auto canvas = canvasOf({240, 120});
            canvas->setMouseMode(tool.mode);
            CanvasMouse::drag(*canvas, {from, to});
            const int red = redPixels(shown(*canvas));
            // The sides of an arrow and a triangle of that length lie beyond the picture.
            const bool beyond = tool.closed && to.x() - from.x() > 40000;
            if (!beyond)
                QVERIFY2((red > 0) == (tool.mode != CanvasModes::Eraser), tool.name);
        }
    }
};

REGISTER_TEST(CanvasDrawingTest)
#include "tst_canvas_drawing.moc"
