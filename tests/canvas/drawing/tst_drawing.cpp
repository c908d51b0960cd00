#include "tests/TestProgram.h"
#include "tests/canvas/MouseModes.h"
#include "tests/canvas/drawing/DrawingBoard.h"

#include <QtTest>

#include <QTextDocument>

class DrawingTest : public QObject
{
    Q_OBJECT

private slots:
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
        DrawingBoard board;
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
        DrawingBoard board;
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
        DrawingBoard board;
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
        DrawingBoard board;
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
        DrawingBoard board;
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
            DrawingBoard board;
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
        DrawingBoard board;
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
        board.resize(DrawingBoard::FRAME);
        QVERIFY(board.drawing.undo());
        QCOMPARE(board.shown(), drawn);
    }

    void stepsBeforeADiscardAreTakenBackInTheirOwnSize()
    {
        DrawingBoard board;
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
        board.resize(DrawingBoard::FRAME);
        QVERIFY(board.drawing.undo());
        QCOMPARE(board.shown(), first);
    }

    void aScaledDrawingMayBeDrawnOn()
    {
        DrawingBoard board;
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
        DrawingBoard board;
        if (withDrawing)
            board.line(20);
        DrawingBoard reference;
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
        board.resize(DrawingBoard::FRAME);
        // A picture of another size discards the drawing; it is the user who brings it back.
        QVERIFY(WholeCopies::isBlank(board.shown()));
        QVERIFY(board.drawing.undo());
        QCOMPARE(board.shown(), reference.shown());
        QVERIFY(board.drawing.undo());
        QCOMPARE(board.shown(), drawn);
    }

    void aTextWithoutAnyPictureIsNoStep()
    {
        DrawingBoard board({0, 0});
        board.write("Hello", {0, 0});
        QVERIFY(!board.drawing.canUndo());
    }

    void aShapeThatIsInterruptedIsAStep()
    {
        // The text is committed by the key of another tool while the mouse is held.
        DrawingBoard board;
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
        DrawingBoard board;
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
