#include "sources/FilmSource.h"
#include "tests/TestProgram.h"
#include "tests/fakes/FakeFilmPlayer.h"
#include "tests/fakes/RecordingSink.h"

#include <QtTest>

#include <QSignalSpy>
#include <QTimer>

namespace
{

/// A film source over fakes, with or without a film of a minute and a second in it.
struct Bench {
    explicit Bench(double opened = -1)
        : source(&sink, nullptr, std::make_unique<FakeFilmPlayer>(film),
                 [this](std::function<void()> tick) {
                     return std::make_unique<FakeDisplayLink>(refresh, std::move(tick));
                 })
    {
        if (opened < 0)
            return;
        source.setFile("/films/a.mp4");
        film.opened(opened);
        forget();
    }

    void forget()
    {
        QCoreApplication::processEvents();
        film.takeCalls();
        film.seeks.clear();
        sink.takeRefreshes();
    }

    QTimer *timer() { return source.findChild<QTimer *>(); }

    /// Lets a tick's time pass without the timer, then ticks.
    void tickAfter100ms()
    {
        QThread::msleep(101);
        source.tickEvent();
    }

    RecordingSink sink;
    FakeFilm film;
    FakeRefresh refresh;
    FilmSource source;
};

const QStringList nothing;

} // namespace

class FilmSourceTest : public QObject
{
    Q_OBJECT

private slots:
    void operationsBeforeAFileDoNothing()
    {
        Bench bench;
        QSignalSpy ticks(&bench.source, &FilmSource::tick);
        bench.source.play();
        bench.source.pause();
        bench.source.stop();
        bench.source.forward();
        bench.source.backward();
        bench.source.speedChanged();
        bench.source.setPosition(50);
        bench.source.setVolume(10);
        bench.source.releaseObjects();
        QCOMPARE(bench.film.takeCalls(), nothing);
        QCOMPARE(bench.sink.takeRefreshes(), nothing);
        QCOMPARE(bench.film.volume, 1.0F);
        QCOMPARE(bench.source.currentPosition(), 0);
        QVERIFY(!bench.refresh.running);
        QVERIFY(!bench.timer()->isActive());
        QCOMPARE(ticks.count(), 0);
    }

    void leavingAndEnteringTheModeSwitchTheRefreshWithoutAFile()
    {
        Bench bench;
        bench.source.resumeCapture();
        QCOMPARE(bench.sink.takeRefreshes(), QStringList{"start"});
        bench.source.pauseCapture();
        QCOMPARE(bench.sink.takeRefreshes(), QStringList{"stop"});
    }

    void leavingTheModePausesAndEndsWithoutRefresh()
    {
        Bench bench(61);
        bench.source.pauseCapture();
        QCOMPARE(bench.film.takeCalls(), QStringList{"pause"});
        QCOMPARE(bench.sink.takeRefreshes(), (QStringList{"start", "stop"}));
        QVERIFY(!bench.refresh.running);
        QVERIFY(!bench.timer()->isActive());
        bench.source.resumeCapture();
        QCOMPARE(bench.film.takeCalls(), QStringList{"prepare"});
        QCOMPARE(bench.sink.takeRefreshes(), QStringList{"start"});
    }

    void settingAFilePlaysIt()
    {
        Bench bench;
        QVERIFY(bench.source.setFile("/films/a.mp4"));
        QCOMPARE(bench.film.path, QString("/films/a.mp4"));
        QCOMPARE(bench.film.takeCalls(), (QStringList{"open", "play"}));
        QCOMPARE(bench.sink.takeRefreshes(), QStringList{"stop"});
        QVERIFY(bench.refresh.running);
        QVERIFY(bench.timer()->isActive());
        QCOMPARE(bench.timer()->interval(), 100);
    }

    void aFileThatCannotBeOpenedCountsAsLoaded()
    {
        Bench bench;
        QVERIFY(bench.source.setFile("/films/none.mp4"));
        bench.film.ends();
        bench.forget();
        QCOMPARE(bench.source.currentPosition(), 0);
        QVERIFY(bench.sink.refreshing());
        bench.source.setVolume(50);
        QCOMPARE(bench.film.volume, 0.5F);
        bench.source.setFile("/films/a.mp4");
        QCOMPARE(bench.film.path, QString("/films/a.mp4"));
        QVERIFY(!bench.sink.refreshing());
    }

    void aFilmThatCannotBeShownStandsAndSaysWhy()
    {
        Bench bench;
        QVector<FilmFault> faults;
        connect(&bench.source, &FilmSource::faulty, this,
                [&faults](FilmFault fault) { faults.append(fault); });
        bench.source.setFile("/films/none.mp4");
        bench.film.fails(FilmFault::NoFilm);
        QCoreApplication::processEvents();
        QCOMPARE(faults, QVector<FilmFault>{FilmFault::NoFilm});
        QVERIFY(!bench.source.moving());
        QVERIFY(!bench.refresh.running);
        QVERIFY(!bench.timer()->isActive());
        QVERIFY(!bench.film.playing);
        QVERIFY(bench.sink.refreshing());
        // It still counts as loaded.
        bench.source.play();
        QVERIFY(bench.source.moving());
        QVERIFY(bench.film.playing);
    }

    void aFilmWithoutSoundOrPicturePlaysOn()
    {
        for (const FilmFault fault : {FilmFault::NoPicture, FilmFault::SoundNotAnswering}) {
            Bench bench;
            int told = 0;
            connect(&bench.source, &FilmSource::faulty, this, [&told] { ++told; });
            bench.source.setFile("/films/a.mp4");
            bench.film.opened(61);
            bench.film.events.faulty(fault);
            QCoreApplication::processEvents();
            QCOMPARE(told, 1);
            QVERIFY(bench.source.moving());
        }
    }

    void aFaultOfTheFilmBeforeIsNotTold()
    {
        Bench bench;
        int told = 0;
        connect(&bench.source, &FilmSource::faulty, this, [&told] { ++told; });
        bench.source.setFile("/films/none.mp4");
        bench.film.fails(FilmFault::NoFilm);
        bench.source.setFile("/films/a.mp4");
        QCoreApplication::processEvents();
        QCOMPARE(told, 0);
        QVERIFY(bench.source.moving());
    }

    void aFilmMovesWhilePicturesComeAndNotOtherwise()
    {
        Bench bench;
        QVERIFY(!bench.source.moving());
        bench.source.setFile("/films/a.mp4");
        QVERIFY(bench.source.moving());
        bench.film.opened(61);
        bench.source.pause();
        QVERIFY(!bench.source.moving());
        bench.source.play();
        QVERIFY(bench.source.moving());
        bench.source.forward();
        QVERIFY(bench.source.moving());
        bench.source.stop();
        QVERIFY(!bench.source.moving());
        // The player runs again, without the ticks.
        bench.source.backward();
        QVERIFY(bench.film.playing);
        QVERIFY(bench.source.moving());
        bench.film.time = 61;
        QVERIFY(!bench.source.moving());
        bench.film.time = 60;
        QVERIFY(bench.source.moving());
        bench.film.ends();
        QCoreApplication::processEvents();
        QVERIFY(!bench.source.moving());
        bench.source.setPosition(10);
        QVERIFY(bench.source.moving());
        bench.source.releaseObjects();
        QVERIFY(!bench.source.moving());
    }

    void aWindBeyondTheStartEndsTheMoving()
    {
        Bench bench(61);
        bench.source.backward();
        bench.tickAfter100ms();
        QVERIFY(!bench.source.moving());
        bench.source.play();
        QVERIFY(bench.source.moving());
    }

    void picturesComeAtTheRefreshOnlyWhileThereIsOne()
    {
        Bench bench(61);
        const int before = bench.sink.count();
        bench.refresh.tick();
        QCOMPARE(bench.sink.count(), before);
        bench.film.picturesDue = 1;
        bench.refresh.tick();
        bench.refresh.tick();
        QCOMPARE(bench.sink.count(), before + 1);
        QCOMPARE(bench.sink.last().format(), QImage::Format_RGB888);
    }

    void whileWindingPicturesComeFromSeeksAlone()
    {
        Bench bench(61);
        bench.source.forward();
        const int before = bench.sink.count();
        bench.film.picturesDue = 1;
        bench.refresh.tick();
        QCOMPARE(bench.sink.count(), before);
        bench.film.holdSeeks = true;
        bench.source.setPosition(10);
        QCOMPARE(bench.sink.count(), before);
        bench.film.complete();
        QCOMPARE(bench.sink.count(), before + 1);
    }

    void theFirstPictureShowsEvenIfPausedMeanwhile()
    {
        Bench bench;
        bench.source.setFile("/films/a.mp4");
        bench.source.pause();
        bench.film.picturesDue = 1;
        bench.film.opened(61);
        QCOMPARE(bench.sink.count(), 1);
    }

    void aPictureOfTheFilmBeforeIsNotShown()
    {
        Bench bench(61);
        bench.film.holdSeeks = true;
        bench.source.setPosition(50);
        bench.source.setFile("/films/b.mp4");
        const int before = bench.sink.count();
        bench.film.complete();
        QCOMPARE(bench.sink.count(), before);
    }

    void anEventOfTheFilmBeforeIsIgnored()
    {
        Bench bench(61);
        const FilmPlayer::Events old = bench.film.events;
        bench.source.setFile("/films/b.mp4");
        bench.film.opened(10);
        bench.forget();
        old.durationKnown(1000);
        old.ended();
        bench.film.time = 5;
        QCoreApplication::processEvents();
        QCOMPARE(bench.source.currentPosition(), 50);
        QCOMPARE(bench.sink.takeRefreshes(), nothing);
    }

    void playRestoresEverything()
    {
        Bench bench(61);
        bench.source.stop();
        bench.source.forward();
        bench.forget();
        bench.source.play();
        QCOMPARE(bench.film.takeCalls(), QStringList{"play"});
        QCOMPARE(bench.sink.takeRefreshes(), QStringList{"stop"});
        QVERIFY(bench.refresh.running);
        QVERIFY(bench.timer()->isActive());
        bench.film.time = 30.5;
        QCOMPARE(bench.source.currentPosition(), 50);
        QElapsedTimer clock;
        clock.start();
        bench.source.forward();
        bench.forget();
        bench.tickAfter100ms();
        QCOMPARE(bench.film.seeks.size(), 1);
        // Twofold again, not fourfold.
        QVERIFY(bench.film.seeks.first() - 30.5 <= 2 * double(clock.elapsed() + 1) / 1000);
    }

    void pauseStopsPlayerLinkAndTimer()
    {
        Bench bench(61);
        bench.source.pause();
        QCOMPARE(bench.film.takeCalls(), QStringList{"pause"});
        QCOMPARE(bench.sink.takeRefreshes(), QStringList{"start"});
        QVERIFY(!bench.refresh.running);
        QVERIFY(!bench.timer()->isActive());
    }

    void stopShowsTheStartAndTicksOnce()
    {
        Bench bench(61);
        bench.film.time = 30;
        QSignalSpy ticks(&bench.source, &FilmSource::tick);
        const int before = bench.sink.count();
        bench.source.stop();
        QCOMPARE(bench.film.takeCalls(), (QStringList{"pause", "seek"}));
        QCOMPARE(bench.film.seeks, QVector<double>{0.0});
        QCOMPARE(bench.sink.count(), before + 1);
        QCOMPARE(bench.sink.takeRefreshes(), QStringList{"start"});
        QCOMPARE(bench.source.currentPosition(), 0);
        QCOMPARE(ticks.count(), 1);
        QVERIFY(!bench.refresh.running);
        QVERIFY(!bench.timer()->isActive());
    }

    void afterStopWindingMovesNothingUntilNormalSpeed()
    {
        Bench bench(61);
        bench.source.stop();
        bench.source.forward();
        bench.forget();
        QVERIFY(!bench.timer()->isActive());
        // The playing flag is still set, so normal speed starts the player, without the timer.
        bench.source.backward();
        QCOMPARE(bench.film.takeCalls(), QStringList{"play"});
        QVERIFY(bench.refresh.running);
        QVERIFY(!bench.timer()->isActive());
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
        Bench bench(36000);
        bench.film.time = 18000;
        QElapsedTimer outer;
        for (int i = 0; i < qAbs(steps); ++i) {
            outer.start();
            if (steps > 0)
                bench.source.forward();
            else
                bench.source.backward();
        }
        QVERIFY(!bench.refresh.running);
        QVERIFY(!bench.film.playing);
        bench.source.tickEvent(); // too early
        QCOMPARE(bench.film.seeks.size(), 0);
        bench.tickAfter100ms();
        const double most = double(outer.elapsed() + 1) / 1000;
        QCOMPARE(bench.film.seeks.size(), 1);
        const double moved = (bench.film.seeks.first() - 18000) / speed;
        QVERIFY2(moved >= 0.0995 && moved <= most, qPrintable(QString::number(moved)));
    }

    void theTimerWindsByItself()
    {
        Bench bench(61);
        QSignalSpy ticks(&bench.source, &FilmSource::tick);
        bench.source.forward();
        QTRY_VERIFY(bench.film.seeks.size() >= 3);
        QVERIFY(ticks.count() >= 3);
        QVERIFY(std::is_sorted(bench.film.seeks.cbegin(), bench.film.seeks.cend()));
    }

    void backAtNormalSpeedItPlaysOn()
    {
        Bench bench(61);
        bench.source.forward();
        bench.forget();
        bench.source.backward();
        QCOMPARE(bench.film.takeCalls(), QStringList{"play"});
        QVERIFY(bench.refresh.running);
        QVERIFY(bench.timer()->isActive());
    }

    void backAtNormalSpeedAPausedFilmStaysPaused()
    {
        Bench bench(61);
        bench.source.pause();
        bench.source.forward();
        bench.forget();
        bench.source.backward();
        QCOMPARE(bench.film.takeCalls(), nothing);
        QVERIFY(!bench.refresh.running);
    }

    void rewindingPastTheStartParksThere()
    {
        Bench bench(61);
        bench.film.time = 0.1;
        bench.source.backward();
        bench.forget();
        bench.tickAfter100ms();
        QVERIFY(bench.film.seeks.size() == 2 && bench.film.seeks[0] < 0);
        QCOMPARE(bench.film.seeks[1], 0.0);
        QCOMPARE(bench.sink.takeRefreshes(), QStringList{"start"});
        QCOMPARE(bench.source.currentPosition(), 0);
        bench.forget();
        bench.tickAfter100ms();
        QCOMPARE(bench.film.takeCalls(), nothing);
        QCOMPARE(bench.sink.takeRefreshes(), nothing);
    }

    void windingPastTheEndParksAtTheStart()
    {
        Bench bench(61);
        bench.film.time = 60.9;
        bench.source.forward();
        bench.forget();
        bench.tickAfter100ms();
        QVERIFY(bench.film.seeks.size() == 2 && bench.film.seeks[0] >= 61);
        QCOMPARE(bench.film.seeks[1], 0.0);
        QCOMPARE(bench.sink.takeRefreshes(), QStringList{"start"});
        // Parked: back at normal speed it does not play by itself.
        bench.forget();
        bench.source.backward();
        QCOMPARE(bench.film.takeCalls(), nothing);
    }

    void withoutADurationWindingParksOnce()
    {
        Bench bench(0);
        bench.source.forward();
        bench.forget();
        for (int i = 0; i < 5; ++i)
            bench.source.tickEvent();
        QCOMPARE(bench.film.seeks, QVector<double>{0.0});
        QCOMPARE(bench.sink.takeRefreshes(), QStringList{"start"});
        QCOMPARE(bench.source.currentPosition(), 0);
    }

    void windingWhileTheFilmOpensIsNotAtItsEnd()
    {
        Bench bench;
        bench.source.setFile("/films/a.mp4");
        bench.source.forward();
        bench.forget();
        bench.tickAfter100ms();
        QCOMPARE(bench.film.seeks.size(), 1);
        QVERIFY(bench.film.seeks.first() > 0.19);
        QCOMPARE(bench.sink.takeRefreshes(), nothing);
        bench.film.opened(61);
        bench.source.tickEvent();
        QCOMPARE(bench.sink.takeRefreshes(), nothing);
    }

    void theSliderSeeksToWholeSeconds()
    {
        Bench bench(61);
        bench.source.setPosition(50);
        bench.source.setPosition(100);
        bench.source.setPosition(0);
        QCOMPARE(bench.film.seeks, (QVector<double>{30.0, 61.0, 0.0}));
        QVERIFY(bench.film.playing);
    }

    void theSliderDoesNotMoveTheWoundPlace()
    {
        Bench bench(61);
        bench.film.time = 30.5;
        bench.source.forward();
        bench.source.setPosition(0);
        QCOMPARE(bench.source.currentPosition(), 50);
    }

    void theSliderBeforeTheFilmIsOpenWaitsForIt()
    {
        Bench bench;
        bench.source.setFile("/films/a.mp4");
        bench.source.setPosition(20);
        bench.source.setPosition(50);
        QCOMPARE(bench.film.seeks.size(), 0);
        QCOMPARE(bench.source.currentPosition(), 50);
        bench.film.opened(61);
        QCoreApplication::processEvents();
        QCOMPARE(bench.film.seeks, QVector<double>{30.0});
    }

    void stopBeforeTheFilmIsOpenForgetsTheSlider()
    {
        Bench bench;
        bench.source.setFile("/films/a.mp4");
        bench.source.setPosition(50);
        bench.source.stop();
        bench.film.opened(61);
        QCoreApplication::processEvents();
        QCOMPARE(bench.film.seeks, QVector<double>{0.0});
    }

    void volumeIsAFractionOfAHundred()
    {
        Bench bench(61);
        bench.source.setVolume(100);
        QCOMPARE(bench.film.volume, 1.0F);
        bench.source.setVolume(1);
        QCOMPARE(bench.film.volume, 0.01F);
    }

    void theEndStartsTheRefreshOnceAndKeepsTheRest()
    {
        Bench bench(61);
        bench.film.time = 61;
        bench.film.ends();
        QCOMPARE(bench.sink.takeRefreshes(), nothing); // not on the player's thread
        QCoreApplication::processEvents();
        QCOMPARE(bench.sink.takeRefreshes(), QStringList{"start"});
        QCOMPARE(bench.film.takeCalls(), nothing);
        QVERIFY(bench.timer()->isActive());
        QVERIFY(bench.refresh.running);
        QCOMPARE(bench.source.currentPosition(), 100);
    }

    void theLastPicturesShowBeforeTheEndIsTold()
    {
        Bench bench(61);
        bench.film.picturesDue = 2;
        bench.film.ends();
        QCOMPARE(bench.sink.count(), 2);
        QCOMPARE(bench.sink.takeRefreshes(), nothing);
        QTRY_VERIFY(bench.sink.refreshing());
    }

    void seekingBackFromTheEndStopsTheRefresh()
    {
        Bench bench(61);
        bench.film.ends();
        bench.forget();
        bench.source.setPosition(10);
        QCOMPARE(bench.sink.takeRefreshes(), QStringList{"stop"});
        bench.source.setPosition(20);
        QCOMPARE(bench.sink.takeRefreshes(), nothing);
    }

    void anEndThatASeekOvertookIsNone()
    {
        Bench bench(61);
        bench.film.ends();
        bench.source.setPosition(10);
        QCoreApplication::processEvents();
        QCOMPARE(bench.sink.takeRefreshes(), nothing);
    }

    void anEndAfterLeavingTheModeRefreshesNothing()
    {
        Bench bench(61);
        bench.film.ends();
        bench.source.pauseCapture();
        bench.forget();
        QCOMPARE(bench.sink.refreshing(), false);
    }

    void aFilmThatFailsAfterLeavingTheModeRefreshesNothing()
    {
        Bench bench;
        bench.source.setFile("/films/none.mp4");
        bench.source.pauseCapture();
        bench.film.ends();
        bench.forget();
        QVERIFY(!bench.sink.refreshing());
    }

    void releasingDetachesTheFilm()
    {
        Bench bench(61);
        bench.source.releaseObjects();
        QCOMPARE(bench.film.takeCalls(), QStringList{"close"});
        QVERIFY(!bench.timer()->isActive());
        QVERIFY(!bench.refresh.running);
        bench.film.picturesDue = 1;
        const int before = bench.sink.count();
        bench.refresh.tick();
        QCOMPARE(bench.sink.count(), before);
        bench.source.play();
        QCOMPARE(bench.film.takeCalls(), nothing);
        bench.source.setFile("/films/b.mp4");
        QCOMPARE(bench.film.takeCalls(), (QStringList{"open", "play"}));
    }

    void theSpeedStaysFromFilmToFilm()
    {
        Bench bench(36000);
        bench.source.forward();
        bench.source.setFile("/films/b.mp4");
        bench.film.opened(36000);
        QVERIFY(bench.refresh.running);
        bench.source.forward(); // from twofold to fourfold
        bench.forget();
        bench.tickAfter100ms();
        QVERIFY(bench.film.seeks.value(0) >= 0.399);
    }

    void destroyingItCompletesSeeksWithoutPictures()
    {
        RecordingSink sink;
        FakeFilm film;
        FakeRefresh refresh;
        {
            FilmSource source(&sink, nullptr, std::make_unique<FakeFilmPlayer>(film),
                              [&refresh](std::function<void()> tick) {
                                  return std::make_unique<FakeDisplayLink>(refresh,
                                                                           std::move(tick));
                              });
            source.setFile("/films/a.mp4");
            film.opened(61);
            film.holdSeeks = true;
            film.picturesDue = 1;
            source.setPosition(10);
        }
        QVERIFY(film.gone);
        QVERIFY(film.waiting.empty());
        QCOMPARE(sink.count(), 0);
    }
};

REGISTER_CORE_TEST(FilmSourceTest)
#include "tst_film_source.moc"
