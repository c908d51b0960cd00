#include "sources/FilmSource.h"
#include "tests/OwnProcess.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/fakes/RecordingSink.h"
#include "tests/media/TestFilm.h"

#include <QtTest>

#include <QRandomGenerator>
#include <QTemporaryDir>

namespace
{

/// A film on show, paused with its first picture.
struct Show {
    explicit Show(const QString &path)
    {
        sink.readNumber = TestFilm::numberIn;
        source = std::make_unique<FilmSource>(&sink, nullptr);
        source->setFile(path);
        source->pause();
    }

    bool ready() const { return sink.count() > 0; }

    RecordingSink sink;
    std::unique_ptr<FilmSource> source;
};

} // namespace

/// Seeks, steps, ends, pause and stop over the real player.
class FilmSeekingTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;
    QString m_film;

    QString path(const QString &name) const { return m_folder.filePath(name); }

private slots:
    void initTestCase()
    {
        m_film = path("film.mp4");
        TestFilm made;
        made.seconds = 20;
        QVERIFY(made.write(m_film));
    }

    void aSeekShowsExactlyItsPicture_data()
    {
        QTest::addColumn<TestFilm>("made");
        QTest::addColumn<QString>("name");
        TestFilm film;
        film.seconds = 10;
        film.video = QStringList{"-c:v", "libx264", "-preset", "fast", "-bf", "3", "-g", "60"};
        QTest::newRow("H.264 with an edit list") << film << "a.mp4";
        film.rate = 25;
        film.video = QStringList{"-c:v", "mjpeg", "-q:v", "3"};
        film.sound = QStringList{"-c:a", "pcm_s16le"};
        QTest::newRow("Motion-JPEG avi") << film << "b.avi";
        film.video = QStringList{"-c:v", "mpeg4", "-q:v", "3", "-g", "50"};
        film.sound.clear();
        QTest::newRow("MPEG-4 avi") << film << "c.avi";
        film.video = QStringList{"-c:v",      "libx265",      "-preset",
                                 "ultrafast", "-x265-params", "log-level=error:keyint=50"};
        QTest::newRow("HEVC mov") << film << "d.mov";
        TestFilm cut;
        cut.seconds = 10;
        cut.video = QStringList{"-c:v", "mpeg4", "-q:v", "3", "-g", "90"};
        cut.sound = QStringList{"-c:a", "pcm_s16le"};
        QTest::newRow("avi without an index") << cut << "cut.avi";
        TestFilm fragments;
        fragments.seconds = 10;
        fragments.sound.clear(); // it would move the pictures by a fraction
        fragments.output =
            QStringList{"-movflags", "frag_keyframe+empty_moov+default_base_moof+skip_trailer"};
        QTest::newRow("mp4 in fragments") << fragments << "fragments.mp4";
    }

    void aSeekShowsExactlyItsPicture()
    {
        QFETCH(TestFilm, made);
        QFETCH(QString, name);
        QVERIFY(made.write(path(name)));
        if (name == "cut.avi")
            QVERIFY(TestFilm::removeIndex(path(name)));
        Show show(path(name));
        QTRY_VERIFY_WITH_TIMEOUT(show.ready(), TIMEOUT_MS);
        for (const int percent : {70, 10, 50, 90, 0, 30}) {
            show.source->setPosition(percent);
            const int expected = int(percent * made.rate) / 10;
            QTRY_COMPARE_WITH_TIMEOUT(show.sink.lastNumber(), expected, TIMEOUT_MS);
            QCOMPARE(show.source->currentPosition(), percent);
        }
    }

    void theLastPictureShowsAtTheRightEndOfTheSlider()
    {
        Show show(m_film);
        QTRY_VERIFY_WITH_TIMEOUT(show.ready(), TIMEOUT_MS);
        show.source->setPosition(100);
        QTRY_COMPARE_WITH_TIMEOUT(show.sink.lastNumber(), 599, TIMEOUT_MS);
        QCOMPARE(show.source->currentPosition(), 100);
        show.source->setPosition(0);
        QTRY_COMPARE_WITH_TIMEOUT(show.sink.lastNumber(), 0, TIMEOUT_MS);
    }

    void beyondTheLastPictureThatOneShows()
    {
        TestFilm made;
        made.seconds = 10;
        made.video = QStringList{"-c:v", "libx264", "-preset", "ultrafast", "-g", "300"};
        made.filter = "trim=duration=6"; // the sound goes on for another four seconds
        QVERIFY(made.write(path("shorter.mp4")));
        Show show(path("shorter.mp4"));
        QTRY_VERIFY_WITH_TIMEOUT(show.ready(), TIMEOUT_MS);
        for (const int percent : {90, 20, 100, 80}) {
            show.source->setPosition(percent);
            QTRY_COMPARE_WITH_TIMEOUT(show.sink.lastNumber(), percent == 20 ? 60 : 179, TIMEOUT_MS);
            QCOMPARE(show.source->currentPosition(), percent);
            show.sink.forget();
        }
        // It plays on from the place, not from that picture.
        show.source->play();
        QTRY_VERIFY_WITH_TIMEOUT(show.source->currentPosition() > 82, TIMEOUT_MS);
        QCOMPARE(show.sink.count(), 0);
    }

    void beforeTheFirstPictureThatOneShows()
    {
        TestFilm made;
        made.seconds = 8;
        made.filter = "setpts=PTS+3/TB";
        QVERIFY(made.write(path("late.mp4")));
        Show show(path("late.mp4"));
        QTRY_COMPARE_WITH_TIMEOUT(show.sink.lastNumber(), 0, TIMEOUT_MS);
        show.source->setPosition(80);
        QTRY_VERIFY_WITH_TIMEOUT(show.sink.lastNumber() > 0, TIMEOUT_MS);
        show.source->setPosition(10);
        QTRY_COMPARE_WITH_TIMEOUT(show.sink.lastNumber(), 0, TIMEOUT_MS);
        QVERIFY(show.source->currentPosition() <= 10);
    }

    void aTransportStreamBeginsAtItsFirstPicture()
    {
        TestFilm made;
        made.seconds = 10;
        made.video = QStringList{"-c:v", "libx264", "-preset", "ultrafast", "-g", "60"};
        QVERIFY(made.write(path("stream.ts")));
        Show show(path("stream.ts"));
        QTRY_COMPARE_WITH_TIMEOUT(show.sink.lastNumber(), 0, TIMEOUT_MS);
        for (const int percent : {70, 10, 50, 90, 0, 30}) {
            show.source->setPosition(percent);
            QTRY_COMPARE_WITH_TIMEOUT(show.sink.lastNumber(), percent * 3, TIMEOUT_MS);
        }
    }

    void quickSeeksEndInTheLast()
    {
        Show show(m_film);
        QTRY_VERIFY_WITH_TIMEOUT(show.ready(), TIMEOUT_MS);
        for (int i = 0; i < 500; ++i)
            show.source->setPosition(i * 37 % 101);
        show.source->setPosition(35);
        QTRY_COMPARE_WITH_TIMEOUT(show.sink.lastNumber(), 7 * 30, TIMEOUT_MS);
        QVERIFY(show.sink.count() < 400);
    }

    void aSeekWhilePlayingPlaysOnFromThere()
    {
        Show show(m_film);
        show.source->play();
        show.source->setPosition(50);
        QTRY_VERIFY_WITH_TIMEOUT(show.sink.lastNumber() > 305, TIMEOUT_MS);
        const QVector<int> numbers = show.sink.numbers();
        QVERIFY(numbers.contains(300));
        QVERIFY(show.source->currentPosition() >= 50);
    }

    void windingShowsItsStepsAndParksAtTheStart()
    {
        Show show(m_film);
        show.source->play();
        QTRY_VERIFY_WITH_TIMEOUT(show.ready(), TIMEOUT_MS);
        for (int i = 0; i < 4; ++i)
            show.source->forward();
        QTRY_VERIFY_WITH_TIMEOUT(show.sink.lastNumber() > 100, TIMEOUT_MS);
        QVERIFY(show.source->currentPosition() > 16);
        QVERIFY(!show.sink.refreshing());
        QTRY_VERIFY_WITH_TIMEOUT(show.sink.refreshing(), TIMEOUT_MS);
        QTRY_COMPARE_WITH_TIMEOUT(show.sink.lastNumber(), 0, TIMEOUT_MS);
        QCOMPARE(show.source->currentPosition(), 0);
    }

    void rewindingGoesBackToTheStart()
    {
        Show show(m_film);
        QTRY_VERIFY_WITH_TIMEOUT(show.ready(), TIMEOUT_MS);
        show.source->setPosition(10);
        QTRY_COMPARE_WITH_TIMEOUT(show.sink.lastNumber(), 60, TIMEOUT_MS);
        show.source->play();
        show.sink.forget();
        show.source->backward();
        QTRY_VERIFY_WITH_TIMEOUT(show.sink.refreshing(), TIMEOUT_MS);
        QTRY_COMPARE_WITH_TIMEOUT(show.sink.lastNumber(), 0, TIMEOUT_MS);
        QCOMPARE(show.source->currentPosition(), 0);
    }

    void playAfterTheEndBeginsAgain()
    {
        Show show(m_film);
        QTRY_VERIFY_WITH_TIMEOUT(show.ready(), TIMEOUT_MS);
        show.source->play();
        show.source->setPosition(96);
        show.sink.takeRefreshes();
        QTRY_VERIFY_WITH_TIMEOUT(show.sink.refreshing(), TIMEOUT_MS);
        QCOMPARE(show.source->currentPosition(), 100);
        QCOMPARE(show.sink.lastNumber(), 599);
        show.sink.forget();
        show.source->play();
        QVERIFY(!show.sink.refreshing());
        QTRY_VERIFY_WITH_TIMEOUT(show.sink.count() > 5, TIMEOUT_MS);
        QVERIFY(show.sink.lastNumber() < 500);
    }

    void seekingBackFromTheEndPlaysOn()
    {
        Show show(m_film);
        QTRY_VERIFY_WITH_TIMEOUT(show.ready(), TIMEOUT_MS);
        show.source->play();
        show.source->setPosition(96);
        show.sink.takeRefreshes();
        QTRY_VERIFY_WITH_TIMEOUT(show.sink.refreshing(), TIMEOUT_MS);
        show.source->setPosition(50);
        QVERIFY(!show.sink.refreshing());
        QTRY_VERIFY_WITH_TIMEOUT(show.sink.lastNumber() > 305 && show.sink.lastNumber() < 400,
                                 TIMEOUT_MS);
    }

    void pausedThePlayerUsesNoProcessorTime()
    {
        Show show(m_film);
        show.source->play();
        QTRY_VERIFY_WITH_TIMEOUT(show.sink.count() > 5, TIMEOUT_MS);
        show.source->pause();
        // No event tells when every thread of the pipeline has come to rest.
        QTest::qWait(500);
        const int before = show.sink.count();
        const double used = OwnProcess::processorSeconds();
        QTest::qWait(1000);
        QVERIFY(OwnProcess::processorSeconds() - used < 0.05);
        QCOMPARE(show.sink.count(), before);
    }

    void destroyingItInAnyStateIsSafe()
    {
        RecordingSink sink;
        for (int i = 0; i < 24; ++i) {
            FilmSource source(&sink, nullptr);
            source.setFile(m_film);
            if (i % 2)
                QTRY_VERIFY_WITH_TIMEOUT(sink.count() > 0, TIMEOUT_MS);
            if (i % 3 == 1)
                source.setPosition(50);
            if (i % 4 == 2)
                source.stop();
            if (i % 6 == 5)
                source.releaseObjects();
            sink.forget();
        }
    }

    void buttonsInAnyOrderNeverHang()
    {
        Show show(m_film);
        const quint32 seed = 20261121;
        QRandomGenerator random(seed);
        for (int i = 0; i < 2000; ++i) {
            switch (random.bounded(10)) {
            case 0:
                show.source->play();
                break;
            case 1:
                show.source->pause();
                break;
            case 2:
                show.source->stop();
                break;
            case 3:
                show.source->forward();
                break;
            case 4:
                show.source->backward();
                break;
            case 5:
                show.source->setVolume(random.bounded(101));
                break;
            case 6:
                QTest::qWait(random.bounded(10));
                break;
            case 7:
                if (random.bounded(20) == 0)
                    show.source->setFile(random.bounded(3) ? m_film : path("none.mp4"));
                break;
            default:
                show.source->setPosition(random.bounded(101));
            }
            const int position = show.source->currentPosition();
            QVERIFY(position >= 0 && position <= 100);
        }
        show.source->setFile(m_film);
        show.source->pause();
        show.sink.forget();
        QTRY_VERIFY_WITH_TIMEOUT(show.ready(), TIMEOUT_MS);
        show.source->setPosition(50);
        QTRY_COMPARE_WITH_TIMEOUT(show.sink.lastNumber(), 300, TIMEOUT_MS);
        QVERIFY(!show.sink.refreshedElsewhere());
    }
};

REGISTER_CORE_TEST(FilmSeekingTest)
#include "tst_film_seeking.moc"
