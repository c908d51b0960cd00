// What cameras on the bus cost the program and how soon they are there, with emulated ones in this
// process (to be started with the preloaded libraries of measure-camera-bus):
//   bench_camera_bus list: how long the list of eight cameras takes
//   bench_camera_bus keeper SECONDS: the share of a core that the keeper takes while a picture is
//       shown
//   bench_camera_bus returns TIMES: from plugging in to the picture, and how long the window was
//       away
//   bench_camera_bus large SECONDS: Motion-JPEG of 3840x2160 at 30 a second in the window
#include "app/Platform.h"
#include "benchmarks/EventLoop.h"
#include "canvas/ImageCanvas.h"
#include "mainwindow/CameraPreferences.h"
#include "mainwindow/MainWindow.h"
#include "settings/StoredSettings.h"
#include "sources/LiveSource.h"
#include "sources/camera/CameraBus.h"
#include "sources/camera/CameraKeeper.h"
#include "tools/virtualcamera/ForeignMake.h"
#include "tools/virtualcamera/VirtualCamera.h"
#include "widgets/ImageButton.h"
#include "widgets/ToolWindow.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTimer>

#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace
{

constexpr int CAMERAS = 8;
constexpr int LISTINGS = 200;
constexpr QSize LARGEST(3840, 2160);

void print(const char *name, std::vector<double> values, const char *unit)
{
    std::sort(values.begin(), values.end());
    std::printf("%s: median %.2f, at most %.2f %s, of %zu\n", name, values[values.size() / 2],
                values.back(), unit, values.size());
}

CameraKeeper &keeperOf(const MainWindow &window)
{
    return *window.findChild<CameraKeeper *>();
}

bool shows(const MainWindow &window)
{
    return keeperOf(window).status().state == CameraStatus::State::Showing &&
           window.liveSource()->cameraLink().frames > 0;
}

/// The window, and the camera whose picture it shows.
struct ShownCamera {
    explicit ShownCamera(const VirtualCameraConfig &config = {})
        : camera(config)
    {
        window.show();
    }
    /// Plugs the camera in and waits for its picture; false without the preloaded libraries.
    [[nodiscard]] bool start()
    {
        if (!camera.plug())
            return false;
        runUntil([this] { return shows(window); });
        return true;
    }

    VirtualCamera camera;
    MainWindow window;
};

int measureList()
{
    std::vector<std::unique_ptr<VirtualCamera>> cameras;
    for (int i = 0; i < CAMERAS; ++i) {
        VirtualCameraConfig config;
        ForeignMake::apply(config, QString("S%1").arg(i), QString("Camera %1").arg(i));
        cameras.push_back(std::make_unique<VirtualCamera>(config));
        if (!cameras.back()->plug())
            return 1;
    }
    QElapsedTimer timer;
    timer.start();
    CameraBus bus;
    std::size_t found = bus.cameras().size();
    std::printf("the first list, of %zu cameras: %.2f ms\n", found, milliseconds(timer));
    std::vector<double> times;
    for (int i = 0; i < LISTINGS; ++i) {
        timer.start();
        found = std::min(found, bus.cameras().size());
        times.push_back(milliseconds(timer));
    }
    print("a list", times, "ms");

    MainWindow window;
    window.show();
    runFor(1);
    timer.start();
    window.button(Command::More)->click();
    const auto *list = window.currentToolWindow()->findChild<QComboBox *>();
    runUntil([list] { return list->count() > CAMERAS; });
    std::printf("from the click to the page with all of them: %.2f ms\n", milliseconds(timer));
    return found == CAMERAS ? 0 : 1;
}

/// Of the thread of that name, in nanoseconds.
double threadTime(const QByteArray &name)
{
    double sum = 0;
    const QDir tasks("/proc/self/task");
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile comm(tasks.filePath(task + "/comm"));
        QFile times(tasks.filePath(task + "/schedstat"));
        if (comm.open(QIODevice::ReadOnly) && comm.readAll().trimmed() == name &&
            times.open(QIODevice::ReadOnly))
            sum += times.readAll().split(' ').first().toDouble();
    }
    return sum;
}

int measureKeeper(double seconds)
{
    ShownCamera shown;
    if (!shown.start())
        return 1;
    runFor(2);
    const double before = threadTime("CameraKeeper");
    QElapsedTimer timer;
    timer.start();
    runFor(seconds);
    const double used = threadTime("CameraKeeper") - before;
    std::printf("the keeper's thread: %.4f %% of a core over %.0f s\n",
                100.0 * used / static_cast<double>(timer.nsecsElapsed()), seconds);
    return used > 0 ? 0 : 1;
}

/// Runs `call` on a thread while the event loop goes on.
void runBeside(const std::function<void()> &call)
{
    std::atomic<bool> done{false};
    std::thread thread([&] {
        call();
        done = true;
    });
    runUntil([&] { return done.load(); });
    thread.join();
}

int measureReturns(int times)
{
    ShownCamera shown;
    if (!shown.start())
        return 1;
    VirtualCamera &camera = shown.camera;
    const MainWindow &window = shown.window;
    std::vector<double> returns;
    std::vector<double> away;
    QTimer beat;
    beat.setTimerType(Qt::PreciseTimer);
    QElapsedTimer sinceBeat;
    double longest = 0;
    QObject::connect(&beat, &QTimer::timeout, &window, [&] {
        longest = std::max(longest, milliseconds(sinceBeat));
        sinceBeat.start();
    });
    for (int i = 0; i < times; ++i) {
        runFor(1);
        sinceBeat.start();
        longest = 0;
        beat.start(1);
        runBeside([&] { i % 2 ? camera.unplugDirty() : camera.unplug(); });
        runUntil([&] { return keeperOf(window).status().state == CameraStatus::State::Unplugged; });
        runFor(0.3 * (i % 5));
        const std::uint8_t before = window.liveSource()->cameraLink().address;
        QElapsedTimer timer;
        timer.start();
        runBeside([&] { (void)camera.plug(); });
        runUntil(
            [&] { return window.liveSource()->cameraLink().address != before && shows(window); });
        returns.push_back(milliseconds(timer) / 1000);
        beat.stop();
        away.push_back(longest);
    }
    print("from plugging in to the picture", returns, "s");
    print("the window's longest absence in each", away, "ms");
    return 0;
}

double processorMs()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto ms = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) * 1e-3;
    };
    return ms(usage.ru_utime) + ms(usage.ru_stime);
}

int measureLarge(double seconds)
{
    VirtualCameraConfig config;
    ForeignMake::apply(config, "L", "Large camera");
    config.formats = {{UsbDescriptors::StreamCoding::MotionJpeg,
                       {{static_cast<std::uint16_t>(LARGEST.width()),
                         static_cast<std::uint16_t>(LARGEST.height())}}}};
    ShownCamera shown(config);
    VirtualCamera &camera = shown.camera;
    const MainWindow &window = shown.window;
    CameraPreferences::choose(keeperOf(window),
                              CameraIdentity{config.vendorId, config.productId, config.serial},
                              config.product);
    CameraPreferences::setPreviewSize(*window.liveSource(), LARGEST);
    if (!shown.start())
        return 1;
    runFor(2);
    const CameraLink before = window.liveSource()->cameraLink();
    const qint64 sent = static_cast<qint64>(camera.statistics().framesSent);
    const double processor = processorMs();
    QElapsedTimer timer;
    timer.start();
    runFor(seconds);
    const CameraLink after = window.liveSource()->cameraLink();
    std::printf("%d x %d: sent %.1f, shown %.1f a second, %lld lost; %.0f ms of processor time a "
                "second with the emulated camera in it\n",
                after.size.width(), after.size.height(),
                static_cast<double>(static_cast<qint64>(camera.statistics().framesSent) - sent) *
                    1e3 / milliseconds(timer),
                static_cast<double>(after.frames - before.frames) * 1e3 / milliseconds(timer),
                static_cast<long long>(after.lost - before.lost),
                (processorMs() - processor) * 1e3 / milliseconds(timer));
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    preparePlatform();
    QApplication app(argc, argv);
    StoredSettings::nameFiles();
    const QByteArray work = argc >= 2 ? argv[1] : "";
    const double amount = argc == 3 ? QByteArray(argv[2]).toDouble() : 0;
    if (work == "list")
        return measureList();
    if (amount <= 0)
        return 2;
    if (work == "keeper")
        return measureKeeper(amount);
    if (work == "returns")
        return measureReturns(static_cast<int>(amount));
    return work == "large" ? measureLarge(amount) : 2;
}
