// What the window for the class costs beside the canvas, on one display, in turns with and without
// it:
//   bench_presentation SECONDS PICTURE SCREEN, such as 5 1920x1080 3840x2160
// Pictures of that size come 30 times a second from a thread of their own; the canvas takes 1000 x
// 670, the window for the class the whole screen. The display has to hold 1000 pixels more across.
#include "app/Platform.h"
#include "benchmarks/EventLoop.h"
#include "canvas/ImageCanvas.h"
#include "mainwindow/presentation/PresentationView.h"
#include "sources/recording/CaptureClock.h"
#include "tests/canvas/LargeAllocations.h"

#include <QApplication>
#include <QPaintEvent>
#include <QTimer>

#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <map>
#include <memory>
#include <thread>
#include <vector>

namespace
{

constexpr QSize CANVAS(1000, 670);
constexpr int TURNS = 3;
constexpr double WARM_UP_SECONDS = 1;
constexpr auto FRAME_TIME = std::chrono::microseconds(33333);

double processorMs()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto ms = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) * 1e-3;
    };
    return ms(usage.ru_utime) + ms(usage.ru_stime);
}

double threadMs()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) * 1e-6;
}

/// When each frame came and was painted, by its number. GUI thread, but for the moments of arrival.
struct Moments {
    static constexpr std::size_t ALL = 1U << 16U;
    std::vector<std::atomic<qint64>> arrived = std::vector<std::atomic<qint64>>(ALL);
    std::vector<qint64> onCanvas = std::vector<qint64>(ALL);
    std::vector<qint64> onView = std::vector<qint64>(ALL);
    double canvasMs = 0;
    double viewMs = 0;
};

class TimedCanvas : public ImageCanvas
{
public:
    explicit TimedCanvas(Moments &moments)
        : m_moments(moments)
    {
    }

    /// Source's thread.
    void show(uchar *pixels, QSize size, int number)
    {
        m_number = number;
        m_moments.arrived[static_cast<std::size_t>(number)] = captureMicroseconds();
        imageCaptured(pixels, size.width(), size.height(), false, false);
    }
    using ImageCanvas::show;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        const auto number = static_cast<std::size_t>(m_number.load());
        const double before = threadMs();
        ImageCanvas::paintEvent(event);
        m_moments.canvasMs += threadMs() - before;
        if (m_moments.onCanvas[number] == 0)
            m_moments.onCanvas[number] = captureMicroseconds();
    }

private:
    Moments &m_moments;
    /// Of the frame that came last, which is the one that is painted: that happens long before the
    /// next one comes.
    std::atomic<int> m_number{0};
};

class TimedView : public PresentationView
{
public:
    TimedView(QWidget *window, Moments &moments)
        : PresentationView(window)
        , m_moments(moments)
    {
    }

    void pictureShown(const CanvasModel::Shown &shown) override
    {
        if (shown.picture)
            m_number = shown.picture->rows().data[0] << 8 | shown.picture->rows().data[1];
        PresentationView::pictureShown(shown);
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        const auto number = static_cast<std::size_t>(m_number.load());
        const double before = threadMs();
        PresentationView::paintEvent(event);
        m_moments.viewMs += threadMs() - before;
        if (m_moments.onView[number] == 0)
            m_moments.onView[number] = captureMicroseconds();
    }

private:
    Moments &m_moments;
    /// As the canvas's.
    std::atomic<int> m_number{0};
};

/// Hands 30 pictures a second over.
class Source
{
public:
    Source(TimedCanvas &canvas, QSize size)
        : m_thread([this, &canvas, size] { run(canvas, size); })
    {
    }
    ~Source()
    {
        m_stop = true;
        m_thread.join();
    }
    [[nodiscard]] int frames() const { return m_frames; }

private:
    void run(TimedCanvas &canvas, QSize size)
    {
        const auto pixels =
            static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height());
        std::vector<uchar> frame(pixels * 3);
        for (std::size_t i = 0; i < frame.size(); ++i)
            frame[i] = static_cast<uchar>(i * 7919 >> 6U);
        auto next = std::chrono::steady_clock::now();
        while (!m_stop) {
            std::this_thread::sleep_until(next += FRAME_TIME);
            const int number = ++m_frames;
            frame[0] = static_cast<uchar>(number >> 8);
            frame[1] = static_cast<uchar>(number);
            canvas.show(frame.data(), size, number);
        }
    }

    std::atomic<bool> m_stop{false};
    std::atomic<int> m_frames{0};
    std::thread m_thread;
};

double at(std::vector<double> &values, double part)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
}

struct Turn {
    double processor = 0;
    double canvas = 0;
    double view = 0;
    double allocations = 0;
};

struct Delays {
    std::vector<double> canvas;
    std::vector<double> apart;
};

Turn measure(double seconds, QSize picture, QSize screen, bool shown, Delays &delays)
{
    Moments moments;
    TimedCanvas canvas(moments);
    canvas.resize(CANVAS);
    canvas.setWindowFlags(Qt::X11BypassWindowManagerHint);
    canvas.move(0, 0);
    canvas.show();
    std::unique_ptr<TimedView> view;
    if (shown) {
        view = std::make_unique<TimedView>(&canvas, moments);
        view->setWindowFlags(Qt::X11BypassWindowManagerHint);
        view->setGeometry(QRect(QPoint(CANVAS.width(), 0), screen));
        view->setCanvas(&canvas);
        view->show();
    }
    Source source(canvas, picture);
    runFor(WARM_UP_SECONDS);
    moments.canvasMs = moments.viewMs = 0;
    const int first = source.frames();
    const int allocations = LargeAllocations::count();
    const double processor = processorMs();
    runFor(seconds);
    const double used = processorMs() - processor;
    const int last = source.frames();
    const double frames = last - first;
    Turn turn{used / frames, moments.canvasMs / frames, moments.viewMs / frames,
              (LargeAllocations::count() - allocations) / frames};
    // What came last is still on its way.
    for (int i = first + 1; i < last - 1; ++i) {
        const auto number = static_cast<std::size_t>(i);
        const qint64 onCanvas = moments.onCanvas[number];
        if (onCanvas == 0)
            continue;
        delays.canvas.push_back(static_cast<double>(onCanvas - moments.arrived[number]) / 1e3);
        if (shown && moments.onView[number] != 0)
            delays.apart.push_back(
                std::abs(static_cast<double>(moments.onView[number] - onCanvas)) / 1e3);
    }
    if (view)
        view->setCanvas(nullptr);
    return turn;
}

/// Copying as many bytes as the screen has, which whoever fills it cannot undercut by much.
double copyMs(QSize screen)
{
    const auto pixels =
        static_cast<std::size_t>(screen.width()) * static_cast<std::size_t>(screen.height());
    const std::vector<std::uint32_t> from(pixels, 1);
    std::vector<std::uint32_t> to(pixels, 2);
    std::vector<double> times;
    constexpr int RUNS = 21;
    for (int i = 0; i < RUNS; ++i) {
        const double before = threadMs();
        std::memcpy(to.data(), from.data(), pixels * sizeof(std::uint32_t));
        times.push_back(threadMs() - before);
        // So that no copy is left out.
        asm volatile("" : : "r"(to.data()) : "memory");
    }
    return at(times, 0.5);
}

QSize sizeOf(const char *text)
{
    const QStringList parts = QString(text).split('x');
    return parts.size() == 2 ? QSize(parts[0].toInt(), parts[1].toInt()) : QSize();
}

} // namespace

int main(int argc, char **argv)
{
    preparePlatform();
    QApplication app(argc, argv);
    const double seconds = argc == 4 ? QByteArray(argv[1]).toDouble() : 0;
    const QSize picture = argc == 4 ? sizeOf(argv[2]) : QSize();
    const QSize screen = argc == 4 ? sizeOf(argv[3]) : QSize();
    if (seconds <= 0 || picture.isEmpty() || screen.isEmpty())
        return 2;
    Delays without;
    Delays with;
    for (int i = 0; i < TURNS; ++i) {
        const Turn alone = measure(seconds, picture, screen, false, without);
        const Turn beside = measure(seconds, picture, screen, true, with);
        std::printf(
            "a frame: %.2f ms alone, %.2f ms with the class, %.2f ms more; painting %.2f ms "
            "(canvas) and %.2f ms (class); %.2f large allocations\n",
            alone.processor, beside.processor, beside.processor - alone.processor, beside.canvas,
            beside.view, beside.allocations);
    }
    std::printf("copying the screen's bytes: %.2f ms\n", copyMs(screen));
    std::printf("canvas: median %.2f, p99 %.2f ms alone; median %.2f, p99 %.2f ms with the class\n",
                at(without.canvas, 0.5), at(without.canvas, 0.99), at(with.canvas, 0.5),
                at(with.canvas, 0.99));
    std::printf("the same frame on both: median %.2f, p99 %.2f, at most %.2f ms apart, of %zu\n",
                at(with.apart, 0.5), at(with.apart, 0.99), at(with.apart, 1.0), with.apart.size());
    return 0;
}
