#include "sources/FilmSource.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/fakes/RecordingSink.h"
#include "tests/media/TestFilm.h"
#include "tests/media/WhenFree.h"

#include <QtTest>

#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <map>
#include <memory>
#include <vector>

namespace
{

TestFilm film(QStringList video, QStringList sound, double rate = 30, QSize size = {320, 240})
{
    TestFilm made;
    made.video = std::move(video);
    made.sound = std::move(sound);
    made.rate = rate;
    made.size = size;
    made.seconds = 1.5;
    return made;
}

bool strictlyRising(const QVector<int> &numbers)
{
    for (int i = 1; i < numbers.size(); ++i) {
        if (numbers[i] <= numbers[i - 1])
            return false;
    }
    return true;
}

} // namespace

/// The film source over the real player, on real files.
class FilmPlaybackTest : public QObject
{
    Q_OBJECT

    /// One film on show.
    struct Show {
        explicit Show(const QString &path)
        {
            sink.readNumber = TestFilm::numberIn;
            shown = source.setFile(path);
        }

        RecordingSink sink;
        FilmSource source{&sink, nullptr};
        bool shown = false;
    };

    QTemporaryDir m_folder;
    /// By their file names. All play at the same time, as each spends its time waiting.
    std::map<QString, std::unique_ptr<Show>> m_shows;

    void makeAllAndPlay(const std::map<QString, TestFilm> &films)
    {
        QSemaphore places(3);
        std::vector<std::future<bool>> made;
        for (const auto &film : films)
            made.push_back(
                whenFree(places, [this, &film] { return film.second.write(path(film.first)); }));
        for (const std::future<bool> &film : made)
            film.wait();
        for (const auto &film : films)
            m_shows[film.first] = std::make_unique<Show>(path(film.first));
    }

    QString path(const QString &name) const { return m_folder.filePath(name); }

private slots:
    void playsTheFormatsThatPeopleHave_data()
    {
        const QStringList h264{"-c:v", "libx264", "-preset", "ultrafast", "-g", "30"};
        const QStringList hevc{"-c:v",      "libx265",      "-preset",
                               "ultrafast", "-x265-params", "log-level=error"};
        const QStringList aac{"-c:a", "aac"};
        const QStringList mp3{"-c:a", "libmp3lame"};
        const QStringList pcm{"-c:a", "pcm_s16le"};
        QTest::addColumn<QString>("name");
        QTest::addColumn<TestFilm>("made");
        std::map<QString, TestFilm> films;
        const auto row = [&films](const char *kind, const QString &name, const TestFilm &made) {
            QTest::newRow(kind) << name << made;
            films[name] = made;
        };
        row("H.264 mp4", "a.mp4", film(h264, aac));
        row("H.264 mov", "a.mov", film(h264, aac));
        row("H.264 without sound", "b.mp4", film(h264, {}));
        row("HEVC mp4", "c.mp4", film(hevc, aac));
        row("HEVC mov", "c.mov", film(hevc + QStringList{"-tag:v", "hvc1"}, aac));
        row("Motion-JPEG avi", "d.avi", film({"-c:v", "mjpeg", "-q:v", "3"}, pcm));
        row("MPEG-4 avi", "e.avi", film({"-c:v", "mpeg4", "-q:v", "3"}, mp3));
        row("24 a second", "f.mp4", film(h264, aac, 24));
        row("50 a second", "g.mp4", film(h264, aac, 50));
        row("60 a second", "h.mp4", film(h264, {}, 60));
        row("1366 wide", "i.mp4", film(h264, aac, 30, {1366, 768}));
        TestFilm odd = film({"-c:v", "mjpeg", "-q:v", "3"}, {}, 30, {321, 241});
        odd.pixelFormat = "yuvj444p";
        row("odd width", "j.avi", odd);
        TestFilm deep = film(hevc, {});
        deep.pixelFormat = "yuv420p10le";
        row("10 bits a sample", "k.mp4", deep);
        row("a name in many scripts", QString::fromUtf8("Фильм 映画 #1 100% é.mp4"),
            film(h264, aac));
        if (m_shows.empty())
            makeAllAndPlay(films);
    }

    void playsTheFormatsThatPeopleHave()
    {
        QFETCH(QString, name);
        QFETCH(TestFilm, made);
        const std::unique_ptr<Show> show = std::move(m_shows[name]);
        QVERIFY(show->shown);
        const RecordingSink &sink = show->sink;
        QTRY_VERIFY_WITH_TIMEOUT(sink.refreshing(), TIMEOUT_MS);
        QCOMPARE(show->source.currentPosition(), 100);
        QCOMPARE(sink.last().size(), made.size);
        QCOMPARE(sink.stride(), (made.size.width() * 3 + 3) / 4 * 4);
        const QVector<int> numbers = sink.numbers();
        QVERIFY(strictlyRising(numbers));
        QCOMPARE(numbers.first(), 0);
        // Late pictures are left out, but never the last.
        QCOMPARE(numbers.last(), int(made.rate * made.seconds) - 1);
        QCOMPARE(sink.rawFrames(), 0);
        QVERIFY(!sink.refreshedElsewhere());
        QVERIFY(!sink.anyOnGuiThread());
    }

    void aLatePictureIsLeftOutButNotTheLast()
    {
        QVERIFY(film({"-c:v", "libx264", "-bf", "0"}, {}).write(path("late.mp4")));
        RecordingSink sink;
        sink.readNumber = TestFilm::numberIn;
        FilmSource source(&sink, nullptr);
        QVERIFY(source.setFile(path("late.mp4")));
        QTRY_VERIFY_WITH_TIMEOUT(sink.lastNumber() >= 5, TIMEOUT_MS);
        // The film's clock goes on while the process stands still, until beyond the film's end.
        QProcess::execute("sh", {"-c", "kill -STOP $PPID; sleep 2; kill -CONT $PPID"});
        QTRY_VERIFY_WITH_TIMEOUT(sink.refreshing(), TIMEOUT_MS);
        QCOMPARE(sink.lastNumber(), 44);
        QVERIFY(sink.count() < 45);
    }

    void playAtTheLastPositionBeginsAgain()
    {
        QVERIFY(film({"-c:v", "mjpeg"}, {"-c:a", "pcm_s16le"}).write(path("again.avi")));
        RecordingSink sink;
        sink.readNumber = TestFilm::numberIn;
        FilmSource source(&sink, nullptr);
        QVERIFY(source.setFile(path("again.avi")));
        for (int i = 0; i < 3; ++i) {
            // At once when the last position is reached: the player may not have said yet that it
            // is the end.
            QTRY_VERIFY_WITH_TIMEOUT(source.currentPosition() < 90, TIMEOUT_MS);
            QElapsedTimer waiting;
            waiting.start();
            while (source.moving() && !waiting.hasExpired(TIMEOUT_MS))
                QCoreApplication::processEvents();
            sink.forget();
            source.play();
            QTRY_VERIFY_WITH_TIMEOUT(sink.lastNumber() >= 5 && sink.lastNumber() < 15, TIMEOUT_MS);
            QVERIFY(source.moving());
            QVERIFY(!sink.refreshing());
        }
    }
};

REGISTER_CORE_TEST(FilmPlaybackTest)
#include "tst_film_playback.moc"
