#include "sources/FilmSource.h"
#include "tests/TestProgram.h"
#include "tests/fakes/RecordingSink.h"

#include <QtTest>

#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>

namespace
{

constexpr int timeoutMs = 30000;
constexpr int columns = 10;
constexpr int asGoodAsEqual = 2;

/// Greys and colours side by side.
QImage chart(QSize size)
{
    const QRgb colours[columns] = {0xff080808, 0xff404040, 0xff808080, 0xffc0c0c0, 0xfff4f4f4,
                                   0xffc82828, 0xff28c828, 0xff2828c8, 0xffb4b428, 0xff783ca0};
    QImage image(size, QImage::Format_RGB888);
    for (int x = 0; x < size.width(); ++x) {
        for (int y = 0; y < size.height(); ++y)
            image.setPixel(x, y, colours[x * columns / size.width()]);
    }
    return image;
}

/// Single columns of two colours, of which half is lost where colours are stored for two together.
QImage stripes(QSize size)
{
    QImage image(size, QImage::Format_RGB888);
    for (int x = 0; x < size.width(); ++x) {
        for (int y = 0; y < size.height(); ++y)
            image.setPixel(x, y, x % 2 == 0 ? 0xffc82828 : 0xff2828c8);
    }
    return image;
}

bool run(const QString &program, const QStringList &arguments, const QString &folder)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    const bool done = process.waitForFinished(timeoutMs) && process.exitCode() == 0;
    if (!done)
        qWarning().noquote() << program << process.errorString() << process.readAll();
    return done;
}

QString colourAt(const QImage &image, int column)
{
    const QColor colour =
        image.pixelColor((2 * column + 1) * image.width() / (2 * columns), image.height() / 2);
    return QString("%1 %2 %3").arg(colour.red()).arg(colour.green()).arg(colour.blue());
}

/// The greatest difference of a channel in the middles of the columns.
int greatestDifference(const QImage &one, const QImage &other)
{
    int greatest = 0;
    for (int column = 0; column < columns; ++column) {
        const int x = (2 * column + 1) * one.width() / (2 * columns);
        const QColor a = one.pixelColor(x, one.height() / 2);
        const QColor b = other.pixelColor(x, one.height() / 2);
        greatest = std::max({greatest, std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                             std::abs(a.blue() - b.blue())});
    }
    return greatest;
}

} // namespace

/// What the pictures of films look like, beside what another player makes of them.
class FilmColoursTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

    /// A film of that picture, made with these arguments of the encoder.
    bool makeFilm(const QImage &picture, const QStringList &arguments, const QString &name)
    {
        return picture.save(m_folder.filePath("picture.png")) &&
               run("ffmpeg",
                   QStringList{"-v", "error", "-y", "-loop", "1", "-framerate", "10", "-t", "0.2",
                               "-i", "picture.png"} +
                       arguments + QStringList{name},
                   m_folder.path());
    }

    QImage shown(const QString &name)
    {
        RecordingSink sink;
        FilmSource source(&sink, nullptr);
        source.setFile(m_folder.filePath(name));
        source.pause();
        const bool came = QTest::qWaitFor([&sink] { return sink.count() > 0; }, timeoutMs);
        return came ? sink.last() : QImage();
    }

    QImage shownByMpv(const QString &name)
    {
        const bool played = run("mpv",
                                {"--no-config", "--really-quiet", "--vo=image",
                                 "--vo-image-format=png", "--frames=1", "--ao=null", name},
                                m_folder.path());
        return played ? QImage(m_folder.filePath("00000001.png")) : QImage();
    }

private slots:
    void coloursAreThoseOfAnotherPlayer_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QSize>("size");
        // What rounding and the encoder may cost.
        QTest::addColumn<int>("difference");
        const QSize small(640, 96);
        const QStringList names601{"-colorspace", "smpte170m",  "-color_primaries",
                                   "smpte170m",   "-color_trc", "smpte170m"};
        const QStringList names709{"-colorspace", "bt709",      "-color_primaries",
                                   "bt709",       "-color_trc", "bt709"};
        const auto stored = [](const char *range, const char *matrix, const char *pixels) {
            const bool full = qstrcmp(range, "full") == 0;
            return QStringList{"-vf",
                               QString("scale=out_range=%1:out_color_matrix=%2").arg(range, matrix),
                               "-pix_fmt",
                               pixels,
                               "-color_range",
                               full ? "pc" : "tv"};
        };
        for (const auto &[codec, encoder] :
             {std::pair("H.264",
                        QStringList{"-c:v", "libx264", "-preset", "ultrafast", "-qp", "4"}),
              std::pair("HEVC", QStringList{"-c:v", "libx265", "-preset", "ultrafast",
                                            "-x265-params", "log-level=error:qp=4"})}) {
            for (const char *range : {"full", "limited"}) {
                const QString kind = QString("%1 %2 ").arg(codec, range);
                QTest::newRow(qPrintable(kind + "unnamed"))
                    << stored(range, "bt601", "yuv420p") + encoder << "film.mp4" << small
                    << asGoodAsEqual;
                QTest::newRow(qPrintable(kind + "601"))
                    << stored(range, "bt601", "yuv420p") + names601 + encoder << "film.mp4" << small
                    << asGoodAsEqual;
                QTest::newRow(qPrintable(kind + "709"))
                    << stored(range, "bt709", "yuv420p") + names709 + encoder << "film.mp4" << small
                    << asGoodAsEqual;
                QTest::newRow(qPrintable(kind + "large, unnamed"))
                    << stored(range, "bt709", "yuv420p") + encoder << "film.mp4" << QSize(1280, 720)
                    << asGoodAsEqual;
            }
            for (const int lines : {480, 486, 576})
                QTest::newRow(qPrintable(QString("%1 %2 lines, unnamed").arg(codec).arg(lines)))
                    << stored("limited", "bt601", "yuv420p") + encoder << "film.mp4"
                    << QSize(640, lines) << asGoodAsEqual;
            QTest::newRow(qPrintable(QString("%1 2020, the matrix alone named").arg(codec)))
                << stored("limited", "bt2020nc", "yuv420p10le") +
                       QStringList{"-colorspace", "bt2020nc"} + encoder
                << "film.mp4" << small << asGoodAsEqual;
            QTest::newRow(qPrintable(QString("%1 4K, unnamed").arg(codec)))
                << stored("limited", "bt709", "yuv420p") + encoder << "film.mp4"
                << QSize(3840, 2160) << asGoodAsEqual;
            QTest::newRow(qPrintable(QString("%1 4:4:4").arg(codec)))
                << stored("limited", "bt709", "yuv444p") + names709 + encoder << "film.mp4" << small
                << asGoodAsEqual;
            QTest::newRow(qPrintable(QString("%1 4:2:2 full").arg(codec)))
                << stored("full", "bt601", "yuv422p") + encoder << "film.mp4" << small
                << asGoodAsEqual;
        }
        QTest::newRow("Motion-JPEG 4:2:2")
            << QStringList{"-pix_fmt", "yuvj422p", "-c:v", "mjpeg", "-q:v", "1"} << "film.avi"
            << small << asGoodAsEqual;
        for (const char *range : {"limited", "full"})
            QTest::newRow(qPrintable(QString("2020 %1").arg(range)))
                << stored(range, "bt2020nc", "yuv420p10le") + QStringList{"-colorspace",
                                                                          "bt2020nc",
                                                                          "-color_primaries",
                                                                          "bt2020",
                                                                          "-color_trc",
                                                                          "bt2020-10",
                                                                          "-c:v",
                                                                          "libx265",
                                                                          "-x265-params",
                                                                          "log-level=error:qp=4"}
                << "film.mp4" << small << asGoodAsEqual;
        QTest::newRow("Motion-JPEG 480 lines")
            << QStringList{"-pix_fmt", "yuvj420p", "-c:v", "mjpeg", "-q:v", "1"} << "film.avi"
            << QSize(640, 480) << asGoodAsEqual;
        QTest::newRow("MPEG-2 576 lines")
            << QStringList{"-pix_fmt", "yuv420p", "-c:v", "mpeg2video", "-q:v", "1"} << "film.mpg"
            << QSize(720, 576) << asGoodAsEqual;
        for (const char *pixels : {"bgr24", "bgra"})
            QTest::newRow(qPrintable(QString("not compressed, %1").arg(pixels)))
                << QStringList{"-pix_fmt", pixels, "-c:v", "rawvideo"} << "film.avi" << small
                << asGoodAsEqual;
    }

    void coloursAreThoseOfAnotherPlayer()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, name);
        QFETCH(QSize, size);
        QVERIFY(makeFilm(chart(size), arguments, name));
        const QImage theirs = shownByMpv(name);
        const QImage ours = shown(name);
        QCOMPARE(ours.size(), size);
        QCOMPARE(theirs.size(), size);
        QStringList colours;
        for (int column = 0; column < columns; ++column)
            colours << colourAt(ours, column) + " is " + colourAt(theirs, column);
        QFETCH(int, difference);
        QVERIFY2(greatestDifference(ours, theirs) <= difference, qPrintable(colours.join(", ")));
    }

    void coloursOfSinglePixelsAreKept()
    {
        const QImage picture = stripes({640, 96});
        QVERIFY(makeFilm(picture,
                         {"-vf", "scale=out_color_matrix=bt709", "-pix_fmt", "yuv444p",
                          "-colorspace", "bt709", "-c:v", "libx264", "-qp", "1"},
                         "stripes.mp4"));
        const QImage ours = shown("stripes.mp4");
        for (int x = 100; x < 110; ++x) {
            const QColor is = ours.pixelColor(x, 48);
            const QColor was = picture.pixelColor(x, 48);
            QVERIFY2(std::abs(is.red() - was.red()) < 6 && std::abs(is.blue() - was.blue()) < 6,
                     qPrintable(QString("%1: %2 is %3").arg(x).arg(is.name(), was.name())));
        }
    }

    void pixelsAreSquare_data()
    {
        QTest::addColumn<QSize>("stored");
        QTest::addColumn<QString>("aspect");
        QTest::addColumn<QSize>("size");
        QTest::newRow("PAL, wide") << QSize(720, 576) << "64/45" << QSize(1024, 576);
        QTest::newRow("HDV") << QSize(1440, 1080) << "4/3" << QSize(1920, 1080);
        QTest::newRow("NTSC") << QSize(720, 480) << "8/9" << QSize(720, 540);
        QTest::newRow("8K wide") << QSize(7680, 640) << "1/1" << QSize(3840, 320);
    }

    void pixelsAreSquare()
    {
        QFETCH(QSize, stored);
        QFETCH(QString, aspect);
        QVERIFY(makeFilm(chart(stored),
                         {"-vf", "setsar=" + aspect, "-pix_fmt", "yuv420p", "-c:v", "libx264",
                          "-preset", "ultrafast"},
                         "shape.mp4"));
        const QImage ours = shown("shape.mp4");
        QTEST(ours.size(), "size");
        // Nothing is cut off: what stood at the edges stands there.
        const QImage whole = chart(ours.size());
        QVERIFY(std::abs(qGray(ours.pixel(4, 10)) - qGray(whole.pixel(4, 10))) < 12);
        const int right = ours.width() - 5;
        QVERIFY(std::abs(qGray(ours.pixel(right, 10)) - qGray(whole.pixel(right, 10))) < 12);
    }
};

REGISTER_CORE_TEST(FilmColoursTest)
#include "tst_film_colours.moc"
