#include "tests/TestProgram.h"
#include "tests/canvas/PointerInputProbe.h"

#include <QVector>

#include <cmath>
#include <limits>
#include <random>

/// The strokes and view changes that mice, pens and wheels make, and what all pointers make of
/// events at random.
class PointerInputTest : public PointerInputProbe
{
    Q_OBJECT

private slots:
    void init() { startAnew(); }

    // Mouse
    void theLeftButtonDraws();
    void theMiddleButtonPulls();
    void aLostReleaseLeavesTheStroke();

    // Wheel
    void aNotchIsAStep_data();
    void aNotchIsAStep();

    // Pen
    void theEndAndTheButtonsOfAPenChooseForOneStroke();
    void pressureMakesLinesThinner_data();
    void pressureMakesLinesThinner();
    void pressureIsSmoothedOverThreePoints();
    void aPenThatGoesAwayLeavesItsStroke();
    void anUnpluggedPenDoesNotHoldTheStroke();

    void whatIsNoNumberIsLeftOut();
    void eventsWithoutAPressDoNothing();
    void randomEventsMakeWholeStrokes();
};

void PointerInputTest::theLeftButtonDraws()
{
    input().mousePressed(Qt::LeftButton, {10, 20});
    QVERIFY(input().isStrokeRunning());
    input().mouseMoved(Qt::LeftButton, {30, 40});
    input().mousePressed(Qt::RightButton, {31, 41});
    input().mouseMoved(Qt::LeftButton | Qt::RightButton, {32, 42});
    input().mouseReleased(Qt::RightButton, {33, 43});
    input().mouseReleased(Qt::LeftButton, {34, 44});
    QCOMPARE(log(), QString("begin chosen 10,20; move 30,40; move 32,42; end 34,44"));
    QVERIFY(!input().isStrokeRunning());
}

void PointerInputTest::theMiddleButtonPulls()
{
    input().mousePressed(Qt::MiddleButton, {10, 20});
    QCOMPARE(input().tool(), PointerReceiver::Tool::Hand);
    input().mouseMoved(Qt::MiddleButton, {30, 40});
    input().mouseReleased(Qt::MiddleButton, {30, 40});
    QCOMPARE(log(), QString("begin hand 10,20; move 30,40; end 30,40"));
    QCOMPARE(input().tool(), PointerReceiver::Tool::Chosen);
    // The other button does not disturb a stroke, but a new stroke ends the pulling.
    input().mousePressed(Qt::LeftButton, {1, 1});
    input().mousePressed(Qt::MiddleButton, {2, 2});
    input().mouseReleased(Qt::MiddleButton, {3, 3});
    input().mouseReleased(Qt::LeftButton, {4, 4});
    QCOMPARE(log(), QString("begin chosen 1,1; end 4,4"));
    input().mousePressed(Qt::MiddleButton, {1, 1});
    input().mousePressed(Qt::LeftButton, {2, 2});
    input().mouseReleased(Qt::MiddleButton, {3, 3});
    input().mouseReleased(Qt::LeftButton, {4, 4});
    QCOMPARE(log(), QString("begin hand 1,1; leave; begin chosen 2,2; end 4,4"));
}

void PointerInputTest::aLostReleaseLeavesTheStroke()
{
    input().mousePressed(Qt::LeftButton, {10, 20});
    input().mouseMoved(Qt::NoButton, {30, 40});
    input().mouseReleased(Qt::LeftButton, {30, 40});
    QCOMPARE(log(), QString("begin chosen 10,20; leave"));
}

void PointerInputTest::aNotchIsAStep_data()
{
    QTest::addColumn<QVector<int>>("deltas");
    QTest::addColumn<QString>("expected");
    QTest::newRow("in") << QVector<int>{120} << "zoom 1 about 7,8";
    QTest::newRow("out") << QVector<int>{-120} << "zoom -1 about 7,8";
    QTest::newRow("two at once") << QVector<int>{240} << "zoom 2 about 7,8";
    QTest::newRow("small ones are summed")
        << QVector<int>{50, 50, 50, 90} << "zoom 1 about 7,8; zoom 1 about 7,8";
    QTest::newRow("a turn back begins anew") << QVector<int>{60, -60, -60} << "zoom -1 about 7,8";
    QTest::newRow("none") << QVector<int>{119, 0, 1} << "zoom 1 about 7,8";
    QTest::newRow("a single unit") << QVector<int>{1} << "";
    QTest::newRow("the smallest number of 16 bits") << QVector<int>{-32768} << "zoom -16 about 7,8";
    QTest::newRow("the largest ones")
        << QVector<int>{std::numeric_limits<int>::max(), std::numeric_limits<int>::max()}
        << "zoom 16 about 7,8; zoom 16 about 7,8";
}

void PointerInputTest::aNotchIsAStep()
{
    QFETCH(QVector<int>, deltas);
    for (const int delta : deltas)
        input().wheel(delta, {7, 8});
    QTEST(log(), "expected");
    // The view stays under a stroke.
    input().mousePressed(Qt::LeftButton, {1, 1});
    input().wheel(120, {7, 8});
    QCOMPARE(log(), QString("begin chosen 1,1"));
}

void PointerInputTest::theEndAndTheButtonsOfAPenChooseForOneStroke()
{
    const auto stroke = [this](const std::function<Pen(Pen)> &with) {
        input().pen(with(penAt(Pen::Phase::Press, 10)), 1);
        input().pen(with(penAt(Pen::Phase::Move, 20)), 2);
        input().pen(with(penAt(Pen::Phase::Release, 20)), 3);
        return log();
    };
    const QString rest(" 10,50; move 20,50; end 20,50");
    QCOMPARE(stroke([](Pen pen) { return pen; }), "begin chosen" + rest);
    QCOMPARE(stroke([](Pen pen) { return held(pen, Qt::MiddleButton); }), "begin hand" + rest);
    QCOMPARE(stroke([](Pen pen) { return held(pen, Qt::RightButton); }), "begin eraser" + rest);
    QCOMPARE(stroke([](Pen pen) {
                 pen.isEraserEnd = true;
                 return pen;
             }),
             "begin eraser" + rest);
    QCOMPARE(stroke([](Pen pen) { return pen; }), "begin chosen" + rest);

    // Pens that tell of a button in place of the tip.
    const auto buttonAlone = [](Qt::MouseButton button) {
        return [button](Pen pen) {
            if (pen.button != Qt::NoButton)
                pen.button = button;
            pen.buttons = pen.buttons ? Qt::MouseButtons(button) : Qt::MouseButtons();
            return pen;
        };
    };
    QCOMPARE(stroke(buttonAlone(Qt::MiddleButton)), "begin hand" + rest);
    QCOMPARE(stroke(buttonAlone(Qt::RightButton)), "begin eraser" + rest);
    // Nothing is erased in the air.
    Pen inTheAir = buttonAlone(Qt::RightButton)(penAt(Pen::Phase::Press, 10, 0.0));
    input().pen(inTheAir, 4);
    QCOMPARE(log(), QString());

    // What a press will do is known before it.
    Pen eraser = hovering(10);
    eraser.isEraserEnd = true;
    input().pen(eraser, 5);
    QCOMPARE(input().tool(), PointerReceiver::Tool::Eraser);
    input().penLeft(6);
    QCOMPARE(input().tool(), PointerReceiver::Tool::Chosen);
}

void PointerInputTest::pressureMakesLinesThinner_data()
{
    QTest::addColumn<bool>("on");
    QTest::addColumn<double>("pressure");
    QTest::addColumn<QString>("width");
    QTest::newRow("off") << false << 0.2 << "";
    QTest::newRow("half") << true << 0.5 << " x0.675";
    QTest::newRow("full") << true << 1.0 << "";
    QTest::newRow("nothing on a pen that has it") << true << 0.0 << " x0.350";
    QTest::newRow("above the most") << true << 7.0 << "";
    QTest::newRow("below the least") << true << -1.0 << " x0.350";
    QTest::newRow("no number") << true << std::nan("") << "";
    QTest::newRow("without end") << true << std::numeric_limits<double>::infinity() << "";
}

void PointerInputTest::pressureMakesLinesThinner()
{
    QFETCH(bool, on);
    QFETCH(double, pressure);
    QFETCH(QString, width);
    const auto stroke = [this](double with) {
        for (const Pen::Phase phase : {Pen::Phase::Press, Pen::Phase::Move, Pen::Phase::Release})
            input().pen(penAt(phase, 10, with), 1);
        return log();
    };
    input().setPressure(on);
    // A pen that never tells a pressure draws like a mouse.
    QCOMPARE(stroke(0.0), QString("begin chosen 10,50; move 10,50; end 10,50"));
    stroke(0.1);
    QCOMPARE(stroke(pressure),
             QString("begin chosen 10,50%1; move 10,50%1; end 10,50%1").arg(width));
    // Only a pen has pressure.
    input().mousePressed(Qt::LeftButton, {10, 50});
    QCOMPARE(log(), QString("begin chosen 10,50"));
}

void PointerInputTest::pressureIsSmoothedOverThreePoints()
{
    input().setPressure(true);
    input().pen(penAt(Pen::Phase::Press, 0, 0.2), 1);
    QCOMPARE(log(), QString("begin chosen 0,50 x0.480"));
    for (const double pressure : {0.4, 0.6, 1.0, 1.0, 1.0})
        input().pen(penAt(Pen::Phase::Move, 0, pressure), 2);
    QCOMPARE(log(), QString("move 0,50 x0.545; move 0,50 x0.610; move 0,50 x0.783; "
                            "move 0,50 x0.913; move 0,50"));
}

void PointerInputTest::aPenThatGoesAwayLeavesItsStroke()
{
    input().pen(penAt(Pen::Phase::Press, 10), 1);
    input().penLeft(2);
    input().pen(penAt(Pen::Phase::Move, 20), 3);
    input().pen(penAt(Pen::Phase::Release, 20), 4);
    QCOMPARE(log(), QString("begin chosen 10,50; leave"));
    // In the air again, and its release was lost.
    input().pen(penAt(Pen::Phase::Press, 10), 5);
    input().pen(hovering(20), 6);
    QCOMPARE(log(), QString("begin chosen 10,50; leave"));
}

void PointerInputTest::anUnpluggedPenDoesNotHoldTheStroke()
{
    input().penEntered(0);
    input().pen(penAt(Pen::Phase::Press, 10), 1);
    input().mousePressed(Qt::LeftButton, {1, 2});
    input().mouseReleased(Qt::LeftButton, {3, 4});
    QCOMPARE(log(), QString("begin chosen 10,50; leave; begin chosen 1,2; end 3,4"));
    input().pen(penAt(Pen::Phase::Press, 10), 2);
    press(1, {5, 6}, 9000);
    lift(1, {5, 6}, 9100);
    QCOMPARE(log(), QString("begin chosen 10,50"));
    press(1, {5, 6}, 10010);
    QCOMPARE(log(), QString("leave; begin chosen 5,6"));
}

void PointerInputTest::whatIsNoNumberIsLeftOut()
{
    const double bad = std::nan("");
    input().pen(penAt(Pen::Phase::Press, bad), 1);
    press(0, {bad, 0}, 2);
    input().wheel(120, {0, bad});
    QCOMPARE(log(), QString());
    press(1, {10, 10}, 3);
    slide(1, {std::numeric_limits<double>::infinity(), 10}, 4);
    slide(1, {1e300, 10}, 5);
    lift(1, {bad, bad}, 6);
    QCOMPARE(log(), QString("begin chosen 10,10; move 1000000,10; end 1000000,10"));
}

void PointerInputTest::eventsWithoutAPressDoNothing()
{
    input().mouseMoved(Qt::LeftButton, {1, 1});
    input().mouseReleased(Qt::LeftButton, {1, 1});
    slide(4, {1, 1}, 1);
    lift(4, {1, 1}, 2);
    input().cancelFingers();
    input().penLeft(3);
    input().pen(penAt(Pen::Phase::Move, 20), 4);
    input().pen(penAt(Pen::Phase::Release, 20), 5);
    QCOMPARE(log(), QString());
    QVERIFY(!input().isStrokeRunning());
}

void PointerInputTest::randomEventsMakeWholeStrokes()
{
    const int wanted = qEnvironmentVariableIntValue("POINTER_SEQUENCES");
    std::mt19937 random(20);
    for (int sequence = 0; sequence < (wanted > 0 ? wanted : 20000); ++sequence) {
        PointerLog log;
        PointerInput input(log);
        std::vector<unsigned char> bytes(60);
        for (unsigned char &byte : bytes)
            byte = static_cast<unsigned char>(random());
        PointerLog::play(bytes.data(), bytes.size(), input);
        QVERIFY2(log.isSane(), qPrintable(QString::number(sequence)));
        QCOMPARE(input.isStrokeRunning(), log.isRunning());
    }
}

REGISTER_PLAIN_TEST(PointerInputTest)
#include "tst_pointer_input.moc"
