#include "tests/TestProgram.h"
#include "tests/sources/FilmRig.h"

#include <QtTest>

#include <QSignalSpy>

class FilmSourceTest : public QObject
{
    Q_OBJECT

private slots:
    void operationsBeforeAFileDoNothing()
    {
        FilmRig rig;
        QSignalSpy ticks(&rig.source, &FilmSource::tick);
        rig.source.play();
        rig.source.pause();
        rig.source.stop();
        rig.source.forward();
        rig.source.backward();
        rig.source.speedChanged();
        rig.source.setPosition(50);
        rig.source.setVolume(10);
        rig.source.releaseObjects();
        QCOMPARE(rig.film.takeCalls(), NOTHING);
        QCOMPARE(rig.sink.takeRefreshes(), NOTHING);
        QCOMPARE(rig.film.volume, 1.0F);
        QCOMPARE(rig.source.currentPosition(), 0);
        QVERIFY(!rig.refresh.running);
        QVERIFY(!rig.timer()->isActive());
        QCOMPARE(ticks.count(), 0);
    }

    void leavingAndEnteringTheModeSwitchTheRefreshWithoutAFile()
    {
        FilmRig rig;
        rig.source.resumeCapture();
        QCOMPARE(rig.sink.takeRefreshes(), QStringList{"start"});
        rig.source.pauseCapture();
        QCOMPARE(rig.sink.takeRefreshes(), QStringList{"stop"});
    }

    void leavingTheModePausesAndEndsWithoutRefresh()
    {
        FilmRig rig(61);
        rig.source.pauseCapture();
        QCOMPARE(rig.film.takeCalls(), QStringList{"pause"});
        QCOMPARE(rig.sink.takeRefreshes(), (QStringList{"start", "stop"}));
        QVERIFY(!rig.refresh.running);
        QVERIFY(!rig.timer()->isActive());
        rig.source.resumeCapture();
        QCOMPARE(rig.film.takeCalls(), QStringList{"prepare"});
        QCOMPARE(rig.sink.takeRefreshes(), QStringList{"start"});
    }

    void settingAFilePlaysIt()
    {
        FilmRig rig;
        QVERIFY(rig.source.setFile("/films/a.mp4"));
        QCOMPARE(rig.film.path, QString("/films/a.mp4"));
        QCOMPARE(rig.film.takeCalls(), (QStringList{"open", "play"}));
        QCOMPARE(rig.sink.takeRefreshes(), QStringList{"stop"});
        QVERIFY(rig.refresh.running);
        QVERIFY(rig.timer()->isActive());
        QCOMPARE(rig.timer()->interval(), 100);
    }

    void aFileThatCannotBeOpenedCountsAsLoaded()
    {
        FilmRig rig;
        QVERIFY(rig.source.setFile("/films/none.mp4"));
        rig.film.ends();
        rig.forget();
        QCOMPARE(rig.source.currentPosition(), 0);
        QVERIFY(rig.sink.refreshing());
        rig.source.setVolume(50);
        QCOMPARE(rig.film.volume, 0.5F);
        rig.source.setFile("/films/a.mp4");
        QCOMPARE(rig.film.path, QString("/films/a.mp4"));
        QVERIFY(!rig.sink.refreshing());
    }

    void aFilmThatCannotBeShownStandsAndSaysWhy()
    {
        FilmRig rig;
        QVector<FilmFault> faults;
        connect(&rig.source, &FilmSource::faulty, this,
                [&faults](FilmFault fault) { faults.append(fault); });
        QVector<int> positions;
        connect(&rig.source, &FilmSource::faulty, this,
                [&] { positions.append(rig.source.currentPosition()); });
        QSignalSpy emptied(&rig.source, &FilmSource::emptied);
        rig.source.setFile("/films/none.mp4");
        rig.source.setPosition(40);
        rig.film.fails(FilmFault::NoFilm);
        QCoreApplication::processEvents();
        QCOMPARE(faults, QVector<FilmFault>{FilmFault::NoFilm});
        QCOMPARE(positions, QVector<int>{0});
        QCOMPARE(emptied.count(), 1);
        QCOMPARE(rig.sink.last().pixel(0, 0), qRgb(0, 0, 0));
        QVERIFY(!rig.source.moving());
        QVERIFY(!rig.refresh.running);
        QVERIFY(!rig.timer()->isActive());
        QVERIFY(!rig.film.playing);
        QVERIFY(rig.sink.refreshing());
        // It still counts as loaded.
        rig.source.play();
        QVERIFY(rig.source.moving());
        QVERIFY(rig.film.playing);
    }

    void aFilmWithoutSoundOrPicturePlaysOn()
    {
        for (const FilmFault fault : {FilmFault::NoPicture, FilmFault::SoundNotAnswering}) {
            FilmRig rig;
            int told = 0;
            connect(&rig.source, &FilmSource::faulty, this, [&told] { ++told; });
            QSignalSpy emptied(&rig.source, &FilmSource::emptied);
            rig.source.setFile("/films/a.mp4");
            rig.film.opened(61);
            rig.film.events.faulty(rig.film.number, fault);
            QCoreApplication::processEvents();
            QCOMPARE(told, 1);
            QCOMPARE(emptied.count(), 0);
            QVERIFY(rig.source.moving());
            // The picture of the film before goes where no other comes.
            QCOMPARE(rig.sink.count(), fault == FilmFault::NoPicture ? 1 : 0);
        }
    }

    void aFaultOfTheFilmBeforeIsNotTold()
    {
        FilmRig rig;
        int told = 0;
        connect(&rig.source, &FilmSource::faulty, this, [&told] { ++told; });
        rig.source.setFile("/films/none.mp4");
        rig.film.fails(FilmFault::NoFilm);
        rig.source.setFile("/films/a.mp4");
        QCoreApplication::processEvents();
        QCOMPARE(told, 0);
        QVERIFY(rig.source.moving());
    }

    void aFilmMovesWhilePicturesComeAndNotOtherwise()
    {
        FilmRig rig;
        QVERIFY(!rig.source.moving());
        rig.source.setFile("/films/a.mp4");
        QVERIFY(rig.source.moving());
        rig.film.opened(61);
        rig.source.pause();
        QVERIFY(!rig.source.moving());
        rig.source.play();
        QVERIFY(rig.source.moving());
        rig.source.forward();
        QVERIFY(rig.source.moving());
        rig.source.stop();
        QVERIFY(!rig.source.moving());
        // The player runs again, without the ticks.
        rig.source.backward();
        QVERIFY(rig.film.playing);
        QVERIFY(rig.source.moving());
        rig.film.time = 61;
        QVERIFY(!rig.source.moving());
        rig.film.time = 60;
        QVERIFY(rig.source.moving());
        rig.film.ends();
        QCoreApplication::processEvents();
        QVERIFY(!rig.source.moving());
        rig.source.setPosition(10);
        QVERIFY(rig.source.moving());
        rig.source.releaseObjects();
        QVERIFY(!rig.source.moving());
    }

    void anEventOfTheFilmBeforeIsIgnored()
    {
        FilmRig rig(61);
        const quint64 before = rig.film.number;
        rig.source.setFile("/films/b.mp4");
        rig.film.opened(10);
        rig.forget();
        rig.film.events.durationKnown(before, 1000);
        rig.film.events.ended(before);
        rig.film.time = 5;
        QCoreApplication::processEvents();
        QCOMPARE(rig.source.currentPosition(), 50);
        QCOMPARE(rig.sink.takeRefreshes(), NOTHING);
    }

    void playRestoresEverything()
    {
        FilmRig rig(61);
        rig.source.stop();
        rig.source.forward();
        rig.forget();
        rig.source.play();
        QCOMPARE(rig.film.takeCalls(), QStringList{"play"});
        QCOMPARE(rig.sink.takeRefreshes(), QStringList{"stop"});
        QVERIFY(rig.refresh.running);
        QVERIFY(rig.timer()->isActive());
        rig.film.time = 30.5;
        QCOMPARE(rig.source.currentPosition(), 50);
        QElapsedTimer clock;
        clock.start();
        rig.source.forward();
        rig.forget();
        rig.tickAfter100ms();
        QCOMPARE(rig.film.seeks.size(), 1);
        // Twofold again, not fourfold.
        QVERIFY(rig.film.seeks.first() - 30.5 <= 2 * double(clock.elapsed() + 1) / 1000);
    }

    void pauseStopsPlayerLinkAndTimer()
    {
        FilmRig rig(61);
        rig.source.pause();
        QCOMPARE(rig.film.takeCalls(), QStringList{"pause"});
        QCOMPARE(rig.sink.takeRefreshes(), QStringList{"start"});
        QVERIFY(!rig.refresh.running);
        QVERIFY(!rig.timer()->isActive());
    }

    void stopShowsTheStartAndTicksOnce()
    {
        FilmRig rig(61);
        rig.film.time = 30;
        QSignalSpy ticks(&rig.source, &FilmSource::tick);
        const int before = rig.sink.count();
        rig.source.stop();
        QCOMPARE(rig.film.takeCalls(), (QStringList{"pause", "seek"}));
        QCOMPARE(rig.film.seeks, QVector<double>{0.0});
        QCOMPARE(rig.sink.count(), before + 1);
        QCOMPARE(rig.sink.takeRefreshes(), QStringList{"start"});
        QCOMPARE(rig.source.currentPosition(), 0);
        QCOMPARE(ticks.count(), 1);
        QVERIFY(!rig.refresh.running);
        QVERIFY(!rig.timer()->isActive());
    }

    void theSliderSeeksToWholeSeconds()
    {
        FilmRig rig(61);
        rig.source.setPosition(50);
        rig.source.setPosition(100);
        rig.source.setPosition(0);
        QCOMPARE(rig.film.seeks, (QVector<double>{30.0, 61.0, 0.0}));
        QVERIFY(rig.film.playing);
    }

    void theSliderBeforeTheFilmIsOpenWaitsForIt()
    {
        FilmRig rig;
        rig.source.setFile("/films/a.mp4");
        rig.source.setPosition(20);
        rig.source.setPosition(50);
        QCOMPARE(rig.film.seeks.size(), 0);
        QCOMPARE(rig.source.currentPosition(), 50);
        rig.film.opened(61);
        QCoreApplication::processEvents();
        QCOMPARE(rig.film.seeks, QVector<double>{30.0});
    }

    void stopBeforeTheFilmIsOpenForgetsTheSlider()
    {
        FilmRig rig;
        rig.source.setFile("/films/a.mp4");
        rig.source.setPosition(50);
        rig.source.stop();
        rig.film.opened(61);
        QCoreApplication::processEvents();
        QCOMPARE(rig.film.seeks, QVector<double>{0.0});
    }

    void volumeIsAFractionOfAHundred()
    {
        FilmRig rig(61);
        rig.source.setVolume(100);
        QCOMPARE(rig.film.volume, 1.0F);
        rig.source.setVolume(1);
        QCOMPARE(rig.film.volume, 0.01F);
    }

    void releasingDetachesTheFilm()
    {
        FilmRig rig(61);
        rig.source.releaseObjects();
        QCOMPARE(rig.film.takeCalls(), QStringList{"close"});
        QVERIFY(!rig.timer()->isActive());
        QVERIFY(!rig.refresh.running);
        rig.film.picturesDue = 1;
        const int before = rig.sink.count();
        rig.refresh.tick();
        QCOMPARE(rig.sink.count(), before);
        rig.source.play();
        QCOMPARE(rig.film.takeCalls(), NOTHING);
        rig.source.setFile("/films/b.mp4");
        QCOMPARE(rig.film.takeCalls(), (QStringList{"open", "play"}));
    }
};

REGISTER_CORE_TEST(FilmSourceTest)
#include "tst_film_source.moc"
