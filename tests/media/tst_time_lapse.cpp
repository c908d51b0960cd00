#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/media/MovieFile.h"
#include "tests/media/SyntheticPictures.h"

#include "sources/recording/CaptureClock.h"
#include "sources/recording/TimeLapseRecorder.h"
#include "sources/threads/DetachedThreads.h"

#include <QtTest>

#include <QTemporaryDir>

#include <cmath>
#include <thread>

namespace
{

constexpr QSize LAPSE_SIZE(640, 360);
constexpr qint64 LAPSE_START_US = 7000000000;

} // namespace

class TimeLapseTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_file = m_folder.filePath("lapse.mov");
        MovieWriter::Settings settings{m_file, LAPSE_SIZE, {"x264enc"}};
        settings.withSound = false;
        m_recorder = std::make_unique<TimeLapseRecorder>(
            MovieWriter::create(settings, [](const QString &) {}), std::chrono::seconds(2),
            LAPSE_SIZE);
    }

    void onePictureEveryTwoSecondsIsShownThirtyASecond()
    {
        // Two minutes of a camera with thirty pictures a second.
        for (int n = 0; n < 3600; ++n)
            offer(n);
        finish();
        const MovieFile movie(m_file);
        QCOMPARE(movie.complaints(), QString());
        QVERIFY(movie.stream("audio").isEmpty());
        const auto pictures = movie.pictures();
        QCOMPARE(int(pictures.size()), 60);
        for (int n = 0; n < 60; ++n) {
            QCOMPARE(pictures[n].number, 60 * n);
            QVERIFY(std::fabs(pictures[n].seconds - n / 30.0) < 0.001);
        }
        QVERIFY(std::fabs(movie.duration() - 2.0) < 0.01);
        const RecordingState state = m_recorder->state();
        QCOMPARE(state.movie.lengthUs, qint64(2000000));
        QVERIFY(!state.withSound);
        QCOMPARE(state.movie.bytes, QFileInfo(m_file).size());
    }

    void picturesOfAnotherSizeAndThoseOfAPauseAreLeftOut()
    {
        const QByteArray other(320 * 180 * 3, 0);
        m_recorder->pictureCaptured(other.constData(), 320, 180, LAPSE_START_US);
        QVERIFY(!m_recorder->pictureCame());
        offer(0);
        QVERIFY(m_recorder->pictureCame());
        m_recorder->setPaused(true);
        for (int n = 1; n < 600; ++n)
            offer(n);
        m_recorder->setPaused(false);
        // The pause took no time by the clock, so that many pictures are due.
        for (int n = 600; n < 720; ++n)
            offer(n);
        finish();
        const auto pictures = MovieFile(m_file).pictures();
        QVERIFY(pictures.size() > 1);
        QCOMPARE(pictures[0].number, 0);
        QVERIFY(pictures[1].number >= 600);
    }

    void aPauseIsNotCountedAsTime()
    {
        const qint64 beginUs = captureMicroseconds();
        take(0, beginUs);
        m_recorder->setPaused(true);
        QTest::qWait(2500);
        m_recorder->setPaused(false);
        const qint64 nowUs = captureMicroseconds();
        // Nothing is due before two seconds that are no pause.
        take(1, nowUs);
        take(2, nowUs + 1900000);
        take(3, nowUs + 2100000);
        finish();
        const auto pictures = MovieFile(m_file).pictures();
        QCOMPARE(int(pictures.size()), 2);
        QCOMPARE(pictures[1].number, 3);
    }

    /// The machine slept, or no picture came for a minute.
    void whatWasMissedIsNotMadeUpFor()
    {
        for (int n = 0; n < 150; ++n)
            offer(n); // three pictures
        for (int n = 1950; n < 2100; ++n)
            offer(n); // a minute later, three more
        finish();
        const auto pictures = MovieFile(m_file).pictures();
        QVector<int> numbers;
        for (const MovieFile::Picture &picture : pictures)
            numbers.append(picture.number);
        QCOMPARE(numbers, QVector<int>({0, 60, 120, 1950, 2010, 2070}));
    }

private:
    /// The picture of that number, a thirtieth of a second after the one before; again and again
    /// while the encoder is busy.
    void offer(int number) { take(number, LAPSE_START_US + number * 1000000LL / 30); }

    void take(int number, qint64 microseconds)
    {
        qint64 dropped = 0;
        do {
            dropped = m_recorder->state().dropped;
            m_recorder->pictureCaptured(m_pictures.picture(number, false), LAPSE_SIZE.width(),
                                        LAPSE_SIZE.height(), microseconds);
            std::this_thread::yield();
        } while (m_recorder->state().dropped > dropped);
    }

    void finish()
    {
        m_recorder->finish();
        QVERIFY(DetachedThreads::allEnded(std::chrono::milliseconds(TIMEOUT_MS)));
    }

    QTemporaryDir m_folder;
    QString m_file;
    SyntheticPictures m_pictures{LAPSE_SIZE};
    std::unique_ptr<TimeLapseRecorder> m_recorder;
};

REGISTER_CORE_TEST(TimeLapseTest)
#include "tst_time_lapse.moc"
