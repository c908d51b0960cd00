// bench_record_load movie SECONDS MOVIE : the live source, the shown canvas with the sign of how
//     the recording is doing above it, and the writer
// bench_record_load unseen SECONDS MOVIE : the same without a canvas, which is what receiving,
//     decoding to packed RGB, encoding and muxing cost
// bench_record_load frames SECONDS FILE: writes what it sends, Motion-JPEG, to a file
// 1920x1080 at 30 pictures a second, with the camera that is on the bus; see ./recording.
#include "app/Platform.h"
#include "benchmarks/EventLoop.h"
#include "canvas/ImageCanvas.h"
#include "mainwindow/RecordingStatus.h"
#include "sources/LiveRecording.h"
#include "sources/LiveSource.h"
#include "sources/gst/GstRuntime.h"
#include "tests/tools/UvcViewer.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTimer>

#include <pthread.h>
#include <sys/resource.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace
{

constexpr QSize SIZE(1920, 1080);

double processorSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Processor time of each kind of thread in clock ticks, by the thread's name.
std::map<QByteArray, long> threadTicks()
{
    std::map<QByteArray, long> ticks;
    const QDir tasks("/proc/self/task");
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile stat(tasks.filePath(task + "/stat"));
        if (!stat.open(QIODevice::ReadOnly))
            continue;
        const QByteArray line = stat.readAll();
        const int begin = line.indexOf('(') + 1;
        const int end = line.lastIndexOf(')');
        const QList<QByteArray> fields = line.mid(end + 2).split(' ');
        constexpr int USER = 11;
        constexpr int SYSTEM = 12;
        if (fields.size() > SYSTEM)
            ticks[line.mid(begin, end - begin)] += fields[USER].toLong() + fields[SYSTEM].toLong();
    }
    return ticks;
}

void printThreads(const std::map<QByteArray, long> &before, double pictures)
{
    const double tickMs = 1000.0 / static_cast<double>(sysconf(_SC_CLK_TCK));
    for (const auto &[name, ticks] : threadTicks()) {
        const auto old = before.find(name);
        const long spent = ticks - (old == before.end() ? 0 : old->second);
        if (static_cast<double>(spent) * tickMs / pictures >= 0.05)
            std::printf("    %-16s %5.2f ms a picture\n", name.constData(),
                        static_cast<double>(spent) * tickMs / pictures);
    }
}

using Clock = std::chrono::steady_clock;

double milliseconds(Clock::duration duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

/// Tries to wake every 5 ms and remembers when it was woken late: whatever delays this thread,
/// which does nothing else, is not caused by the program.
class Metronome
{
public:
    ~Metronome()
    {
        m_ended = true;
        m_thread.join();
    }

    /// Its own, which no program spends.
    double processorSeconds()
    {
        clockid_t clock = 0;
        timespec time{};
        if (pthread_getcpuclockid(m_thread.native_handle(), &clock) == 0)
            clock_gettime(clock, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
    }

    /// The most it was late between the two, ms.
    double latest(Clock::time_point from, Clock::time_point to) const
    {
        const std::lock_guard lock(m_mutex);
        double most = 0;
        for (const auto &[woken, late] : m_late) {
            if (woken >= from && woken - late <= to)
                most = std::max(most, milliseconds(late));
        }
        return most;
    }

private:
    void run()
    {
        while (!m_ended) {
            const Clock::time_point due = Clock::now() + std::chrono::milliseconds(5);
            std::this_thread::sleep_until(due);
            const Clock::time_point now = Clock::now();
            const std::lock_guard lock(m_mutex);
            if (now - due > std::chrono::milliseconds(10))
                m_late.emplace_back(now, now - due);
        }
    }

    mutable std::mutex m_mutex;
    std::vector<std::pair<Clock::time_point, Clock::duration>> m_late;
    std::atomic<bool> m_ended{false};
    std::thread m_thread{[this] { run(); }};
};

/// Hands the frames on, if there is a receiver, and remembers when two came nearly two frame times
/// apart.
class WatchedFrames : public ICaptureCB
{
public:
    struct Gap {
        Clock::time_point from;
        Clock::time_point to;
    };

    explicit WatchedFrames(ICaptureCB *next)
        : m_next(next)
    {
    }

    std::shared_ptr<std::uint8_t> memoryForFrame(int width, int height) override
    {
        return m_next ? m_next->memoryForFrame(width, height) : nullptr;
    }
    void imageCaptured(const QImage &) override {}
    void imageCaptured(void *pixels, int width, int height, bool mirror, bool rgb32) override
    {
        noteFrame();
        if (m_next)
            m_next->imageCaptured(pixels, width, height, mirror, rgb32);
    }
    void startAutoRefresh() override {}
    void stopAutoRefresh() override {}

    void watchAnew()
    {
        const std::lock_guard lock(m_mutex);
        m_frames = 0;
        m_gaps.clear();
    }
    int frames() const
    {
        const std::lock_guard lock(m_mutex);
        return m_frames;
    }
    std::vector<Gap> gaps() const
    {
        const std::lock_guard lock(m_mutex);
        return m_gaps;
    }

private:
    void noteFrame()
    {
        const Clock::time_point now = Clock::now();
        const std::lock_guard lock(m_mutex);
        if (m_frames > 0 && now - m_last > std::chrono::milliseconds(60))
            m_gaps.push_back({m_last, now});
        m_last = now;
        ++m_frames;
    }

    ICaptureCB *m_next;
    mutable std::mutex m_mutex;
    int m_frames = 0;
    Clock::time_point m_last;
    std::vector<Gap> m_gaps;
};

int record(bool seen, double seconds, const QString &file)
{
    // As the program does soon after its start.
    GstRuntime::loadMovieElements();
    GstRuntime::runWarmUpPipelines();
    Metronome metronome;
    const auto spent = [&metronome] { return processorSeconds() - metronome.processorSeconds(); };
    // The sign stands above the canvas, as in the program: over it, it would be painted with every
    // frame.
    QWidget window;
    ImageCanvas canvas(&window);
    canvas.setGeometry(0, RecordingStatus::SIZE.height(), 1000, 670);
    window.resize(1000, canvas.y() + canvas.height());
    window.setVisible(seen);
    WatchedFrames watched(seen ? &canvas : nullptr);
    LiveSource source(&watched, SIZE, SIZE, nullptr);
    while (!source.running())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    runFor(2);
    const double idle = spent();
    runFor(5);
    const double preview = (spent() - idle) / 5;

    source.startRecord(file);
    RecordingStatus status(&window);
    if (seen)
        status.start(&source);
    runFor(2);
    QElapsedTimer recording;
    recording.start();
    const double before = spent();
    const std::map<QByteArray, long> threads = threadTicks();
    watched.watchAnew();
    const Clock::time_point begin = Clock::now();
    runFor(seconds);
    const int frames = watched.frames();
    const std::vector<WatchedFrames::Gap> gaps = watched.gaps();
    const double elapsed = static_cast<double>(recording.elapsed()) / 1000;
    const double cores = (spent() - before) / elapsed;
    printThreads(threads, elapsed * 30);
    std::printf("%d frames, %.2f a second\n", frames, frames / elapsed);
    for (const WatchedFrames::Gap &gap : gaps)
        std::printf("    %.1f s: no frame for %.0f ms; an idle thread was %.0f ms late\n",
                    milliseconds(gap.to - begin) / 1000, milliseconds(gap.to - gap.from),
                    metronome.latest(gap.from, gap.to));
    const RecordingState state = source.liveRecording().state();
    std::printf("%lld pictures dropped, %lld frames missed, heard \"%s\" at %.0f dB\n",
                static_cast<long long>(state.dropped),
                static_cast<long long>(source.cameraLink().lost), qPrintable(state.heard),
                state.level.shownRms);
    source.stopRecord();
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf(
        "preview %.3f cores, with recording %.3f cores, %.2f ms a picture, %ld MiB at most\n",
        preview, cores, cores * 1000 * elapsed / std::max(frames, 1), usage.ru_maxrss / 1024);
    return 0;
}

int dump(double seconds, const QString &file)
{
    UvcViewer viewer;
    QFile out(file);
    if (!out.open(QIODevice::WriteOnly) || !viewer.waitUntilFound(true) ||
        viewer.open() != UVC_SUCCESS || viewer.start(SIZE) != UVC_SUCCESS)
        return 1;
    const double before = processorSeconds();
    const int count = static_cast<int>(seconds * 30);
    for (int n = 0; n < count; ++n) {
        const std::optional<QByteArray> frame = viewer.takeFrame();
        if (!frame)
            return 1;
        out.write(*frame);
    }
    std::printf("receiving alone %.3f cores\n", (processorSeconds() - before) / seconds);
    viewer.stop();
    viewer.close();
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    preparePlatform();
    QApplication app(argc, argv);
    if (argc != 4)
        return 2;
    const double seconds = QByteArray(argv[2]).toDouble();
    const QString file = QString::fromLocal8Bit(argv[3]);
    const QByteArray work = argv[1];
    return work == "frames" ? dump(seconds, file) : record(work == "movie", seconds, file);
}
