#include "sources/LiveRecording.h"
#include "sources/threads/DetachedThreads.h"
#include "tests/SideBySide.h"
#include "tests/media/MovieFile.h"
#include "tests/sources/LiveRig.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace
{

constexpr int FIRST_PICTURE_MS = 3000;
constexpr QSize REFUSED_SIZE(800, 600);
constexpr QSize LARGE_SIZE(1920, 1080);

} // namespace

/// When a recording begins, and what becomes of one that gets no picture. There is no sound server,
/// so the sound is silence.
class LiveSourceRecordingTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qputenv("PULSE_SERVER", "unix:" + m_folder.path().toLocal8Bit() + "/nobody");
        m_camera = std::make_unique<VirtualCamera>(rigCamera());
    }
    void cleanupTestCase() { m_camera.reset(); }

    void init()
    {
        m_camera->unplug();
        m_rig = std::make_unique<LiveRig>();
        m_failures = std::make_unique<QSignalSpy>(m_rig->source.get(), &LiveSource::recordFailed);
        m_file = m_folder.filePath("movie.mov");
    }
    void cleanup()
    {
        m_failures.reset();
        m_rig.reset();
        m_camera->faults().silent = 0;
        m_camera->faults().stallProbes = 0;
        QFile::remove(m_file);
    }

    void withoutACameraARequestFails()
    {
        QElapsedTimer asked;
        asked.start();
        m_rig->source->requestRecord(m_file);
        QVERIFY(m_rig->source->recordRequested());
        QVERIFY(!m_rig->source->recording());
        expectFailure();
        QVERIFY(asked.elapsed() >= FIRST_PICTURE_MS);
        expectNoMoreFailures();
    }

    void aStartWithoutACameraDoesNothing()
    {
        m_rig->source->startRecord(m_file);
        QVERIFY(!m_rig->source->recordRequested());
        QVERIFY(m_camera->plug());
        QVERIFY(m_rig->waitUntilRunning());
        QVERIFY(!m_rig->source->recording());
        QVERIFY(m_rig->waitForSize(LiveRig::PREVIEW));
        QVERIFY(!QFile::exists(m_file));
        QCOMPARE(m_failures->size(), 0);
    }

    void aCameraThatIsNotOpenYetIsRecordedOnceItIs()
    {
        const MessageLog log;
        QVERIFY(m_camera->plug());
        QVERIFY(
            QTest::qWaitFor([&log] { return log.count("DEVICE FOUND") > 0; }, LiveRig::TIMEOUT_MS));
        m_rig->source->requestRecord(m_file);
        QVERIFY(!m_rig->source->recording());
        QVERIFY(m_rig->waitUntilRunning());
        QVERIFY(m_rig->source->recording());
        QVERIFY(m_rig->waitForSize(LiveRig::RECORDING));
        recordFor(FIRST_PICTURE_MS + 500);
        expectMovie();
    }

    void aCameraThatLeavesBeforeItIsOpenIsNotWaitedForAnyLonger()
    {
        const MessageLog log;
        QVERIFY(m_camera->plug());
        QVERIFY(
            QTest::qWaitFor([&log] { return log.count("DEVICE FOUND") > 0; }, LiveRig::TIMEOUT_MS));
        m_rig->source->requestRecord(m_file);
        m_camera->unplug();
        expectFailure();
        QVERIFY(!m_rig->source->running());
    }

    void aRecordingWithPicturesGoesOn()
    {
        QVERIFY(m_rig->bringUp(*m_camera));
        m_rig->source->startRecord(m_file);
        recordFor(FIRST_PICTURE_MS + 500);
        expectMovie();
    }

    void aCameraThatFallsSilentLaterGoesOnToo()
    {
        QVERIFY(m_rig->bringUp(*m_camera));
        m_rig->source->startRecord(m_file);
        QVERIFY(m_rig->waitForSize(LiveRig::RECORDING));
        m_camera->faults().silent = 1;
        recordFor(FIRST_PICTURE_MS + 500);
        expectMovie();
    }

    void aControlThatHangsCostsTheMovieNothing_data()
    {
        QTest::addColumn<bool>("before");
        QTest::newRow("when it begins") << true;
        QTest::newRow("while it is recorded") << false;
    }

    void aControlThatHangsCostsTheMovieNothing()
    {
        QFETCH(bool, before);
        QVERIFY(m_rig->bringUp(*m_camera));
        const auto hang = [this] {
            m_camera->faults().hangControls = 1;
            m_rig->source->brightnessUp();
        };
        if (before)
            hang();
        m_rig->source->startRecord(m_file);
        QVERIFY(m_rig->waitForSize(LiveRig::RECORDING));
        if (!before)
            hang();
        QVERIFY(m_rig->waitForFrames(30));
        QCOMPARE(m_rig->sink.size(), LiveRig::RECORDING);
        recordFor(FIRST_PICTURE_MS + 500);
        expectMovie();
    }

    void aPauseIsLeftOut()
    {
        QVERIFY(m_rig->bringUp(*m_camera));
        // The movie begins somewhere between the two, and ends so.
        QElapsedTimer longest;
        QElapsedTimer shortest;
        longest.start();
        m_rig->source->startRecord(m_file);
        QVERIFY(m_rig->waitForSize(LiveRig::RECORDING));
        shortest.start();
        recordFor(1500);
        qint64 least = shortest.elapsed();
        m_rig->source->liveRecording().setPaused(true);
        qint64 most = longest.elapsed();
        recordFor(2500);
        longest.restart();
        m_rig->source->liveRecording().setPaused(false);
        shortest.restart();
        recordFor(1500);
        least += shortest.elapsed();
        expectMovie();
        most += longest.elapsed();
        const double length = MovieFile(m_file).duration() * 1000;
        // The last picture may have come that long before the end.
        constexpr double LAST_PICTURE_MS = 600;
        QVERIFY2(length > double(least) - LAST_PICTURE_MS && length < double(most),
                 qPrintable(QString("%1 of %2 to %3 ms").arg(length).arg(least).arg(most)));
    }

    void aPauseFromTheFirstPictureOnIsNoFaultOfTheCamera()
    {
        QVERIFY(m_rig->bringUp(*m_camera));
        m_rig->source->startRecord(m_file);
        m_rig->source->liveRecording().setPaused(true);
        QVERIFY(m_rig->waitForSize(LiveRig::RECORDING));
        QVERIFY(m_rig->waitForFrames(10));
        QTest::qWait(FIRST_PICTURE_MS);
        QCOMPARE(m_failures->size(), 0);
        m_rig->source->stopRecord();
        QTRY_COMPARE_WITH_TIMEOUT(m_failures->size(), 1, LiveRig::TIMEOUT_MS);
        QCOMPARE(m_failures->at(0)[0].toString(),
                 QString("Nothing was recorded because the recording was paused."));
        QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(m_file), LiveRig::TIMEOUT_MS);
    }

    void aPauseFromTheFirstPictureOnEnds()
    {
        QVERIFY(m_rig->bringUp(*m_camera));
        m_rig->source->startRecord(m_file);
        m_rig->source->liveRecording().setPaused(true);
        QVERIFY(m_rig->waitForSize(LiveRig::RECORDING));
        QVERIFY(m_rig->waitForFrames(10));
        m_rig->source->liveRecording().setPaused(false);
        recordFor(1500);
        expectMovie();
        QCOMPARE(MovieFile(m_file).complaints(), QString());
    }

    void aTimeLapseHasFewPicturesAndNoSound()
    {
        QVERIFY(m_rig->bringUp(*m_camera));
        m_rig->source->liveRecording().setTimeLapse(std::chrono::seconds(1));
        m_rig->source->startRecord(m_file);
        QVERIFY(m_rig->waitForSize(LiveRig::RECORDING));
        recordFor(FIRST_PICTURE_MS + 500);
        expectMovie();
        const MovieFile movie(m_file);
        QCOMPARE(movie.complaints(), QString());
        QVERIFY(movie.stream("audio").isEmpty());
        const int pictures = movie.stream("video")["nb_frames"].toString().toInt();
        QVERIFY2(pictures >= 3 && pictures <= 6, qPrintable(QString::number(pictures)));
        m_rig->source->liveRecording().setTimeLapse(std::chrono::seconds(0));
    }

    void aSizeThatChangesDuringATimeLapseWaits()
    {
        QVERIFY(m_rig->bringUp(*m_camera));
        m_rig->source->liveRecording().setTimeLapse(std::chrono::seconds(1));
        m_rig->source->startRecord(m_file);
        QVERIFY(m_rig->waitForSize(LiveRig::RECORDING));
        recordFor(1500);
        m_rig->source->setRecordingResolution(LARGE_SIZE);
        m_rig->source->setPreviewSize({640, 480});
        recordFor(1500);
        expectMovie();
        const MovieFile movie(m_file);
        QCOMPARE(movie.complaints(), QString());
        QCOMPARE(movie.stream("video")["width"].toInt(), LiveRig::RECORDING.width());
        const int pictures = movie.stream("video")["nb_frames"].toString().toInt();
        QVERIFY2(pictures >= 3 && pictures <= 5, qPrintable(QString::number(pictures)));
        m_rig->source->liveRecording().setTimeLapse(std::chrono::seconds(0));
    }

    void aSizeThatChangesDuringAPauseWaits()
    {
        QVERIFY(m_rig->bringUp(*m_camera));
        m_rig->source->startRecord(m_file);
        QVERIFY(m_rig->waitForSize(LiveRig::RECORDING));
        recordFor(1000);
        m_rig->source->liveRecording().setPaused(true);
        m_rig->source->setRecordingResolution(LARGE_SIZE);
        m_rig->source->setPreviewSize({640, 480});
        QVERIFY(m_rig->waitForFrames(10));
        QCOMPARE(m_rig->sink.size(), LiveRig::RECORDING);
        m_rig->source->liveRecording().setPaused(false);
        recordFor(1000);
        expectMovie();
        QCOMPARE(MovieFile(m_file).complaints(), QString());
    }

    void aSilentCameraFails()
    {
        QVERIFY(m_rig->bringUp(*m_camera));
        m_camera->faults().silent = 1;
        m_rig->source->startRecord(m_file);
        expectFailure();
        m_camera->faults().silent = 0;
        QVERIFY(m_rig->waitForFrames());
    }

    void aSizeThatTheCameraRefusesFails()
    {
        QVERIFY(m_rig->bringUp(*m_camera));
        m_rig->source->setRecordingResolution(REFUSED_SIZE);
        m_rig->source->startRecord(m_file);
        expectFailure();
        QVERIFY(m_rig->waitForFrames());
        QCOMPARE(m_rig->sink.size(), LiveRig::PREVIEW);
    }

    void aCameraThatWasPulledAndIsBackFails()
    {
        QVERIFY(m_rig->bringUp(*m_camera));
        m_camera->unplug();
        QVERIFY(QTest::qWaitFor([this] { return staysWithoutFrames(m_rig->sink); },
                                LiveRig::TIMEOUT_MS));
        QVERIFY(m_camera->plug());
        m_rig->source->startRecord(m_file);
        expectFailure();
    }

    void aStopBeforeTheFirstPictureIsAFailureToo()
    {
        QVERIFY(m_rig->bringUp(*m_camera));
        m_camera->faults().silent = 1;
        m_rig->source->startRecord(m_file);
        m_rig->source->stopRecord();
        QVERIFY(!m_rig->source->recordRequested());
        QCOMPARE(m_failures->size(), 0); // from the event loop only
        QTRY_COMPARE_WITH_TIMEOUT(m_failures->size(), 1, LiveRig::TIMEOUT_MS);
        QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(m_file), LiveRig::TIMEOUT_MS);
        expectNoMoreFailures();
    }

    void aStopBeforeTheCameraIsOpenIsAFailureToo()
    {
        m_rig->source->requestRecord(m_file);
        m_rig->source->stopRecord();
        QVERIFY(!m_rig->source->recordRequested());
        QTRY_COMPARE_WITH_TIMEOUT(m_failures->size(), 1, LiveRig::TIMEOUT_MS);
    }

    void aRequestEndsTheRecordingBeforeIt()
    {
        QVERIFY(m_rig->bringUp(*m_camera));
        const QString other = m_folder.filePath("other.mov");
        m_rig->source->startRecord(other);
        QVERIFY(m_rig->waitForSize(LiveRig::RECORDING));
        QTRY_VERIFY_WITH_TIMEOUT(m_rig->source->liveRecording().state().movie.bytes > 0,
                                 LiveRig::TIMEOUT_MS);
        m_rig->source->setRecordingResolution(LARGE_SIZE);
        m_rig->source->requestRecord(m_file);
        QVERIFY(m_rig->source->recording());
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(other).size() > 0, LiveRig::TIMEOUT_MS);
        QVERIFY(m_rig->waitForSize(LARGE_SIZE));
        recordFor(1000);
        expectMovie();
    }

private:
    /// Lets a recording be as long as that.
    static void recordFor(int milliseconds) { QTest::qWait(milliseconds); }

    void expectFailure()
    {
        QTRY_COMPARE_WITH_TIMEOUT(m_failures->size(), 1, LiveRig::TIMEOUT_MS);
        QCOMPARE(m_failures->at(0)[0].toString(),
                 QString("Nothing was recorded because no picture came from the camera."));
        QVERIFY(m_rig->source->recordRequested());
        m_rig->source->stopRecord();
        QVERIFY(!m_rig->source->recordRequested() && !m_rig->source->recording());
        QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(m_file), LiveRig::TIMEOUT_MS);
    }

    void expectMovie()
    {
        m_rig->source->stopRecord();
        QVERIFY(DetachedThreads::allEnded(std::chrono::milliseconds(LiveRig::TIMEOUT_MS)));
        QVERIFY(QFileInfo(m_file).size() > 10000);
        QCoreApplication::processEvents();
        QCOMPARE(m_failures->size(), 0);
    }

    /// Longer than the wait for a first picture, which must not run on.
    void expectNoMoreFailures()
    {
        QTest::qWait(FIRST_PICTURE_MS + 500);
        QCOMPARE(m_failures->size(), 1);
    }

    QTemporaryDir m_folder;
    QString m_file;
    std::unique_ptr<VirtualCamera> m_camera;
    std::unique_ptr<LiveRig> m_rig;
    std::unique_ptr<QSignalSpy> m_failures;
};

REGISTER_TEST(LiveSourceRecordingTest)
#include "tst_live_source_recording.moc"
