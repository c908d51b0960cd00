// bench_film FILM [SECONDS [unprepared]]: plays a film through FilmSource as the window does and
// prints what it cost: time to the first picture, pictures and processor time while playing,
// processor time while paused, and time from the slider to its picture. The media library is got
// ready first, as the program does after its start; "unprepared" leaves that out.

#include "sources/FilmSource.h"
#include "sources/ICaptureCB.h"
#include "sources/gst/MediaPreloader.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QImage>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <optional>
#include <sys/resource.h>
#include <vector>

namespace
{

/// Copies each picture, as a canvas does at the least.
class CopyingReceiver : public ICaptureCB
{
public:
    void imageCaptured(const QImage &image) override
    {
        const auto bytes = static_cast<std::size_t>(image.sizeInBytes());
        m_copy.resize(bytes);
        std::memcpy(m_copy.data(), image.constBits(), bytes);
        const std::lock_guard lock(m_mutex);
        ++m_count;
        m_came.notify_all();
    }
    void imageCaptured(void *, int, int, bool, bool) override {}
    void startAutoRefresh() override {}
    void stopAutoRefresh() override {}

    int count()
    {
        const std::lock_guard lock(m_mutex);
        return m_count;
    }

    bool waitForMoreThan(int count)
    {
        std::unique_lock lock(m_mutex);
        return m_came.wait_for(lock, std::chrono::seconds(10), [&] { return m_count > count; });
    }

private:
    std::vector<uchar> m_copy;
    /// Guards m_count.
    std::mutex m_mutex;
    std::condition_variable m_came;
    int m_count = 0;
};

double processorSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void runFor(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

struct Cost {
    double seconds;
    double cores;
};

Cost costOf(int ms)
{
    const double before = processorSeconds();
    QElapsedTimer wall;
    wall.start();
    runFor(ms);
    const double seconds = static_cast<double>(wall.nsecsElapsed()) / 1e9;
    return {seconds, (processorSeconds() - before) / seconds};
}

void measureSeeks(FilmSource &source, CopyingReceiver &receiver, const char *state)
{
    std::vector<double> times;
    unsigned place = 17;
    for (int i = 0; i < 40; ++i) {
        place = (place * 61 + 29) % 97;
        const int before = receiver.count();
        QElapsedTimer timer;
        timer.start();
        source.setPosition(static_cast<int>(place));
        receiver.waitForMoreThan(before);
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        runFor(20);
    }
    std::sort(times.begin(), times.end());
    std::printf("seek %-26s median %6.1f ms   p90 %6.1f ms   worst %6.1f ms\n", state,
                times[times.size() / 2], times[times.size() * 9 / 10], times.back());
}

void getReady(std::optional<MediaPreloader> &warmUp)
{
    const double before = processorSeconds();
    QElapsedTimer timer;
    timer.start();
    warmUp.emplace(std::chrono::milliseconds(0));
    const bool done = warmUp->waitUntilDone(std::chrono::seconds(60));
    std::printf("ready  after %.1f ms, %.1f ms of processor time%s\n",
                static_cast<double>(timer.nsecsElapsed()) / 1e6,
                (processorSeconds() - before) * 1e3, done ? "" : ": given up");
}

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() < 2) {
        std::fprintf(stderr, "usage: bench_film FILM [SECONDS [unprepared]]\n");
        return 2;
    }
    const int playMs = arguments.value(2, "7").toInt() * 1000;

    std::optional<MediaPreloader> warmUp;
    if (arguments.value(3) != "unprepared")
        getReady(warmUp);
    CopyingReceiver receiver;
    FilmSource source(&receiver, nullptr);
    source.resumeCapture();
    runFor(300);

    for (int i = 0; i < 5; ++i) {
        QElapsedTimer timer;
        timer.start();
        source.setFile(arguments[1]);
        const double blocked = static_cast<double>(timer.nsecsElapsed()) / 1e6;
        // The last picture of the film before may have come until now.
        const int before = receiver.count();
        receiver.waitForMoreThan(before);
        std::printf("open %d: caller blocked %.2f ms, first picture after %.1f ms\n", i + 1,
                    blocked, static_cast<double>(timer.nsecsElapsed()) / 1e6);
        runFor(200);
    }

    source.stop();
    runFor(500);
    source.play();
    runFor(500);
    const int before = receiver.count();
    const Cost playing = costOf(playMs);
    std::printf("play   %.2f s: %d pictures (%.2f a second), %.3f cores\n", playing.seconds,
                receiver.count() - before, (receiver.count() - before) / playing.seconds,
                playing.cores);

    source.pause();
    runFor(300);
    std::printf("paused %.2f s: %.4f cores\n", 2.0, costOf(2000).cores);

    measureSeeks(source, receiver, "paused");
    source.stop();
    runFor(300);
    source.play();
    measureSeeks(source, receiver, "playing");
    source.stop();
    return 0;
}
