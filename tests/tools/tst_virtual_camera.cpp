#include "sources/camera/CameraParameters.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/tools/UvcViewer.h"
#include "tools/virtualcamera/SheetCounter.h"
#include "tools/virtualcamera/VirtualCamera.h"

#include <QImage>
#include <QtTest>

#include <memory>

using Transport = VirtualCameraConfig::Transport;
Q_DECLARE_METATYPE(Transport)

/// The real libuvc against the emulated camera in the same process.
class VirtualCameraTest : public QObject
{
    Q_OBJECT

private slots:
    void isFoundWithItsNames();
    void hasTheExtensionUnit();
    void describesItsStreams();
    void streams_data();
    void streams();
    void keepsItsPace();
    void streamsAgainAtAnotherSize();
    void answersEveryParameter();
    void logsTheExtensionUnit();
    void keysActOnThePicture();
    void comesAndGoes();
    void idleCameraIsNotPolled();
};

namespace
{

/// Slow enough that libuvc, which keeps one frame, loses none on a machine that is busy.
VirtualCameraConfig unhurried(Transport transport)
{
    VirtualCameraConfig config;
    config.transport = transport;
    config.framesPerSecond = 8;
    return config;
}

std::optional<quint32> numberOf(const std::optional<QByteArray> &frame)
{
    return frame ? SheetCounter::read(QImage::fromData(*frame, "JPEG")) : std::nullopt;
}

} // namespace

void VirtualCameraTest::isFoundWithItsNames()
{
    VirtualCameraConfig config;
    config.serial = QStringLiteral("SN-42");
    VirtualCamera camera(config);
    UvcViewer viewer;
    QVERIFY(!viewer.find());
    QVERIFY(camera.plug());
    QVERIFY(viewer.waitUntilFound(true));

    uvc_device_descriptor_t *descriptor = nullptr;
    QCOMPARE(uvc_get_device_descriptor(viewer.device, &descriptor), UVC_SUCCESS);
    QCOMPARE(descriptor->idVendor, uint16_t(0x04FC));
    QCOMPARE(descriptor->idProduct, uint16_t(0x6330));
    QCOMPARE(QByteArray(descriptor->serialNumber), QByteArray("SN-42"));
    QCOMPARE(QByteArray(descriptor->product), QByteArray("Emulated document camera"));
    uvc_free_device_descriptor(descriptor);
}

void VirtualCameraTest::hasTheExtensionUnit()
{
    static constexpr uint8_t GUID[16] = {0x82, 0x06, 0x61, 0x63, 0x70, 0x50, 0xAB, 0x49,
                                         0xB8, 0xCC, 0xB3, 0x85, 0x5E, 0x8D, 0x22, 0x1D};
    VirtualCamera camera;
    UvcViewer viewer;
    QVERIFY(camera.plug());
    QVERIFY(viewer.openWhenFound());
    const uvc_extension_unit_t *unit = viewer.extensionUnit();
    QVERIFY(unit);
    QCOMPARE(unit->bUnitID, uint8_t(4));
    QVERIFY(!memcmp(unit->guidExtensionCode, GUID, sizeof GUID));
    QVERIFY(!unit->next);
}

void VirtualCameraTest::describesItsStreams()
{
    VirtualCamera camera;
    UvcViewer viewer;
    QVERIFY(camera.plug());
    QVERIFY(viewer.openWhenFound());
    const uvc_format_desc_t *format = uvc_get_format_descs(viewer.handle);
    QVERIFY(format && !format->next);
    QCOMPARE(format->bDescriptorSubtype, UVC_VS_FORMAT_MJPEG);
    QVector<QSize> sizes;
    for (const uvc_frame_desc_t *frame = format->frame_descs; frame; frame = frame->next) {
        sizes.append(QSize(frame->wWidth, frame->wHeight));
        QCOMPARE(frame->dwDefaultFrameInterval, uint32_t(333333));
    }
    QCOMPARE(sizes, (QVector<QSize>{{1024, 768}, {1280, 720}, {1920, 1080}}));
    QVERIFY(viewer.start(QSize(800, 600)) != UVC_SUCCESS);
}

void VirtualCameraTest::streams_data()
{
    QTest::addColumn<Transport>("transport");
    QTest::addColumn<QSize>("size");
    for (const QSize size : {QSize(1024, 768), QSize(1280, 720), QSize(1920, 1080)}) {
        QTest::addRow("bulk %d", size.width()) << Transport::Bulk << size;
        QTest::addRow("isochronous %d", size.width()) << Transport::Isochronous << size;
    }
}

void VirtualCameraTest::streams()
{
    QFETCH(Transport, transport);
    QFETCH(QSize, size);
    VirtualCamera camera(unhurried(transport));
    UvcViewer viewer;
    QVERIFY(camera.plug());
    QVERIFY(viewer.openWhenFound());
    QCOMPARE(viewer.start(size), UVC_SUCCESS);

    std::optional<quint32> last;
    for (int i = 0; i < 5; ++i) {
        const auto frame = viewer.takeFrame();
        QVERIFY(frame);
        QCOMPARE(QImage::fromData(*frame).size(), size);
        const auto number = numberOf(frame);
        QVERIFY(number);
        if (last)
            QCOMPARE(*number, *last + 1);
        last = number;
    }
    const CameraStatistics statistics = camera.statistics();
    QCOMPARE(QSize(statistics.streamWidth, statistics.streamHeight), size);
    QVERIFY(statistics.streaming);
    viewer.stop();
}

void VirtualCameraTest::keepsItsPace()
{
    VirtualCamera camera;
    UvcViewer viewer;
    QVERIFY(camera.plug());
    QVERIFY(viewer.openWhenFound());
    QCOMPARE(viewer.start(QSize(1024, 768)), UVC_SUCCESS);
    QTRY_VERIFY_WITH_TIMEOUT(camera.statistics().deliveries.size() > 60, 20000);
    viewer.stop();

    const auto deliveries = camera.statistics().deliveries;
    const FrameDelivery &first = deliveries.front(), &last = deliveries.back();
    // Numbers are given at 30 a second whether all frames get through or not. The first may have
    // waited on a busy machine, for as long as the camera catches up at the most.
    constexpr double CATCHING_UP = 6;
    const double seconds = static_cast<double>(last.monotonicNs - first.monotonicNs) / 1e9;
    QVERIFY(last.frame - first.frame >= 60);
    QVERIFY((last.frame - first.frame - CATCHING_UP) / seconds < 30.5);
}

void VirtualCameraTest::streamsAgainAtAnotherSize()
{
    VirtualCamera camera;
    UvcViewer viewer;
    QVERIFY(camera.plug());
    QVERIFY(viewer.openWhenFound());
    for (const QSize size : {QSize(1024, 768), QSize(1920, 1080), QSize(1280, 720)}) {
        QCOMPARE(viewer.start(size), UVC_SUCCESS);
        for (int i = 0; i < 3; ++i) {
            const auto frame = viewer.takeFrame();
            QVERIFY(frame);
            QCOMPARE(QImage::fromData(*frame).size(), size);
        }
        viewer.stop();
    }
}

void VirtualCameraTest::answersEveryParameter()
{
    namespace P = CameraParameter;
    VirtualCamera camera;
    UvcViewer viewer;
    QVERIFY(camera.plug());
    QVERIFY(viewer.openWhenFound());
    QCOMPARE(uvc_get_ctrl_len(viewer.handle, 4, 19), 8);
    QCOMPARE(uvc_get_ctrl_len(viewer.handle, 4, 20), 8);
    quint64 value = 0;
    QCOMPARE(viewer.get(5, value), static_cast<int>(UVC_ERROR_PIPE));

    const QVector<QPair<quint64, quint64>> atPowerOn{
        {P::ZOOM_IN_KEY, 0},       {P::ZOOM_OUT_KEY, 0},        {P::AUTOFOCUS_KEY, 0},
        {P::BRIGHTNESS_UP_KEY, 0}, {P::BRIGHTNESS_DOWN_KEY, 0}, {P::OPTICAL_ZOOM_POSITION, 0},
        {P::DIGITAL_ZOOM, 1000},   {P::BRIGHTNESS, 6},          {P::SECOND_ZOOM, 1000},
        {P::BRIGHTNESS_MIN, 1},    {P::BRIGHTNESS_MAX, 11},     {P::OPTICAL_ZOOM_PERCENT, 0},
    };
    for (const auto &[id, expected] : atPowerOn)
        QCOMPARE(viewer.parameter(id), expected);

    viewer.setParameter(P::BRIGHTNESS_UP_KEY, 1);
    viewer.setParameter(P::BRIGHTNESS_UP_KEY, 0);
    QCOMPARE(viewer.parameter(P::BRIGHTNESS), quint64(7));
    QCOMPARE(camera.parameter(P::BRIGHTNESS), quint64(7));
    camera.overrideParameter(P::SECOND_ZOOM, 1500);
    QCOMPARE(viewer.parameter(P::SECOND_ZOOM), quint64(1500));
}

void VirtualCameraTest::logsTheExtensionUnit()
{
    VirtualCamera camera;
    UvcViewer viewer;
    QVERIFY(camera.plug());
    QVERIFY(viewer.openWhenFound());
    viewer.setParameter(CameraParameter::DIGITAL_ZOOM, 2500);
    QCOMPARE(viewer.parameter(CameraParameter::DIGITAL_ZOOM), quint64(2500));
    const std::vector<ExtensionTransfer> expected{{true, 19, CameraParameter::DIGITAL_ZOOM},
                                                  {true, 20, 2500},
                                                  {true, 19, CameraParameter::DIGITAL_ZOOM},
                                                  {false, 20, 2500}};
    QVERIFY(camera.takeExtensionTransfers() == expected);
    QVERIFY(camera.takeExtensionTransfers().empty());
}

void VirtualCameraTest::keysActOnThePicture()
{
    VirtualCamera camera;
    UvcViewer viewer;
    QVERIFY(camera.plug());
    QVERIFY(viewer.openWhenFound());
    QCOMPARE(viewer.start(QSize(1024, 768)), UVC_SUCCESS);
    const auto greyAt = [&viewer](QPoint point) {
        const auto frame = viewer.takeFrame();
        return frame ? qGray(QImage::fromData(*frame, "JPEG").pixel(point)) : -1;
    };
    const QPoint edge(12, 384); // the desk, until the sheet fills the picture
    const int desk = greyAt(edge);
    QVERIFY(desk > 0 && desk < 160);
    viewer.setParameter(CameraParameter::ZOOM_IN_KEY, 1);
    QTRY_COMPARE_WITH_TIMEOUT(viewer.parameter(CameraParameter::OPTICAL_ZOOM_PERCENT), quint64(100),
                              TIMEOUT_MS);
    viewer.setParameter(CameraParameter::ZOOM_IN_KEY, 0);
    QTRY_VERIFY_WITH_TIMEOUT(greyAt(edge) > 200, TIMEOUT_MS);
    viewer.setParameter(CameraParameter::OPTICAL_ZOOM_POSITION, 0);
    viewer.setParameter(CameraParameter::DIGITAL_ZOOM, 1000);
    QTRY_VERIFY_WITH_TIMEOUT(qAbs(greyAt(edge) - desk) < 12, TIMEOUT_MS);
    viewer.stop();
}

void VirtualCameraTest::comesAndGoes()
{
    VirtualCamera camera;
    UvcViewer viewer;
    for (int round = 0; round < 3; ++round) {
        QVERIFY(camera.plug());
        QVERIFY(camera.plug());
        QVERIFY(camera.plugged());
        QVERIFY(viewer.waitUntilFound(true));
        QCOMPARE(uvc_get_device_address(viewer.device), uint8_t(2 + round));
        camera.unplug();
        camera.unplug();
        QVERIFY(viewer.waitUntilFound(false));
    }
}

void VirtualCameraTest::idleCameraIsNotPolled()
{
    VirtualCamera camera;
    UvcViewer viewer;
    QVERIFY(camera.plug());
    QVERIFY(viewer.openWhenFound());
    QCOMPARE(viewer.parameter(CameraParameter::BRIGHTNESS), quint64(6));
    const auto before = camera.statistics().ioctls;
    QTest::qWait(300); // the time over which a spinning library would ask thousands of times
    QVERIFY(camera.statistics().ioctls - before < 10);
}

REGISTER_TEST(VirtualCameraTest)
#include "tst_virtual_camera.moc"
