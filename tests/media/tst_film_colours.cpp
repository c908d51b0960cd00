#include "sources/FilmSource.h"
#include "tests/TestProgram.h"
#include "tests/fakes/RecordingSink.h"

#include <QtTest>

#include <QDir>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>

#include <vector>

namespace
{

constexpr int timeoutMs = 30000;
constexpr int columns = 10;
constexpr int asGoodAsEqual = 2;

/// Greys and colours side by side.
QImage chart(QSize size)
{
    constexpr QRgb colours[columns] = {0xff080808, 0xff404040, 0xff808080, 0xffc0c0c0, 0xfff4f4f4,
                                       0xffc82828, 0xff28c828, 0xff2828c8, 0xffb4b428, 0xff783ca0};
    QImage image(size, QImage::Format_RGB888);
    QPainter painter(&image);
    for (int x = 0; x < size.width(); ++x)
        painter.fillRect(x, 0, 1, size.height(), QColor(colours[x * columns / size.width()]));
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

struct ComparedFilm {
    QString what;
    /// Of the encoder.
    QStringList arguments;
    QString name;
    QSize size;
};

/// How the colours are stored: "full" or "limited", the matrix and the format of the pixels.
QStringList storedColours(const char *range, const char *matrix, const char *pixels)
{
    const bool full = qstrcmp(range, "full") == 0;
    return {"-vf",          QString("scale=out_range=%1:out_color_matrix=%2").arg(range, matrix),
            "-pix_fmt",     pixels,
            "-color_range", full ? "pc" : "tv"};
}

/// How the film names its colours.
QStringList namedColours(const char *matrix, const char *primaries, const char *transfer)
{
    return {"-colorspace", matrix, "-color_primaries", primaries, "-color_trc", transfer};
}

const QStringList hevcEncoder{"-c:v",      "libx265",      "-preset",
                              "ultrafast", "-x265-params", "log-level=error:qp=4"};
const QStringList h264Encoder{"-c:v", "libx264", "-preset", "ultrafast", "-qp", "4"};
// Players take what is not named from the count of lines, so some have many lines, each a short
// one.
const QSize smallPicture(640, 96);
const QSize manyLines(160, 720);
const QSize linesOf4K(160, 2160);

/// The films of one encoder.
void addFilms(std::vector<ComparedFilm> &list, const QString &codec, const QStringList &encoder)
{
    const auto add = [&](const QString &what, const QStringList &arguments,
                         QSize size = smallPicture) {
        list.push_back({codec + ' ' + what, arguments + encoder, {}, size});
    };
    for (const char *range : {"full", "limited"}) {
        const QString kind = QString(range) + ' ';
        add(kind + "unnamed", storedColours(range, "bt601", "yuv420p"));
        add(kind + "601", storedColours(range, "bt601", "yuv420p") +
                              namedColours("smpte170m", "smpte170m", "smpte170m"));
        add(kind + "709",
            storedColours(range, "bt709", "yuv420p") + namedColours("bt709", "bt709", "bt709"));
        add(kind + "large, unnamed", storedColours(range, "bt709", "yuv420p"), manyLines);
    }
    for (const int lines : {480, 486, 576})
        add(QString("%1 lines, unnamed").arg(lines), storedColours("limited", "bt601", "yuv420p"),
            {640, lines});
    add("2020, the matrix alone named", storedColours("limited", "bt2020nc", "yuv420p10le") +
                                            QStringList{"-colorspace", "bt2020nc"});
    add("4K, unnamed", storedColours("limited", "bt709", "yuv420p"), linesOf4K);
    add("4:4:4",
        storedColours("limited", "bt709", "yuv444p") + namedColours("bt709", "bt709", "bt709"));
    add("4:2:2 full", storedColours("full", "bt601", "yuv422p"));
}

std::vector<ComparedFilm> comparedFilms()
{
    std::vector<ComparedFilm> list;
    addFilms(list, "H.264", h264Encoder);
    addFilms(list, "HEVC", hevcEncoder);
    for (const char *range : {"limited", "full"})
        list.push_back({QString("2020 %1").arg(range),
                        storedColours(range, "bt2020nc", "yuv420p10le") +
                            namedColours("bt2020nc", "bt2020", "bt2020-10") + hevcEncoder,
                        {},
                        smallPicture});
    for (std::size_t i = 0; i < list.size(); ++i)
        list[i].name = QString("%1.mp4").arg(i);
    const auto motionJpeg = [](const char *pixels) {
        return QStringList{"-pix_fmt", pixels, "-c:v", "mjpeg", "-q:v", "1"};
    };
    list.push_back({"Motion-JPEG 4:2:2", motionJpeg("yuvj422p"), "jpeg422.avi", smallPicture});
    list.push_back({"Motion-JPEG 480 lines", motionJpeg("yuvj420p"), "jpeg420.avi", {640, 480}});
    list.push_back({"MPEG-2 576 lines",
                    {"-pix_fmt", "yuv420p", "-c:v", "mpeg2video", "-q:v", "1"},
                    "mpeg2.mpg",
                    {720, 576}});
    for (const char *pixels : {"bgr24", "bgra"})
        list.push_back({QString("not compressed, %1").arg(pixels),
                        {"-pix_fmt", pixels, "-c:v", "rawvideo"},
                        QString("%1.avi").arg(pixels),
                        smallPicture});
    return list;
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

    /// The other player's pictures of these films, in files; one process plays them all, as it
    /// takes longer to start than to play.
    QStringList shownByMpv(const QStringList &names)
    {
        const QString folder = m_folder.filePath("theirs");
        if (!run("mpv",
                 QStringList{"--no-config", "--really-quiet", "--vo=image", "--vo-image-format=png",
                             "--vo-image-png-compression=1", "--vo-image-outdir=" + folder,
                             "--frames=1", "--ao=null"} +
                     names,
                 m_folder.path()))
            return {};
        QStringList pictures;
        for (const QString &picture : QDir(folder).entryList(QDir::Files, QDir::Name))
            pictures << folder + '/' + picture;
        return pictures;
    }

    const std::vector<ComparedFilm> m_films = comparedFilms();
    QStringList m_theirs;

private slots:
    void initTestCase()
    {
        QStringList names;
        for (const ComparedFilm &film : m_films) {
            QVERIFY2(makeFilm(chart(film.size), film.arguments, film.name), qPrintable(film.what));
            names << film.name;
        }
        m_theirs = shownByMpv(names);
        // They are numbered, so that one that is missing would shift the others.
        QCOMPARE(m_theirs.size(), static_cast<int>(m_films.size()));
    }

    void coloursAreThoseOfAnotherPlayer_data()
    {
        QTest::addColumn<int>("place");
        for (std::size_t i = 0; i < m_films.size(); ++i)
            QTest::newRow(qPrintable(m_films[i].what)) << static_cast<int>(i);
    }

    void coloursAreThoseOfAnotherPlayer()
    {
        QFETCH(int, place);
        const ComparedFilm &film = m_films[static_cast<std::size_t>(place)];
        const QImage theirs(m_theirs[place]);
        const QImage ours = shown(film.name);
        QCOMPARE(ours.size(), film.size);
        QCOMPARE(theirs.size(), film.size);
        QStringList colours;
        for (int column = 0; column < columns; ++column)
            colours << colourAt(ours, column) + " is " + colourAt(theirs, column);
        QVERIFY2(greatestDifference(ours, theirs) <= asGoodAsEqual, qPrintable(colours.join(", ")));
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
