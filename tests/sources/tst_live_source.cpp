#include "tests/SideBySide.h"
#include "tests/sources/LiveRig.h"

#include "sources/camera/CameraParameters.h"
#include "tools/virtualcamera/SheetCounter.h"

#include <QElapsedTimer>

#include <atomic>
#include <vector>

using namespace CameraParameter;

/// A camera that behaves: waiting for it, streaming from it, steering it.
class LiveSourceTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_camera = std::make_unique<VirtualCamera>(rigCamera()); }
    void cleanupTestCase() { m_camera.reset(); }

    void init()
    {
        m_camera->unplug();
        (void)m_camera->takeExtensionTransfers();
        m_transfers.clear();
    }

    void withoutACameraNothingRuns()
    {
        LiveRig rig;
        QVERIFY(staysWithoutFrames(rig.sink, 1200));
        QVERIFY(!rig.source->running());
        unsigned long value = 5;
        QVERIFY(rig.source->ksPropGet(VALUE_SELECTOR, &value, sizeof value) < 0);
        QCOMPARE(value, 5UL);
        QCOMPARE(rig.source->brightness(), 0);
        rig.source->startRecord("never.mov");
        QVERIFY(!rig.source->recording());
        rig.source->stopRecord();
        rig.source->stopCapture();
        rig.source->setResolution({1920, 1080});
        QCOMPARE(rig.source->resolution(), QSize(1920, 1080));
        QVERIFY(!rig.source->running());
        rig.source->zoomInStart();
        QVERIFY(m_camera->takeExtensionTransfers().empty());
    }

    void theFirstPictureComesAfterMoreThanTwoSeconds()
    {
        const MessageLog log;
        LiveRig rig;
        QElapsedTimer sincePlugged;
        sincePlugged.start();
        QVERIFY(m_camera->plug());
        QVERIFY(rig.waitUntilRunning());
        QVERIFY(sincePlugged.elapsed() > 2000);
        QVERIFY(log.count("DEVICE FOUND") >= 2);
        QVERIFY(rig.waitForFrames());
        QCOMPARE(rig.sink.size(), LiveRig::PREVIEW);
        QCOMPARE(log.count("uvc_open() failed."), 0);
        QCOMPARE(log.count("uvc_get_stream_ctrl_format_size() failed.\n"), 0);
    }

    void aFrameIsDecodedIntoMemoryThatIsLent()
    {
        LiveRig rig;
        std::atomic<int> lent{0};
        rig.sink.lend = [&lent](int width, int height) -> std::shared_ptr<std::uint8_t> {
            const auto bytes =
                static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3;
            // A receiver without memory at times.
            return ++lent % 3 == 0
                       ? nullptr
                       : std::shared_ptr<std::uint8_t>(new std::uint8_t[bytes],
                                                       std::default_delete<std::uint8_t[]>());
        };
        QVERIFY(rig.bringUp(*m_camera));
        QVERIFY(rig.waitForFrames(8));
        rig.source->stopCapture();
        const int frames = rig.sink.rawFrames();
        QVERIFY(rig.sink.inLentMemory() >= frames - lent / 3);
        QVERIFY(rig.sink.inLentMemory() < frames);
        QVERIFY(SheetCounter::read(rig.sink.last()));
        // Memory that was lent for a frame that could not be decoded is for the next one.
        m_camera->faults().corruptFrames = 3;
        rig.source->startCapture();
        QVERIFY(rig.waitForFrames(3));
        rig.source->stopCapture();
        const int more = rig.sink.rawFrames() - frames;
        QVERIFY2(lent <= frames + more + 2, qPrintable(QString("%1").arg(lent)));
    }

    void aCameraThatIsThereAtTheStartIsWaitedForToo()
    {
        QVERIFY(m_camera->plug());
        QElapsedTimer sinceMade;
        sinceMade.start();
        LiveRig rig;
        QVERIFY(rig.waitUntilRunning());
        QVERIFY(sinceMade.elapsed() > 2000);
    }

    void anUnplugDuringTheWaitStartsItAnew()
    {
        const MessageLog log;
        LiveRig rig;
        QVERIFY(m_camera->plug());
        QVERIFY(QTest::qWaitFor([&log] { return log.count("DEVICE FOUND") >= 3; },
                                LiveRig::TIMEOUT_MS));
        QVERIFY(!rig.source->running());
        m_camera->unplug();
        QVERIFY(QTest::qWaitFor(
            [&log, &rig] {
                const int found = log.count("DEVICE FOUND");
                rig.source->checkExistance();
                return log.count("DEVICE FOUND") == found; // a poll that did not find it
            },
            LiveRig::TIMEOUT_MS));
        QVERIFY(!rig.source->running());
        QElapsedTimer sincePlugged;
        sincePlugged.start();
        QVERIFY(m_camera->plug());
        QVERIFY(rig.waitUntilRunning());
        QVERIFY(sincePlugged.elapsed() > 2000);
        QVERIFY(rig.waitForFrames());
    }

    void onceRunningThePollIsQuiet()
    {
        const MessageLog log;
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        const int found = log.count("DEVICE FOUND");
        rig.source->checkExistance();
        QVERIFY(rig.waitForFrames(30)); // a second, two polls
        QCOMPARE(log.count("DEVICE FOUND"), found);
    }

    void framesArriveAsTheyWereSentOnAThreadOfTheirOwn()
    {
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        QVERIFY(rig.sink.plain());
        QVERIFY(rig.sink.thread() != QThread::currentThread());
        const auto first = SheetCounter::read(rig.sink.last());
        QVERIFY(first);
        QVERIFY(rig.waitForFrames(10));
        const auto second = SheetCounter::read(rig.sink.last());
        QVERIFY(second);
        const quint32 step = (*second - *first) % SheetCounter::MODULUS;
        QVERIFY(step >= 10 && step < 1000);
        QCOMPARE(rig.sink.takeRefreshes(), QStringList());
    }

    void controlsReachTheCamera()
    {
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        // On a busy machine the end of what is asked for may come after the call.
        rig.source->zoomReset();
        const std::vector<ExtensionTransfer> expected{
            {true, 19, 0x7000001A}, {true, 20, 0}, {true, 19, 0x7000001C}, {true, 20, 1000}};
        QTRY_VERIFY_WITH_TIMEOUT(transfersSoFar().size() >= expected.size(), LiveRig::TIMEOUT_MS);
        QVERIFY(m_transfers == expected);

        m_camera->overrideParameter(OPTICAL_ZOOM_PERCENT, 50);
        m_camera->overrideParameter(DIGITAL_ZOOM, 2000);
        m_camera->overrideParameter(SECOND_ZOOM, 1500);
        QTRY_COMPARE_WITH_TIMEOUT(rig.source->opticalZoomPercent(), 0.5, LiveRig::TIMEOUT_MS);
        QTRY_COMPARE_WITH_TIMEOUT(rig.source->digitalZoomPercent(), 3.0, LiveRig::TIMEOUT_MS);
        m_camera->overrideParameter(BRIGHTNESS_MIN, 0);
        m_camera->overrideParameter(BRIGHTNESS_MAX, 0);
        QTRY_COMPARE_WITH_TIMEOUT(rig.source->brightnessMin(), 1, LiveRig::TIMEOUT_MS);
        QTRY_COMPARE_WITH_TIMEOUT(rig.source->brightnessMax(), 15, LiveRig::TIMEOUT_MS);
        m_camera->clearOverrides();

        int before = 0;
        QTRY_VERIFY_WITH_TIMEOUT((before = rig.source->brightness()) > 0, LiveRig::TIMEOUT_MS);
        rig.source->brightnessUp();
        QTRY_COMPARE_WITH_TIMEOUT(rig.source->brightness(), before + 1, LiveRig::TIMEOUT_MS);
        rig.source->brightnessDown();
        QTRY_COMPARE_WITH_TIMEOUT(rig.source->brightness(), before, LiveRig::TIMEOUT_MS);
    }

    void onlyTheLowByteOfThePropertyIsTheSelector()
    {
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        unsigned long id = BRIGHTNESS;
        QVERIFY(LiveRig::gives(
            [&] { return rig.source->ksPropSet(0xAB00 + ID_SELECTOR, &id, sizeof id); }, 8));
        const ExtensionTransfer expected{true, 19, BRIGHTNESS};
        QVERIFY(!transfersSoFar().empty());
        for (const ExtensionTransfer &transfer : m_transfers)
            QVERIFY(transfer == expected);
    }

    void theSameResolutionLeavesTheStreamAlone()
    {
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        const auto before = m_camera->statistics().classTransfers;
        rig.source->setResolution(LiveRig::PREVIEW);
        QCOMPARE(m_camera->statistics().classTransfers, before);
        QVERIFY(rig.waitForFrames());
        QCOMPARE(rig.sink.size(), LiveRig::PREVIEW);
    }

    void anotherResolutionRestartsTheStream()
    {
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        for (const QSize size : {QSize(1920, 1080), QSize(1280, 720), LiveRig::PREVIEW}) {
            rig.source->setResolution(size);
            QCOMPARE(rig.source->resolution(), size);
            QVERIFY(rig.waitForSize(size));
            QVERIFY(rig.waitForFrames());
            QCOMPARE(rig.sink.size(), size);
        }
    }

    void pausingAndResumingDoNothing()
    {
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        rig.source->pauseCapture();
        QVERIFY(rig.waitForFrames());
        rig.source->resumeCapture();
        QVERIFY(rig.waitForFrames());
        QCOMPARE(rig.sink.takeRefreshes(), QStringList());
    }

    void stoppingEndsTheFramesAndStartingBringsThemBack()
    {
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        rig.source->stopCapture();
        QVERIFY(rig.source->running());
        QVERIFY(staysWithoutFrames(rig.sink));
        rig.source->stopCapture();
        rig.source->startCapture();
        QVERIFY(rig.waitForFrames());
        rig.source->startCapture(); // over a running stream
        QVERIFY(rig.waitForFrames());
        QCOMPARE(rig.sink.size(), LiveRig::PREVIEW);
    }

    void recordingStreamsAtTheRecordingSize()
    {
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        rig.source->startRecord(QDir::tempPath() + "/live.mov");
        QVERIFY(rig.source->recording());
        QVERIFY(rig.waitForSize(LiveRig::RECORDING));
        rig.source->setRecordingResolution({1920, 1080}); // for the next one
        QVERIFY(rig.waitForFrames());
        QCOMPARE(rig.sink.size(), LiveRig::RECORDING);
        rig.source->stopRecord();
        QVERIFY(!rig.source->recording());
        QVERIFY(rig.waitForSize(LiveRig::PREVIEW));
        rig.source->startRecord(QDir::tempPath() + "/live2.mov");
        QVERIFY(rig.waitForSize({1920, 1080}));
        rig.source->stopCapture();
        QVERIFY(!rig.source->recording());
    }

    void aTeardownWaitsForTheFrameInFlight()
    {
        LiveRig rig;
        std::atomic<int> inside{0};
        std::atomic<bool> slow{false};
        rig.sink.onRawFrame = [&inside, &slow] {
            ++inside;
            if (slow)
                QThread::msleep(150); // a canvas that is busy
            --inside;
        };
        QVERIFY(rig.bringUp(*m_camera));
        slow = true;
        QVERIFY(QTest::qWaitFor([&inside] { return inside > 0; }, LiveRig::TIMEOUT_MS));
        rig.source->stopCapture();
        QCOMPARE(inside.load(), 0);
        QVERIFY(staysWithoutFrames(rig.sink));
    }

    void theNextSourceFindsTheCameraFree()
    {
        for (int round = 0; round < 2; ++round) {
            LiveRig rig;
            QVERIFY(rig.bringUp(*m_camera));
            QCOMPARE(m_camera->statistics().openHandles, 1);
            rig.source.reset();
            // The bus notices a closed handle a moment after the call.
            QTRY_COMPARE_WITH_TIMEOUT(m_camera->statistics().openHandles, 0, LiveRig::TIMEOUT_MS);
        }
    }

private:
    const std::vector<ExtensionTransfer> &transfersSoFar()
    {
        for (const ExtensionTransfer &transfer : m_camera->takeExtensionTransfers())
            m_transfers.push_back(transfer);
        return m_transfers;
    }

    std::unique_ptr<VirtualCamera> m_camera;
    std::vector<ExtensionTransfer> m_transfers;
};

REGISTER_TEST_SIDE_BY_SIDE(LiveSourceTest)
#include "tst_live_source.moc"
