#include "canvas/drawing/AnnotationLayer.h"
#include "canvas/drawing/AnnotationShapes.h"
#include "canvas/drawing/DragTool.h"
#include "canvas/drawing/Ink.h"
#include "canvas/picture/ViewGeometry.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <QPainter>
#include <QRandomGenerator>

#include <climits>

using Mode = CanvasModes::MouseMode;

Q_DECLARE_METATYPE(CanvasModes::MouseMode)

namespace
{

constexpr QSize FRAME(320, 180);

/// The tools over a layer and a view, as the canvas holds them.
struct Board {
    explicit Board(QSize frame = FRAME)
    {
        view.setFrameSize(frame);
        layer.reset(view.rotatedSize());
    }

    void press(Mode mode, QPoint point) { tools.press(mode, point, layer); }
    void move(Mode mode, QPoint point)
    {
        tools.move(mode, point, ink, layer, view);
        tools.drawPending(layer);
    }
    /// Several moves between two refreshes.
    void moveAll(Mode mode, const QVector<QPoint> &points)
    {
        for (const QPoint point : points)
            tools.move(mode, point, ink, layer, view);
    }
    void drag(Mode mode, QPoint from, QPoint to)
    {
        press(mode, from);
        move(mode, to);
        tools.release(layer);
    }
    void fill(const QColor &color)
    {
        layer.paint({layer.rect()},
                    [&](QPainter &painter) { painter.fillRect(layer.rect(), color); });
    }
    void turn(bool clockwise)
    {
        view.turn(clockwise);
        layer.turn(clockwise);
    }
    [[nodiscard]] QImage picture() const
    {
        if (!layer.image().isNull())
            return layer.image().copy();
        return emptyPicture(layer.size());
    }
    static QImage emptyPicture(QSize size)
    {
        QImage picture(size, QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        return picture;
    }
    [[nodiscard]] QRegion touched() const
    {
        QRegion region;
        layer.forEachTouched(layer.rect(), [&region](const QRect &part) { region += part; });
        return region;
    }

    DragTool tools;
    DragTool::ShapeStyle ink;
    AnnotationLayer layer;
    ViewGeometry view;
};

/// What a shape paints on an empty layer, drawn without the tools.
QImage painted(const DragTool::ShapeStyle &ink, const std::function<void(QPainter &)> &draw)
{
    QImage picture = Board::emptyPicture(FRAME);
    QPainter painter(&picture);
    Ink(ink.penColor, ink.penWidth).applyTo(painter);
    if (ink.fillEnabled)
        painter.setBrush(QBrush(ink.fillColor));
    draw(painter);
    return picture;
}

int warnings = 0;

void countWarning(QtMsgType, const QMessageLogContext &, const QString &)
{
    ++warnings;
}

void addDrawingModes()
{
    QTest::addColumn<Mode>("mode");
    QTest::newRow("freehand") << CanvasModes::Freehand;
    QTest::newRow("line") << CanvasModes::Line;
    QTest::newRow("arrow") << CanvasModes::Arrow;
    QTest::newRow("rectangle") << CanvasModes::Rectangle;
    QTest::newRow("circle") << CanvasModes::Circle;
    QTest::newRow("triangle") << CanvasModes::Triangle;
}

} // namespace

class DragToolTest : public QObject
{
    Q_OBJECT

private slots:
    void eachToolDrawsItsShape_data() { addDrawingModes(); }

    void eachToolDrawsItsShape()
    {
        QFETCH(Mode, mode);
        const QPoint from(40, 30);
        const QPoint to(250, 120);
        for (const int width : {1, 3, 6, 9, 12}) {
            for (const bool fill : {false, true}) {
                Board board;
                board.ink = {Qt::red, width, fill, QColor(0, 128, 255)};
                board.drag(mode, from, to);
                const QImage expected = painted(board.ink, [&](QPainter &painter) {
                    const QRect box(from, to - QPoint(1, 1));
                    if (mode == CanvasModes::Arrow)
                        painter.drawPolygon(AnnotationShapes::arrow(from, to));
                    else if (mode == CanvasModes::Triangle)
                        painter.drawPolygon(AnnotationShapes::triangle(from, to));
                    else if (mode == CanvasModes::Rectangle)
                        painter.drawRect(box);
                    else if (mode == CanvasModes::Circle)
                        painter.drawEllipse(box);
                    else
                        painter.drawLine(from, to);
                });
                QCOMPARE(board.picture(), expected);
            }
        }
    }

    void aPenWidthOfNothingDrawsLinesOnePixelWide()
    {
        for (const int width : {0, -1, -1000}) {
            Board board;
            board.ink.penWidth = width;
            warnings = 0;
            const QtMessageHandler before = qInstallMessageHandler(countWarning);
            board.drag(CanvasModes::Line, {10, 50}, {100, 50});
            qInstallMessageHandler(before);
            QCOMPARE(warnings, 0);
            QCOMPARE(board.picture().pixelColor(50, 50).alpha(), 255);
            QCOMPARE(board.picture().pixelColor(50, 49).alpha(), 0);
            QCOMPARE(board.picture().pixelColor(50, 51).alpha(), 0);
        }
    }

    void aPressAloneDrawsNothing_data() { addDrawingModes(); }

    void aPressAloneDrawsNothing()
    {
        QFETCH(Mode, mode);
        Board board;
        board.press(mode, {50, 50});
        board.tools.release(board.layer);
        QCOMPARE(board.picture(), Board::emptyPicture(FRAME));
        QVERIFY(board.layer.isUsed());
    }

    void handEraserClipAndTextLeaveTheLayerUnused()
    {
        for (const Mode mode :
             {CanvasModes::Hand, CanvasModes::Eraser, CanvasModes::Clip, CanvasModes::Text}) {
            Board board;
            board.drag(mode, {50, 50}, {90, 90});
            QVERIFY(!board.layer.isUsed());
            QCOMPARE(board.picture(), Board::emptyPicture(FRAME));
        }
    }

    void movesAndReleasesWithoutAPressDoNothing()
    {
        for (int mode = CanvasModes::Hand; mode < CanvasModes::MOUSE_MODE_COUNT; ++mode) {
            Board board;
            board.view.zoomIn();
            const ViewGeometry view = board.view;
            board.move(static_cast<Mode>(mode), {90, 90});
            QVERIFY(!board.tools.release(board.layer).isValid());
            board.move(static_cast<Mode>(mode), {10, 90});
            QVERIFY(board.view == view);
            QVERIFY(!board.tools.clipRectangle().isValid());
            QCOMPARE(board.picture(), Board::emptyPicture(FRAME));
        }
    }

    void aShapeFollowsTheMouseOverEarlierDrawing_data() { addDrawingModes(); }

    void aShapeFollowsTheMouseOverEarlierDrawing()
    {
        QFETCH(Mode, mode);
        if (mode == CanvasModes::Freehand)
            return; // strokes accumulate, tested below
        Board board;
        board.ink.penColor = Qt::green;
        board.drag(CanvasModes::Circle, {20, 20}, {200, 160});
        Board direct;
        direct.ink.penColor = Qt::green;
        direct.drag(CanvasModes::Circle, {20, 20}, {200, 160});

        board.press(mode, {150, 90});
        for (const QPoint point : {QPoint(300, 10), QPoint(-40, 300), QPoint(10, 170)})
            board.move(mode, point);
        board.tools.release(board.layer);
        direct.drag(mode, {150, 90}, {10, 170});
        QCOMPARE(board.picture(), direct.picture());
        QCOMPARE(board.touched(), direct.touched());
    }

    void aFlatEllipseOfAThinPenIsShownAndTakenBackWhole()
    {
        for (const int width : {20, 57, 200, 1000, 1500}) {
            for (const int height : {2, 3, 5, 7, 15, 29, 65, 133}) {
                for (const QPoint corner : {QPoint(320, 60), QPoint(325, 127), QPoint(353, 190)}) {
                    Board board({2200, 400});
                    board.ink.penWidth = 1;
                    board.press(CanvasModes::Circle, corner);
                    board.move(CanvasModes::Circle, corner + QPoint(width, height));
                    QImage shown = board.picture();
                    {
                        // What lies outside the touched parts is not laid over a frame.
                        QPainter painter(&shown);
                        painter.setCompositionMode(QPainter::CompositionMode_Clear);
                        painter.setClipRegion(QRegion(board.layer.rect()) - board.touched());
                        painter.fillRect(board.layer.rect(), Qt::black);
                    }
                    QVERIFY2(shown == board.picture(),
                             qPrintable(QString("%1 x %2 not shown whole").arg(width).arg(height)));
                    board.move(CanvasModes::Circle, corner);
                    Board small({2200, 400});
                    small.ink.penWidth = 1;
                    small.drag(CanvasModes::Circle, corner, corner);
                    QVERIFY2(board.picture() == small.picture(),
                             qPrintable(QString("%1 x %2 left over").arg(width).arg(height)));
                }
            }
        }
    }

    void ofAShapeOnlyTheLastMoveIsDrawn_data() { addDrawingModes(); }

    void ofAShapeOnlyTheLastMoveIsDrawn()
    {
        QFETCH(Mode, mode);
        const QVector<QPoint> way{{300, 10}, {-40, 300}, {10, 170}, {200, 60}};
        Board board;
        board.ink.fillEnabled = true;
        board.press(mode, {150, 90});
        const std::uint64_t before = board.layer.revision();
        board.moveAll(mode, way);
        // Of a free line every move counts, and is drawn at once.
        QCOMPARE(board.layer.revision() == before, mode != CanvasModes::Freehand);
        board.tools.drawPending(board.layer);
        const std::uint64_t drawn = board.layer.revision();
        QVERIFY(drawn != before);
        board.tools.drawPending(board.layer);
        QCOMPARE(board.layer.revision(), drawn);

        Board each;
        each.ink.fillEnabled = true;
        each.press(mode, {150, 90});
        for (const QPoint point : way)
            each.move(mode, point);
        QCOMPARE(board.picture(), each.picture());
        QCOMPARE(board.touched(), each.touched());
    }

    void theReleaseDrawsTheLastMove()
    {
        for (int mode = CanvasModes::Line; mode <= CanvasModes::Triangle; ++mode) {
            Board board;
            board.press(static_cast<Mode>(mode), {20, 20});
            board.moveAll(static_cast<Mode>(mode), {{300, 10}, {200, 150}});
            board.tools.release(board.layer);
            Board direct;
            direct.drag(static_cast<Mode>(mode), {20, 20}, {200, 150});
            QCOMPARE(board.picture(), direct.picture());
        }
    }

    void anotherToolDrawsOverTheShape()
    {
        Board board;
        Board each;
        for (Board *drawn : {&board, &each}) {
            drawn->press(CanvasModes::Rectangle, {20, 20});
            drawn->ink.fillEnabled = true;
            if (drawn == &each)
                drawn->move(CanvasModes::Rectangle, {200, 150});
            else
                drawn->moveAll(CanvasModes::Rectangle, {{200, 150}});
            drawn->moveAll(CanvasModes::Eraser, {{100, 100}});
            drawn->tools.release(drawn->layer);
        }
        QVERIFY(board.picture() != Board::emptyPicture(FRAME));
        QCOMPARE(board.picture().pixel(100, 100), 0U);
        QCOMPARE(board.picture(), each.picture());
    }

    void freehandStrokesAccumulate()
    {
        Board board;
        board.press(CanvasModes::Freehand, {10, 10});
        for (const QPoint point : {QPoint(100, 10), QPoint(100, 100), QPoint(10, 100)})
            board.move(CanvasModes::Freehand, point);
        const QImage expected = painted(board.ink, [](QPainter &painter) {
            painter.drawPolyline(QPolygon({{10, 10}, {100, 10}, {100, 100}, {10, 100}}));
        });
        QCOMPARE(board.picture(), expected);
    }

    void theEraserClearsASquareAtEveryMove()
    {
        Board board;
        board.ink.penWidth = 3;
        board.fill(Qt::black);
        board.press(CanvasModes::Eraser, {100, 100});
        QCOMPARE(board.picture().pixelColor(100, 100).alpha(), 255);
        board.move(CanvasModes::Eraser, {100, 100});
        board.move(CanvasModes::Eraser, {150, 100});
        QImage expected = board.picture();
        expected.fill(Qt::black);
        QPainter painter(&expected);
        painter.setCompositionMode(QPainter::CompositionMode_Clear);
        painter.fillRect(QRect(93, 93, 15, 15), Qt::black);
        painter.fillRect(QRect(143, 93, 15, 15), Qt::black);
        painter.end();
        QCOMPARE(board.picture(), expected);
    }

    void theEraserIsClippedToTheLayer()
    {
        Board board;
        board.ink.penWidth = 12;
        board.fill(Qt::black);
        for (const QPoint corner : {QPoint(0, 0), QPoint(319, 179), QPoint(-500, 90)})
            board.drag(CanvasModes::Eraser, corner, corner);
        QCOMPARE(board.picture().pixel(25, 25), 0U);
        QCOMPARE(board.picture().pixelColor(26, 25).alpha(), 255);
        QCOMPARE(board.picture().pixel(294, 154), 0U);
        QCOMPARE(board.picture().pixelColor(293, 154).alpha(), 255);
    }

    void theHandPullsThePictureAlong()
    {
        Board board;
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
        Board board;
        board.drag(CanvasModes::Hand, {50, 50}, {-60, -45});
        QCOMPARE(board.view.offset(), QPoint(0, 0));
    }

    void aClipIsSelectedWhileItIsDragged()
    {
        Board board;
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
        Board board;
        board.press(CanvasModes::Clip, {100, 90});
        QVERIFY(!board.tools.release(board.layer).isValid());
    }

    void drawingLandsUnderThePointerWhenZoomedAndPanned()
    {
        Board board;
        board.view.zoomIn();
        board.view.zoomIn();
        board.view.setViewport(300, 150);
        QCOMPARE(board.view.scale(), 3.0);
        board.drag(CanvasModes::Line, {30, 60}, {240, 120});
        Board direct;
        direct.drag(CanvasModes::Line, {110, 70}, {180, 90});
        QCOMPARE(board.picture(), direct.picture());
    }

    void drawingLandsUnderThePointerInATurnedPicture()
    {
        Board board;
        board.turn(true);
        QCOMPARE(board.layer.size(), QSize(180, 320));
        // Scale 0.5625; the picture is 101.25 wide between bars of 109.
        board.drag(CanvasModes::Line, {109, 0}, {209, 179});
        QCOMPARE(board.picture().pixelColor(0, 0).alpha(), 255);
        QCOMPARE(board.picture().pixelColor(177, 318).alpha(), 255);
    }

    void aPanInMidDragRemapsTheStart()
    {
        Board board;
        board.view.zoomIn();
        board.press(CanvasModes::Line, {100, 100});
        board.move(CanvasModes::Line, {140, 100});
        board.view.setViewport(60, 40);
        board.move(CanvasModes::Line, {200, 100});
        board.tools.release(board.layer);
        Board direct;
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
        Board board;
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
        Board board;
        board.press(CanvasModes::Line, {20, 20});
        board.move(CanvasModes::Line, {200, 150});
        board.move(CanvasModes::Rectangle, {100, 90});
        board.tools.release(board.layer);
        Board direct;
        direct.drag(CanvasModes::Rectangle, {20, 20}, {100, 90});
        QCOMPARE(board.picture(), direct.picture());
    }

    void aClipLeftInMidDragIsForgottenAtTheRelease()
    {
        Board board;
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
            Board board;
            for (int i = 0; i < round % 4; ++i)
                board.turn(true);
            for (int i = 0; i < round % 3; ++i)
                board.view.zoomIn();
            board.ink = {Qt::red, random.bounded(-2, 40), random.bounded(2) == 1, Qt::blue};
            const auto mode = static_cast<Mode>(random.bounded(1, 7));
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
            QCOMPARE(picture, Board::emptyPicture(board.layer.size()));
        }
    }

    void aThinDiagonalTouchesOnlyTheTilesItCrosses()
    {
        Board board(QSize(1920, 1080));
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
                Board board;
                board.ink.fillEnabled = true;
                board.press(static_cast<Mode>(mode), {x / 2, -(x / 2)});
                board.move(static_cast<Mode>(mode), {-(x / 2), x / 2});
                board.tools.release(board.layer);
            }
        }
        Board board;
        for (const int width : {INT_MIN, INT_MAX}) {
            board.ink.penWidth = width;
            board.drag(CanvasModes::Eraser, {10, 10}, {20, 20});
        }
        QCOMPARE(board.tools.dragging(), false);
    }

    void anEmptyPictureTakesEveryDrag()
    {
        for (int mode = CanvasModes::Hand; mode < CanvasModes::MOUSE_MODE_COUNT; ++mode) {
            Board board{QSize()};
            board.press(static_cast<Mode>(mode), {0, 0});
            board.move(static_cast<Mode>(mode), {50, 50});
            board.tools.release(board.layer);
            QVERIFY(board.layer.image().isNull());
        }
    }
};

REGISTER_PLAIN_TEST(DragToolTest)
#include "tst_drag_tool.moc"
