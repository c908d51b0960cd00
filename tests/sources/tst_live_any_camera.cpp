#include "MovieFile.h"
#include "sources/camera/FrameMirror.h"
#include "sources/camera/PackedRgb.h"
#include "sources/threads/DetachedThreads.h"
#include "tests/SideBySide.h"
#include "tests/sources/KeptRig.h"
#include "tools/virtualcamera/ForeignMake.h"
#include "tools/virtualcamera/UncompressedFrame.h"

#include <QJsonObject>
#include <QPainter>
#include <QTemporaryDir>

#include <dlfcn.h>
#include <pthread.h>
#include <sys/types.h>

#include <atomic>
#include <cstring>

struct libusb_context;
struct libusb_device;
struct uvc_device_handle;
struct uvc_frame;
struct uvc_stream_ctrl;

using UsbDescriptors::StreamCoding;
using UsbDescriptors::StreamFormat;

Q_DECLARE_METATYPE(VirtualCameraConfig)
Q_DECLARE_METATYPE(UsbDescriptors::StreamCoding)

namespace
{

VirtualCameraConfig foreign(std::vector<StreamFormat> formats)
{
    VirtualCameraConfig config;
    ForeignMake::apply(config, "F1", "Foreign camera");
    config.formats = std::move(formats);
    return config;
}

CameraIdentity identityOf(const VirtualCameraConfig &config)
{
    return {config.vendorId, config.productId, config.serial};
}

StreamFormat format(StreamCoding coding, UsbDescriptors::StreamSize size,
                    std::uint32_t interval = UsbDescriptors::FRAME_INTERVAL)
{
    return {coding, {size}, {interval}};
}

/// A rig that has chosen that camera.
struct ChosenRig : KeptRig {
    explicit ChosenRig(const VirtualCameraConfig &config) { keeper.choose(identityOf(config)); }
};

std::atomic<int> keeperListings{0};
std::atomic<int> streamsBegun{0};

bool untouched(const VirtualCamera &camera)
{
    const CameraStatistics statistics = camera.statistics();
    return statistics.openHandles == 0 && statistics.ioctls == 0;
}

} // namespace

/// In the place of the library's own.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" ssize_t libusb_get_device_list(libusb_context *context, libusb_device ***list)
{
    using List = ssize_t (*)(libusb_context *, libusb_device ***);
    static const auto next = reinterpret_cast<List>(dlsym(RTLD_NEXT, "libusb_get_device_list"));
    char thread[16] = "";
    pthread_getname_np(pthread_self(), thread, sizeof thread);
    keeperListings += std::strcmp(thread, "CameraKeeper") == 0;
    return next(context, list);
}

/// In the place of the library's own, which answers with a number, too.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int uvc_start_streaming(uvc_device_handle *handle, uvc_stream_ctrl *block,
                                   void (*callback)(uvc_frame *, void *), void *stream,
                                   std::uint8_t flags)
{
    using Start = int (*)(uvc_device_handle *, uvc_stream_ctrl *, void (*)(uvc_frame *, void *),
                          void *, std::uint8_t);
    static const auto next = reinterpret_cast<Start>(dlsym(RTLD_NEXT, "uvc_start_streaming"));
    ++streamsBegun;
    return next(handle, block, callback, stream, flags);
}

/// Cameras of other makes, and which camera of several is opened.
class LiveAnyCameraTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qputenv("PULSE_SERVER", "unix:" + m_folder.path().toLocal8Bit() + "/nobody");
    }

    void itsPictureIsShownAndRecorded_data()
    {
        QTest::addColumn<VirtualCameraConfig>("config");
        QTest::addColumn<QSize>("shown");
        QTest::addColumn<QSize>("recorded");
        QTest::addColumn<StreamCoding>("coding");
        QTest::addColumn<quint32>("interval");
        const auto row = [](const char *name, std::vector<StreamFormat> formats, QSize shown,
                            QSize recorded, StreamCoding coding, quint32 interval = 333333) {
            QTest::newRow(name) << foreign(std::move(formats)) << shown << recorded << coding
                                << interval;
        };
        const QSize small(640, 480), large(1920, 1080);
        row("YUYV only, 640 x 480", {format(StreamCoding::Yuyv, {640, 480})}, small, small,
            StreamCoding::Yuyv);
        row("UYVY", {format(StreamCoding::Uyvy, {640, 480})}, small, small, StreamCoding::Uyvy);
        row("grey", {format(StreamCoding::Grey, {1280, 720})}, {1280, 720}, {1280, 720},
            StreamCoding::Grey);
        row("YUYV and Motion-JPEG",
            {format(StreamCoding::Yuyv, {1920, 1080}),
             format(StreamCoding::MotionJpeg, {1920, 1080})},
            large, large, StreamCoding::MotionJpeg);
        row("25 only", {format(StreamCoding::MotionJpeg, {1280, 720}, 400000)}, {1280, 720},
            {1280, 720}, StreamCoding::MotionJpeg, 400000);
        row("29.97 only", {format(StreamCoding::MotionJpeg, {1280, 720}, 333667)}, {1280, 720},
            {1280, 720}, StreamCoding::MotionJpeg, 333667);
        row("a range without a step",
            {{StreamCoding::MotionJpeg, {{1024, 768}, {1280, 720}}, {333667, 333667, 0}, true}},
            LiveRig::PREVIEW, LiveRig::RECORDING, StreamCoding::MotionJpeg, 333667);
    }

    void itsPictureIsShownAndRecorded()
    {
        QFETCH(VirtualCameraConfig, config);
        QFETCH(QSize, shown);
        QFETCH(QSize, recorded);
        VirtualCamera camera(config);
        ChosenRig rig(config);
        QVERIFY(rig.bringUp(camera));
        QCOMPARE(rig.sink.size(), shown);
        QTEST(camera.statistics().streamCoding, "coding");
        QTEST(camera.statistics().streamInterval, "interval");
        QTRY_COMPARE_WITH_TIMEOUT(rig.keeper.status().state, CameraStatus::State::Showing,
                                  LiveRig::TIMEOUT_MS);
        QCOMPARE(rig.keeper.status().size, shown);
        QCOMPARE(rig.keeper.status().wantedSize, LiveRig::PREVIEW);

        const QString file = m_folder.filePath("movie.mov");
        rig.source->startRecord(file);
        QVERIFY(rig.waitForSize(recorded));
        QVERIFY(rig.waitForFrames(20));
        rig.source->stopRecord();
        QVERIFY(DetachedThreads::allEnded(std::chrono::milliseconds(LiveRig::TIMEOUT_MS)));
        const MovieFile movie(file);
        QCOMPARE(movie.complaints(), QString());
        const QJsonObject video = movie.stream("video");
        QCOMPARE(QSize(video["width"].toInt(), video["height"].toInt()), recorded);
        QVERIFY(video["nb_frames"].toString().toInt() > 5);
    }

    void theColoursStay_data()
    {
        QTest::addColumn<int>("sent");
        QTest::addColumn<int>("as");
        QTest::newRow("YUYV") << int(StreamCoding::Yuyv) << int(StreamFormats::Coding::Yuyv);
        QTest::newRow("UYVY") << int(StreamCoding::Uyvy) << int(StreamFormats::Coding::Uyvy);
        QTest::newRow("grey") << int(StreamCoding::Grey) << int(StreamFormats::Coding::Grey);
    }

    void theColoursStay()
    {
        QFETCH(int, sent);
        QFETCH(int, as);
        // Neither a multiple of what is converted at once nor of the processor's registers.
        QImage picture(102, 71, QImage::Format_RGB32);
        picture.fill(QColor(200, 40, 90));
        QPainter(&picture).fillRect(50, 30, 52, 41, QColor(20, 120, 230));
        const auto frame = UncompressedFrame::encode(picture, static_cast<StreamCoding>(sent));
        const auto coding = static_cast<StreamFormats::Coding>(as);
        QImage shown(picture.size(), QImage::Format_RGB888);
        std::vector<std::uint8_t> rgb(std::size_t{102} * 71 * 3, 0xEE);
        PackedRgb packed(coding, picture.size());
        QVERIFY(!packed.convert(frame.data(), frame.size() - 1, rgb.data()));
        QVERIFY(rgb.front() == 0xEE && rgb.back() == 0xEE);
        QVERIFY(packed.convert(frame.data(), frame.size(), rgb.data()));
        shown = QImage(rgb.data(), 102, 71, 102 * 3, QImage::Format_RGB888);
        for (const QPoint &point : {QPoint(0, 0), QPoint(101, 29), QPoint(60, 31), QPoint(101, 70),
                                    QPoint(52, 69), QPoint(0, 70)}) {
            QColor wanted = picture.pixelColor(point);
            const QColor got = shown.pixelColor(point);
            if (coding == StreamFormats::Coding::Grey)
                wanted = QColor(qGray(wanted.rgb()), qGray(wanted.rgb()), qGray(wanted.rgb()));
            // The codes of a picture end before black and white, and the library counts in small
            // steps.
            const int tolerance = coding == StreamFormats::Coding::Grey ? 14 : 6;
            QVERIFY2(std::abs(wanted.red() - got.red()) <= tolerance &&
                         std::abs(wanted.green() - got.green()) <= tolerance &&
                         std::abs(wanted.blue() - got.blue()) <= tolerance,
                     qPrintable(wanted.name() + " became " + got.name()));
        }
    }

    void aPictureIsTurnedOverAsOneIsPrinted()
    {
        QImage picture(37, 23, QImage::Format_RGB888);
        for (int y = 0; y < 23; ++y) {
            for (int x = 0; x < 37; ++x)
                picture.setPixelColor(x, y, QColor(x * 6, y * 11, (x * y) % 256));
        }
        FrameMirror mirror;
        for (const bool horizontal : {false, true}) {
            for (const bool vertical : {false, true}) {
                std::vector<std::uint8_t> rgb;
                for (int y = 0; y < 23; ++y)
                    rgb.insert(rgb.end(), picture.constScanLine(y),
                               picture.constScanLine(y) + std::ptrdiff_t{37} * 3);
                mirror.apply(rgb.data(), picture.size(),
                             Qt::Orientations(horizontal ? Qt::Horizontal : 0) |
                                 Qt::Orientations(vertical ? Qt::Vertical : 0));
                const QImage turned(rgb.data(), 37, 23, 37 * 3, QImage::Format_RGB888);
                QCOMPARE(turned, picture.mirrored(horizontal, vertical));
            }
        }
    }

    void thePictureIsTurnedOverBeforeAnybodySeesIt()
    {
        VirtualCamera camera(rigCamera());
        LiveRig rig;
        QVERIFY(rig.bringUp(camera));
        const QImage plain = rig.sink.last();
        rig.source->setMirrored(Qt::Horizontal | Qt::Vertical);
        QVERIFY(rig.waitForFrames());
        const QImage turned = rig.sink.last();
        // But for what moves on the sheet.
        const auto differing = [&turned](const QImage &other) {
            int count = 0;
            for (int y = 0; y < turned.height(); y += 8) {
                for (int x = 0; x < turned.width(); x += 8)
                    count += std::abs(turned.pixelColor(x, y).lightness() -
                                      other.pixelColor(x, y).lightness()) > 60;
            }
            return count;
        };
        const int unturned = differing(plain);
        QVERIFY(unturned > 200);
        QVERIFY(differing(plain.mirrored(true, true)) < unturned / 4);
    }

    void aFrameThatIsTooShortIsDropped()
    {
        const VirtualCameraConfig config = foreign({format(StreamCoding::Yuyv, {640, 480})});
        VirtualCamera camera(config);
        ChosenRig rig(config);
        QVERIFY(rig.bringUp(camera));
        camera.faults().truncateFrames = -1;
        const std::uint64_t lost = rig.source->cameraLink().lost;
        QVERIFY(QTest::qWaitFor([&] { return rig.source->cameraLink().lost > lost + 3; },
                                LiveRig::TIMEOUT_MS));
        QVERIFY(staysWithoutFrames(rig.sink));
        camera.faults().truncateFrames = 0;
        QVERIFY(rig.waitForFrames());
    }

    void theKeeperListsTheBusForACameraOrAViewerAlone()
    {
        VirtualCamera camera(rigCamera());
        KeptRig rig;
        keeperListings = 0;
        const auto comesToMore = [] {
            const int before = keeperListings;
            return QTest::qWaitFor([before] { return keeperListings >= before + 2; },
                                   LiveRig::TIMEOUT_MS);
        };
        // Absences: as long as three looks take.
        QTest::qWait(1600);
        QCOMPARE(keeperListings.load(), 0);
        rig.keeper.addViewer(this);
        QVERIFY(comesToMore());
        rig.keeper.removeViewer(this);
        QTest::qWait(500); // for the one that is under way
        const int before = keeperListings;
        QTest::qWait(1600);
        QCOMPARE(keeperListings.load(), before);
        QVERIFY(rig.bringUp(camera));
        QVERIFY(comesToMore());
        camera.unplug();
        QVERIFY(rig.waitForState(CameraStatus::State::Unplugged));
        QVERIFY(comesToMore());
    }

    void withoutAChoiceNoOtherMakeIsTouched()
    {
        VirtualCamera other(foreign({{}}));
        QVERIFY(other.plug());
        KeptRig rig;
        rig.keeper.addViewer(this);
        QVERIFY(QTest::qWaitFor([&rig] { return rig.keeper.cameras().size() == 1; },
                                LiveRig::TIMEOUT_MS));
        QCOMPARE(rig.keeper.cameras().front().name, QString("Foreign camera"));
        // An absence: longer than a camera that is wanted waits to be opened.
        QTest::qWait(3000);
        QVERIFY(!rig.source->running());
        VirtualCamera own;
        QVERIFY(rig.bringUp(own));
        QCOMPARE(rig.keeper.status().vendorId, UsbDescriptors::VENDOR_ID);
        QVERIFY(untouched(other));
    }

    void withoutAChoiceAnotherOneOfTheMakeTakesItsPlace()
    {
        VirtualCameraConfig config = rigCamera();
        VirtualCamera first(config);
        config.serial = "another";
        VirtualCamera second(config);
        KeptRig rig;
        QVERIFY(rig.bringUp(first));
        first.unplug();
        QVERIFY(rig.waitForState(CameraStatus::State::Unplugged));
        QVERIFY(second.plug());
        QVERIFY(rig.waitForState(CameraStatus::State::Showing));
        QVERIFY(second.statistics().openHandles > 0);
        QTRY_COMPARE_WITH_TIMEOUT(first.statistics().openHandles, 0, LiveRig::TIMEOUT_MS);
    }

    void theChosenOneIsOpenedAndNoOther()
    {
        const VirtualCameraConfig chosen = foreign({{}});
        VirtualCameraConfig twin = chosen;
        twin.serial = "F2";
        VirtualCamera own, first(twin), second(chosen);
        ChosenRig rig(chosen);
        rig.keeper.addViewer(this);
        QVERIFY(own.plug() && first.plug());
        QVERIFY(QTest::qWaitFor([&rig] { return rig.keeper.cameras().size() == 2; },
                                LiveRig::TIMEOUT_MS));
        // An absence: longer than a camera that is wanted waits to be opened.
        QTest::qWait(3000);
        QVERIFY(!rig.source->running());
        QVERIFY(rig.bringUp(second));
        QVERIFY(untouched(own) && untouched(first));
        // It is known again in another port.
        const int address = rig.source->cameraLink().address;
        second.unplug();
        QVERIFY(rig.waitForState(CameraStatus::State::Unplugged));
        VirtualCamera elsewhere(chosen);
        QVERIFY(elsewhere.plug());
        QVERIFY(rig.waitForState(CameraStatus::State::Showing));
        QVERIFY(rig.source->cameraLink().address != address);
        QVERIFY(untouched(own) && untouched(first));
    }

    void transfersThatCannotBeAreNotAskedFor_data()
    {
        QTest::addColumn<quint32>("payload");
        QTest::newRow("nothing") << 0U;
        QTest::newRow("4 GB") << 0xFFFFFFFFU;
        QTest::newRow("2 GB") << 0x80000000U;
    }

    void transfersThatCannotBeAreNotAskedFor()
    {
        QFETCH(quint32, payload);
        VirtualCameraConfig config = foreign({{}});
        config.maximumPayload = payload;
        VirtualCamera camera(config);
        ChosenRig rig(config);
        QVERIFY(camera.plug());
        QVERIFY(rig.waitForState(CameraStatus::State::NoSuchSize));
        QVERIFY(staysWithoutFrames(rig.sink));
        // The library would ask the bus for such transfers, and give up by itself at best.
        QCOMPARE(streamsBegun.load(), 0);
        camera.unplug();
        config.maximumPayload = VirtualCameraConfig().maximumPayload;
        VirtualCamera sound(config);
        QVERIFY(sound.plug());
        QVERIFY(rig.waitForState(CameraStatus::State::Showing));
        QVERIFY(streamsBegun > 0);
    }

    void anotherChoiceTakesItsPlace()
    {
        VirtualCamera own, other(foreign({format(StreamCoding::Yuyv, {640, 480})}));
        KeptRig rig;
        QVERIFY(other.plug());
        QVERIFY(rig.bringUp(own));
        rig.keeper.choose(CameraIdentity{ForeignMake::VENDOR_ID, ForeignMake::PRODUCT_ID, "F1"});
        QVERIFY(rig.waitForSize({640, 480}));
        QTRY_COMPARE_WITH_TIMEOUT(own.statistics().openHandles, 0, LiveRig::TIMEOUT_MS);
        rig.keeper.choose({});
        QVERIFY(rig.waitForSize(LiveRig::PREVIEW));
        QTRY_COMPARE_WITH_TIMEOUT(other.statistics().openHandles, 0, LiveRig::TIMEOUT_MS);
        rig.keeper.choose(CameraIdentity{ForeignMake::VENDOR_ID, ForeignMake::PRODUCT_ID, "F9"});
        QVERIFY(rig.waitForState(CameraStatus::State::Unplugged));
        QVERIFY(rig.keeper.status().chosen);
        QTRY_COMPARE_WITH_TIMEOUT(own.statistics().openHandles, 0, LiveRig::TIMEOUT_MS);
    }

private:
    QTemporaryDir m_folder;
};

REGISTER_TEST_SIDE_BY_SIDE(LiveAnyCameraTest)
#include "tst_live_any_camera.moc"
