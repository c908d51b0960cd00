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
    void streams_data();
    void streams();
};

namespace
{

VirtualCameraConfig configFor(Transport transport)
{
    VirtualCameraConfig config;
    config.transport = transport;
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
    QVERIFY(viewer.waitUntilFound(true));
    QCOMPARE(viewer.open(), UVC_SUCCESS);
    const uvc_extension_unit_t *unit = viewer.extensionUnit();
    QVERIFY(unit);
    QCOMPARE(unit->bUnitID, uint8_t(4));
    QVERIFY(!memcmp(unit->guidExtensionCode, GUID, sizeof GUID));
    QVERIFY(!unit->next);
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
    VirtualCamera camera(configFor(transport));
    UvcViewer viewer;
    QVERIFY(camera.plug());
    QVERIFY(viewer.waitUntilFound(true));
    QCOMPARE(viewer.open(), UVC_SUCCESS);
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

QTEST_MAIN(VirtualCameraTest)
#include "tst_virtual_camera.moc"
