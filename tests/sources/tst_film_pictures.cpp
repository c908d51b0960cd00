#include "tests/TestProgram.h"
#include "tests/sources/FilmRig.h"

#include <QtTest>

/// When a film's pictures reach the canvas, and what its end does.
class FilmPicturesTest : public QObject
{
    Q_OBJECT

private slots:
    void picturesComeAtTheRefreshOnlyWhileThereIsOne()
    {
        FilmRig rig(61);
        const int before = rig.sink.count();
        rig.refresh.tick();
        QCOMPARE(rig.sink.count(), before);
        rig.film.picturesDue = 1;
        rig.refresh.tick();
        rig.refresh.tick();
        QCOMPARE(rig.sink.count(), before + 1);
        QCOMPARE(rig.sink.last().format(), QImage::Format_RGB888);
    }

    void theFirstPictureShowsEvenIfPausedMeanwhile()
    {
        FilmRig rig;
        rig.source.setFile("/films/a.mp4");
        rig.source.pause();
        rig.film.picturesDue = 1;
        rig.film.opened(61);
        QCOMPARE(rig.sink.count(), 1);
    }

    void aPictureOfTheFilmBeforeIsNotShown()
    {
        FilmRig rig(61);
        rig.film.holdSeeks = true;
        rig.source.setPosition(50);
        rig.source.setFile("/films/b.mp4");
        const int before = rig.sink.count();
        rig.film.complete();
        QCOMPARE(rig.sink.count(), before);
    }

    void theLastPicturesShowBeforeTheEndIsTold()
    {
        FilmRig rig(61);
        rig.film.picturesDue = 2;
        rig.film.ends();
        QCOMPARE(rig.sink.count(), 2);
        QCOMPARE(rig.sink.takeRefreshes(), NOTHING);
        QTRY_VERIFY(rig.sink.refreshing());
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

    void theEndStartsTheRefreshOnceAndKeepsTheRest()
    {
        FilmRig rig(61);
        rig.film.time = 61;
        rig.film.ends();
        QCOMPARE(rig.sink.takeRefreshes(), NOTHING); // not on the player's thread
        QCoreApplication::processEvents();
        QCOMPARE(rig.sink.takeRefreshes(), QStringList{"start"});
        QCOMPARE(rig.film.takeCalls(), NOTHING);
        QVERIFY(rig.timer()->isActive());
        QVERIFY(rig.refresh.running);
        QCOMPARE(rig.source.currentPosition(), 100);
    }

    void seekingBackFromTheEndStopsTheRefresh()
    {
        FilmRig rig(61);
        rig.film.ends();
        rig.forget();
        rig.source.setPosition(10);
        QCOMPARE(rig.sink.takeRefreshes(), QStringList{"stop"});
        rig.source.setPosition(20);
        QCOMPARE(rig.sink.takeRefreshes(), NOTHING);
    }

    void anEndThatASeekOvertookIsNone()
    {
        FilmRig rig(61);
        rig.film.ends();
        rig.source.setPosition(10);
        QCoreApplication::processEvents();
        QCOMPARE(rig.sink.takeRefreshes(), NOTHING);
    }

    void anEndAfterLeavingTheModeRefreshesNothing()
    {
        FilmRig rig(61);
        rig.film.ends();
        rig.source.pauseCapture();
        rig.forget();
        QCOMPARE(rig.sink.refreshing(), false);
    }

    void aFilmThatFailsAfterLeavingTheModeRefreshesNothing()
    {
        FilmRig rig;
        rig.source.setFile("/films/none.mp4");
        rig.source.pauseCapture();
        rig.film.ends();
        rig.forget();
        QVERIFY(!rig.sink.refreshing());
    }
};

REGISTER_CORE_TEST(FilmPicturesTest)
#include "tst_film_pictures.moc"
