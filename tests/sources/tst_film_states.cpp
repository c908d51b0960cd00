#include "sources/FilmSource.h"
#include "tests/TestProgram.h"
#include "tests/fakes/FakeFilmPlayer.h"
#include "tests/fakes/RecordingSink.h"

#include <QtTest>

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTimer>

#include <cmath>

namespace
{

/// The states of the film source told a second time, as plainly as possible: what each button does
/// to the flags, the player, the display link, the timer and the canvas's own refresh.
struct Model {
    bool loaded = false;
    bool playing = false;
    bool stepping = false;
    bool opening = false;
    bool playerPlays = false;
    bool linkRuns = false;
    bool timerRuns = false;
    bool refreshing = false;
    bool refreshingAtEnd = false;
    int index = 1;
    double duration = 0;
    double place = 0;
    int ticks = 0;

    void setFile()
    {
        loaded = playing = opening = playerPlays = linkRuns = timerRuns = true;
        stepping = refreshing = refreshingAtEnd = false;
        duration = 0;
    }

    void play()
    {
        if (!loaded)
            return;
        index = 1;
        playing = playerPlays = linkRuns = timerRuns = true;
        stepping = refreshing = refreshingAtEnd = false;
    }

    void pause()
    {
        if (!loaded)
            return;
        playing = stepping = playerPlays = linkRuns = timerRuns = false;
        refreshing = true;
    }

    void stop()
    {
        if (!loaded)
            return;
        stepping = refreshing = true;
        playerPlays = linkRuns = timerRuns = false;
        place = 0;
        ++ticks;
    }

    void turn(int by, double playerTime)
    {
        if (!loaded)
            return;
        index = std::min(7, std::max(0, index + by));
        if (index != 1) {
            linkRuns = playerPlays = false;
            stepping = true;
            place = std::trunc(playerTime * 1000) / 1000;
        } else if (playing) {
            linkRuns = playerPlays = true;
            stepping = false;
            leaveEnd();
        }
    }

    void leaveEnd()
    {
        if (refreshingAtEnd)
            refreshing = false;
        refreshingAtEnd = false;
    }

    /// A film that is not playing has no end to tell of.
    void end()
    {
        if (playing)
            refreshing = refreshingAtEnd = true;
    }

    void setPosition()
    {
        if (loaded && !opening && playing && !stepping)
            leaveEnd();
    }

    /// `wound` is where the source sought, if it did.
    void tick(const QVector<double> &wound)
    {
        ++ticks;
        if (!stepping)
            return;
        if (!wound.isEmpty())
            place = wound.first();
        bool beyond = place < 0 || (!opening && place >= duration);
        // The place is cut to milliseconds after the source has looked which side it is on.
        if (!wound.isEmpty() && std::abs(place) < 0.001)
            beyond = wound.size() == 2;
        if (beyond && (playing || place != 0)) {
            playing = false;
            place = 0;
            refreshing = true;
        }
    }
};

} // namespace

/// Thousands of buttons in any order against the model.
class FilmStatesTest : public QObject
{
    Q_OBJECT

private slots:
    void followTheModelInAnyOrder_data()
    {
        QTest::addColumn<quint32>("seed");
        for (const quint32 seed : {1U, 2U, 3U, 5U, 8U})
            QTest::addRow("seed %u", seed) << seed;
    }

    void followTheModelInAnyOrder()
    {
        QFETCH(quint32, seed);
        QRandomGenerator random(seed);
        RecordingSink sink;
        FakeFilm film;
        FakeRefresh refresh;
        FilmSource source(&sink, nullptr, std::make_unique<FakeFilmPlayer>(film),
                          [&refresh](std::function<void()> tick) {
                              return std::make_unique<FakeDisplayLink>(refresh, std::move(tick));
                          });
        QTimer *timer = source.findChild<QTimer *>();
        QSignalSpy ticks(&source, &FilmSource::tick);
        Model model;
        QStringList story;

        for (int i = 0; i < 4000; ++i) {
            // The tick timer must not fire by itself: no event loop runs, only posted events.
            const int what = random.bounded(100);
            film.seeks.clear();
            if (what < 3) {
                story << "file";
                source.setFile("/films/a.mp4");
                model.setFile();
            } else if (what < 8) {
                story << "opened";
                if (!model.opening)
                    continue;
                const double length = random.bounded(5) ? random.bounded(1, 4000) / 10.0 : 0.0;
                film.opened(length);
                model.opening = false;
                model.duration = length;
                QCoreApplication::sendPostedEvents();
            } else if (what < 10) {
                story << "cannot open";
                if (!model.opening)
                    continue;
                film.ends();
                QCoreApplication::sendPostedEvents();
                model.opening = false;
                model.end();
            } else if (what < 12) {
                story << "fails";
                if (!model.opening)
                    continue;
                film.fails(FilmFault::NoFilm);
                QCoreApplication::sendPostedEvents();
                model.opening = false;
                if (model.playing)
                    model.pause();
            } else if (what < 18) {
                story << "play";
                source.play();
                model.play();
            } else if (what < 24) {
                story << "pause";
                source.pause();
                model.pause();
            } else if (what < 30) {
                story << "stop";
                source.stop();
                model.stop();
                QVERIFY(!model.loaded || film.seeks == QVector<double>{0.0});
            } else if (what < 40) {
                story << "forward";
                const double time = film.time;
                source.forward();
                model.turn(1, time);
            } else if (what < 50) {
                story << "backward";
                const double time = film.time;
                source.backward();
                model.turn(-1, time);
            } else if (what < 60) {
                const int percent = random.bounded(101);
                story << QString("slider %1").arg(percent);
                source.setPosition(percent);
                model.setPosition();
                const QVector<double> expected{std::trunc(percent / 100.0 * model.duration)};
                QCOMPARE(film.seeks, model.loaded && !model.opening ? expected : QVector<double>());
            } else if (what < 64) {
                story << "leave";
                source.pauseCapture();
                model.pause();
                model.refreshing = false;
            } else if (what < 68) {
                story << "enter";
                source.resumeCapture();
                model.refreshing = true;
            } else if (what < 69) {
                story << "release";
                source.releaseObjects();
                if (model.loaded) {
                    model.loaded = model.playing = model.stepping = model.timerRuns = false;
                    model.playerPlays = model.linkRuns = false;
                    model.refreshingAtEnd = false;
                }
            } else if (what < 75) {
                story << "time passes";
                if (!film.playing || film.length <= 0)
                    continue;
                film.time = std::min(film.length, film.time + random.bounded(1000) / 10.0);
                if (film.time < film.length)
                    continue;
                story << "end";
                film.ends();
                QCoreApplication::sendPostedEvents();
                model.end();
            } else {
                story << "tick";
                if (random.bounded(20) == 0)
                    QThread::msleep(101); // the step clock is real
                const bool winds = model.stepping && model.index != 1 && model.playing;
                const double before = model.place;
                const bool wasBeyond = before < 0 || (!model.opening && before >= model.duration);
                source.tickEvent();
                QVERIFY(winds || film.seeks.size() <= 1);
                const bool parkedAtOnce = wasBeyond && film.seeks == QVector<double>{0.0};
                const bool wound = winds && !film.seeks.isEmpty() && !parkedAtOnce;
                if (wound) {
                    const int speed = FilmStepper::speeds[std::size_t(model.index)];
                    QVERIFY((film.seeks.first() - before) / speed > 0.0985);
                }
                model.tick(wound ? film.seeks : QVector<double>());
            }
            const QByteArray told = story.mid(story.size() - 30).join(", ").toUtf8();
            QVERIFY2(film.playing == model.playerPlays, told);
            QVERIFY2(refresh.running == model.linkRuns, told);
            QVERIFY2(timer->isActive() == model.timerRuns, told);
            QVERIFY2(sink.refreshing() == model.refreshing, told);
            QVERIFY2(ticks.count() == model.ticks, told);
            const int position = source.currentPosition();
            QVERIFY2(position >= 0 && position <= 100, told);
            if (model.loaded && model.stepping && model.duration > 0) {
                const double exact = model.place / model.duration * 100;
                QVERIFY2(std::abs(position - std::min(100.0, std::max(0.0, exact))) <= 1, told);
            }
        }
    }
};

REGISTER_CORE_TEST(FilmStatesTest)
#include "tst_film_states.moc"
