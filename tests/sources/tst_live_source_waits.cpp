#include "tests/SideBySide.h"
#include "tests/sources/LiveRig.h"

#include "sources/camera/CameraParameters.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <mutex>

#include <dlfcn.h>

using namespace CameraParameter;

namespace
{

/// What one operation may take on a machine that compiles meanwhile; the operations themselves
/// allow themselves a tenth of a second, and a camera that is waited for takes many.
constexpr qint64 AT_ONCE_MS = 600;
/// Of the end of a camera that does not answer.
constexpr qint64 END_MS = 1500;

/// Held while the USB library does not answer what is on the bus.
std::mutex listing;

template <class Operation>
qint64 elapsedMs(Operation operation)
{
    QElapsedTimer timer;
    timer.start();
    operation();
    return timer.elapsed();
}

#define RETURNS_AT_ONCE(operation)                                                                 \
    do {                                                                                           \
        const qint64 took = elapsedMs([&] { operation; });                                         \
        QVERIFY2(took < AT_ONCE_MS, qPrintable(QString(#operation " took %1 ms").arg(took)));      \
    } while (false)

} // namespace

struct uvc_context;
struct uvc_device;

/// In the place of the library's own, which answers with a number, too.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int uvc_get_device_list(uvc_context *context, uvc_device ***list)
{
    using List = int (*)(uvc_context *, uvc_device ***);
    static const auto next = reinterpret_cast<List>(dlsym(RTLD_NEXT, "uvc_get_device_list"));
    const std::lock_guard<std::mutex> lock(listing);
    return next(context, list);
}

/// A camera that does not answer in time holds nobody, and is the same as before when it answers.
/// Some of this leaves a thread in the library, which then finds no other camera in the process.
class LiveSourceWaitsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_camera.reset();
        m_camera = std::make_unique<VirtualCamera>(rigCamera());
    }
    void cleanupTestCase() { m_camera.reset(); }

    void aControlWithoutAnAnswerHoldsNobody()
    {
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        m_camera->faults().hangControls = 1;
        RETURNS_AT_ONCE(rig.source->brightnessUp());
        RETURNS_AT_ONCE(rig.source->brightness());
        RETURNS_AT_ONCE(rig.source->zoomInStart());
        RETURNS_AT_ONCE(rig.source->zoomInStop());
        QVERIFY(rig.waitForFrames());
    }

    void aCameraThatOnceDidNotAnswerIsStillThere_data()
    {
        QTest::addColumn<bool>("record");
        QTest::newRow("another size") << false;
        QTest::newRow("recording") << true;
    }

    void aCameraThatOnceDidNotAnswerIsStillThere()
    {
        QFETCH(bool, record);
        const QTemporaryDir folder;
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        m_camera->faults().hangControls = 1;
        rig.source->brightnessUp();
        if (record)
            rig.source->startRecord(folder.filePath("still-there.mov"));
        else
            RETURNS_AT_ONCE(rig.source->setResolution(LiveRig::RECORDING));
        QVERIFY(rig.waitForSize(LiveRig::RECORDING));
        QVERIFY(rig.waitForFrames());
        rig.source->stopRecord();
        rig.source->setResolution({1920, 1080});
        QVERIFY(rig.waitForSize({1920, 1080}));
        QTRY_VERIFY_WITH_TIMEOUT(rig.source->brightness() > 0, LiveRig::TIMEOUT_MS);
    }

    void whatIsNotKnownYetIsWhatWasKnownLast()
    {
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        m_camera->overrideParameter(BRIGHTNESS, 6);
        QTRY_COMPARE_WITH_TIMEOUT(rig.source->brightness(), 6, LiveRig::TIMEOUT_MS);
        QVERIFY(rig.source->brightnessMax() > 0);
        m_camera->overrideParameter(BRIGHTNESS, 9);
        m_camera->faults().hangControls = 1;
        QCOMPARE(rig.source->brightness(), 6);
        QCOMPARE(rig.source->brightness(), 6);
        QTRY_COMPARE_WITH_TIMEOUT(rig.source->brightness(), 9, LiveRig::TIMEOUT_MS);
    }

    void keysThatTheCameraWasTooSlowForReachItInOrder()
    {
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        (void)m_camera->takeExtensionTransfers();
        // The number of the first key is lost; its value must not go to another parameter.
        m_camera->faults().hangControls = 1;
        rig.source->zoomInStart();
        rig.source->zoomInStop();
        rig.source->autoFocus();
        const std::vector<ExtensionTransfer> release{{true, 19, ZOOM_IN_KEY}, {true, 20, 0}};
        const std::vector<ExtensionTransfer> last{{true, 19, AUTOFOCUS_KEY}, {true, 20, 0}};
        std::vector<ExtensionTransfer> seen;
        QTRY_VERIFY_WITH_TIMEOUT(
            [&] {
                for (const ExtensionTransfer &transfer : m_camera->takeExtensionTransfers())
                    seen.push_back(transfer);
                return std::search(seen.begin(), seen.end(), last.begin(), last.end()) !=
                       seen.end();
            }(),
            LiveRig::TIMEOUT_MS);
        const auto released = std::search(seen.begin(), seen.end(), release.begin(), release.end());
        QVERIFY(released < std::search(seen.begin(), seen.end(), last.begin(), last.end()));
        QVERIFY(seen.size() % 2 == 0);
        for (std::size_t i = 0; i < seen.size(); ++i)
            QCOMPARE(seen[i].selector, i % 2 == 0 ? 19 : 20);
    }

    void ofManyRestartsTheLastOneCounts()
    {
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        const auto before = m_camera->statistics().classTransfers;
        for (int round = 0; round < 50; ++round) {
            rig.source->setResolution(LiveRig::RECORDING);
            rig.source->setResolution({1920, 1080});
        }
        QVERIFY(rig.waitForSize({1920, 1080}));
        QVERIFY(rig.waitForFrames());
        QCOMPARE(rig.sink.size(), QSize(1920, 1080));
        // A restart is four transfers and more; not all hundred came to the camera.
        QVERIFY(m_camera->statistics().classTransfers - before < 200);
    }

    void aControlOfACameraThatWasPulledAndIsBackHoldsNobody()
    {
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        m_camera->unplug();
        QTest::qWait(1000); // the library is to have seen it leave
        QVERIFY(m_camera->plug());
        RETURNS_AT_ONCE(rig.source->brightnessUp());
        RETURNS_AT_ONCE(rig.source->brightness());
        const qint64 end = elapsedMs([&rig] { rig.source.reset(); });
        QVERIFY2(end < END_MS, qPrintable(QString::number(end)));
    }

    void aSourceEndsInTimeAndFreesACameraThatDidNotAnswer()
    {
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        m_camera->faults().hangControls = 1;
        rig.source->autoFocus();
        const qint64 end = elapsedMs([&rig] { rig.source.reset(); });
        QVERIFY2(end < END_MS, qPrintable(QString::number(end)));
        QTRY_COMPARE_WITH_TIMEOUT(m_camera->statistics().openHandles, 0, LiveRig::TIMEOUT_MS);
    }

    void aCameraWhoseAnswerComesAfterItsSourceHasGoneIsFreed()
    {
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        {
            const std::lock_guard<std::mutex> lock(listing);
            const qint64 end = elapsedMs([&rig] { rig.source.reset(); });
            QVERIFY2(end < END_MS, qPrintable(QString::number(end)));
            QVERIFY(m_camera->statistics().openHandles > 0);
        }
        QTRY_COMPARE_WITH_TIMEOUT(m_camera->statistics().openHandles, 0, LiveRig::TIMEOUT_MS);
        QVERIFY(!m_camera->statistics().streaming);
    }

    void aRestartThatIsNotAnsweredHoldsNobody()
    {
        LiveRig rig;
        QVERIFY(rig.bringUp(*m_camera));
        m_camera->faults().hangControls = -1; // the negotiation of the size, too
        RETURNS_AT_ONCE(rig.source->setResolution(LiveRig::RECORDING));
        RETURNS_AT_ONCE(rig.source->setResolution(LiveRig::PREVIEW));
        RETURNS_AT_ONCE(rig.source->stopCapture());
        RETURNS_AT_ONCE(rig.source->startCapture());
        RETURNS_AT_ONCE(rig.source->brightnessDown());
        QVERIFY(rig.source->running());
        const qint64 end = elapsedMs([&rig] { rig.source.reset(); });
        QVERIFY2(end < END_MS, qPrintable(QString::number(end)));
    }

private:
    std::unique_ptr<VirtualCamera> m_camera;
};

REGISTER_TEST_SIDE_BY_SIDE(LiveSourceWaitsTest)
#include "tst_live_source_waits.moc"
