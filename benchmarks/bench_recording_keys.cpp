// bench_recording_keys TIMES FOLDER: records TIMES movies of 1920x1080 into the folder with the
// keys of the main window, pausing once in each: how long the window is away after each key, and
// when the first picture of the movie and the first one after the pause came. The camera and the
// sound server are those of measure-recording-keys.
#include "app/Platform.h"
#include "benchmarks/EventLoop.h"
#include "canvas/ImageCanvas.h"
#include "mainwindow/MainWindow.h"
#include "settings/Config.h"
#include "settings/StoredSettings.h"
#include "sources/LiveRecording.h"
#include "sources/LiveSource.h"
#include "sources/camera/CameraKeeper.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <utility>
#include <vector>

namespace
{

constexpr int FULL_HD = 2;
constexpr double PART_SECONDS = 1.5;

void print(const char *name, std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    std::printf("%s: median %.1f, at most %.1f ms, of %zu\n", name, values[values.size() / 2],
                values.back(), values.size());
}

/// Beats in the event loop and knows the longest time without a beat.
class Heart
{
public:
    Heart()
    {
        m_beat.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_beat, &QTimer::timeout, [this] {
            m_longest = std::max(m_longest, milliseconds(m_since));
            m_since.start();
        });
        m_since.start();
        m_beat.start(1);
    }
    /// Since the last call.
    double longest()
    {
        m_since.start();
        return std::exchange(m_longest, 0.0);
    }

private:
    QTimer m_beat;
    QElapsedTimer m_since;
    double m_longest = 0;
};

/// When the pictures of a movie are shown, in ms from its beginning.
std::vector<double> picturesOf(const QString &movie)
{
    QProcess reader;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("LD_PRELOAD");
    reader.setProcessEnvironment(environment);
    reader.start("ffprobe", {"-v", "error", "-select_streams", "v", "-show_entries",
                             "packet=pts_time", "-of", "csv=p=0", movie});
    reader.waitForFinished(-1);
    std::vector<double> times;
    for (const QByteArray &line : reader.readAllStandardOutput().split('\n')) {
        if (!line.trimmed().isEmpty())
            times.push_back(line.split(',').first().toDouble() * 1000);
    }
    std::sort(times.begin(), times.end());
    return times;
}

struct Results {
    std::vector<double> idle, start, pause, resume, stop, first, seam;
};

/// Presses the keys of one movie.
void recordOnce(MainWindow &window, Heart &heart, const QString &folder, Results &results)
{
    const LiveSource &source = *window.liveSource();
    const auto press = [&window](Qt::KeyboardModifiers modifiers) {
        QTest::keyClick(&window, Qt::Key_R, modifiers);
    };
    const auto part = [&](Qt::KeyboardModifiers modifiers, std::vector<double> &away) {
        (void)heart.longest();
        press(modifiers);
        runFor(PART_SECONDS);
        away.push_back(heart.longest());
    };
    (void)heart.longest();
    runFor(PART_SECONDS);
    results.idle.push_back(heart.longest());

    QElapsedTimer sinceStart;
    sinceStart.start();
    part(Qt::ControlModifier, results.start);
    const double paused = milliseconds(sinceStart);
    part(Qt::ControlModifier | Qt::ShiftModifier, results.pause);
    const double resumed = milliseconds(sinceStart);
    part(Qt::ControlModifier | Qt::ShiftModifier, results.resume);
    const double stopped = milliseconds(sinceStart);
    part(Qt::ControlModifier, results.stop);

    // The last picture came before the key that stopped it, so the first one came no later than
    // that: what the movie holds, the pause and what is left of a picture's time lie between.
    const QString movie = source.liveRecording().lastMovie()->fileName;
    runUntil([&] { return !picturesOf(movie).empty(); });
    const std::vector<double> pictures = picturesOf(movie);
    results.first.push_back(stopped - (resumed - paused) - (pictures.back() - pictures.front()));
    // Where the pause was taken out, within a picture's time.
    constexpr double NEAR = 50;
    const double seam = pictures.front() + paused - results.first.back();
    double widest = 0;
    for (std::size_t n = 1; n < pictures.size(); ++n) {
        if (pictures[n - 1] < seam + NEAR && pictures[n] > seam - NEAR)
            widest = std::max(widest, pictures[n] - pictures[n - 1]);
    }
    results.seam.push_back(widest);
    QDir(folder).remove(QFileInfo(movie).fileName());
}

} // namespace

int main(int argc, char **argv)
{
    preparePlatform();
    QApplication app(argc, argv);
    StoredSettings::nameFiles();
    if (argc != 3)
        return 2;
    const QString folder = QString::fromLocal8Bit(argv[2]);
    Config::setRecordPath(folder);
    Config::setRecordingResolutionIndex(FULL_HD);
    MainWindow window;
    window.show();
    window.activateWindow();
    runUntil(
        [&] { return window.isActiveWindow() && window.liveSource()->cameraLink().frames > 0; });
    runFor(2);
    Heart heart;
    Results results;
    for (int n = 0; n < QByteArray(argv[1]).toInt(); ++n)
        recordOnce(window, heart, folder, results);
    print("away with no key", results.idle);
    print("away after the key that starts", results.start);
    print("away after the key that pauses", results.pause);
    print("away after the key that resumes", results.resume);
    print("away after the key that stops", results.stop);
    print("from the key to the first picture in the movie, no more than", results.first);
    print("between the last picture before the pause and the next one, the pause left out",
          results.seam);
    return 0;
}
