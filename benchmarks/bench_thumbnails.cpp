// How fast the thumbnails of a real folder come; photographs of 12 megapixels to 56 x 50:
//   bench_thumbnails race     the strip's loader beside the thumbnailers of the distribution, in
//                             turns, everything on one core
//   bench_thumbnails window   500 photographs in the whole program: how soon the thumbnails of the
//                             strip are there, and how long the window does not answer
//   bench_thumbnails many     10,000 small pictures in the strip
#include "mainwindow/MainWindow.h"
#include "mainwindow/bars/ThumbnailButton.h"
#include "mainwindow/bars/ThumbnailLoader.h"
#include "mainwindow/bars/ThumbnailWidget.h"
#include "settings/StoredSettings.h"
#include "sources/ICaptureCB.h"
#include "sources/PhotographSource.h"
#include "sources/photographs/ThumbnailCache.h"
#include "widgets/HorizontalSlider.h"
#include "widgets/ImageButton.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>

#include <sched.h>
#include <sys/resource.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <vector>

namespace
{

constexpr int PICTURES = 500;
/// Different pictures; the rest of the folder are links to them.
constexpr int DIFFERENT = 10;
constexpr int RACE_PICTURES = 60;
constexpr int TURNS = 5;

/// A picture with detail at every scale, as the camera of a telephone gives.
QImage photograph(int seed)
{
    QImage image(4000, 3000, QImage::Format_RGB32);
    quint32 noise = quint32(seed) * 2654435761U;
    for (int y = 0; y < image.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            noise = noise * 1664525 + 1013904223;
            const double wave =
                std::sin(x * 0.004 + seed) + std::cos(y * 0.006) + std::sin(x * y * 1e-5);
            const int value = 128 + static_cast<int>(wave * 35) + static_cast<int>(noise >> 28);
            row[x] = qRgb(value, (value + x / 20) & 255, 255 - value);
        }
    }
    return image;
}

QStringList makeFolder(const QTemporaryDir &folder, int count)
{
    QStringList files;
    for (int i = 0; i < count; ++i) {
        const QString file = folder.filePath(QString("%1.jpg").arg(i, 4, 10, QChar('0')));
        if (i < DIFFERENT)
            photograph(i).save(file, "jpg", 90);
        else
            QFile::link(files[i % DIFFERENT], file);
        files.append(file);
    }
    return files;
}

double processorSeconds(int whose)
{
    rusage usage{};
    getrusage(whose, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// A way to make thumbnails of files, with the seconds that its turns took.
struct Racer {
    const char *name;
    std::function<void(const QStringList &)> work;
    std::vector<double> elapsed;
    std::vector<double> processor;
};

void runLoader(const QStringList &files)
{
    ThumbnailLoader loader(1, files, 1, nullptr);
    QEventLoop loop;
    QObject::connect(&loader, &QThread::finished, &loop, &QEventLoop::quit);
    loader.start(QThread::InheritPriority);
    loop.exec();
}

std::function<void(const QStringList &)> forAll(const QString &program, const QStringList &options)
{
    return [=](const QStringList &files) { QProcess::execute(program, options + files); };
}

/// `FILE` stands for the file in the options.
std::function<void(const QStringList &)> forEach(const QString &program, const QStringList &options)
{
    return [=](const QStringList &files) {
        for (const QString &file : files) {
            QStringList arguments = options;
            arguments.replaceInStrings("FILE", file);
            QProcess::execute(program, arguments);
        }
    };
}

std::vector<Racer> racersWritingTo(const QString &folder)
{
    std::vector<Racer> racers{{"the strip's loader", runLoader, {}, {}}};
    const auto add = [&racers](const char *name, const QString &program, const auto &work) {
        if (QStandardPaths::findExecutable(program).isEmpty())
            std::printf("%s is not installed\n", name);
        else
            racers.push_back({name, work, {}, {}});
    };
    add("GraphicsMagick", "gm",
        forAll("gm", {"mogrify", "-create-directories", "-output-directory", folder, "-size",
                      "56x50", "-thumbnail", "56x50"}));
    add("ImageMagick", "mogrify",
        forAll("mogrify",
               {"-define", "jpeg:size=112x100", "-path", folder, "-thumbnail", "56x50"}));
    add("vipsthumbnail", "vipsthumbnail",
        forAll("vipsthumbnail", {"--size", "56x50", "-o", folder + "/%s.jpg"}));
    add("gdk-pixbuf-thumbnailer", "gdk-pixbuf-thumbnailer",
        forEach("gdk-pixbuf-thumbnailer", {"-s", "56", "FILE", folder + "/t.png"}));
    return racers;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void race()
{
    // Threads and processes that come from here inherit the one core.
    cpu_set_t core;
    CPU_ZERO(&core);
    CPU_SET(1, &core);
    sched_setaffinity(0, sizeof core, &core);
    qputenv("OMP_NUM_THREADS", "1");
    qputenv("VIPS_CONCURRENCY", "1");

    QTemporaryDir folder;
    QTemporaryDir output;
    const QStringList files = makeFolder(folder, RACE_PICTURES);
    std::vector<Racer> racers = racersWritingTo(output.path());
    QElapsedTimer clock;
    for (int turn = 0; turn < TURNS; ++turn) {
        for (Racer &racer : racers) {
            // What the loader of an earlier turn has left for later would be no race.
            QDir(QFileInfo(ThumbnailCache::fileFor("/")).path()).removeRecursively();
            const double before = processorSeconds(RUSAGE_SELF) + processorSeconds(RUSAGE_CHILDREN);
            clock.start();
            racer.work(files);
            racer.elapsed.push_back(static_cast<double>(clock.nsecsElapsed()) * 1e-9);
            racer.processor.push_back(processorSeconds(RUSAGE_SELF) +
                                      processorSeconds(RUSAGE_CHILDREN) - before);
        }
    }
    std::printf("%d photographs of 4000 x 3000 to 56 x 50 on one core, medians of %d turns\n",
                RACE_PICTURES, TURNS);
    for (const Racer &racer : racers)
        std::printf("  %-24s %5.1f pictures a second, %5.1f ms of processor time each\n",
                    racer.name, RACE_PICTURES / median(racer.elapsed),
                    median(racer.processor) * 1e3 / RACE_PICTURES);
}

/// The longest time between two rounds of the event loop.
class Stall : public QTimer
{
public:
    Stall()
    {
        connect(this, &QTimer::timeout, this, [this] {
            longestMs = std::max(longestMs, static_cast<double>(m_clock.nsecsElapsed()) * 1e-6);
            m_clock.start();
        });
        m_clock.start();
        start(0);
    }
    double longestMs = 0.0;

private:
    QElapsedTimer m_clock;
};

ImageButton *photographModeButton(const MainWindow &window)
{
    for (ImageButton *button : window.findChildren<ImageButton *>()) {
        if (button->accessibleName() == "Photograph")
            return button;
    }
    return nullptr;
}

int visibleThumbnails(const MainWindow &window)
{
    const auto buttons = window.thumbnailWidget()->findChildren<ThumbnailButton *>();
    return static_cast<int>(
        std::count_if(buttons.begin(), buttons.end(),
                      [](const ThumbnailButton *button) { return !button->isHidden(); }));
}

void measureWindow()
{
    QTemporaryDir folder;
    makeFolder(folder, PICTURES);
    MainWindow window;
    window.show();
    photographModeButton(window)->click();
    QCoreApplication::processEvents();

    QEventLoop loop;
    QElapsedTimer clock;
    std::vector<qint64> arrivals;
    clock.start();
    window.findChild<PhotographSource *>()->setDirectory(QDir(folder.path()), "0000.jpg");
    const qint64 openMs = clock.elapsed();
    const auto buttons = window.findChildren<ThumbnailButton *>();
    // They come one after the other.
    QTimer looks;
    QObject::connect(&looks, &QTimer::timeout, &loop, [&] {
        const auto filled = std::count_if(buttons.begin(), buttons.end(),
                                          [](const auto *button) { return button->hasImage(); });
        arrivals.resize(static_cast<std::size_t>(filled), clock.elapsed());
        if (arrivals.size() == PICTURES)
            loop.quit();
    });
    looks.start(1);
    const Stall stall;
    loop.exec();
    const int visible = visibleThumbnails(window);
    std::printf("500 photographs: opened with the first picture in %lld ms; thumbnails on their "
                "buttons: the first after %lld ms, all %d visible ones after %lld ms, all after "
                "%lld ms; meanwhile the window was away for %.1f ms at the most\n",
                openMs, arrivals.front(), visible, arrivals[static_cast<std::size_t>(visible - 1)],
                arrivals.back(), stall.longestMs);
}

class NoCanvas : public ICaptureCB
{
public:
    void imageCaptured(const QImage &) override {}
    void imageCaptured(void *, int, int, bool, bool) override {}
    void startAutoRefresh() override {}
    void stopAutoRefresh() override {}
};

/// A folder of ten thousand small pictures: how long until it stands in the strip, how long one
/// step of the scrolling takes, and what all of it holds once every thumbnail is there.
void measureTenThousand()
{
    QTemporaryDir folder;
    const QString first = folder.filePath("00000.png");
    photograph(1).scaled(320, 240).save(first);
    for (int i = 1; i < 10000; ++i)
        QFile::link(first, folder.filePath(QString("%1.png").arg(i, 5, 10, QChar('0'))));

    NoCanvas canvas;
    QWidget window;
    window.resize(900, 100);
    PhotographSource source(&canvas, nullptr);
    HorizontalSlider slider(QImage(10, 6, QImage::Format_RGB32), &window);
    ThumbnailWidget strip(&source, &slider, &window);
    strip.setFixedSize(900, 60);
    window.show();
    QElapsedTimer clock;
    clock.start();
    source.setDirectory(QDir(folder.path()), "00000.png");
    strip.refresh();
    const qint64 openMs = clock.restart();
    for (int i = 0; i < 1000; ++i) {
        emit slider.valueChanged(i * 9);
        strip.repaint();
    }
    const double stepMs = static_cast<double>(clock.restart()) / 1000.0;
    auto *loader = strip.findChild<ThumbnailLoader *>();
    while (!loader->isFinished())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    QCoreApplication::processEvents();
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    printf("10,000 pictures\n  open in %lld ms, a step of scrolling %.2f ms, %ld MB at the most\n",
           openMs, stepMs, usage.ru_maxrss / 1024);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    StoredSettings::nameFiles();
    const QByteArray work = argc == 2 ? argv[1] : "";
    if (work == "race")
        race();
    else if (work == "window")
        measureWindow();
    else if (work == "many")
        measureTenThousand();
    else
        return 2;
    return 0;
}
