#include "canvas/PointerInput.h"
#include "tests/TestProgram.h"
#include "tests/canvas/PointerLog.h"

#include <QVector>

#include <cmath>
#include <limits>
#include <random>

using Pen = PointerInput::Pen;
using State = PointerInput::Finger::State;

namespace
{

Pen penAt(Pen::Phase phase, double x, double pressure = 0.5)
{
    Pen pen;
    pen.phase = phase;
    pen.point = {x, 50.0};
    pen.pressure = pressure;
    const bool isDown = phase != Pen::Phase::Release;
    pen.button = phase == Pen::Phase::Move ? Qt::NoButton : Qt::LeftButton;
    pen.buttons = isDown ? Qt::LeftButton : Qt::NoButton;
    return pen;
}

Pen hovering(double x)
{
    Pen pen = penAt(Pen::Phase::Move, x, 0.0);
    pen.buttons = Qt::NoButton;
    return pen;
}

Pen held(Pen pen, Qt::MouseButton button)
{
    pen.buttons |= button;
    return pen;
}

} // namespace

/// The strokes and view changes that mice, pens, fingers and wheels make, by hand and at random.
class PointerInputTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_board = std::make_unique<Board>(); }

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

    // Fingers
    void oneFingerDraws();
    void aSecondFingerSoonTakesTheStrokeBack_data();
    void aSecondFingerSoonTakesTheStrokeBack();
    void twoFingersMoveTheViewAboutTheirMiddle();
    void anotherFingerGripsAnew();
    void tapsTakeStepsBackAndDoThemAgain_data();
    void tapsTakeStepsBackAndDoThemAgain();
    void aCancelledTouchDoesNothing();
    void fingersNearAPenAreItsHand_data();
    void fingersNearAPenAreItsHand();
    void aPenTakesTheStrokeOfItsHandBack();

    void whatIsNoNumberIsLeftOut();
    void eventsWithoutAPressDoNothing();
    void randomEventsMakeWholeStrokes();

private:
    struct Board {
        PointerLog log;
        PointerInput input{log};
    };

    PointerInput &input() { return m_board->input; }
    /// What has been received since the last call.
    QString log() { return m_board->log.take(); }

    void press(int id, QPointF point, int ms) { finger(id, State::Pressed, point, ms); }
    void slide(int id, QPointF point, int ms) { finger(id, State::Moved, point, ms); }
    void lift(int id, QPointF point, int ms) { finger(id, State::Released, point, ms); }
    void finger(int id, State state, QPointF point, int ms)
    {
        input().fingers({{id, state, point}}, ms);
    }

    std::unique_ptr<Board> m_board;
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
    QTest::newRow("a turn back begins anew") << QVector<int>{119, -119, 1, 118} << "";
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

void PointerInputTest::oneFingerDraws()
{
    press(7, {10, 20}, 0);
    slide(7, {30, 40}, 200);
    lift(7, {30, 40}, 300);
    QCOMPARE(log(), QString("begin chosen 10,20; move 30,40; end 30,40"));
    // A second one that comes late and far into the stroke is in the way and does nothing.
    press(7, {10, 20}, 1000);
    slide(7, {40, 20}, 1100);
    press(8, {90, 90}, 1200);
    slide(8, {95, 95}, 1210);
    slide(7, {50, 20}, 1220);
    lift(8, {95, 95}, 1230);
    lift(7, {50, 20}, 1240);
    QCOMPARE(log(), QString("begin chosen 10,20; move 40,20; move 50,20; end 50,20"));
    // The rest of two fingers draws nothing.
    press(7, {10, 20}, 2000);
    slide(7, {40, 20}, 2100);
    press(8, {90, 90}, 2200);
    lift(7, {40, 20}, 2230);
    slide(8, {10, 10}, 2240);
    lift(8, {10, 10}, 2250);
    QCOMPARE(log(), QString("begin chosen 10,20; move 40,20; end 40,20"));
}

void PointerInputTest::aSecondFingerSoonTakesTheStrokeBack_data()
{
    QTest::addColumn<int>("ms");
    QTest::addColumn<double>("way");
    QTest::addColumn<bool>("taken");
    QTest::newRow("at once") << 0 << 0.0 << true;
    QTest::newRow("after 80 ms, however far") << 80 << 50.0 << true;
    QTest::newRow("after 12 px, however late") << 60000 << 12.0 << true;
    QTest::newRow("later and farther") << 81 << 12.1 << false;
}

void PointerInputTest::aSecondFingerSoonTakesTheStrokeBack()
{
    QFETCH(int, ms);
    QFETCH(double, way);
    QFETCH(bool, taken);
    press(0, {10, 10}, 0);
    slide(0, {10 + way, 10}, ms);
    log();
    press(1, {100, 10}, ms);
    QCOMPARE(log(), taken ? QString("cancel") : QString());
    QCOMPARE(input().isStrokeRunning(), !taken);
}

void PointerInputTest::twoFingersMoveTheViewAboutTheirMiddle()
{
    press(0, {100, 100}, 0);
    press(1, {200, 100}, 10);
    // Fingers that stand tremble.
    slide(0, {105, 100}, 20);
    QCOMPARE(log(), QString("begin chosen 100,100; cancel"));
    // Both in one event.
    input().fingers({{0, State::Moved, {50, 100}}, {1, State::Moved, {250, 100}}}, 30);
    QCOMPARE(log(), QString("grip 150,100; view 150,100 x2.000"));
    input().fingers({{0, State::Moved, {70, 150}}, {1, State::Moved, {270, 150}}}, 40);
    QCOMPARE(log(), QString("view 170,150 x2.000"));
    slide(0, {220, 150}, 50);
    QCOMPARE(log(), QString("view 245,150 x0.500"));
    // One on top of the other, and out of the window.
    slide(0, {270, 150}, 60);
    slide(0, {-500, 150}, 70);
    QCOMPARE(log(), QString("view 270,150 x0.100; view -115,150 x7.700"));
    lift(0, {-500, 150}, 80);
    slide(1, {300, 300}, 90);
    lift(1, {300, 300}, 100);
    QCOMPARE(log(), QString());
    // And the next finger draws.
    press(3, {5, 5}, 110);
    QCOMPARE(log(), QString("begin chosen 5,5"));
}

void PointerInputTest::anotherFingerGripsAnew()
{
    press(0, {100, 100}, 0);
    press(1, {200, 100}, 10);
    slide(0, {50, 100}, 20);
    press(2, {300, 300}, 30);
    slide(2, {350, 350}, 40);
    log();
    lift(0, {50, 100}, 50);
    QCOMPARE(log(), QString());
    slide(1, {250, 100}, 60);
    QCOMPARE(log().section(';', 0, 0), QString("grip 275,225"));
}

void PointerInputTest::tapsTakeStepsBackAndDoThemAgain_data()
{
    QTest::addColumn<int>("fingers");
    QTest::addColumn<double>("way");
    QTest::addColumn<int>("ms");
    QTest::addColumn<QString>("expected");
    QTest::newRow("two") << 2 << 0.0 << 200 << "begin chosen 0,0; cancel; undo";
    QTest::newRow("three") << 3 << 11.0 << 500 << "begin chosen 0,0; cancel; redo";
    QTest::newRow("too long") << 2 << 0.0 << 501 << "begin chosen 0,0; cancel";
    QTest::newRow("too far") << 3 << 13.0 << 200 << "begin chosen 0,0; cancel";
    QTest::newRow("ten") << 10 << 0.0 << 200 << "begin chosen 0,0; cancel";
}

void PointerInputTest::tapsTakeStepsBackAndDoThemAgain()
{
    QFETCH(int, fingers);
    QFETCH(double, way);
    QFETCH(int, ms);
    for (int i = 0; i < fingers; ++i)
        press(i, {40.0 * i, 0}, 5 * i);
    slide(1, {40.0 + way, 0}, 100);
    for (int i = 0; i < fingers; ++i)
        lift(i, {40.0 * i, 0}, i + 1 < fingers ? 110 : ms);
    QTEST(log(), "expected");
    press(0, {1, 1}, 1000);
    QCOMPARE(log(), QString("begin chosen 1,1"));
}

void PointerInputTest::aCancelledTouchDoesNothing()
{
    press(0, {10, 10}, 0);
    slide(0, {90, 10}, 200);
    input().cancelFingers();
    slide(0, {95, 10}, 210);
    lift(0, {95, 10}, 220);
    QCOMPARE(log(), QString("begin chosen 10,10; move 90,10; cancel"));
    press(0, {10, 10}, 300);
    press(1, {50, 10}, 310);
    input().cancelFingers();
    QCOMPARE(log(), QString("begin chosen 10,10; cancel"));
    // Fingers whose releases were lost.
    press(0, {10, 10}, 400);
    input().forgetFingers();
    press(1, {20, 20}, 410);
    QCOMPARE(log(), QString("begin chosen 10,10; leave; begin chosen 20,20"));
}

void PointerInputTest::fingersNearAPenAreItsHand_data()
{
    QTest::addColumn<bool>("entered");
    QTest::addColumn<bool>("left");
    QTest::addColumn<int>("ms");
    QTest::addColumn<bool>("ignored");
    QTest::newRow("in the air") << true << false << 5000 << true;
    QTest::newRow("in the air, but silent for long") << true << false << 10000 << false;
    QTest::newRow("within a second after it") << true << true << 999 << true;
    QTest::newRow("a second after it") << true << true << 1000 << false;
    QTest::newRow("seen in the air within a second") << false << false << 999 << true;
    QTest::newRow("seen in the air before") << false << false << 1000 << false;
}

void PointerInputTest::fingersNearAPenAreItsHand()
{
    QFETCH(bool, entered);
    QFETCH(bool, left);
    QFETCH(int, ms);
    QFETCH(bool, ignored);
    constexpr int START = 100000;
    if (entered)
        input().penEntered(START);
    input().pen(hovering(10), START);
    if (left)
        input().penLeft(START);
    press(0, {10, 10}, START + ms);
    press(1, {50, 10}, START + ms);
    lift(0, {10, 10}, START + ms + 2000);
    lift(1, {50, 10}, START + ms + 2000);
    QCOMPARE(log(), ignored ? QString() : QString("begin chosen 10,10; cancel"));
    // The window system's clock begins anew.
    press(0, {10, 10}, 5);
    QCOMPARE(log(), QString("begin chosen 10,10"));
}

void PointerInputTest::aPenTakesTheStrokeOfItsHandBack()
{
    press(0, {10, 10}, 0);
    slide(0, {40, 10}, 100);
    input().pen(hovering(10), 200);
    slide(0, {50, 10}, 210);
    input().pen(penAt(Pen::Phase::Press, 10), 220);
    press(1, {90, 90}, 230);
    slide(0, {60, 10}, 240);
    input().pen(penAt(Pen::Phase::Move, 20), 250);
    input().pen(penAt(Pen::Phase::Release, 20), 260);
    // The hand lies there for longer than the pen.
    slide(0, {70, 10}, 5000);
    lift(0, {70, 10}, 5010);
    lift(1, {90, 90}, 5020);
    QCOMPARE(log(), QString("begin chosen 10,10; move 40,10; cancel; begin chosen 10,50; "
                            "move 20,50; end 20,50"));
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
    std::mt19937 random(20);
    for (int sequence = 0; sequence < 20000; ++sequence) {
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
