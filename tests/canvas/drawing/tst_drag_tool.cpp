#include "canvas/drawing/AnnotationShapes.h"
#include "canvas/drawing/Ink.h"
#include "tests/TestProgram.h"
#include "tests/canvas/drawing/ToolBoard.h"

#include <QtTest>

namespace
{

/// What a shape paints on an empty layer, drawn without the tools.
QImage painted(const DragTool::ShapeStyle &ink, const std::function<void(QPainter &)> &draw)
{
    QImage picture = ToolBoard::emptyPicture(ToolBoard::FRAME);
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
    QTest::addColumn<CanvasModes::MouseMode>("mode");
    QTest::newRow("freehand") << CanvasModes::Freehand;
    QTest::newRow("line") << CanvasModes::Line;
    QTest::newRow("arrow") << CanvasModes::Arrow;
    QTest::newRow("rectangle") << CanvasModes::Rectangle;
    QTest::newRow("circle") << CanvasModes::Circle;
    QTest::newRow("triangle") << CanvasModes::Triangle;
}

} // namespace

/// What each tool draws.
class DragToolTest : public QObject
{
    Q_OBJECT

private slots:
    void eachToolDrawsItsShape_data() { addDrawingModes(); }

    void eachToolDrawsItsShape()
    {
        QFETCH(CanvasModes::MouseMode, mode);
        const QPoint from(40, 30);
        const QPoint to(250, 120);
        for (const int width : {1, 3, 6, 9, 12}) {
            for (const bool fill : {false, true}) {
                ToolBoard board;
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
            ToolBoard board;
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
        QFETCH(CanvasModes::MouseMode, mode);
        ToolBoard board;
        board.press(mode, {50, 50});
        board.tools.release(board.layer);
        QCOMPARE(board.picture(), ToolBoard::emptyPicture(ToolBoard::FRAME));
        QVERIFY(board.layer.isUsed());
    }

    void handEraserClipAndTextLeaveTheLayerUnused()
    {
        for (const CanvasModes::MouseMode mode :
             {CanvasModes::Hand, CanvasModes::Eraser, CanvasModes::Clip, CanvasModes::Text}) {
            ToolBoard board;
            board.drag(mode, {50, 50}, {90, 90});
            QVERIFY(!board.layer.isUsed());
            QCOMPARE(board.picture(), ToolBoard::emptyPicture(ToolBoard::FRAME));
        }
    }

    void movesAndReleasesWithoutAPressDoNothing()
    {
        for (int mode = CanvasModes::Hand; mode < CanvasModes::MOUSE_MODE_COUNT; ++mode) {
            ToolBoard board;
            board.view.zoomIn();
            const ViewGeometry view = board.view;
            board.move(static_cast<CanvasModes::MouseMode>(mode), {90, 90});
            QVERIFY(!board.tools.release(board.layer).isValid());
            board.move(static_cast<CanvasModes::MouseMode>(mode), {10, 90});
            QVERIFY(board.view == view);
            QVERIFY(!board.tools.clipRectangle().isValid());
            QCOMPARE(board.picture(), ToolBoard::emptyPicture(ToolBoard::FRAME));
        }
    }

    void aShapeFollowsTheMouseOverEarlierDrawing_data() { addDrawingModes(); }

    void aShapeFollowsTheMouseOverEarlierDrawing()
    {
        QFETCH(CanvasModes::MouseMode, mode);
        if (mode == CanvasModes::Freehand)
            return; // strokes accumulate, tested below
        ToolBoard board;
        board.ink.penColor = Qt::green;
        board.drag(CanvasModes::Circle, {20, 20}, {200, 160});
        ToolBoard direct;
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
                    ToolBoard board({2200, 400});
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
                    ToolBoard small({2200, 400});
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
        QFETCH(CanvasModes::MouseMode, mode);
        const QVector<QPoint> way{{300, 10}, {-40, 300}, {10, 170}, {200, 60}};
        ToolBoard board;
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

        ToolBoard each;
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
            ToolBoard board;
            board.press(static_cast<CanvasModes::MouseMode>(mode), {20, 20});
            board.moveAll(static_cast<CanvasModes::MouseMode>(mode), {{300, 10}, {200, 150}});
            board.tools.release(board.layer);
            ToolBoard direct;
            direct.drag(static_cast<CanvasModes::MouseMode>(mode), {20, 20}, {200, 150});
            QCOMPARE(board.picture(), direct.picture());
        }
    }

    void anotherToolDrawsOverTheShape()
    {
        ToolBoard board;
        ToolBoard each;
        for (ToolBoard *drawn : {&board, &each}) {
            drawn->press(CanvasModes::Rectangle, {20, 20});
            drawn->ink.fillEnabled = true;
            if (drawn == &each)
                drawn->move(CanvasModes::Rectangle, {200, 150});
            else
                drawn->moveAll(CanvasModes::Rectangle, {{200, 150}});
            drawn->moveAll(CanvasModes::Eraser, {{100, 100}});
            drawn->tools.release(drawn->layer);
        }
        QVERIFY(board.picture() != ToolBoard::emptyPicture(ToolBoard::FRAME));
        QCOMPARE(board.picture().pixel(100, 100), 0U);
        QCOMPARE(board.picture(), each.picture());
    }

    void freehandStrokesAccumulate()
    {
        ToolBoard board;
        board.press(CanvasModes::Freehand, {10, 10});
        for (const QPoint point : {QPoint(100, 10), QPoint(100, 100), QPoint(10, 100)})
            board.move(CanvasModes::Freehand, point);
        const QImage expected = painted(board.ink, [](QPainter &painter) {
            painter.drawPolyline(QPolygon({{10, 10}, {100, 10}, {100, 100}, {10, 100}}));
        });
        QCOMPARE(board.picture(), expected);
    }

    void whatTheEraserTookIsNotBroughtBackByTheSameDrag()
    {
        ToolBoard board;
        board.press(CanvasModes::Freehand, {10, 10});
        board.move(CanvasModes::Freehand, {100, 10});
        QVERIFY(board.picture().pixel(50, 10) != 0U);
        // A key chooses another tool while the button is held, and then the first one again.
        board.move(CanvasModes::Eraser, {50, 10});
        QCOMPARE(board.picture().pixel(50, 10), 0U);
        // What is drawn now goes past that place, and around it.
        for (const QPoint point : {QPoint(20, 60), QPoint(20, 100)})
            board.move(CanvasModes::Freehand, point);
        board.tools.release(board.layer);
        QCOMPARE(board.picture().pixel(50, 10), 0U);
        for (const QPoint drawn : {QPoint(20, 10), QPoint(60, 35), QPoint(20, 80)})
            QVERIFY(board.picture().pixel(drawn) != 0U);
    }

    void theEraserClearsASquareAtEveryMove()
    {
        ToolBoard board;
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
        ToolBoard board;
        board.ink.penWidth = 12;
        board.fill(Qt::black);
        for (const QPoint corner : {QPoint(0, 0), QPoint(319, 179), QPoint(-500, 90)})
            board.drag(CanvasModes::Eraser, corner, corner);
        QCOMPARE(board.picture().pixel(25, 25), 0U);
        QCOMPARE(board.picture().pixelColor(26, 25).alpha(), 255);
        QCOMPARE(board.picture().pixel(294, 154), 0U);
        QCOMPARE(board.picture().pixelColor(293, 154).alpha(), 255);
    }
};

REGISTER_PLAIN_TEST(DragToolTest)
#include "tst_drag_tool.moc"
