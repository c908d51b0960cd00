// What the live preview costs, with the camera on the bus (run under virtualcamera-run), all at
// 1920x1080 and 30 frames a second:
//   bench_live_preview decode SECONDS: the yardstick, uvc_mjpeg2rgb alone, on frames that
//       the camera has sent before
//   bench_live_preview receive SECONDS: libuvc taking the frames in, undecoded
//   bench_live_preview program SECONDS: the whole program, main window with a canvas of 1000 x 670
//   bench_live_preview latency SECONDS: from a frame's last packet to the painted picture
// Processor time is that of this process per frame; the emulated camera is another process.
#include "app/Platform.h"
#include "benchmarks/EventLoop.h"
#include "canvas/ImageCanvas.h"
#include "mainwindow/MainWindow.h"
#include "settings/StoredSettings.h"
#include "sources/LiveSource.h"
#include "sources/camera/UvcCamera.h"
#include "sources/recording/CaptureClock.h"
#include "tests/tools/UvcViewer.h"
#include "tools/virtualcamera/SheetCounter.h"

#include <QApplication>
#include <QPaintEvent>
#include <QTimer>

#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <optional>
#include <vector>

namespace
{

constexpr QSize SIZE(1920, 1080);
constexpr QSize CANVAS(1000, 670);
constexpr double WARM_UP_SECONDS = 3;
constexpr std::size_t SETTLING_FRAMES = 60;

struct Cost {
    double processorMs = 0.0;
    long pageFaults = 0;
};

Cost costSoFar()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto ms = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) * 1e-3;
    };
    return {ms(usage.ru_utime) + ms(usage.ru_stime), usage.ru_minflt};
}

void printCost(const char *name, const Cost &before, int frames)
{
    const Cost now = costSoFar();
    std::printf("%s: %.2f ms and %.2f page faults a frame\n", name,
                (now.processorMs - before.processorMs) / frames,
                static_cast<double>(now.pageFaults - before.pageFaults) / frames);
}

void waitUntilRunning(const LiveSource &source)
{
    while (!source.running())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

/// A canvas that notes when frames come and when they are painted. Each frame carries the time of
/// its arrival in its first pixels, so that a paint event knows which one it shows, also when it
/// runs before the frame thread is back from handing the frame over.
class TimedCanvas : public ImageCanvas
{
public:
    /// Frame thread; `microseconds` is when the frame was complete.
    void frame(void *rgb, int width, int height, qint64 microseconds)
    {
        if (m_decodedMs.size() == SETTLING_FRAMES)
            m_firstNumber = numberOn(QImage(static_cast<const uchar *>(rgb), width, height,
                                            width * 3, QImage::Format_RGB888));
        m_decodedMs.push_back(millisecondsSince(microseconds));
        std::memcpy(rgb, &microseconds, sizeof microseconds);
        imageCaptured(rgb, width, height, false, false);
    }

    /// How many frames the camera has sent from the first settled one to the one shown now.
    [[nodiscard]] quint32 sent() const
    {
        return (numberOn(currentImage()) - m_firstNumber) % SheetCounter::MODULUS + 1;
    }
    /// From arrival to decoded, and to painted; one entry a frame. Once the frames have ended.
    [[nodiscard]] std::vector<double> decodedMs() const { return m_decodedMs; }
    [[nodiscard]] std::vector<double> paintedMs() const { return m_paintedMs; }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        const qint64 before = arrivalOfShown();
        ImageCanvas::paintEvent(event);
        const qint64 shown = arrivalOfShown();
        // When the next frame came meanwhile, either may have been painted; it gets its own event.
        if (shown != before || shown == m_painted || shown == 0)
            return;
        m_painted = shown;
        m_paintedMs.push_back(millisecondsSince(shown));
    }

private:
    static double millisecondsSince(qint64 microseconds)
    {
        return static_cast<double>(captureMicroseconds() - microseconds) / 1e3;
    }

    static quint32 numberOn(const QImage &picture)
    {
        return SheetCounter::read(picture).value_or(0);
    }

    /// 0 before the first frame.
    [[nodiscard]] qint64 arrivalOfShown() const
    {
        const QImage image = currentImage();
        qint64 arrival = 0;
        if (image.size() == SIZE)
            std::memcpy(&arrival, image.constBits(), sizeof arrival);
        return arrival;
    }

    // The frame thread's.
    std::vector<double> m_decodedMs;
    quint32 m_firstNumber = 0;
    qint64 m_painted = 0;
    std::vector<double> m_paintedMs;
};

/// Leaves out what came before the streaming had settled.
std::vector<double> settled(std::vector<double> times)
{
    const auto first = static_cast<std::ptrdiff_t>(std::min(SETTLING_FRAMES, times.size()));
    times.erase(times.begin(), times.begin() + first);
    return times;
}

void printTimes(const char *name, std::vector<double> times)
{
    if (times.empty())
        return;
    std::sort(times.begin(), times.end());
    const auto at = [&times](double part) {
        return times[static_cast<std::size_t>(part * static_cast<double>(times.size() - 1))];
    };
    std::printf("last packet to %s: median %.1f ms, p99 %.1f ms, worst %.1f ms\n", name, at(0.5),
                at(0.99), times.back());
}

int measureLatency(double seconds)
{
    TimedCanvas canvas;
    canvas.resize(CANVAS);
    canvas.show();
    UvcCamera camera;
    while (!camera.find({}).value_or(false))
        runFor(0.02);
    std::optional<int> opened = camera.open();
    for (; !opened; opened = camera.open())
        runFor(0.02);
    if (*opened < 0)
        return 1;
    camera.startStreaming(
        SIZE, 30,
        [&canvas](void *rgb, int width, int height, qint64 at) {
            canvas.frame(rgb, width, height, at);
        },
        [&canvas](QSize size) { return canvas.memoryForFrame(size.width(), size.height()); });
    runFor(WARM_UP_SECONDS + seconds);
    camera.stopDelivery();
    runFor(0.2); // the last one is painted, too
    const std::vector<double> decoded = settled(canvas.decodedMs());
    const std::vector<double> painted = settled(canvas.paintedMs());
    const quint32 sent = canvas.sent();
    camera.stopStreaming();
    printTimes("decoded frame", decoded);
    printTimes("painted picture", painted);
    std::printf("    %u frames sent, %zu decoded, %zu painted\n", sent, decoded.size(),
                painted.size());
    return painted.empty() ? 1 : 0;
}

/// Counts the paint events of a widget.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget *widget) { widget->installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Paint;
        return false;
    }
    int count = 0;
};

int measureProgram(double seconds)
{
    MainWindow window;
    window.liveSource()->setResolution(SIZE);
    window.show();
    runFor(0.2);
    window.resize(window.size() + CANVAS - window.currentCanvas()->size());
    waitUntilRunning(*window.liveSource());
    runFor(WARM_UP_SECONDS);
    const PaintCounter paints(window.currentCanvas());
    const Cost before = costSoFar();
    const qint64 began = captureMicroseconds();
    runFor(seconds);
    const double elapsed = static_cast<double>(captureMicroseconds() - began) / 1e6;
    printCost("program", before, paints.count);
    const QSize canvas = window.currentCanvas()->size();
    std::printf("    %.1f painted a second, canvas %d x %d\n", paints.count / elapsed,
                canvas.width(), canvas.height());
    return 0;
}

int measureBare(double seconds, bool decode)
{
    UvcViewer viewer;
    if (!viewer.waitUntilFound(true) || viewer.open() != UVC_SUCCESS ||
        viewer.start(SIZE) != UVC_SUCCESS)
        return 1;
    std::vector<QByteArray> frames;
    const int wanted = decode ? 30 : static_cast<int>(seconds * 30);
    const Cost before = costSoFar();
    for (int n = 0; n < wanted; ++n) {
        std::optional<QByteArray> frame = viewer.takeFrame();
        if (!frame)
            return 1;
        if (decode)
            frames.push_back(std::move(*frame));
    }
    if (!decode)
        printCost("receiving alone", before, wanted);
    viewer.stop();
    viewer.close();
    if (!decode)
        return 0;

    uvc_frame_t *rgb =
        uvc_allocate_frame(static_cast<std::size_t>(SIZE.width()) * SIZE.height() * 3);
    qint64 bytes = 0;
    int count = 0;
    const Cost start = costSoFar();
    while (costSoFar().processorMs - start.processorMs < seconds * 1000) {
        QByteArray &data = frames[static_cast<std::size_t>(count++) % frames.size()];
        uvc_frame_t frame{};
        frame.data = data.data();
        frame.data_bytes = static_cast<std::size_t>(data.size());
        frame.width = SIZE.width();
        frame.height = SIZE.height();
        frame.frame_format = UVC_FRAME_FORMAT_MJPEG;
        bytes += data.size();
        if (uvc_mjpeg2rgb(&frame, rgb) != UVC_SUCCESS)
            return 1;
    }
    printCost("uvc_mjpeg2rgb alone", start, count);
    std::printf("    frames of %lld kB\n", static_cast<long long>(bytes / count / 1000));
    uvc_free_frame(rgb);
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    preparePlatform();
    QApplication app(argc, argv);
    StoredSettings::nameFiles();
    const QByteArray work = argc == 3 ? argv[1] : "";
    const double seconds = argc == 3 ? QByteArray(argv[2]).toDouble() : 0;
    if (seconds <= 0)
        return 2;
    if (work == "latency")
        return measureLatency(seconds);
    if (work == "program")
        return measureProgram(seconds);
    return work == "decode" || work == "receive" ? measureBare(seconds, work == "decode") : 2;
}
