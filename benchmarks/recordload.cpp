// recordload movie SECONDS MOVIE : the live source, the shown canvas and the writer
// recordload frames SECONDS FILE : writes what the camera sends, Motion-JPEG, to a file
// 1920x1080 at 30 pictures a second, with the camera that is on the bus; see ./recording.
#include "app/Platform.h"
#include "canvas/ImageCanvas.h"
#include "sources/LiveSource.h"
#include "tests/tools/UvcViewer.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTimer>

#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <map>

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

void runFor(QApplication &app, double seconds)
{
    QTimer::singleShot(static_cast<int>(seconds * 1000), &app, &QApplication::quit);
    QApplication::exec();
}

int record(QApplication &app, double seconds, const QString &file)
{
    ImageCanvas canvas;
    canvas.resize(1000, 670);
    canvas.show();
    LiveSource source(&canvas, SIZE, SIZE, nullptr);
    while (!source.running())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    runFor(app, 2);
    const double idle = processorSeconds();
    runFor(app, 5);
    const double preview = (processorSeconds() - idle) / 5;

    source.startRecord(file);
    runFor(app, 2);
    QElapsedTimer recording;
    recording.start();
    const double before = processorSeconds();
    const std::map<QByteArray, long> threads = threadTicks();
    runFor(app, seconds);
    const double elapsed = static_cast<double>(recording.elapsed()) / 1000;
    const double cores = (processorSeconds() - before) / elapsed;
    printThreads(threads, elapsed * 30);
    source.stopRecord();
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("preview %.3f cores, with recording %.3f cores, %ld MiB at most\n", preview, cores,
                usage.ru_maxrss / 1024);
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
    return QByteArray(argv[1]) == "frames" ? dump(seconds, file) : record(app, seconds, file);
}
