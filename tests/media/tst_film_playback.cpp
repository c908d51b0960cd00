#include "sources/FilmSource.h"
#include "tests/TestProgram.h"
#include "tests/fakes/PictureWall.h"
#include "tests/media/TestFilm.h"

#include <QtTest>

#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

Q_DECLARE_METATYPE(TestFilm)

namespace
{

constexpr int patienceMs = 30000;

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

    QTemporaryDir m_folder;

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
        QTest::newRow("H.264 mp4") << "a.mp4" << film(h264, aac);
        QTest::newRow("H.264 mov") << "a.mov" << film(h264, aac);
        QTest::newRow("H.264 without sound") << "b.mp4" << film(h264, {});
        QTest::newRow("HEVC mp4") << "c.mp4" << film(hevc, aac);
        QTest::newRow("HEVC mov") << "c.mov" << film(hevc + QStringList{"-tag:v", "hvc1"}, aac);
        QTest::newRow("Motion-JPEG avi") << "d.avi" << film({"-c:v", "mjpeg", "-q:v", "3"}, pcm);
        QTest::newRow("MPEG-4 avi") << "e.avi" << film({"-c:v", "mpeg4", "-q:v", "3"}, mp3);
        QTest::newRow("24 a second") << "f.mp4" << film(h264, aac, 24);
        QTest::newRow("50 a second") << "g.mp4" << film(h264, aac, 50);
        QTest::newRow("60 a second") << "h.mp4" << film(h264, {}, 60);
        QTest::newRow("1366 wide") << "i.mp4" << film(h264, aac, 30, {1366, 768});
        TestFilm odd = film({"-c:v", "mjpeg", "-q:v", "3"}, {}, 30, {321, 241});
        odd.pixelFormat = "yuvj444p";
        QTest::newRow("odd width") << "j.avi" << odd;
        TestFilm deep = film(hevc, {});
        deep.pixelFormat = "yuv420p10le";
        QTest::newRow("10 bits a sample") << "k.mp4" << deep;
        QTest::newRow("a name in many scripts")
            << QString::fromUtf8("Фильм 映画 #1 100% é.mp4") << film(h264, aac);
    }

    void playsTheFormatsThatPeopleHave()
    {
        QFETCH(QString, name);
        QFETCH(TestFilm, made);
        QVERIFY(made.write(path(name)));

        PictureWall wall;
        wall.readNumber = TestFilm::numberIn;
        FilmSource source(&wall, nullptr);
        QVERIFY(source.setFile(path(name)));
        QTRY_VERIFY_WITH_TIMEOUT(wall.refreshing(), patienceMs);
        QCOMPARE(source.currentPosition(), 100);
        QCOMPARE(wall.last().size(), made.size);
        QCOMPARE(wall.stride(), (made.size.width() * 3 + 3) / 4 * 4);
        const QVector<int> numbers = wall.numbers();
        QVERIFY(strictlyRising(numbers));
        QCOMPARE(numbers.first(), 0);
        // Late pictures are left out, but never the last.
        QCOMPARE(numbers.last(), int(made.rate * made.seconds) - 1);
        QCOMPARE(wall.rawFrames(), 0);
        QVERIFY(!wall.refreshedElsewhere());
        QVERIFY(!wall.anyOnGuiThread());
    }

    void aLatePictureIsLeftOutButNotTheLast()
    {
        QVERIFY(film({"-c:v", "libx264", "-bf", "0"}, {}).write(path("late.mp4")));
        PictureWall wall;
        wall.readNumber = TestFilm::numberIn;
        FilmSource source(&wall, nullptr);
        QVERIFY(source.setFile(path("late.mp4")));
        QTRY_VERIFY_WITH_TIMEOUT(wall.lastNumber() >= 5, patienceMs);
        // The film's clock goes on while the process stands still, until beyond the film's end.
        QProcess::execute("sh", {"-c", "kill -STOP $PPID; sleep 2; kill -CONT $PPID"});
        QTRY_VERIFY_WITH_TIMEOUT(wall.refreshing(), patienceMs);
        QCOMPARE(wall.lastNumber(), 44);
        QVERIFY(wall.count() < 45);
    }

    void playAtTheLastPositionBeginsAgain()
    {
        QVERIFY(film({"-c:v", "mjpeg"}, {"-c:a", "pcm_s16le"}).write(path("again.avi")));
        PictureWall wall;
        wall.readNumber = TestFilm::numberIn;
        FilmSource source(&wall, nullptr);
        QVERIFY(source.setFile(path("again.avi")));
        for (int i = 0; i < 5; ++i) {
            // At once when the last position is reached: the player may not have said yet that it
            // is the end.
            QTRY_VERIFY_WITH_TIMEOUT(source.currentPosition() < 90, patienceMs);
            QElapsedTimer waiting;
            waiting.start();
            while (source.moving() && !waiting.hasExpired(patienceMs))
                QCoreApplication::processEvents();
            wall.forget();
            source.play();
            QTRY_VERIFY_WITH_TIMEOUT(wall.numbers().contains(10), patienceMs);
            QVERIFY(source.moving());
            QVERIFY(!wall.refreshing());
        }
    }
};

REGISTER_CORE_TEST(FilmPlaybackTest)
#include "tst_film_playback.moc"
