#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/tools/UvcViewer.h"
#include "tools/virtualcamera/SheetCounter.h"
#include "tools/virtualcamera/VirtualCamera.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QProcess>
#include <QtTest>

#include <chrono>
#include <functional>
#include <memory>

using Fault = std::atomic<int> CameraFaults::*;
Q_DECLARE_METATYPE(Fault)

/// Every fault of the emulated camera as the real libuvc sees it.
class VirtualCameraFaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void controlsStall();
    void probesStall();
    void interfacesAreBusy();
    void nodeCannotBeOpened();
    void extensionUnitIsMissing();
    void framesAreTruncated();
    void framesAreCorrupt();
    void framesAreEmpty();
    void framesSayAnotherSize();
    void framesDoNotArrive_data();
    void framesDoNotArrive();
    void cameraFallsSilent();
    void endpointStalls();
    void unplugEndsTheStream_data();
    void unplugEndsTheStream();
    void whoHasItOpenMayOutliveIt();
    void namesLeadToFaults();
    void countsRunOut();
    void whoDoesNotUseTheBusDoesNotSeeIt();
};

namespace
{

const QSize FRAME(1024, 768);

/// Slow enough that libuvc, which keeps one frame, loses none on a machine that is busy.
VirtualCameraConfig unhurried()
{
    VirtualCameraConfig config;
    config.framesPerSecond = 10;
    return config;
}

struct Bench {
    VirtualCamera camera{unhurried()};
    UvcViewer viewer;

    [[nodiscard]] bool plug() { return camera.plug() && viewer.waitUntilFound(true); }
    [[nodiscard]] bool open() { return plug() && viewer.open() == UVC_SUCCESS; }
    [[nodiscard]] bool stream() { return open() && viewer.start(FRAME) == UVC_SUCCESS; }
};

std::optional<quint32> numberOf(const QByteArray &frame)
{
    return SheetCounter::read(QImage::fromData(frame, "JPEG"));
}

/// Sets the fault for some frames, of which libuvc may lose one on a busy machine, and returns the
/// first that is not as it should be.
QByteArray spoiltFrame(Bench &bench, std::atomic<int> &fault,
                       const std::function<bool(const QByteArray &)> &isSpoilt)
{
    fault = 4;
    for (int i = 0; i < 60; ++i) {
        const auto frame = bench.viewer.takeFrame();
        if (frame && isSpoilt(*frame))
            return *frame;
    }
    return {};
}

uvc_error_t convert(const QByteArray &jpeg)
{
    uvc_frame_t source{}, target{};
    QByteArray data = jpeg, rgb(FRAME.width() * FRAME.height() * 3, 0);
    source.data = data.data();
    source.data_bytes = static_cast<size_t>(data.size());
    source.width = static_cast<uint32_t>(FRAME.width());
    source.height = static_cast<uint32_t>(FRAME.height());
    source.frame_format = UVC_FRAME_FORMAT_MJPEG;
    target.data = rgb.data();
    target.data_bytes = static_cast<size_t>(rgb.size());
    return uvc_mjpeg2rgb(&source, &target);
}

QSize sizeInHeader(QByteArray jpeg)
{
    QBuffer buffer(&jpeg);
    return QImageReader(&buffer, "JPEG").size();
}

/// The number of the next frame that can be read.
std::optional<quint32> nextNumber(Bench &bench)
{
    const auto frame = bench.viewer.takeFrame();
    return frame ? numberOf(*frame) : std::nullopt;
}

/// Whether at least so many frames in a row are missing soon after the frame `last`.
bool gapComes(Bench &bench, std::optional<quint32> last, quint32 frames)
{
    for (int i = 0; i < 60 && last; ++i) {
        const auto number = nextNumber(bench);
        if (number && *number > *last + frames)
            return true;
        last = number;
    }
    return false;
}

} // namespace

void VirtualCameraFaultsTest::controlsStall()
{
    Bench bench;
    QVERIFY(bench.open());
    quint64 value = 0;
    bench.camera.faults().stallControls = 1;
    QCOMPARE(bench.viewer.set(19, 1), static_cast<int>(UVC_ERROR_PIPE));
    QCOMPARE(bench.viewer.set(19, 1), 8);
    bench.camera.faults().stallSelector = 20;
    QCOMPARE(bench.viewer.set(19, 1), 8);
    QCOMPARE(bench.viewer.set(20, 1), static_cast<int>(UVC_ERROR_PIPE));
    QCOMPARE(bench.viewer.get(20, value), static_cast<int>(UVC_ERROR_PIPE));
    QCOMPARE(bench.viewer.get(19, value), 8);
    bench.camera.faults().stallSelector = 0;
    QCOMPARE(bench.viewer.get(20, value), 8);
}

void VirtualCameraFaultsTest::probesStall()
{
    Bench bench;
    QVERIFY(bench.open());
    bench.camera.faults().stallProbes = -1;
    QVERIFY(bench.viewer.start(FRAME) != UVC_SUCCESS);
    bench.camera.faults().stallProbes = 0;
    QCOMPARE(bench.viewer.start(FRAME), UVC_SUCCESS);
    QVERIFY(bench.viewer.takeFrame());
    bench.viewer.stop();
}

void VirtualCameraFaultsTest::interfacesAreBusy()
{
    Bench bench;
    bench.camera.faults().claimBusy = 1;
    QVERIFY(bench.plug());
    QCOMPARE(bench.viewer.open(), UVC_ERROR_BUSY);
    bench.camera.faults().claimBusy = 0;
    QCOMPARE(bench.viewer.open(), UVC_SUCCESS);
}

void VirtualCameraFaultsTest::nodeCannotBeOpened()
{
    Bench bench;
    bench.camera.faults().denyOpen = 1;
    QVERIFY(bench.plug());
    QCOMPARE(bench.viewer.open(), UVC_ERROR_ACCESS);
    bench.camera.unplug();
    bench.camera.faults().denyOpen = 0;
    QVERIFY(bench.viewer.waitUntilFound(false));
    QVERIFY(bench.open());
}

void VirtualCameraFaultsTest::extensionUnitIsMissing()
{
    Bench bench;
    bench.camera.faults().withoutExtensionUnit = 1;
    QVERIFY(bench.open());
    QVERIFY(!bench.viewer.extensionUnit());
    QCOMPARE(bench.viewer.set(19, 1), static_cast<int>(UVC_ERROR_PIPE));
    QCOMPARE(bench.viewer.start(FRAME), UVC_SUCCESS);
    QVERIFY(bench.viewer.takeFrame());
    bench.viewer.stop();
}

void VirtualCameraFaultsTest::framesAreTruncated()
{
    Bench bench;
    QVERIFY(bench.stream());
    const QByteArray frame =
        spoiltFrame(bench, bench.camera.faults().truncateFrames,
                    [](const QByteArray &jpeg) { return !jpeg.endsWith("\xFF\xD9"); });
    QVERIFY(frame.size() > 10000);
    QCOMPARE(convert(frame), UVC_SUCCESS);
    bench.viewer.stop();
}

void VirtualCameraFaultsTest::framesAreCorrupt()
{
    Bench bench;
    QVERIFY(bench.stream());
    const QByteArray frame = spoiltFrame(bench, bench.camera.faults().corruptFrames,
                                         [](const QByteArray &jpeg) { return !numberOf(jpeg); });
    QVERIFY(frame.size() > 10000);
    QVERIFY(convert(frame) < 0);
    bench.viewer.stop();
}

void VirtualCameraFaultsTest::framesAreEmpty()
{
    Bench bench;
    QVERIFY(bench.stream());
    const QByteArray frame = spoiltFrame(bench, bench.camera.faults().emptyFrames,
                                         [](const QByteArray &jpeg) { return jpeg.size() < 1000; });
    QCOMPARE(frame, QByteArray("\xFF\xD8\xFF\xD9"));
    QVERIFY(convert(frame) < 0);
    bench.viewer.stop();
}

void VirtualCameraFaultsTest::framesSayAnotherSize()
{
    Bench bench;
    QVERIFY(bench.stream());
    const QSize twice(FRAME.width(), 2 * FRAME.height()), half(FRAME.width(), FRAME.height() / 2);
    QVERIFY(
        !spoiltFrame(bench, bench.camera.faults().wrongSizeFrames, [twice](const QByteArray &jpeg) {
             return sizeInHeader(jpeg) == twice;
         }).isEmpty());
    QVERIFY(
        !spoiltFrame(bench, bench.camera.faults().smallSizeFrames, [half](const QByteArray &jpeg) {
             return sizeInHeader(jpeg) == half;
         }).isEmpty());
    bench.viewer.stop();
}

void VirtualCameraFaultsTest::framesDoNotArrive_data()
{
    QTest::addColumn<Fault>("fault");
    QTest::newRow("dropped") << Fault(&CameraFaults::dropFrames);
    QTest::newRow("with the error bit") << Fault(&CameraFaults::errorBitFrames);
}

void VirtualCameraFaultsTest::framesDoNotArrive()
{
    QFETCH(Fault, fault);
    Bench bench;
    QVERIFY(bench.stream());
    const auto last = nextNumber(bench);
    bench.camera.faults().*fault = 6;
    QVERIFY(gapComes(bench, last, 6));
    bench.viewer.stop();
}

void VirtualCameraFaultsTest::cameraFallsSilent()
{
    Bench bench;
    QVERIFY(bench.stream());
    QVERIFY(bench.viewer.takeFrame());
    bench.camera.faults().silent = 1;
    int more = 0;
    while (more < 30 && bench.viewer.takeFrame(300))
        ++more;
    QVERIFY(more < 30);
    bench.camera.faults().silent = 0;
    QVERIFY(bench.viewer.takeFrame());
    bench.viewer.stop();
}

void VirtualCameraFaultsTest::endpointStalls()
{
    Bench bench;
    QVERIFY(bench.stream());
    QVERIFY(nextNumber(bench));
    bench.camera.faults().endpointStalls = 3;
    QTRY_COMPARE_WITH_TIMEOUT(bench.camera.faults().endpointStalls.load(), 0, TIMEOUT_MS);
    const quint32 after = bench.camera.statistics().lastFrame;
    std::optional<quint32> number;
    for (int i = 0; i < 60 && (!number || *number <= after); ++i)
        number = nextNumber(bench);
    QVERIFY(number && *number > after);
    bench.viewer.stop();
}

void VirtualCameraFaultsTest::unplugEndsTheStream_data()
{
    QTest::addColumn<bool>("dirty");
    QTest::newRow("clean") << false;
    QTest::newRow("dirty") << true;
}

void VirtualCameraFaultsTest::unplugEndsTheStream()
{
    QFETCH(bool, dirty);
    VirtualCamera camera;
    QVERIFY(camera.plug()); // before libusb looks: an abandoned viewer keeps it from being told
    UvcViewer viewer;
    QVERIFY(viewer.find());
    QCOMPARE(viewer.open(), UVC_SUCCESS);
    QCOMPARE(viewer.start(FRAME), UVC_SUCCESS);
    QVERIFY(viewer.takeFrame());
    viewer.abandon();
    dirty ? camera.unplugDirty() : camera.unplug();
    QVERIFY(!camera.plugged());
    quint64 value = 0;
    QCOMPARE(viewer.get(19, value), static_cast<int>(UVC_ERROR_NO_DEVICE));
    int more = 0;
    while (more < 30 && viewer.takeFrame(300))
        ++more;
    QVERIFY(more < 30);
    UvcViewer other;
    QVERIFY(other.waitUntilFound(false));
    // The stream is not stopped: the bare library may wait for ever for a transfer that it has
    // lost.
}

void VirtualCameraFaultsTest::whoHasItOpenMayOutliveIt()
{
    const VirtualCamera keepsTheBus;
    auto camera = std::make_unique<VirtualCamera>();
    QVERIFY(camera->plug());
    UvcViewer viewer;
    QVERIFY(viewer.find());
    QCOMPARE(viewer.open(), UVC_SUCCESS);
    viewer.abandon();
    uvc_stream_ctrl_t control{};
    QCOMPARE(uvc_get_stream_ctrl_format_size(viewer.handle, &control, UVC_FRAME_FORMAT_MJPEG,
                                             FRAME.width(), FRAME.height(), 30),
             UVC_SUCCESS);
    uvc_stream_handle_t *stream = nullptr;
    QCOMPARE(uvc_stream_open_ctrl(viewer.handle, &stream, &control), UVC_SUCCESS);
    camera.reset();
    quint64 value = 0;
    QCOMPARE(viewer.get(19, value), static_cast<int>(UVC_ERROR_NO_DEVICE));
    uvc_stream_close(stream); // gives the interface back to what is no more
}

void VirtualCameraFaultsTest::namesLeadToFaults()
{
    CameraFaults faults;
    QCOMPARE(findFault(faults, "claimBusy"), &faults.claimBusy);
    QCOMPARE(findFault(faults, "truncateFrames"), &faults.truncateFrames);
    QVERIFY(!findFault(faults, "none"));
}

void VirtualCameraFaultsTest::countsRunOut()
{
    std::atomic<int> count{2};
    QVERIFY(takeFault(count));
    QVERIFY(takeFault(count));
    QVERIFY(!takeFault(count));
    QCOMPARE(count.load(), 0);
    count = -1;
    QVERIFY(takeFault(count));
    QVERIFY(takeFault(count));
}

/// A helper that listens to the bus would take the announcements away from the camera's program.
void VirtualCameraFaultsTest::whoDoesNotUseTheBusDoesNotSeeIt()
{
    const VirtualCamera camera;
    QVERIFY(qEnvironmentVariableIsSet("UMOCKDEV_DIR"));
    QProcess helper;
    helper.start("env", QStringList());
    QVERIFY(helper.waitForFinished());
    const QByteArray variables = helper.readAllStandardOutput();
    QVERIFY(variables.contains("libumockdev-preload"));
    QVERIFY(!variables.contains("UMOCKDEV_DIR"));
}

REGISTER_TEST(VirtualCameraFaultsTest)
#include "tst_virtual_camera_faults.moc"
