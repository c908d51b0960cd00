#include "sources/film/FilmStepper.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <limits>

class FilmStepperTest : public QObject
{
    Q_OBJECT

private slots:
    void theTableGoesFromRewindToAHundredfold()
    {
        const QVector<int> expected{-2, 1, 2, 4, 8, 16, 32, 100};
        QCOMPARE(QVector<int>(FilmStepper::speeds.begin(), FilmStepper::speeds.end()), expected);
        const FilmStepper stepper;
        QCOMPARE(stepper.speedIndex(), 1);
        QVERIFY(stepper.atNormalSpeed());
    }

    void sevenStepsUpStayAtTheFastest()
    {
        FilmStepper stepper;
        for (int i = 0; i < 7; ++i)
            stepper.faster();
        QCOMPARE(stepper.speedIndex(), 7);
        stepper.faster();
        QCOMPARE(stepper.speedIndex(), 7);
        stepper.setNormalSpeed();
        QVERIFY(stepper.atNormalSpeed());
    }

    void stepsDownStayAtRewind()
    {
        FilmStepper stepper;
        stepper.slower();
        QCOMPARE(stepper.speedIndex(), 0);
        stepper.slower();
        QCOMPARE(stepper.speedIndex(), 0);
    }

    void advancesByTheSpeedTimesTheTime_data()
    {
        QTest::addColumn<int>("steps");
        QTest::addColumn<int>("elapsedMs");
        QTest::addColumn<double>("place");
        QTest::newRow("rewind") << -1 << 100 << 9.8;
        QTest::newRow("twofold") << 1 << 100 << 10.2;
        QTest::newRow("fourfold") << 2 << 103 << 10.412;
        QTest::newRow("eightfold") << 3 << 250 << 12.0;
        QTest::newRow("sixteenfold") << 4 << 100 << 11.6;
        QTest::newRow("thirty-twofold") << 5 << 100 << 13.2;
        QTest::newRow("hundredfold") << 6 << 100 << 20.0;
        QTest::newRow("rewind past the start") << -1 << 6000 << -2.0;
    }

    void advancesByTheSpeedTimesTheTime()
    {
        QFETCH(int, steps);
        QFETCH(int, elapsedMs);
        QFETCH(double, place);
        FilmStepper stepper;
        for (; steps > 0; --steps)
            stepper.faster();
        for (; steps < 0; ++steps)
            stepper.slower();
        stepper.setPosition(10);
        QCOMPARE(stepper.advance(elapsedMs), place);
        QVERIFY(qAbs(stepper.position() - place) < 0.0011);
    }

    void thePlaceThatIsToldIsNotCut()
    {
        // Sums that lie a hair below a whole millisecond, for one.
        for (int ms = 1; ms <= 2000; ++ms) {
            FilmStepper stepper;
            stepper.faster();
            stepper.setPosition(0.7);
            const double from = stepper.position();
            QCOMPARE(stepper.advance(ms) - (from + 2 * (ms / 1000.0)), 0.0);
        }
    }

    void thePositionIsCutToMilliseconds()
    {
        FilmStepper stepper;
        stepper.setPosition(1.2345);
        QCOMPARE(stepper.position(), 1.234);
        stepper.setPosition(-1.2345);
        QCOMPARE(stepper.position(), -1.234);
    }

    void theEndsAreTheStartAndTheDuration()
    {
        QVERIFY(FilmStepper::beyondEnds(-0.001, 10));
        QVERIFY(!FilmStepper::beyondEnds(0, 10));
        QVERIFY(!FilmStepper::beyondEnds(9.999, 10));
        QVERIFY(FilmStepper::beyondEnds(10, 10));
        QVERIFY(FilmStepper::beyondEnds(0, 0));
        QVERIFY(FilmStepper::beyondEnds(0, std::numeric_limits<double>::quiet_NaN()));
        QVERIFY(!FilmStepper::beyondEnds(1e9, std::numeric_limits<double>::infinity()));
    }

    void percentIsCutAndLimited()
    {
        QCOMPARE(FilmStepper::percent(0, 61), 0);
        QCOMPARE(FilmStepper::percent(30.49, 61), 49);
        QCOMPARE(FilmStepper::percent(30.5, 61), 50);
        QCOMPARE(FilmStepper::percent(61, 61), 100);
        QCOMPARE(FilmStepper::percent(70, 61), 100);
        QCOMPARE(FilmStepper::percent(-3, 61), 0);
        QCOMPARE(FilmStepper::percent(1e300, 61), 100);
        QCOMPARE(FilmStepper::percent(18000, 36000), 50);
    }

    void percentOfNoDurationIsZero()
    {
        const double infinity = std::numeric_limits<double>::infinity();
        const double nan = std::numeric_limits<double>::quiet_NaN();
        QCOMPARE(FilmStepper::percent(5, 0), 0);
        QCOMPARE(FilmStepper::percent(5, -1), 0);
        QCOMPARE(FilmStepper::percent(5, infinity), 0);
        QCOMPARE(FilmStepper::percent(5, nan), 0);
        QCOMPARE(FilmStepper::percent(nan, 5), 0);
    }

    void aPercentageIsAPlaceInWholeSeconds()
    {
        QCOMPARE(FilmStepper::secondsAt(50, 61), 30.0);
        QCOMPARE(FilmStepper::secondsAt(99, 61), 60.0);
        QCOMPARE(FilmStepper::secondsAt(100, 61), 61.0);
        QCOMPARE(FilmStepper::secondsAt(1, 61), 0.0);
        QCOMPARE(FilmStepper::secondsAt(50, 0), 0.0);
        QCOMPARE(FilmStepper::secondsAt(50, std::numeric_limits<double>::infinity()), 0.0);
        QCOMPARE(FilmStepper::secondsAt(50, std::numeric_limits<double>::quiet_NaN()), 0.0);
    }
};

REGISTER_CORE_TEST(FilmStepperTest)
#include "tst_film_stepper.moc"
