#include "sources/recording/MovieRecorder.h"
#include "tests/TestProgram.h"

#include "sources/recording/CaptureClock.h"
#include "sources/recording/FileTurn.h"

#include <QtTest>

#include <atomic>
#include <cstdlib>
#include <thread>

namespace
{

constexpr QSize SIZE(64, 48);

struct Event {
    QString what;
    qint64 timeUs;

    bool operator==(const Event &other) const
    {
        return what == other.what && timeUs == other.timeUs;
    }
};

/// Notes what it is told to write.
class FakeWriter : public MovieWriter
{
public:
    explicit FakeWriter(QVector<Event> &log)
        : m_log(log)
    {
    }
    Status status() const override { return m_status; }
    void startSession(qint64 timeUs) override
    {
        m_status = Status::Writing;
        m_log.append({"session", timeUs});
    }
    void appendPicture(const std::uint8_t *, qint64 presentationUs) override
    {
        m_log.append({"picture", presentationUs});
    }
    void appendSound(const std::int16_t *, int, qint64 presentationUs) override
    {
        m_log.append({"sound", presentationUs});
    }
    void setPaused(bool paused, qint64 presentationUs) override
    {
        m_log.append({paused ? "pause" : "resume", presentationUs});
    }
    void finish() override
    {
        if (m_status == Status::Finished)
            return;
        m_status = Status::Finished;
        m_log.append({"finish", 0});
    }
    bool hasPictures() const override { return m_log.contains({"picture", 0}); }
    qint64 droppedPictures() const override { return 0; }
    MovieProgress progress() const override { return {}; }

private:
    QVector<Event> &m_log;
    std::atomic<Status> m_status{Status::Waiting};
};

/// A capture that delivers when the test says so, and once more while it is being stopped.
class FakeCapture : public SoundCapture
{
public:
    explicit FakeCapture(Handler &handler)
        : m_handler(handler)
    {
    }
    void start(Handler handler) override { m_handler = std::move(handler); }
    void choose(const MicrophoneChoice &) override {}
    QString heard() const override { return "Fake"; }
    void stop() override
    {
        if (!m_handler)
            return;
        if (lastWords) {
            std::thread([this] { m_handler({&m_sample, 1, 1}); }).join();
        }
        m_handler = nullptr;
    }

    bool lastWords = false;

private:
    const std::int16_t m_sample = 0;
    Handler &m_handler;
};

} // namespace

class MovieRecorderTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_log.clear();
        auto capture = std::make_unique<FakeCapture>(m_sound);
        m_capture = capture.get();
        m_recorder = std::make_unique<MovieRecorder>(std::make_unique<FakeWriter>(m_log),
                                                     std::move(capture), SIZE);
    }
    void cleanup() { m_recorder.reset(); }

    void noPictureIsWrittenWithoutSound()
    {
        takePicture(captureMicroseconds());
        m_recorder->finish();
        QVERIFY(m_log == QVector<Event>({{"finish", 0}}));
    }

    void theFirstSoundFixesTheClockOfThePictures()
    {
        // The sound is handed over soon after its capture.
        const qint64 beforeUs = captureMicroseconds();
        const qint64 soundUs = beforeUs - 7000;
        takeSound(soundUs);
        const qint64 afterUs = captureMicroseconds();
        const qint64 arrivalUs = afterUs + 33333;
        takePicture(arrivalUs);
        // Later sound moves nothing.
        takeSound(soundUs + 500000);
        takePicture(arrivalUs + 33333);

        QCOMPARE(int(m_log.size()), 5);
        QVERIFY(m_log[0] == (Event{"session", soundUs}));
        QVERIFY(m_log[1] == (Event{"sound", soundUs}));
        QCOMPARE(m_log[2].what, QString("picture"));
        QVERIFY(m_log[2].timeUs >= soundUs + arrivalUs - afterUs);
        QVERIFY(m_log[2].timeUs <= soundUs + arrivalUs - beforeUs);
        QVERIFY(m_log[3] == (Event{"sound", soundUs + 500000}));
        QCOMPARE(m_log[4].timeUs - m_log[2].timeUs, qint64(33333));
    }

    void soundThatIsHandedOverLateDoesNotMoveThePictures_data()
    {
        QTest::addColumn<qint64>("ageUs");
        QTest::newRow("a burst after a late start") << qint64(1900000);
        QTest::newRow("a thread that was not run") << qint64(120000);
        QTest::newRow("a stamp that lies ahead") << qint64(-120000);
    }

    void soundThatIsHandedOverLateDoesNotMoveThePictures()
    {
        QFETCH(qint64, ageUs);
        const qint64 soundUs = captureMicroseconds() - ageUs;
        takeSound(soundUs);
        const qint64 arrivalUs = captureMicroseconds();
        takePicture(arrivalUs);
        QCOMPARE(m_log.last().what, QString("picture"));
        const qint64 movedUs = m_log.last().timeUs - arrivalUs;
        QVERIFY2(std::abs(movedUs) <= 10000, qPrintable(QString::number(movedUs)));
    }

    void aPauseIsStampedAsThePicturesAre()
    {
        const qint64 soundUs = captureMicroseconds() - 7000;
        takeSound(soundUs);
        const qint64 beforeUs = captureMicroseconds();
        takePicture(beforeUs);
        m_recorder->setPaused(true);
        const qint64 afterUs = captureMicroseconds();
        QCOMPARE(m_log.last().what, QString("pause"));
        const qint64 offsetUs = m_log[2].timeUs - beforeUs;
        QVERIFY(m_log.last().timeUs >= beforeUs + offsetUs);
        QVERIFY(m_log.last().timeUs <= afterUs + offsetUs);
        m_recorder->setPaused(false);
        QCOMPARE(m_log.last().what, QString("resume"));
    }

    void aPauseBeforeTheFirstSoundPutsTheBeginningOff()
    {
        m_recorder->setPaused(true);
        takeSound(captureMicroseconds());
        takePicture(captureMicroseconds());
        QVERIFY(m_log.isEmpty());
        m_recorder->setPaused(false);
        QVERIFY(m_log.isEmpty());
        const qint64 soundUs = captureMicroseconds();
        takeSound(soundUs);
        QVERIFY(m_log.first() == (Event{"session", soundUs}));
    }

    void aPictureOfAnotherSizeIsLeftOut()
    {
        takeSound(0);
        const QByteArray rgb(SIZE.width() * SIZE.height() * 3 * 2, 0);
        m_recorder->pictureCaptured(rgb.constData(), SIZE.width() * 2, SIZE.height(),
                                    captureMicroseconds());
        m_recorder->pictureCaptured(rgb.constData(), SIZE.height(), SIZE.width(),
                                    captureMicroseconds());
        QCOMPARE(int(m_log.size()), 2);
    }

    void theSoundIsStoppedBeforeTheLockIsTaken()
    {
        // The last sound takes the lock on its own thread; held here, it would wait for ever.
        m_capture->lastWords = true;
        takeSound(0);
        m_recorder->finish();
        QCOMPARE(m_log.last().what, QString("finish"));
    }

    void aHundredShortRecordingsFollowEachOther()
    {
        QTemporaryDir folder;
        qputenv("PULSE_SERVER", "unix:" + folder.path().toLocal8Bit() + "/nobody");
        const QByteArray rgb(SIZE.width() * SIZE.height() * 3, 0);
        const QString file = folder.filePath("movie.mov");
        QStringList failures;
        for (int n = 0; n < 100; ++n) {
            auto writer = MovieWriter::create(
                {file, SIZE, {}}, [&](const QString &sentence) { failures << sentence; });
            MovieRecorder recorder(std::move(writer), SoundCapture::create({}), SIZE);
            std::thread frames([&] {
                for (int picture = 0; picture < n % 5; ++picture)
                    recorder.pictureCaptured(rgb.constData(), SIZE.width(), SIZE.height(),
                                             captureMicroseconds());
            });
            frames.join();
            recorder.finish();
        }
        // They are completed in the background, one after the other, and may fail until then.
        FileTurn(file).wait();
        QCOMPARE(failures, QStringList());
    }

private:
    void takeSound(qint64 presentationUs)
    {
        const std::int16_t samples[4] = {1, 2, 3, 4};
        m_sound({samples, 4, presentationUs});
    }
    void takePicture(qint64 arrivalUs)
    {
        const QByteArray rgb(SIZE.width() * SIZE.height() * 3, 0);
        m_recorder->pictureCaptured(rgb.constData(), SIZE.width(), SIZE.height(), arrivalUs);
    }

    QVector<Event> m_log;
    SoundCapture::Handler m_sound;
    FakeCapture *m_capture = nullptr;
    std::unique_ptr<MovieRecorder> m_recorder;
};

REGISTER_CORE_TEST(MovieRecorderTest)
#include "tst_movie_recorder.moc"
