// What the live preview costs, with the camera on the bus (run under virtualcamera-run), all at
// 1920x1080 and 30 frames a second:
//   livepreview decode SECONDS    the yardstick: uvc_mjpeg2rgb and nothing else, on frames that the
//                                 camera has sent before
//   livepreview receive SECONDS   libuvc taking the frames in, undecoded
//   livepreview program SECONDS   the whole program, main window with a canvas of 1000 x 670
//   livepreview latency SECONDS   from a frame's last packet to the painted picture
// Processor time is that of this process per frame; the emulated camera is another process.
#include "app/Platform.h"
#include "canvas/ImageCanvas.h"
#include "mainwindow/MainWindow.h"
#include "sources/LiveSource.h"
#include "sources/UvcCamera.h"
#include "sources/media/CaptureClock.h"
#include "tests/tools/UvcViewer.h"

#include <QApplication>
#include <QPaintEvent>
#include <QTimer>

#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <optional>
#include <vector>

namespace
{

constexpr QSize SIZE(1920, 1080);
constexpr QSize CANVAS(1000, 670);
constexpr double WARM_UP_SECONDS = 3;

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

void runFor(double seconds)
{
    QTimer::singleShot(static_cast<int>(seconds * 1000), qApp, &QApplication::quit);
    QApplication::exec();
}

void waitUntilRunning(const LiveSource &source)
{
    while (!source.running())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

/// A canvas that notes when frames come and when they are painted.
class TimedCanvas : public ImageCanvas
{
public:
    /// Frame thread; `microseconds` is when the frame was complete.
    void frame(void *rgb, int width, int height, qint64 microseconds)
    {
        imageCaptured(rgb, width, height, false, false);
        m_completed.store(microseconds);
        ++m_arrived;
    }
    void reset()
    {
        m_latenciesMs.clear();
        m_arrived = 0;
    }
    [[nodiscard]] int arrived() const { return m_arrived; }
    [[nodiscard]] std::vector<double> latenciesMs() const { return m_latenciesMs; }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        // A frame that comes while this one is painted is counted with its own painting.
        const qint64 completed = m_completed.load();
        ImageCanvas::paintEvent(event);
        if (completed == m_painted)
            return;
        m_painted = completed;
        m_latenciesMs.push_back(static_cast<double>(captureMicroseconds() - completed) / 1e3);
    }

private:
    std::atomic<qint64> m_completed{0};
    std::atomic<int> m_arrived{0};
    qint64 m_painted = 0;
    std::vector<double> m_latenciesMs;
};

int measureLatency(double seconds)
{
    TimedCanvas canvas;
    canvas.resize(CANVAS);
    canvas.show();
    UvcCamera camera;
    while (!camera.find(0x04FC, 0x6330).value_or(false))
        runFor(0.02);
    std::optional<int> opened = camera.open();
    for (; !opened; opened = camera.open())
        runFor(0.02);
    if (*opened < 0)
        return 1;
    camera.startStreaming(SIZE, 30, [&canvas](void *rgb, int width, int height, qint64 at) {
        canvas.frame(rgb, width, height, at);
    });
    runFor(WARM_UP_SECONDS);
    canvas.reset();
    runFor(seconds);
    const int arrived = canvas.arrived();
    std::vector<double> times = canvas.latenciesMs();
    camera.stopStreaming();
    if (times.empty())
        return 1;
    std::sort(times.begin(), times.end());
    const auto at = [&times](double part) {
        return times[static_cast<std::size_t>(part * static_cast<double>(times.size() - 1))];
    };
    std::printf("last packet to painted picture: median %.1f ms, p99 %.1f ms, worst %.1f ms; %d "
                "frames came, %zu were painted\n",
                at(0.5), at(0.99), times.back(), arrived, times.size());
    return 0;
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
    QCoreApplication::setOrganizationName("Quillmark");
    QCoreApplication::setApplicationName("Document Camera");
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
