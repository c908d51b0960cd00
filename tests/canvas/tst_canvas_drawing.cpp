#include "canvas/ImageCanvas.h"
#include "tests/TestProgram.h"
#include "tests/canvas/CanvasMouse.h"
#include "tests/canvas/GoldenPicture.h"

#include <QtTest>

#include <QPainter>
#include <qpa/qwindowsysteminterface_p.h>

#include <algorithm>
#include <functional>
#include <memory>

namespace
{

constexpr QSize FRAME(160, 120);
constexpr int WIDTHS[] = {3, 6, 9, 12};

/// White paper with a mark in its first corner, so that turns show.
QImage paper(QSize size = FRAME)
{
    QImage picture(size, QImage::Format_RGB888);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.fillRect(0, 0, 16, 6, QColor(0, 160, 0));
    painter.fillRect(0, 0, 6, 16, QColor(0, 160, 0));
    return picture;
}

std::unique_ptr<ImageCanvas> canvasOf(QSize widget = FRAME, QSize picture = FRAME)
{
    auto canvas = std::make_unique<ImageCanvas>();
    canvas->resize(widget);
    canvas->imageCaptured(paper(picture));
    canvas->penColor = Qt::red;
    canvas->fillColor = QColor(0, 128, 255);
    return canvas;
}

/// The picture with everything that was drawn since the last frame.
QImage shown(ImageCanvas &canvas)
{
    canvas.autoRefresh();
    return canvas.currentImage();
}

int redPixels(const QImage &picture)
{
    const QImage pixels = picture.convertToFormat(QImage::Format_RGB32);
    int count = 0;
    for (int y = 0; y < pixels.height(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(pixels.constScanLine(y));
        count += static_cast<int>(std::count(row, row + pixels.width(), 0xFFFF0000U));
    }
    return count;
}

bool isRed(const QImage &picture, int x, int y)
{
    return picture.pixelColor(x, y) == QColor(Qt::red);
}

struct Tool {
    const char *name;
    CanvasModes::MouseMode mode;
    bool closed;
};

constexpr Tool TOOLS[] = {
    {"freehand", CanvasModes::Freehand, false}, {"line", CanvasModes::Line, false},
    {"arrow", CanvasModes::Arrow, true},        {"rectangle", CanvasModes::Rectangle, true},
    {"circle", CanvasModes::Circle, true},      {"triangle", CanvasModes::Triangle, true},
    {"eraser", CanvasModes::Eraser, false},
};

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

void use(ImageCanvas &canvas, const Tool &tool)
{
    if (tool.mode == CanvasModes::Eraser) {
        // Something to rub out.
        const int width = canvas.penWidth;
        canvas.penWidth = 3;
        canvas.setMouseMode(CanvasModes::Line);
        for (int y = 10; y < FRAME.height(); y += 9)
            CanvasMouse::drag(canvas, {{5, y}, {155, y}});
        canvas.penWidth = width;
    }
    canvas.setMouseMode(tool.mode);
    if (tool.mode == CanvasModes::Freehand || tool.mode == CanvasModes::Eraser)
        CanvasMouse::drag(canvas, {{45, 30}, {115, 40}, {60, 70}, {110, 95}});
    else
        CanvasMouse::drag(canvas, {{45, 30}, {150, 20}, {115, 90}});
}

} // namespace

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

    void aPressWithoutAMoveDrawsNothing()
    {
        for (const Tool &tool : TOOLS) {
            const auto canvas = canvasOf();
            const QImage clean = shown(*canvas);
            canvas->setMouseMode(tool.mode);
            CanvasMouse::click(*canvas, {80, 60});
            QCOMPARE(shown(*canvas), clean);
        }
    }

    void movesAndReleasesWithoutAPressDoNothing()
    {
        const auto canvas = canvasOf();
        const QImage clean = shown(*canvas);
        for (int mode = CanvasModes::Hand; mode < CanvasModes::MOUSE_MODE_COUNT; ++mode) {
            canvas->setMouseMode(static_cast<CanvasModes::MouseMode>(mode));
            CanvasMouse::move(*canvas, {80, 60}, Qt::NoButton);
            CanvasMouse::move(*canvas, {90, 60});
            CanvasMouse::release(*canvas, {90, 60});
        }
        QCOMPARE(shown(*canvas), clean);
        QCOMPARE(canvas->findChildren<QWidget *>().size(), 1 + hiddenEditorParts());
    }

    void otherButtonsDoNotDraw()
    {
        for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
            const auto canvas = canvasOf();
            const QImage clean = shown(*canvas);
            canvas->setMouseMode(CanvasModes::Line);
            CanvasMouse::press(*canvas, {10, 60}, button);
            CanvasMouse::move(*canvas, {90, 60}, button);
            CanvasMouse::release(*canvas, {90, 60}, button);
            QCOMPARE(shown(*canvas), clean);
        }
    }

    void aSecondButtonDoesNotDisturbTheDrag()
    {
        const auto canvas = canvasOf();
        canvas->setMouseMode(CanvasModes::Line);
        canvas->penWidth = 1;
        CanvasMouse::press(*canvas, {10, 60});
        CanvasMouse::move(*canvas, {50, 60});
        CanvasMouse::press(*canvas, {50, 60}, Qt::RightButton, Qt::LeftButton);
        CanvasMouse::move(*canvas, {70, 60}, Qt::LeftButton | Qt::RightButton);
        CanvasMouse::release(*canvas, {70, 60}, Qt::RightButton, Qt::LeftButton);
        CanvasMouse::move(*canvas, {90, 60});
        CanvasMouse::release(*canvas, {90, 60});
        QCOMPARE(redPixels(shown(*canvas)), 81);
        CanvasMouse::move(*canvas, {110, 60});
        QCOMPARE(redPixels(shown(*canvas)), 81);
    }

    void aReleaseThatWentElsewhereEndsTheDrag()
    {
        const auto canvas = canvasOf();
        canvas->setMouseMode(CanvasModes::Clip);
        CanvasMouse::press(*canvas, {10, 60});
        CanvasMouse::move(*canvas, {50, 70});
        QVERIFY(canvas->clipRectangle().isValid());
        CanvasMouse::move(*canvas, {60, 70}, Qt::RightButton);
        QVERIFY(!canvas->clipRectangle().isValid());
        CanvasMouse::move(*canvas, {70, 70});
        QVERIFY(!canvas->clipRectangle().isValid());
    }

    void aDoubleClickedStrokeLosesNoPoint()
    {
        const auto canvas = canvasOf();
        canvas->setMouseMode(CanvasModes::Freehand);
        QMouseEvent doubleClick(QEvent::MouseButtonDblClick, QPointF(10, 60), Qt::LeftButton,
                                Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(canvas.get(), &doubleClick);
        CanvasMouse::move(*canvas, {60, 60});
        QVERIFY(isRed(shown(*canvas), 30, 60));
    }

    void aShapeThatWasNotShownYetIsPartOfTheDrawing()
    {
        // Each between two refreshes.
        const auto reference = canvasOf();
        reference->setMouseMode(CanvasModes::Rectangle);
        CanvasMouse::drag(*reference, {{20, 20}, {100, 80}});
        const auto turned = canvasOf();
        turned->setMouseMode(CanvasModes::Rectangle);
        CanvasMouse::press(*turned, {20, 20});
        CanvasMouse::move(*turned, {100, 80});
        turned->rotate();
        CanvasMouse::release(*turned, {100, 80});
        turned->rotateRev();
        QVERIFY(redPixels(shown(*reference)) > 0);
        QCOMPARE(shown(*turned), shown(*reference));

        const auto cleared = canvasOf();
        cleared->setMouseMode(CanvasModes::Rectangle);
        CanvasMouse::press(*cleared, {20, 20});
        CanvasMouse::move(*cleared, {100, 80});
        cleared->clearPainting();
        CanvasMouse::release(*cleared, {100, 80});
        QCOMPARE(redPixels(shown(*cleared)), 0);

        const auto replaced = canvasOf();
        replaced->setMouseMode(CanvasModes::Rectangle);
        CanvasMouse::press(*replaced, {20, 20});
        CanvasMouse::move(*replaced, {100, 80});
        replaced->imageCaptured(paper({320, 240}));
        CanvasMouse::release(*replaced, {100, 80});
        QCOMPARE(redPixels(shown(*replaced)), 0);
    }

    void eventsInMidDragLeaveTheDragAlive_data()
    {
        QTest::addColumn<int>("event");
        QTest::newRow("frame of another size") << 0;
        QTest::newRow("rotation") << 1;
        QTest::newRow("mode change") << 2;
        QTest::newRow("freeze") << 3;
        QTest::newRow("clear") << 4;
        QTest::newRow("zoom") << 5;
        QTest::newRow("resize") << 6;
        QTest::newRow("empty picture") << 7;
    }

    void eventsInMidDragLeaveTheDragAlive()
    {
        QFETCH(int, event);
        for (const Tool &tool : TOOLS) {
            const auto canvas = canvasOf();
            const int before = redPixels(shown(*canvas));
            canvas->penWidth = 12;
            use(*canvas, TOOLS[4]);
            const int ring = redPixels(shown(*canvas)) - before;
            canvas->penWidth = 1;
            canvas->setMouseMode(tool.mode);
            CanvasMouse::press(*canvas, {10, 10});
            CanvasMouse::move(*canvas, {90, 60});
            disturb(*canvas, event);
            CanvasMouse::move(*canvas, {40, 90});
            CanvasMouse::move(*canvas, {60, 80});
            CanvasMouse::release(*canvas, {60, 80});
            // The thick ring of the time before a replacement has not come back.
            if (event == 0 || event == 4)
                QVERIFY2(redPixels(shown(*canvas)) < ring / 2, tool.name);
            if (event == 3) {
                canvas->imageCaptured(QImage(FRAME, QImage::Format_RGB888));
                canvas->frozen = false;
            }
            canvas->imageCaptured(paper());
            QCOMPARE(canvas->currentImage().size(), FRAME);
        }
    }

    void anEmptyPictureTakesEveryTool()
    {
        ImageCanvas canvas;
        canvas.resize(FRAME);
        unsigned char pixel = 0;
        canvas.imageCaptured(&pixel, 0, 0, false, false);
        for (int mode = CanvasModes::Hand; mode < CanvasModes::MOUSE_MODE_COUNT; ++mode) {
            canvas.setMouseMode(static_cast<CanvasModes::MouseMode>(mode));
            CanvasMouse::drag(canvas, {{10, 10}, {90, 60}, {-5, 200}});
        }
        canvas.setMouseMode(CanvasModes::Hand);
        canvas.imageCaptured(paper());
        QCOMPARE(canvas.currentImage().size(), FRAME);
        QCOMPARE(redPixels(shown(canvas)), 0);
    }

    void aCanvasWithoutPixelsTakesEveryTool()
    {
        const auto canvas = canvasOf({0, 0});
        for (int mode = CanvasModes::Hand; mode < CanvasModes::MOUSE_MODE_COUNT; ++mode) {
            canvas->setMouseMode(static_cast<CanvasModes::MouseMode>(mode));
            CanvasMouse::drag(*canvas, {{0, 0}, {9, 6}});
        }
        canvas->setMouseMode(CanvasModes::Hand);
        QCOMPARE(shown(*canvas).size(), FRAME);
    }

    void theHandPansTheZoomedView()
    {
        const auto canvas = canvasOf();
        canvas->zoomIn();
        canvas->setViewport(40, 40);
        const QPointF before = canvas->centerPoint();
        canvas->setMouseMode(CanvasModes::Hand);
        CanvasMouse::drag(*canvas, {{80, 60}, {90, 54}});
        QCOMPARE(canvas->centerPoint(), before + QPointF(-5, 3));
    }

    void aClipIsShownOnlyWhileItIsDragged()
    {
        const auto canvas = canvasOf({320, 240});
        canvas->setMouseMode(CanvasModes::Clip);
        CanvasMouse::press(*canvas, {20, 20});
        CanvasMouse::move(*canvas, {118, 80});
        QCOMPARE(canvas->clipRectangle(), QRect(QPoint(10, 10), QPoint(59, 40)));
        QCOMPARE(canvas->clippingRect(), QRectF(20, 20, 100, 62));
        CanvasMouse::release(*canvas, {118, 80});
        QCOMPARE(canvas->clipRectangle(), QRect());
    }

    void aStrokeShowsWithTheNextFrame()
    {
        const auto canvas = canvasOf();
        canvas->setMouseMode(CanvasModes::Freehand);
        CanvasMouse::press(*canvas, {10, 60});
        for (int x = 20; x < 150; x += 10) {
            CanvasMouse::move(*canvas, QPoint(x, 60));
            QImage frame = paper();
            canvas->imageCaptured(frame.bits(), FRAME.width(), FRAME.height(), false, false);
            QVERIFY(isRed(frame, x, 60));
        }
    }

    void aStrokeShowsWithTheFirstRefreshOfAStillPicture()
    {
        const auto canvas = canvasOf();
        canvas->show();
        canvas->startAutoRefresh();
        QVERIFY(QTest::qWaitForWindowExposed(canvas.get()));
        canvas->setMouseMode(CanvasModes::Freehand);
        CanvasMouse::press(*canvas, {10, 60});
        for (int x = 20; x < 150; x += 10) {
            RefreshWatch watch(*canvas);
            CanvasMouse::move(*canvas, QPoint(x, 60));
            QTRY_VERIFY(watch.refreshed);
            QVERIFY(isRed(canvas->grab().toImage(), x, 60));
        }
    }

    void aStrokeOverAStandingPictureShowsWithoutWaitingForARefresh()
    {
        // Not on the screen and not refreshed: nothing but the stroke itself asks for a new
        // picture.
        const auto canvas = canvasOf();
        QElapsedTimer sinceFrame;
        sinceFrame.start();
        // A source that is still in motion carries the stroke with its next frame.
        QTRY_VERIFY(sinceFrame.elapsed() > 40);
        canvas->setMouseMode(CanvasModes::Freehand);
        CanvasMouse::drag(*canvas, {{10, 60}, {90, 60}});
        QVERIFY(!isRed(canvas->currentImage(), 50, 60));
        QTRY_VERIFY(isRed(canvas->currentImage(), 50, 60));
    }

    void aFingerDrawsLikeTheMouse()
    {
        const auto canvas = canvasOf();
        canvas->show();
        QVERIFY(QTest::qWaitForWindowExposed(canvas.get()));
        canvas->setMouseMode(CanvasModes::Line);
        QTouchDevice *device = QTest::createTouchDevice();
        QTest::touchEvent(canvas.get(), device).press(0, QPoint(10, 60), canvas.get());
        QTest::touchEvent(canvas.get(), device).move(0, QPoint(60, 60), canvas.get());
        QTest::touchEvent(canvas.get(), device).move(0, QPoint(90, 60), canvas.get());
        QTest::touchEvent(canvas.get(), device).release(0, QPoint(90, 60), canvas.get());
        QVERIFY(isRed(shown(*canvas), 50, 60));
        QVERIFY(isRed(shown(*canvas), 90, 60));
        QVERIFY(!isRed(shown(*canvas), 100, 60));
    }

    void aPenDrawsEveryPointThatTheTabletDelivers()
    {
        const auto canvas = canvasOf();
        canvas->show();
        QVERIFY(QTest::qWaitForWindowExposed(canvas.get()));
        canvas->setMouseMode(CanvasModes::Freehand);
        // As with a tablet at an X server: the server moves no mouse for the pen.
        QWindowSystemInterfacePrivate::TabletEvent::setPlatformSynthesizesMouse(false);
        const auto zigzag = [](int x) { return QPoint(x, x / 10 % 2 == 0 ? 20 : 100); };
        penEvent(*canvas, {10, 60}, Qt::LeftButton);
        for (int x = 20; x <= 150; x += 10)
            penEvent(*canvas, zigzag(x), Qt::LeftButton);
        penEvent(*canvas, zigzag(150), Qt::NoButton);
        QTRY_VERIFY(isRed(shown(*canvas), 150, zigzag(150).y()));
        for (int x = 20; x <= 150; x += 10)
            QVERIFY2(isRed(shown(*canvas), x, zigzag(x).y()), qPrintable(QString::number(x)));
    }

    void tabletEventsAreLeftToTheToolkitToBecomeMouseEvents()
    {
        const auto canvas = canvasOf();
        QTabletEvent event(QEvent::TabletPress, QPointF(10, 10), QPointF(10, 10),
                           QTabletEvent::Stylus, QTabletEvent::Pen, 0.5, 0, 0, 0.0, 0.0, 0,
                           Qt::NoModifier, 1, Qt::LeftButton, Qt::LeftButton);
        event.accept();
        QCoreApplication::sendEvent(canvas.get(), &event);
        QVERIFY(!event.isAccepted());
        QVERIFY(QCoreApplication::testAttribute(Qt::AA_SynthesizeMouseForUnhandledTabletEvents));
        QVERIFY(!QCoreApplication::testAttribute(Qt::AA_CompressHighFrequencyEvents));
        QVERIFY(!QCoreApplication::testAttribute(Qt::AA_CompressTabletEvents));
    }

private:
    /// What the window system hands to the toolkit when the pen of a tablet is at that point.
    static void penEvent(QWidget &widget, QPoint point, Qt::MouseButtons buttons)
    {
        static ulong milliseconds = 0;
        QWindowSystemInterface::handleTabletEvent(widget.windowHandle(), ++milliseconds, point,
                                                  widget.mapToGlobal(point), QTabletEvent::Stylus,
                                                  QTabletEvent::Pen, buttons, buttons ? 0.5 : 0.0,
                                                  0, 0, 0.0, 0.0, 0, 1, Qt::NoModifier);
    }

    /// Set once the refresh timer has run after the watch was made.
    struct RefreshWatch : QObject {
        explicit RefreshWatch(ImageCanvas &canvas) { canvas.installEventFilter(this); }
        bool eventFilter(QObject *, QEvent *event) override
        {
            refreshed = refreshed || event->type() == QEvent::Paint;
            return false;
        }
        bool refreshed = false;
    };

    static int hiddenEditorParts()
    {
        ImageCanvas fresh;
        return int(fresh.findChildren<QWidget *>().size()) - 1;
    }

    static void disturb(ImageCanvas &canvas, int event)
    {
        unsigned char pixel = 0;
        switch (event) {
        case 0:
            canvas.imageCaptured(paper({200, 150}));
            break;
        case 1:
            canvas.rotate();
            break;
        case 2:
            canvas.setMouseMode(CanvasModes::Text);
            break;
        case 3:
            canvas.frozen = true;
            break;
        case 4:
            canvas.clearPainting();
            break;
        case 5:
            canvas.zoomIn();
            break;
        case 6:
            canvas.resize(300, 77);
            break;
        default:
            canvas.imageCaptured(&pixel, 0, 0, false, false);
        }
    }
};

REGISTER_TEST(CanvasDrawingTest)
#include "tst_canvas_drawing.moc"
