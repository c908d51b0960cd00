#include "tests/SideBySide.h"
#include "tests/sources/LiveRig.h"

#include "sources/camera/CameraParameters.h"

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace CameraParameter;

namespace
{

/// While it lives, this thread and those it starts obey the permissions of files, as a user's do.
class ObeyPermissions
{
public:
    ObeyPermissions()
    {
        syscall(SYS_capget, &m_header, m_before);
        __user_cap_data_struct without[2] = {m_before[0], m_before[1]};
        without[0].effective &= ~((1u << CAP_DAC_OVERRIDE) | (1u << CAP_DAC_READ_SEARCH));
        syscall(SYS_capset, &m_header, without);
    }
    ~ObeyPermissions() { syscall(SYS_capset, &m_header, m_before); }
    ObeyPermissions(const ObeyPermissions &) = delete;
    ObeyPermissions &operator=(const ObeyPermissions &) = delete;

private:
    __user_cap_header_struct m_header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct m_before[2] = {};
};

} // namespace

/// A camera that misbehaves without leaving: nothing hangs, nothing crashes, and what can go on
/// goes on.
class LiveSourceFaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_camera = std::make_unique<VirtualCamera>(rigCamera()); }
    void cleanupTestCase() { m_camera.reset(); }

    void init() { m_camera->unplug(); }

    void cleanup()
    {
        CameraFaults &faults = m_camera->faults();
        for (std::atomic<int> *fault :
             {&faults.stallControls, &faults.stallProbes, &faults.stallSelector,
              &faults.truncateFrames, &faults.corruptFrames, &faults.emptyFrames,
              &faults.wrongSizeFrames, &faults.smallSizeFrames, &faults.dropFrames,
              &faults.errorBitFrames, &faults.silent, &faults.endpointStalls, &faults.claimBusy,
              &faults.denyOpen, &faults.withoutExtensionUnit})
            *fault = 0;
    }

    void damagedFramesAreSurvived_data()
    {
        QTest::addColumn<QByteArray>("fault");
        QTest::addColumn<bool>("dropped");
        QTest::newRow("corrupt") << QByteArray("corruptFrames") << true;
        QTest::newRow("empty") << QByteArray("emptyFrames") << true;
        QTest::newRow("twice as high") << QByteArray("wrongSizeFrames") << true;
        QTest::newRow("half as high") << QByteArray("smallSizeFrames") << true;
        QTest::newRow("truncated") << QByteArray("truncateFrames") << false;
        QTest::newRow("error bit") << QByteArray("errorBitFrames") << false;
    }

    void damagedFramesAreSurvived()
    {
        QFETCH(QByteArray, fault);
        QFETCH(bool, dropped);
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        std::atomic<int> *frames = findFault(m_camera->faults(), fault.constData());
        QVERIFY(frames);
        *frames = -1;
        const auto sent = m_camera->statistics().framesSent;
        QVERIFY(
            QTest::qWaitFor([this, sent] { return m_camera->statistics().framesSent >= sent + 10; },
                            LiveRig::TIMEOUT_MS));
        // On a busy machine good ones from before may still be on their way.
        if (dropped)
            QVERIFY(QTest::qWaitFor([&rig] { return staysWithoutFrames(rig.sink); },
                                    LiveRig::TIMEOUT_MS));
        *frames = 0;
        QVERIFY(rig.waitForFrames(5));
        QCOMPARE(rig.sink.size(), LiveRig::PREVIEW);
    }

    void framesOfChangingSizeComeThroughWhenTheyFit()
    {
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        for (int round = 0; round < 10; ++round) {
            m_camera->faults().wrongSizeFrames = 1;
            m_camera->faults().smallSizeFrames = 1;
            QVERIFY(rig.waitForFrames(3));
            QCOMPARE(rig.sink.size(), LiveRig::PREVIEW);
        }
    }

    void aSilentCameraIsWaitedForWithoutEnd()
    {
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        m_camera->faults().silent = 1;
        QVERIFY(
            QTest::qWaitFor([&rig] { return staysWithoutFrames(rig.sink); }, LiveRig::TIMEOUT_MS));
        rig.source->setResolution(LiveRig::RECORDING); // nothing to wait for in the teardown
        m_camera->faults().silent = 0;
        QVERIFY(rig.waitForSize(LiveRig::RECORDING));
    }

    void aStalledEndpointIsSurvived()
    {
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        m_camera->faults().endpointStalls = 20;
        QVERIFY(QTest::qWaitFor([this] { return m_camera->faults().endpointStalls == 0; },
                                LiveRig::TIMEOUT_MS));
        QVERIFY(rig.waitForFrames(5));
    }

    void stalledControlsFailAtOnceAndSilently()
    {
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        m_camera->faults().stallControls = -1;
        unsigned long value = 77;
        QVERIFY(LiveRig::gives(
            [&] { return rig.source->ksPropSet(VALUE_SELECTOR, &value, sizeof value); }, -9));
        QVERIFY(LiveRig::gives(
            [&] { return rig.source->ksPropGet(VALUE_SELECTOR, &value, sizeof value); }, -9));
        QCOMPARE(value, 77UL);
        QCOMPARE(rig.source->brightness(), 0);
        QCOMPARE(rig.source->brightnessMax(), 15);
        rig.source->autoFocus();
        QVERIFY(rig.waitForFrames());
        m_camera->faults().stallControls = 0;
        QTRY_VERIFY_WITH_TIMEOUT(rig.source->brightness() > 0, LiveRig::TIMEOUT_MS);
    }

    void stalledProbesLeaveNoPictureUntilTheNextStart()
    {
        LiveRig rig;
        m_camera->faults().stallProbes = -1;
        QVERIFY(m_camera->plug());
        QVERIFY(rig.waitUntilRunning());
        QVERIFY(staysWithoutFrames(rig.sink));
        rig.source->startCapture();
        QVERIFY(staysWithoutFrames(rig.sink));
        m_camera->faults().stallProbes = 0;
        rig.source->startCapture();
        QVERIFY(rig.waitForFrames());
    }

    void aSizeThatTheCameraDoesNotHaveIsSaidAndSurvived()
    {
        const MessageLog log;
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        rig.source->setResolution({800, 600});
        QTRY_COMPARE_WITH_TIMEOUT(log.count("uvc_get_stream_ctrl_format_size() failed.\n"), 1,
                                  LiveRig::TIMEOUT_MS);
        QVERIFY(rig.source->running());
        QVERIFY(staysWithoutFrames(rig.sink));
        QVERIFY(rig.gives([&rig] { return rig.source->brightness() > 0 ? 1 : 0; }, 1));
        rig.source->setResolution({1920, 1080});
        QVERIFY(rig.waitForSize({1920, 1080}));
        rig.source->setResolution({0, 0});
        rig.source->setResolution({-1, -1});
        QVERIFY(staysWithoutFrames(rig.sink));
    }

    void aCameraThatAnotherProgramHoldsCountsAsRunning()
    {
        m_camera->faults().claimBusy = 1;
        runWithoutAHandle();
    }

    void aCameraThatMayNotBeOpenedCountsAsRunning()
    {
        m_camera->faults().denyOpen = 1;
        const ObeyPermissions user;
        runWithoutAHandle();
    }

    void withoutTheExtensionUnitThePictureIsThereAndControlsFail()
    {
        m_camera->faults().withoutExtensionUnit = 1;
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        const auto before = m_camera->statistics().classTransfers;
        unsigned long id = BRIGHTNESS;
        QVERIFY(rig.source->ksPropSet(ID_SELECTOR, &id, sizeof id) < 0);
        QVERIFY(rig.source->ksPropGet(VALUE_SELECTOR, &id, sizeof id) < 0);
        QCOMPARE(id, BRIGHTNESS);
        QCOMPARE(rig.source->brightness(), 0);
        QCOMPARE(rig.source->brightnessMax(), 15);
        rig.source->zoomReset();
        QCOMPARE(m_camera->statistics().classTransfers, before);
        QVERIFY(rig.waitForFrames());
    }

private:
    void runWithoutAHandle()
    {
        const MessageLog log;
        LiveRig rig;
        QVERIFY(m_camera->plug());
        QVERIFY(rig.waitUntilRunning());
        QCOMPARE(log.count("uvc_open() failed."), 1);
        QCOMPARE(log.count("uvc_get_stream_ctrl_format_size() failed.\n"), 1);
        unsigned long value = 9;
        QVERIFY(rig.source->ksPropSet(VALUE_SELECTOR, &value, sizeof value) < 0);
        QVERIFY(rig.source->ksPropGet(VALUE_SELECTOR, &value, sizeof value) < 0);
        QCOMPARE(value, 9UL);
        rig.source->autoFocus();
        QCOMPARE(rig.source->brightness(), 0);
        QCOMPARE(rig.source->brightnessMin(), 1);
        rig.source->setResolution(LiveRig::RECORDING);
        rig.source->startRecord(QDir::tempPath() + "/never.mov");
        QVERIFY(rig.source->recording());
        rig.source->stopRecord();
        rig.source->initUVCControl();
        QVERIFY(staysWithoutFrames(rig.sink));
        QVERIFY(rig.source->running());
    }

    std::unique_ptr<VirtualCamera> m_camera;
};

REGISTER_TEST_SIDE_BY_SIDE(LiveSourceFaultsTest)
#include "tst_live_source_faults.moc"
