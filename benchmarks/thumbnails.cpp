// How fast the thumbnails of a real folder come: 500 photographs of 12 megapixels through the
// strip's loader, beside the thumbnailers of the distribution on the same files, one core each.
#include "mainwindow/ThumbnailLoader.h"
#include "mainwindow/ThumbnailWidget.h"
#include "sources/ICaptureCB.h"
#include "sources/PhotographSource.h"
#include "widgets/HorizontalSlider.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <sys/resource.h>

#include <cmath>
#include <cstdio>
#include <functional>

namespace
{

constexpr int PICTURES = 500;
/// Different pictures; the rest of the folder are links to them.
constexpr int DIFFERENT = 10;
/// The command-line tools are measured on as many files as give a steady figure.
constexpr int YARDSTICK_PICTURES = 60;

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
            const int value = 128 + int(wave * 35) + int(noise >> 28);
            row[x] = qRgb(value, (value + x / 20) & 255, 255 - value);
        }
    }
    return image;
}

QStringList makeFolder(const QTemporaryDir &folder)
{
    QStringList files;
    for (int i = 0; i < PICTURES; ++i) {
        const QString file = folder.filePath(QString("%1.jpg").arg(i, 4, 10, QChar('0')));
        if (i < DIFFERENT)
            photograph(i).save(file, "jpg", 90);
        else
            QFile::link(files[i % DIFFERENT], file);
        files.append(file);
    }
    return files;
}

struct LoaderTimes {
    qint64 firstMs = 0;
    qint64 tenthMs = 0;
    qint64 allMs = 0;
};

LoaderTimes runLoader(const QStringList &files)
{
    LoaderTimes times;
    ThumbnailLoader loader(nullptr);
    loader.setFileNames(files);
    QEventLoop loop;
    QElapsedTimer clock;
    QObject::connect(
        &loader, &ThumbnailLoader::thumbnailLoaded, &loop,
        [&](int, int index, const QImage &) {
            if (index == 0)
                times.firstMs = clock.elapsed();
            if (index == 9)
                times.tenthMs = clock.elapsed();
            if (index == files.size() - 1)
                loop.quit();
        },
        Qt::QueuedConnection);
    clock.start();
    loader.start(QThread::InheritPriority);
    loop.exec();
    times.allMs = clock.elapsed();
    return times;
}

/// Pictures a second of a command that is started once for each file, or once for all of them.
double runCommand(const QString &program, const QStringList &files,
                  const std::function<QStringList(const QStringList &)> &arguments, bool oneByOne)
{
    if (QStandardPaths::findExecutable(program).isEmpty())
        return 0;
    QElapsedTimer clock;
    clock.start();
    if (oneByOne) {
        for (const QString &file : files)
            QProcess::execute(program, arguments({file}));
    } else {
        QProcess::execute(program, arguments(files));
    }
    return double(files.size()) * 1000.0 / double(clock.elapsed());
}

void report(const char *name, double perSecond)
{
    if (perSecond > 0)
        printf("  %-34s %6.1f pictures a second\n", name, perSecond);
    else
        printf("  %-34s not installed\n", name);
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
    const double stepMs = double(clock.restart()) / 1000.0;
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
    qputenv("OMP_NUM_THREADS", "1");
    qputenv("VIPS_CONCURRENCY", "1");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    if (application.arguments().contains("--many")) {
        // By itself, as the most memory that a process ever held cannot be counted down again.
        measureTenThousand();
        return 0;
    }
    QTemporaryDir folder;
    QTemporaryDir output;
    const QStringList files = makeFolder(folder);
    const QStringList some = files.mid(0, YARDSTICK_PICTURES);

    const LoaderTimes times = runLoader(files);
    printf("500 photographs of 4000 x 3000 to 56 x 50, one thread\n");
    printf("  first thumbnail %lld ms, ten of them %lld ms, all %lld ms\n", times.firstMs,
           times.tenthMs, times.allMs);
    report("the strip's loader", PICTURES * 1000.0 / double(times.allMs));
    report("ImageMagick, reduced decode",
           runCommand(
               "mogrify", some,
               [&](const QStringList &inputs) {
                   return QStringList{"-define",     "jpeg:size=112x100", "-path",
                                      output.path(), "-thumbnail",        "56x50"} +
                          inputs;
               },
               false));
    report("vipsthumbnail",
           runCommand(
               "vipsthumbnail", some,
               [&](const QStringList &inputs) {
                   return QStringList{"--size", "56x50", "-o", output.path() + "/%s.jpg"} + inputs;
               },
               false));
    report("gdk-pixbuf-thumbnailer",
           runCommand(
               "gdk-pixbuf-thumbnailer", some,
               [&](const QStringList &inputs) {
                   return QStringList{"-s", "56", inputs.first(), output.filePath("t.png")};
               },
               true));
    return 0;
}
