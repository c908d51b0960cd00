#include "tests/TestProgram.h"
#include "tests/canvas/PointerInputProbe.h"

/// The strokes, gestures and taps that fingers make, and those of a hand that holds a pen.
class FingerInputTest : public PointerInputProbe
{
    Q_OBJECT

private slots:
    void init() { startAnew(); }

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
};

void FingerInputTest::oneFingerDraws()
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

void FingerInputTest::aSecondFingerSoonTakesTheStrokeBack_data()
{
    QTest::addColumn<int>("ms");
    QTest::addColumn<double>("way");
    QTest::addColumn<bool>("taken");
    QTest::newRow("at once") << 0 << 0.0 << true;
    QTest::newRow("after 80 ms, however far") << 80 << 50.0 << true;
    QTest::newRow("after 12 px, however late") << 60000 << 12.0 << true;
    QTest::newRow("later and farther") << 81 << 12.1 << false;
}

void FingerInputTest::aSecondFingerSoonTakesTheStrokeBack()
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

void FingerInputTest::twoFingersMoveTheViewAboutTheirMiddle()
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

void FingerInputTest::anotherFingerGripsAnew()
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

void FingerInputTest::tapsTakeStepsBackAndDoThemAgain_data()
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

void FingerInputTest::tapsTakeStepsBackAndDoThemAgain()
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

void FingerInputTest::aCancelledTouchDoesNothing()
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

void FingerInputTest::fingersNearAPenAreItsHand_data()
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

void FingerInputTest::fingersNearAPenAreItsHand()
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

void FingerInputTest::aPenTakesTheStrokeOfItsHandBack()
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

REGISTER_PLAIN_TEST(FingerInputTest)
#include "tst_finger_input.moc"
