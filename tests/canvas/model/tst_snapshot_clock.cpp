#include "canvas/model/SnapshotClock.h"
#include "tests/TestProgram.h"

#include <QtTest>

namespace
{

/// The seconds at which a picture was taken, with one frame every 100 ms.
QVector<int> shots(SnapshotClock &clock, int fromSecond, int toSecond)
{
    QVector<int> seconds;
    for (int tenth = fromSecond * 10; tenth < toSecond * 10; ++tenth) {
        const std::int64_t milliseconds = std::int64_t{100} * tenth;
        const bool due = clock.isDue(milliseconds);
        const bool taken = clock.takePicture(milliseconds);
        // A picture is only taken when isDue() has said so.
        if (taken && !due)
            return {};
        if (taken)
            seconds.append(tenth / 10);
    }
    return seconds;
}

} // namespace

class SnapshotClockTest : public QObject
{
    Q_OBJECT

private slots:
    void takesNothingUnlessArmed()
    {
        SnapshotClock clock;
        QVERIFY(!clock.isArmed());
        QVERIFY(!clock.takePicture(0));
    }

    void takesOneSinglePictureAtOnce()
    {
        SnapshotClock clock;
        clock.arm({CanvasModes::Single, 5, 0}, 1000);
        QVERIFY(clock.isArmed());
        QVERIFY(!clock.isSeriesArmed());
        QVERIFY(clock.takePicture(1000));
        QVERIFY(!clock.isArmed());
        QVERIFY(!clock.takePicture(1001));
    }

    void takesASeriesAtEachInterval()
    {
        SnapshotClock clock;
        clock.arm({CanvasModes::Continuous, 5, UINT64_MAX}, 0);
        QVERIFY(clock.isSeriesArmed());
        QCOMPARE(shots(clock, 0, 12), QVector<int>({5, 10}));
        clock.disarm();
        QVERIFY(!clock.isSeriesArmed());
        QCOMPARE(shots(clock, 12, 30), QVector<int>());
    }

    void intervalZeroTakesEveryFrame()
    {
        SnapshotClock clock;
        clock.arm({CanvasModes::Continuous, 0, UINT64_MAX}, 0);
        QCOMPARE(shots(clock, 0, 2).size(), 20);
    }

    void stopsAtTheLimitAndStillTakesThePictureOfThatMoment()
    {
        SnapshotClock clock;
        clock.arm({CanvasModes::Continuous, 2, 6}, 0);
        QCOMPARE(shots(clock, 0, 20), QVector<int>({2, 4, 6}));
        QVERIFY(!clock.isArmed());
    }

    void aLimitOfZeroStopsAtTheFirstFrame()
    {
        SnapshotClock clock;
        clock.arm({CanvasModes::Continuous, 1, 0}, 0);
        QVERIFY(!clock.takePicture(10));
        QVERIFY(!clock.isArmed());
    }

    void aHugeIntervalNeverComes()
    {
        SnapshotClock clock;
        clock.arm({CanvasModes::Continuous, UINT64_MAX, UINT64_MAX}, 0);
        QCOMPARE(shots(clock, 0, 100).size(), 0);
        QVERIFY(clock.isArmed());
    }

    void isDueWhenItWouldTakeOrEndSomething()
    {
        SnapshotClock clock;
        QVERIFY(!clock.isDue(0));
        clock.arm({CanvasModes::Single, 5, 0}, 0);
        QVERIFY(clock.isDue(0));
        clock.arm({CanvasModes::Continuous, 5, 7}, 0);
        QVERIFY(!clock.isDue(4999));
        QVERIFY(clock.isDue(5000));
        QVERIFY(clock.takePicture(5000));
        QVERIFY(!clock.isDue(6999));
        // The end of the series is due too.
        QVERIFY(clock.isDue(7000));
        QVERIFY(!clock.takePicture(7000));
        QVERIFY(!clock.isDue(10000));
    }

    void armingAgainRestartsTheClock()
    {
        SnapshotClock clock;
        clock.arm({CanvasModes::Continuous, 5, UINT64_MAX}, 0);
        QVERIFY(clock.takePicture(5000));
        clock.arm({CanvasModes::Continuous, 5, UINT64_MAX}, 7000);
        QVERIFY(!clock.takePicture(10000));
        QVERIFY(!clock.takePicture(11999));
        QVERIFY(clock.takePicture(12000));
    }
};

REGISTER_PLAIN_TEST(SnapshotClockTest)
#include "tst_snapshot_clock.moc"
