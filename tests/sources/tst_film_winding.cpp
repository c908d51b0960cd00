#include "tests/TestProgram.h"
#include "tests/sources/FilmRig.h"

#include <QtTest>

#include <QSignalSpy>

#include <algorithm>

/// Rewinding, forwarding and the way back to normal speed.
class FilmWindingTest : public QObject
{
    Q_OBJECT

private slots:
    void aWindBeyondTheStartEndsTheMoving()
    {
        FilmRig rig(61);
        rig.source.backward();
        rig.tickAfter100ms();
        QVERIFY(!rig.source.moving());
        rig.source.play();
        QVERIFY(rig.source.moving());
    }

    void whileWindingPicturesComeFromSeeksAlone()
    {
        FilmRig rig(61);
        rig.source.forward();
        const int before = rig.sink.count();
        rig.film.picturesDue = 1;
        rig.refresh.tick();
        QCOMPARE(rig.sink.count(), before);
        rig.film.holdSeeks = true;
        rig.source.setPosition(10);
        QCOMPARE(rig.sink.count(), before);
        rig.film.complete();
        QCOMPARE(rig.sink.count(), before + 1);
    }

    void afterStopWindingMovesNothingUntilNormalSpeed()
    {
        FilmRig rig(61);
        rig.source.stop();
        rig.source.forward();
        rig.forget();
        QVERIFY(!rig.timer()->isActive());
        // The playing flag is still set, so normal speed starts the player, without the timer.
        rig.source.backward();
        QCOMPARE(rig.film.takeCalls(), QStringList{"play"});
        QVERIFY(rig.refresh.running);
        QVERIFY(!rig.timer()->isActive());
    }

    void windingAdvancesByItsSpeed_data()
    {
        QTest::addColumn<int>("steps");
        QTest::addColumn<int>("speed");
        QTest::newRow("rewind") << -1 << -2;
        QTest::newRow("rewind, pressed twice") << -2 << -2;
        QTest::newRow("twofold") << 1 << 2;
        QTest::newRow("fourfold") << 2 << 4;
        QTest::newRow("eightfold") << 3 << 8;
        QTest::newRow("sixteenfold") << 4 << 16;
        QTest::newRow("thirty-twofold") << 5 << 32;
        QTest::newRow("hundredfold") << 6 << 100;
        QTest::newRow("hundredfold, pressed ten times") << 10 << 100;
    }

    void windingAdvancesByItsSpeed()
    {
        QFETCH(int, steps);
        QFETCH(int, speed);
        FilmRig rig(36000);
        rig.film.time = 18000;
        QElapsedTimer outer;
        for (int i = 0; i < qAbs(steps); ++i) {
            outer.start();
            if (steps > 0)
                rig.source.forward();
            else
                rig.source.backward();
        }
        QVERIFY(!rig.refresh.running);
        QVERIFY(!rig.film.playing);
        rig.source.tickEvent(); // too early
        QCOMPARE(rig.film.seeks.size(), 0);
        rig.tickAfter100ms();
        const double most = double(outer.elapsed() + 1) / 1000;
        QCOMPARE(rig.film.seeks.size(), 1);
        const double moved = (rig.film.seeks.first() - 18000) / speed;
        QVERIFY2(moved >= 0.0995 && moved <= most, qPrintable(QString::number(moved)));
    }

    void theTimerWindsByItself()
    {
        FilmRig rig(61);
        QSignalSpy ticks(&rig.source, &FilmSource::tick);
        rig.source.forward();
        QTRY_VERIFY(rig.film.seeks.size() >= 3);
        QVERIFY(ticks.count() >= 3);
        QVERIFY(std::is_sorted(rig.film.seeks.cbegin(), rig.film.seeks.cend()));
    }

    void backAtNormalSpeedItPlaysOn()
    {
        FilmRig rig(61);
        rig.source.forward();
        rig.forget();
        rig.source.backward();
        QCOMPARE(rig.film.takeCalls(), QStringList{"play"});
        QVERIFY(rig.refresh.running);
        QVERIFY(rig.timer()->isActive());
    }

    void backAtNormalSpeedAPausedFilmStaysPaused()
    {
        FilmRig rig(61);
        rig.source.pause();
        rig.source.forward();
        rig.forget();
        rig.source.backward();
        QCOMPARE(rig.film.takeCalls(), NOTHING);
        QVERIFY(!rig.refresh.running);
    }

    void rewindingPastTheStartParksThere()
    {
        FilmRig rig(61);
        rig.film.time = 0.1;
        rig.source.backward();
        rig.forget();
        rig.tickAfter100ms();
        QVERIFY(rig.film.seeks.size() == 2 && rig.film.seeks[0] < 0);
        QCOMPARE(rig.film.seeks[1], 0.0);
        QCOMPARE(rig.sink.takeRefreshes(), QStringList{"start"});
        QCOMPARE(rig.source.currentPosition(), 0);
        rig.forget();
        rig.tickAfter100ms();
        QCOMPARE(rig.film.takeCalls(), NOTHING);
        QCOMPARE(rig.sink.takeRefreshes(), NOTHING);
    }

    void windingPastTheEndParksAtTheStart()
    {
        FilmRig rig(61);
        rig.film.time = 60.9;
        rig.source.forward();
        rig.forget();
        rig.tickAfter100ms();
        QVERIFY(rig.film.seeks.size() == 2 && rig.film.seeks[0] >= 61);
        QCOMPARE(rig.film.seeks[1], 0.0);
        QCOMPARE(rig.sink.takeRefreshes(), QStringList{"start"});
        // Parked: back at normal speed it does not play by itself.
        rig.forget();
        rig.source.backward();
        QCOMPARE(rig.film.takeCalls(), NOTHING);
    }

    void withoutADurationWindingParksOnce()
    {
        FilmRig rig(0);
        rig.source.forward();
        rig.forget();
        for (int i = 0; i < 5; ++i)
            rig.source.tickEvent();
        QCOMPARE(rig.film.seeks, QVector<double>{0.0});
        QCOMPARE(rig.sink.takeRefreshes(), QStringList{"start"});
        QCOMPARE(rig.source.currentPosition(), 0);
    }

    void windingWhileTheFilmOpensIsNotAtItsEnd()
    {
        FilmRig rig;
        rig.source.setFile("/films/a.mp4");
        rig.source.forward();
        rig.forget();
        rig.tickAfter100ms();
        QCOMPARE(rig.film.seeks.size(), 1);
        QVERIFY(rig.film.seeks.first() > 0.19);
        QCOMPARE(rig.sink.takeRefreshes(), NOTHING);
        rig.film.opened(61);
        rig.source.tickEvent();
        QCOMPARE(rig.sink.takeRefreshes(), NOTHING);
    }

    void theSliderDoesNotMoveTheWoundPlace()
    {
        FilmRig rig(61);
        rig.film.time = 30.5;
        rig.source.forward();
        rig.source.setPosition(0);
        QCOMPARE(rig.source.currentPosition(), 50);
    }

    void theSpeedStaysFromFilmToFilm()
    {
        FilmRig rig(36000);
        rig.source.forward();
        rig.source.setFile("/films/b.mp4");
        rig.film.opened(36000);
        QVERIFY(rig.refresh.running);
        rig.source.forward(); // from twofold to fourfold
        rig.forget();
        rig.tickAfter100ms();
        QVERIFY(rig.film.seeks.value(0) >= 0.399);
    }
};

REGISTER_CORE_TEST(FilmWindingTest)
#include "tst_film_winding.moc"
