// bench_window start RUNS   from process start to the first painted window: a bare program of the
//                          toolkit against the main window, alternating, medians; and the
//                          processor time of the same, which a busy machine does not stretch
// bench_window modes RUNS   a mode change, up to the painted window
// bench_window memory SECONDS   resident memory with the live picture, for use under
// virtualcamera-run
#include "app/Platform.h"
#include "canvas/ImageCanvas.h"
#include "mainwindow/MainWindow.h"
#include "mainwindow/Modes.h"
#include "settings/StoredSettings.h"
#include "sources/LiveSource.h"
#include "widgets/ImageButton.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>

namespace
{

double monotonicMs()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

double processorMs()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0.0 : values[values.size() / 2];
}

/// Calls back after the first paint event of the window has been carried out.
class FirstPaint : public QObject
{
public:
    FirstPaint(QWidget *window, std::function<void()> painted)
        : m_painted(std::move(painted))
    {
        window->installEventFilter(this);
    }
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && m_painted) {
            QTimer::singleShot(0, this, std::exchange(m_painted, nullptr));
        }
        return false;
    }

private:
    std::function<void()> m_painted;
};

/// The process that is measured; prints the moment of its first painted window.
int child(int argc, char **argv, bool bare)
{
    if (!bare)
        preparePlatform();
    QApplication application(argc, argv);
    StoredSettings::nameFiles();
    std::unique_ptr<QWidget> window;
    if (bare) {
        window = std::make_unique<QWidget>();
        window->resize(938, 768);
    } else {
        window = std::make_unique<MainWindow>();
    }
    const FirstPaint firstPaint(window.get(), [] {
        std::printf("%.3f %.3f\n", monotonicMs(), processorMs());
        std::fflush(stdout);
        // Nothing of the end of the process counts as start.
        std::_Exit(0);
    });
    window->show();
    return QApplication::exec();
}

struct Start {
    std::vector<double> elapsedMs;
    std::vector<double> processorMs;
};

void startOnce(const QString &program, const QString &kind, Start &start)
{
    QProcess process;
    const double began = monotonicMs();
    process.start(program, {"--child", kind});
    process.waitForFinished(60000);
    const QList<QByteArray> words = process.readAllStandardOutput().trimmed().split(' ');
    if (words.size() != 2)
        qFatal("%s does not paint", qPrintable(kind));
    start.elapsedMs.push_back(words[0].toDouble() - began);
    start.processorMs.push_back(words[1].toDouble());
}

int measureStart(const QString &program, int runs)
{
    Start bare;
    Start window;
    for (int i = 0; i < runs; ++i) {
        startOnce(program, "bare", bare);
        startOnce(program, "window", window);
    }
    const auto print = [](const char *name, double elapsed, double processor) {
        std::printf("%-14s %8.1f ms, %7.1f ms of processor\n", name, elapsed, processor);
    };
    print("bare program", median(bare.elapsedMs), median(bare.processorMs));
    print("main window", median(window.elapsedMs), median(window.processorMs));
    print("more", median(window.elapsedMs) - median(bare.elapsedMs),
          median(window.processorMs) - median(bare.processorMs));
    return 0;
}

int measureModes(int runs)
{
    MainWindow window;
    window.show();
    QElapsedTimer settled;
    settled.start();
    while (settled.elapsed() < 500)
        QCoreApplication::processEvents();
    QList<ImageButton *> buttons;
    for (const auto &row : Commands::rowsOf(Commands::Group::Modes)) {
        for (ImageButton *button : window.findChildren<ImageButton *>()) {
            if (button->accessibleName() == MainWindow::tr(row.text))
                buttons << button;
        }
    }
    for (int to = 0; to < buttons.size(); ++to) {
        std::vector<double> times;
        std::vector<double> processorTimes;
        for (int i = 0; i < runs; ++i) {
            buttons[(to + 1 + i % 3) % 4]->click();
            QCoreApplication::processEvents();
            const double began = monotonicMs();
            const double processorBegan = processorMs();
            buttons[to]->click();
            window.repaint();
            QCoreApplication::processEvents();
            times.push_back(monotonicMs() - began);
            processorTimes.push_back(processorMs() - processorBegan);
        }
        std::printf("to %-14s %7.2f ms, %.2f ms of processor\n",
                    qPrintable(buttons[to]->accessibleName()), median(times),
                    median(processorTimes));
    }
    return 0;
}

double statusMegabytes(const char *field)
{
    QFile status("/proc/self/status");
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(field))
            return line.simplified().split(' ')[1].toDouble() / 1024;
    }
    return 0;
}

int measureMemory(int seconds)
{
    MainWindow window;
    window.liveSource()->setResolution({1920, 1080});
    window.show();
    QTimer::singleShot(seconds * 1000, &window, [&window] {
        const QSize size = window.currentCanvas()->pictureSize();
        std::printf("live picture %d x %d\nresident            %7.1f MB, most ever %.1f MB\n",
                    size.width(), size.height(), statusMegabytes("VmRSS:"),
                    statusMegabytes("VmHWM:"));
        std::fflush(stdout);
        window.close();
    });
    return QApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    if (argc == 3 && qstrcmp(argv[1], "--child") == 0)
        return child(argc, argv, qstrcmp(argv[2], "bare") == 0);
    if (argc != 3 || atoi(argv[2]) < 1) {
        std::fputs("bench_window start RUNS | modes RUNS | memory SECONDS\n", stderr);
        return 2;
    }
    const int count = atoi(argv[2]);
    if (qstrcmp(argv[1], "start") == 0)
        return measureStart(QString::fromLocal8Bit(argv[0]), count);
    preparePlatform();
    QApplication application(argc, argv);
    StoredSettings::nameFiles();
    return qstrcmp(argv[1], "modes") == 0 ? measureModes(count) : measureMemory(count);
}
