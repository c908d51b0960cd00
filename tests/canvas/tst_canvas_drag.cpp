#include "tests/TestProgram.h"
#include "tests/canvas/DrawnCanvas.h"

#include <QtTest>

using namespace DrawnCanvas;

/// From press to release, and what may come between.
class CanvasDragTest : public QObject
{
    Q_OBJECT

private slots:
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
        // Each shape is moved to between two refreshes.
        const auto reference = canvasOf();
        reference->setMouseMode(CanvasModes::Rectangle);
        CanvasMouse::drag(*reference, {{20, 20}, {100, 80}});
        QVERIFY(redPixels(shown(*reference)) > 0);

        const auto turned = canvasWithOpenShape();
        turned->rotate();
        CanvasMouse::release(*turned, {100, 80});
        turned->rotateRev();
        QCOMPARE(shown(*turned), shown(*reference));

        const auto cleared = canvasWithOpenShape();
        cleared->clearPainting();
        CanvasMouse::release(*cleared, {100, 80});
        QCOMPARE(redPixels(shown(*cleared)), 0);

        const auto replaced = canvasWithOpenShape();
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
            // The thick ring from before a replacement has not come back.
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

private:
    static std::unique_ptr<ImageCanvas> canvasWithOpenShape()
    {
        auto canvas = canvasOf();
        canvas->setMouseMode(CanvasModes::Rectangle);
        CanvasMouse::press(*canvas, {20, 20});
        CanvasMouse::move(*canvas, {100, 80});
        return canvas;
    }

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

REGISTER_TEST(CanvasDragTest)
#include "tst_canvas_drag.moc"
