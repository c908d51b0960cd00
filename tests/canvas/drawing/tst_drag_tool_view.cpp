#include "tests/TestProgram.h"
#include "tests/canvas/drawing/ToolBoard.h"

#include <QtTest>

#include <QRandomGenerator>

#include <climits>

/// Drags in a picture that is moved, zoomed or turned, and drags that something interrupts.
class DragToolViewTest : public QObject
{
    Q_OBJECT

private slots:
    void theHandPullsThePictureAlong()
    {
        ToolBoard board;
        board.view.zoomIn();
        board.view.setViewport(100, 80);
        board.press(CanvasModes::Hand, {50, 50});
        board.move(CanvasModes::Hand, {60, 45});
        QCOMPARE(board.view.offset(), QPoint(90, 85));
        board.move(CanvasModes::Hand, {70, 40});
        QCOMPARE(board.view.offset(), QPoint(80, 90));
        board.move(CanvasModes::Hand, {2000, 2000});
        QCOMPARE(board.view.offset(), QPoint(0, 0));
        board.move(CanvasModes::Hand, {-2000, -2000});
        QCOMPARE(board.view.offset(), QPoint(319, 179));
    }

    void theHandCannotPanAnUnzoomedPicture()
    {
        ToolBoard board;
        board.drag(CanvasModes::Hand, {50, 50}, {-60, -45});
        QCOMPARE(board.view.offset(), QPoint(0, 0));
    }

    void aClipIsSelectedWhileItIsDragged()
    {
        ToolBoard board;
        board.press(CanvasModes::Clip, {100, 90});
        QVERIFY(!board.tools.clipRectangle().isValid());
        board.move(CanvasModes::Clip, {40, 120});
        const QRect selection(QPoint(40, 90), QPoint(100, 120));
        QCOMPARE(board.tools.clipRectangle(), selection);
        QCOMPARE(board.tools.release(board.layer), selection);
        QCOMPARE(board.tools.clipRectangle(), QRect());
    }

    void aClipWithoutADragSelectsNothing()
    {
        ToolBoard board;
        board.press(CanvasModes::Clip, {100, 90});
        QVERIFY(!board.tools.release(board.layer).isValid());
    }

    void drawingLandsUnderThePointerWhenZoomedAndPanned()
    {
        ToolBoard board;
        board.view.zoomIn();
        board.view.zoomIn();
        board.view.setViewport(300, 150);
        QCOMPARE(board.view.scale(), 3.0);
        board.drag(CanvasModes::Line, {30, 60}, {240, 120});
        ToolBoard direct;
        direct.drag(CanvasModes::Line, {110, 70}, {180, 90});
        QCOMPARE(board.picture(), direct.picture());
    }

    void drawingLandsUnderThePointerInATurnedPicture()
    {
        ToolBoard board;
        board.turn(true);
        QCOMPARE(board.layer.size(), QSize(180, 320));
        // Scale 0.5625; the picture is 101.25 wide between bars of 109.
        board.drag(CanvasModes::Line, {109, 0}, {209, 179});
        QCOMPARE(board.picture().pixelColor(0, 0).alpha(), 255);
        QCOMPARE(board.picture().pixelColor(177, 318).alpha(), 255);
    }

    void aPanInMidDragRemapsTheStart()
    {
        ToolBoard board;
        board.view.zoomIn();
        board.press(CanvasModes::Line, {100, 100});
        board.move(CanvasModes::Line, {140, 100});
        board.view.setViewport(60, 40);
        board.move(CanvasModes::Line, {200, 100});
        board.tools.release(board.layer);
        ToolBoard direct;
        direct.drag(CanvasModes::Line, {80, 70}, {130, 70});
        QCOMPARE(board.picture(), direct.picture());
    }

    void drawingReplacedInMidDragDoesNotComeBack_data()
    {
        QTest::addColumn<int>("event");
        QTest::newRow("clear") << 0;
        QTest::newRow("frame of another size") << 1;
        QTest::newRow("turn") << 2;
    }

    void drawingReplacedInMidDragDoesNotComeBack()
    {
        QFETCH(int, event);
        ToolBoard board;
        board.drag(CanvasModes::Circle, {20, 20}, {200, 160});
        board.press(CanvasModes::Line, {100, 100});
        board.move(CanvasModes::Line, {300, 100});
        if (event == 0) {
            board.layer.clear();
        } else if (event == 1) {
            board.view.setFrameSize({640, 400});
            board.layer.reset(board.view.rotatedSize());
        } else {
            board.turn(true);
        }
        const QImage replaced = board.picture();
        board.move(CanvasModes::Line, {-500, -500});
        board.move(CanvasModes::Clip, {0, 0});
        board.layer.restoreShape();
        QCOMPARE(board.picture(), replaced);
        // The drag goes on.
        board.move(CanvasModes::Line, {120, 120});
        QVERIFY(board.picture() != replaced);
    }

    void aModeChangedInMidDragDrawsTheNewShape()
    {
        ToolBoard board;
        board.press(CanvasModes::Line, {20, 20});
        board.move(CanvasModes::Line, {200, 150});
        board.move(CanvasModes::Rectangle, {100, 90});
        board.tools.release(board.layer);
        ToolBoard direct;
        direct.drag(CanvasModes::Rectangle, {20, 20}, {100, 90});
        QCOMPARE(board.picture(), direct.picture());
    }

    void aClipLeftInMidDragIsForgottenAtTheRelease()
    {
        ToolBoard board;
        board.press(CanvasModes::Clip, {20, 20});
        board.move(CanvasModes::Clip, {60, 60});
        board.move(CanvasModes::Line, {70, 70});
        board.tools.release(board.layer);
        QCOMPARE(board.tools.clipRectangle(), QRect());
    }

    void nothingIsDrawnOutsideTheTouchedTiles()
    {
        QRandomGenerator random(3);
        for (int round = 0; round < 400; ++round) {
            ToolBoard board;
            for (int i = 0; i < round % 4; ++i)
                board.turn(true);
            for (int i = 0; i < round % 3; ++i)
                board.view.zoomIn();
            board.ink = {Qt::red, random.bounded(-2, 40), random.bounded(2) == 1, Qt::blue};
            const auto mode = static_cast<CanvasModes::MouseMode>(random.bounded(1, 7));
            board.press(mode, {random.bounded(-400, 700), random.bounded(-400, 500)});
            board.move(mode, {random.bounded(-400, 700), random.bounded(-400, 500)});
            board.move(mode, {random.bounded(-400, 700), random.bounded(-400, 500)});
            QImage picture = board.picture();
            QPainter painter(&picture);
            painter.setCompositionMode(QPainter::CompositionMode_Clear);
            board.layer.forEachTouched(board.layer.rect(), [&painter](const QRect &part) {
                painter.fillRect(part, Qt::black);
            });
            painter.end();
            QCOMPARE(picture, ToolBoard::emptyPicture(board.layer.size()));
        }
    }

    void aThinDiagonalTouchesOnlyTheTilesItCrosses()
    {
        ToolBoard board(QSize(1920, 1080));
        board.drag(CanvasModes::Line, {0, 0}, {1919, 1079});
        int pixels = 0;
        board.layer.forEachTouched(board.layer.rect(), [&pixels](const QRect &part) {
            pixels += part.width() * part.height();
        });
        QVERIFY2(pixels < 1920 * 1080 / 6, qPrintable(QString::number(pixels)));
    }

    void absurdPointsAndWidthsStayInBounds()
    {
        const int far[] = {INT_MIN, -2000000000, -40000, 0, 40000, 2000000000, INT_MAX};
        for (int mode = CanvasModes::Hand; mode <= CanvasModes::Eraser; ++mode) {
            for (const int x : far) {
                ToolBoard board;
                board.ink.fillEnabled = true;
                board.press(static_cast<CanvasModes::MouseMode>(mode), {x / 2, -(x / 2)});
                board.move(static_cast<CanvasModes::MouseMode>(mode), {-(x / 2), x / 2});
                board.tools.release(board.layer);
            }
        }
        ToolBoard board;
        for (const int width : {INT_MIN, INT_MAX}) {
            board.ink.penWidth = width;
            board.drag(CanvasModes::Eraser, {10, 10}, {20, 20});
        }
        QCOMPARE(board.tools.dragging(), false);
    }

    void anEmptyPictureTakesEveryDrag()
    {
        for (int mode = CanvasModes::Hand; mode < CanvasModes::MOUSE_MODE_COUNT; ++mode) {
            ToolBoard board{QSize()};
            board.press(static_cast<CanvasModes::MouseMode>(mode), {0, 0});
            board.move(static_cast<CanvasModes::MouseMode>(mode), {50, 50});
            board.tools.release(board.layer);
            QVERIFY(board.layer.image().isNull());
        }
    }
};

REGISTER_PLAIN_TEST(DragToolViewTest)
#include "tst_drag_tool_view.moc"
