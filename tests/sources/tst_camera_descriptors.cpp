#include "sources/camera/DescriptorFence.h"
#include "sources/camera/StreamFormats.h"
#include "sources/camera/UvcConnection.h"
#include "tests/TestProgram.h"
#include "tests/sources/LibraryReads.h"
#include "tools/virtualcamera/VirtualCamera.h"

#include <QtTest>

#include <algorithm>
#include <random>

using Bytes = std::vector<std::uint8_t>;

namespace
{

constexpr std::size_t CONTROL_BEGIN = UsbDescriptors::DEVICE_DESCRIPTOR_SIZE + 9 + 8 + 9;

/// The class-specific descriptors of the emulated camera's control interface, and those of its
/// streaming interface.
std::pair<Bytes, Bytes> goodOnes()
{
    UsbDescriptors::Device device;
    device.formats.push_back({UsbDescriptors::StreamCoding::Yuyv});
    device.terminalControls = device.processingControls = 0x0FFF;
    const Bytes all = UsbDescriptors::build(device);
    const auto whole = [&all](std::size_t from) {
        const std::size_t length = all[from] == 13 && all[from + 3] == 0x10
                                       ? all[from + 5] + 256u * all[from + 6]
                                       : all[from + 4] + 256u * all[from + 5];
        return Bytes(all.begin() + static_cast<std::ptrdiff_t>(from),
                     all.begin() + static_cast<std::ptrdiff_t>(from + length));
    };
    const Bytes control = whole(CONTROL_BEGIN);
    // Behind it come the endpoint of the status, its own descriptor and the interface.
    return {control, whole(CONTROL_BEGIN + control.size() + 7 + 5 + 9)};
}

/// Opens the camera through the library and gives back whether that succeeded.
bool opens(VirtualCamera &camera)
{
    if (!camera.plug())
        return false;
    CameraBus bus;
    bool opened = false;
    for (const BusCamera &listed : bus.cameras()) {
        UvcConnection connection;
        opened = connection.initialise() == 0 &&
                 connection.find(listed.busNumber, listed.address) == 0 && connection.open() == 0;
        (void)StreamFormats::choose(connection.offers(), {1280, 720}, 30,
                                    StreamFormats::Sizes::Nearest);
        connection.close();
    }
    camera.unplug();
    return opened;
}

} // namespace

/// Cameras whose descriptors do not hold together.
class CameraDescriptorsTest : public QObject
{
    Q_OBJECT

private slots:
    void goodOnesStayAsTheyAre()
    {
        auto [control, stream] = goodOnes();
        const Bytes before = control, streamBefore = stream;
        const auto fenced =
            DescriptorFence::fenceControl(control.data(), control.size(), {false, true});
        QVERIFY(fenced.hasStream);
        QCOMPARE(fenced.length, before.size());
        QCOMPARE(control, before);
        QCOMPARE(DescriptorFence::fenceStream(stream.data(), stream.size()), streamBefore.size());
        QCOMPARE(stream, streamBefore);
    }

    void whatTheLibraryReadsLiesWithinThem()
    {
        std::mt19937 random(20);
        const auto [control, stream] = goodOnes();
        const auto mutated = [&random](Bytes bytes) {
            for (auto i = random() % 6; i-- > 0 && !bytes.empty();) {
                const std::size_t place = random() % bytes.size();
                switch (random() % 4) {
                case 0:
                    bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(place));
                    break;
                case 1:
                    bytes.resize(std::max<std::size_t>(place, 1));
                    break;
                default:
                    bytes[place] = static_cast<std::uint8_t>(random());
                    break;
                }
            }
            return bytes;
        };
        int broken = 0;
        for (int round = 0; round < 100000; ++round) {
            Bytes one = mutated(control), other = mutated(stream);
            const std::vector<bool> streams{random() % 8 == 0, random() % 8 != 0};
            broken += !LibraryReads::control(one.data(), one.size(), streams);
            broken += !LibraryReads::stream(other.data(), other.size());
            const auto fenced = DescriptorFence::fenceControl(one.data(), one.size(), streams);
            QVERIFY(LibraryReads::control(one.data(), fenced.length, streams));
            QVERIFY(LibraryReads::stream(other.data(),
                                         DescriptorFence::fenceStream(other.data(), other.size())));
        }
        QVERIFY2(broken > 10000, qPrintable(QString::number(broken)));
    }

    void aFrameBeforeEveryFormatEndsNothing()
    {
        const auto [control, stream] = goodOnes();
        const std::size_t format = CONTROL_BEGIN + control.size() + 7 + 5 + 9 + stream[0];
        VirtualCameraConfig config;
        QVERIFY(opens(*std::make_unique<VirtualCamera>(config)));
        config.descriptorPatches = {{format - 1 + 2, 0x0D}}; // no format any more
        VirtualCamera camera(config);
        QVERIFY(opens(camera));
    }

    void anInterfaceThatThereIsNotEndsNothing()
    {
        VirtualCameraConfig config;
        config.descriptorPatches = {{CONTROL_BEGIN + 12, 200}};
        VirtualCamera camera(config);
        QVERIFY(!opens(camera));
    }

    void aCameraOfEditionOneAndAHalfIsOpened()
    {
        VirtualCameraConfig config;
        config.descriptorPatches = {{CONTROL_BEGIN + 3, 0x50}, {CONTROL_BEGIN + 4, 0x01}};
        VirtualCamera camera(config);
        QVERIFY(opens(camera));
    }

    /// The framework ends what takes minutes, so that many are opened in parts.
    void mutatedOnesEndNothing_data()
    {
        constexpr int USUAL_CAMERAS = 40;
        constexpr int PART = 200;
        bool given = false;
        const int wanted = qEnvironmentVariableIntValue("MUTATED_CAMERAS", &given);
        QTest::addColumn<unsigned>("seed");
        QTest::addColumn<int>("cameras");
        unsigned seed = 2020;
        for (int left = given ? wanted : USUAL_CAMERAS; left > 0; left -= PART, ++seed)
            QTest::newRow(qPrintable(QString::number(seed))) << seed << std::min(left, PART);
    }

    void mutatedOnesEndNothing()
    {
        QFETCH(unsigned, seed);
        QFETCH(int, cameras);
        std::mt19937 random(seed);
        const std::size_t size = UsbDescriptors::build({}).size();
        int opened = 0;
        for (int camera = 0; camera < cameras; ++camera) {
            VirtualCameraConfig config;
            for (auto i = 1 + random() % 4; i-- > 0;)
                config.descriptorPatches.emplace_back(CONTROL_BEGIN +
                                                          random() % (size - CONTROL_BEGIN),
                                                      static_cast<std::uint8_t>(random()));
            VirtualCamera mutated(config);
            opened += opens(mutated);
        }
        QVERIFY(opened > 0);
    }
};

REGISTER_TEST(CameraDescriptorsTest)
#include "tst_camera_descriptors.moc"
