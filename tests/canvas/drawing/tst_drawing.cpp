#include "canvas/drawing/Drawing.h"
#include "canvas/picture/ViewGeometry.h"
#include "tests/TestProgram.h"
#include "tests/canvas/drawing/WholeCopies.h"

#include <QtTest>

#include <QRandomGenerator>
#include <QTextDocument>

Q_DECLARE_METATYPE(CanvasModes::MouseMode)

namespace
{

constexpr QSize FRAME(200, 140);

/// A drawing and a view, as the canvas holds them.
struct Board {
    explicit Board(QSize size = FRAME) { resize(size); }

    void resize(QSize size)
    {
        view.setFrameSize(size);
        drawing.resize(view.rotatedSize());
    }
    void turn(bool clockwise)
    {
        view.turn(clockwise);
        drawing.turn(clockwise);
    }
    void drag(CanvasModes::MouseMode mode, const QVector<QPoint> &points)
    {
        drawing.press(mode, points.first());
        for (const QPoint point : points.mid(1))
            drawing.move(mode, point, style, view);
        drawing.release();
    }
    void line(int y) { drag(CanvasModes::Line, {{10, y}, {150, y}}); }
    void write(const QString &text, QPoint at)
    {
        QTextDocument document(text);
        document.setTextWidth(100);
        drawing.placeText(at, view);
        commit(document);
    }
    void commit(QTextDocument &document)
    {
        drawing.commitText(document, view.isEmpty() ? FRAME : view.transformedSize(), FRAME);
    }
    /// What is laid over the picture.
    [[nodiscard]] QImage shown()
    {
        const AnnotationLayer &layer = drawing.layer();
        QImage picture = WholeCopies::blank(layer.size());
        if (!layer.isUsed() || layer.image().isNull())
            return picture;
        layer.forEachTouched(layer.rect(), [&](const QRect &part) {
            for (int y = part.top(); y <= part.bottom(); ++y)
                std::memcpy(picture.scanLine(y) + 4 * part.left(),
                            layer.image().constScanLine(y) + 4 * part.left(),
                            std::size_t{4} * static_cast<std::size_t>(part.width()));
        });
        return picture;
    }

    Drawing drawing;
    ViewGeometry view;
    DragTool::ShapeStyle style{Qt::red, 3, false, Qt::blue};
};

/// Does the same to a drawing and to the whole copies, at random.
class Walk
{
public:
    explicit Walk(quint32 seed)
        : m_random(seed)
    {
        m_expected.resize(FRAME);
    }

    void step()
    {
        switch (m_random.bounded(16)) {
        case 0:
            m_board.drawing.clear();
            m_expected.clear();
            break;
        case 1:
            resize();
            break;
        case 2:
        case 3:
            turn();
            break;
        case 4:
            write();
            break;
        case 5:
        case 6:
        case 7:
            m_board.drawing.undo();
            m_expected.undo();
            break;
        case 8:
        case 9:
            m_board.drawing.redo();
            m_expected.redo();
            break;
        default:
            drag();
        }
        // What has rested is packed.
        m_nowMs += m_random.bounded(2000);
        for (int i = m_random.bounded(8); i > 0; --i)
            m_board.drawing.packHistory(m_nowMs);
    }

    [[nodiscard]] bool agrees()
    {
        return m_board.shown() == m_expected.shown() &&
               m_board.drawing.canUndo() == m_expected.canUndo() &&
               m_board.drawing.canRedo() == m_expected.canRedo();
    }

private:
    QPoint point() { return {m_random.bounded(-30, 250), m_random.bounded(-30, 250)}; }
    void resize()
    {
        static constexpr QSize SIZES[] = {{200, 140}, {140, 200}, {200, 140}, {320, 64},
                                          {100, 70},  {1, 1},     {0, 0},     {129, 131}};
        const QSize size = SIZES[m_random.bounded(int(std::size(SIZES)))];
        // The canvas only says so when the size is another one.
        if (size == m_board.view.frameSize())
            return;
        m_board.resize(size);
        m_expected.resize(m_board.view.rotatedSize());
    }
    void turn()
    {
        const bool clockwise = m_random.bounded(2) == 0;
        m_board.turn(clockwise);
        m_expected.turn(clockwise);
    }
    void write()
    {
        // On an empty picture a text goes another way, which has its own tests.
        if (m_board.view.isEmpty())
            return;
        m_board.write(m_random.bounded(4) == 0 ? QString() : QString("Wg"), point());
        m_expected.draw(m_board.shown());
    }
    void drag()
    {
        m_board.style.penWidth = m_random.bounded(1, 9);
        m_board.style.fillEnabled = m_random.bounded(2) == 0;
        m_board.style.penColor = QColor::fromHsv(m_random.bounded(360), 255, 255, 180);
        QVector<QPoint> points;
        for (int i = m_random.bounded(1, 6); i >= 0; --i)
            points.append(point());
        m_board.drag(static_cast<CanvasModes::MouseMode>(m_random.bounded(9)), points);
        m_expected.draw(m_board.shown());
    }

    QRandomGenerator m_random;
    Board m_board;
    WholeCopies m_expected{LayerHistory::MOST_STEPS};
    std::int64_t m_nowMs = 0;
};

} // namespace

class DrawingTest : public QObject
{
    Q_OBJECT

private slots:
    void twentyThousandStepsAgreeWithWholeCopies()
    {
        for (quint32 seed = 0; seed < 8; ++seed) {
            Walk walk(seed);
            for (int i = 0; i < 2500; ++i) {
                walk.step();
                QVERIFY2(walk.agrees(), qPrintable(QString("seed %1, step %2").arg(seed).arg(i)));
            }
        }
    }

    void eachKindOfStepIsTakenBackAndDoneAgain_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("shape") << 0;
        QTest::newRow("freehand stroke") << 1;
        QTest::newRow("eraser stroke") << 2;
        QTest::newRow("text") << 3;
        QTest::newRow("all erased") << 4;
    }

    void eachKindOfStepIsTakenBackAndDoneAgain()
    {
        QFETCH(int, kind);
        Board board;
        QVERIFY(!board.drawing.canUndo());
        board.line(20);
        const QImage before = board.shown();
        if (kind == 0)
            board.drag(CanvasModes::Circle, {{20, 20}, {40, 50}, {120, 90}});
        else if (kind == 1)
            board.drag(CanvasModes::Freehand, {{20, 20}, {60, 90}, {120, 30}});
        else if (kind == 2)
            board.drag(CanvasModes::Eraser, {{20, 20}, {30, 20}, {90, 20}});
        else if (kind == 3)
            board.write("Hello", {30, 40});
        else
            board.drawing.clear();
        const QImage after = board.shown();
        QVERIFY(after != before);
        QCOMPARE(board.drawing.history().steps(), 2);
        QVERIFY(!board.drawing.canRedo());
        QVERIFY(board.drawing.undo());
        QCOMPARE(board.shown(), before);
        QVERIFY(board.drawing.canRedo());
        QVERIFY(board.drawing.redo());
        QCOMPARE(board.shown(), after);
    }

    void whatChangesNothingIsNoStep()
    {
        Board board;
        board.drag(CanvasModes::Hand, {{20, 20}, {60, 60}});
        board.drag(CanvasModes::Clip, {{20, 20}, {60, 60}});
        board.drag(CanvasModes::Eraser, {{20, 20}, {60, 60}});
        board.drag(CanvasModes::Line, {{20, 20}});
        board.drag(CanvasModes::Line, {{500, 20}, {600, 20}});
        board.drawing.clear();
        board.write(QString(), {10, 10});
        QVERIFY(!board.drawing.canUndo());
        QVERIFY(!board.drawing.undo());
        QVERIFY(!board.drawing.redo());
    }

    void aNewStepEndsWhatCouldBeDoneAgain()
    {
        Board board;
        board.line(20);
        board.line(60);
        board.drawing.undo();
        // Nothing drawn is no step.
        board.drag(CanvasModes::Line, {{20, 20}});
        QVERIFY(board.drawing.canRedo());
        board.line(100);
        QVERIFY(!board.drawing.canRedo());
        QCOMPARE(board.drawing.history().steps(), 2);
    }

    void undoDuringADragTakesTheUnfinishedShapeBack_data()
    {
        QTest::addColumn<CanvasModes::MouseMode>("mode");
        QTest::addColumn<bool>("refreshed");
        for (const bool refreshed : {false, true}) {
            const char *when = refreshed ? "seen" : "not seen yet";
            QTest::addRow("line, %s", when) << CanvasModes::Line << refreshed;
            QTest::addRow("freehand, %s", when) << CanvasModes::Freehand << refreshed;
            QTest::addRow("eraser, %s", when) << CanvasModes::Eraser << refreshed;
        }
    }

    void undoDuringADragTakesTheUnfinishedShapeBack()
    {
        QFETCH(CanvasModes::MouseMode, mode);
        QFETCH(bool, refreshed);
        Board board;
        board.line(40);
        const QImage before = board.shown();
        board.drawing.press(mode, {20, 20});
        board.drawing.move(mode, {90, 40}, board.style, board.view);
        if (refreshed)
            QVERIFY(board.shown() != before);
        QVERIFY(board.drawing.canUndo());
        QVERIFY(board.drawing.undo());
        QCOMPARE(board.shown(), before);
        QVERIFY(!board.drawing.dragging());
        // The button is still held.
        board.drawing.move(mode, {100, 100}, board.style, board.view);
        board.drawing.release();
        QCOMPARE(board.shown(), before);
        QCOMPARE(board.drawing.history().steps(), 1);
        QVERIFY(board.drawing.undo());
        QVERIFY(WholeCopies::isBlank(board.shown()));
    }

    void aDragThatHasDrawnNothingLetsUndoTakeTheLastStep()
    {
        Board board;
        board.line(40);
        board.drawing.press(CanvasModes::Hand, {20, 20});
        QVERIFY(board.drawing.undo());
        QVERIFY(WholeCopies::isBlank(board.shown()));
        QVERIFY(board.drawing.dragging());
    }

    void aStepIsTakenBackInATurnedDrawing()
    {
        // The edges are no multiples of a tile.
        for (int turns = 1; turns < 4; ++turns) {
            Board board;
            board.line(20);
            const QImage before = board.shown();
            board.drag(CanvasModes::Triangle, {{100, 20}, {120, 110}});
            const QImage after = board.shown();
            for (int i = 0; i < turns; ++i)
                board.turn(true);
            const QTransform turned = QTransform().rotate(90.0 * turns);
            QVERIFY(board.drawing.undo());
            QCOMPARE(board.shown(), before.transformed(turned));
            board.turn(false);
            QVERIFY(board.drawing.redo());
            QCOMPARE(board.shown(), after.transformed(QTransform().rotate(90.0 * (turns - 1))));
        }
    }

    void aDiscardedDrawingComesBackScaled()
    {
        Board board;
        board.drag(CanvasModes::Rectangle, {{20, 20}, {180, 120}});
        const QImage drawn = board.shown();
        board.resize({400, 400});
        QVERIFY(WholeCopies::isBlank(board.shown()));
        QVERIFY(board.drawing.undo());
        // Twice as large in both directions, and in the middle.
        const QImage scaled = board.shown();
        QCOMPARE(scaled.size(), QSize(400, 400));
        QVERIFY(qAlpha(scaled.pixel(40, 200)) > 200);
        QVERIFY(qAlpha(scaled.pixel(200, 100)) > 200);
        QCOMPARE(scaled.pixel(200, 200), 0U);
        QCOMPARE(scaled.pixel(200, 30), 0U);
        // In its own size again it is the very drawing.
        QVERIFY(board.drawing.redo());
        board.resize(FRAME);
        QVERIFY(board.drawing.undo());
        QCOMPARE(board.shown(), drawn);
    }

    void stepsBeforeADiscardAreTakenBackInTheirOwnSize()
    {
        Board board;
        board.line(20);
        const QImage first = board.shown();
        board.line(100);
        board.resize({100, 70});
        QVERIFY(board.drawing.undo());
        const QImage both = board.shown();
        QVERIFY(board.drawing.undo());
        const QImage one = board.shown();
        QVERIFY(!WholeCopies::isBlank(one));
        QVERIFY(one != both);
        QVERIFY(board.drawing.redo());
        QCOMPARE(board.shown(), both);
        QVERIFY(board.drawing.undo());
        board.resize(FRAME);
        QVERIFY(board.drawing.undo());
        QCOMPARE(board.shown(), first);
    }

    void aScaledDrawingMayBeDrawnOn()
    {
        Board board;
        board.line(20);
        board.resize({100, 70});
        board.drawing.undo();
        const QImage scaled = board.shown();
        board.drag(CanvasModes::Line, {{10, 60}, {90, 60}});
        const QImage both = board.shown();
        QVERIFY(both != scaled);
        QVERIFY(board.drawing.undo());
        QCOMPARE(board.shown(), scaled);
        QVERIFY(board.drawing.redo());
        QCOMPARE(board.shown(), both);
        board.drawing.undo();
        QVERIFY(board.drawing.undo());
        QVERIFY(WholeCopies::isBlank(board.shown()));
        QVERIFY(!board.drawing.canUndo());
        QVERIFY(board.drawing.redo());
        QCOMPARE(board.shown(), scaled);
    }

    void aTextThatIsCommittedOnAnEmptyPictureComesBack_data()
    {
        QTest::addColumn<bool>("withDrawing");
        QTest::newRow("alone") << false;
        QTest::newRow("with the drawing that was there") << true;
    }

    void aTextThatIsCommittedOnAnEmptyPictureComesBack()
    {
        QFETCH(bool, withDrawing);
        Board board;
        if (withDrawing)
            board.line(20);
        Board reference;
        if (withDrawing)
            reference.line(20);
        const QImage drawn = reference.shown();
        reference.write("Hello", {30, 40});

        board.drawing.placeText({30, 40}, board.view);
        board.resize({0, 0});
        QTextDocument document("Hello");
        document.setTextWidth(100);
        board.commit(document);
        QCOMPARE(board.shown().size(), QSize(0, 0));
        board.resize(FRAME);
        // A picture of another size discards the drawing; it is the user who brings it back.
        QVERIFY(WholeCopies::isBlank(board.shown()));
        QVERIFY(board.drawing.undo());
        QCOMPARE(board.shown(), reference.shown());
        QVERIFY(board.drawing.undo());
        QCOMPARE(board.shown(), drawn);
    }

    void aTextWithoutAnyPictureIsNoStep()
    {
        Board board({0, 0});
        board.write("Hello", {0, 0});
        QVERIFY(!board.drawing.canUndo());
    }

    void aShapeThatIsInterruptedIsAStep()
    {
        // The text is committed by the key of another tool while the mouse is held.
        Board board;
        board.drawing.press(CanvasModes::Line, {10, 20});
        board.drawing.move(CanvasModes::Line, {150, 20}, board.style, board.view);
        board.write("Hello", {30, 60});
        board.drawing.move(CanvasModes::Line, {150, 120}, board.style, board.view);
        board.drawing.release();
        QCOMPARE(board.drawing.history().steps(), 3);
        const QImage all = board.shown();
        board.drawing.undo();
        // What was written stays.
        QVERIFY(board.shown() != all);
        QVERIFY(!WholeCopies::isBlank(board.shown().copy(0, 50, 200, 60)));
    }

    void aThousandTimesUndoEndsAtTheBlankDrawing()
    {
        Board board;
        for (int i = 0; i < 300; ++i)
            board.line(i % 130);
        for (int i = 0; i < 1000; ++i)
            board.drawing.undo();
        QVERIFY(WholeCopies::isBlank(board.shown()));
        for (int i = 0; i < 1000; ++i)
            board.drawing.redo();
        QVERIFY(!WholeCopies::isBlank(board.shown()));
        QVERIFY(!board.drawing.canRedo());
    }
};

REGISTER_TEST(DrawingTest)
#include "tst_drawing.moc"
