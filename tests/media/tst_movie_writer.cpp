#include "tests/TestProgram.h"
#include "tests/media/HeldEncoder.h"
#include "tests/media/MovieFile.h"
#include "tests/media/SyntheticPictures.h"

#include "sources/recording/MovieEncoders.h"
#include "sources/recording/MovieWriter.h"
#include "sources/threads/DetachedThreads.h"

#include <QtTest>

#include <QElapsedTimer>

#include <chrono>
#include <cstdlib>
#include <mutex>
#include <thread>

namespace
{

constexpr qint64 START_US = 5000000000;
constexpr int TIMEOUT_MS = 20000;
constexpr QSize SMALL(640, 360);

qint64 timeOf(int number)
{
    return START_US + number * 1000000LL / 30;
}

/// A writer with what it reported.
class Movie
{
public:
    explicit Movie(const QString &fileName, QSize size = SMALL,
                   const QStringList &encoders = {"x264enc"})
        : m_pictures(size)
        , writer(MovieWriter::create({fileName, size, encoders}, [this](const QString &sentence) {
            const std::lock_guard lock(m_mutex);
            m_failures << sentence;
        }))
    {
        writer->startSession(START_US);
    }

    void appendSound(int number)
    {
        const std::vector<std::int16_t> sound(1470, 1000);
        writer->appendSound(sound.data(), 1470, timeOf(number));
    }
    void appendPicture(int number)
    {
        writer->appendPicture(m_pictures.picture(number, number >= 15 && number < 18),
                              timeOf(number));
    }
    /// A thirtieth of a second of both; offers the picture until the encoder has caught up.
    void append(int number)
    {
        appendSound(number);
        qint64 dropped = 0;
        do {
            dropped = writer->droppedPictures();
            appendPicture(number);
            std::this_thread::yield();
        } while (writer->droppedPictures() > dropped);
    }

    /// And waits until the file is complete, which a slow disk may leave to the background.
    void finish()
    {
        writer->finish();
        waitUntilCompleted();
    }
    static void waitUntilCompleted()
    {
        QVERIFY(DetachedThreads::allEnded(std::chrono::milliseconds(TIMEOUT_MS)));
    }

    QStringList failures() const
    {
        const std::lock_guard lock(m_mutex);
        return m_failures;
    }

private:
    SyntheticPictures m_pictures;
    mutable std::mutex m_mutex;
    QStringList m_failures;

public:
    std::unique_ptr<MovieWriter> writer;
};

} // namespace

class MovieWriterTest : public QObject
{
    Q_OBJECT

private slots:
    void aMovieIsQuickTimeWithPicturesAndMonoSound()
    {
        const QString file = m_folder.filePath("plain.mov");
        Movie movie(file);
        for (int n = 0; n < 60; ++n)
            movie.append(n);
        QCOMPARE(movie.writer->status(), MovieWriter::Status::Writing);
        movie.finish();
        QCOMPARE(movie.writer->status(), MovieWriter::Status::Finished);
        QCOMPARE(movie.failures(), QStringList());

        const MovieFile read(file);
        QCOMPARE(read.complaints(), QString());
        QCOMPARE(read.container(), QString("qt  "));
        const QJsonObject video = read.stream("video");
        QCOMPARE(video["codec_name"].toString(), QString("h264"));
        QCOMPARE(video["pix_fmt"].toString(), QString("yuv420p"));
        QCOMPARE(QSize(video["width"].toInt(), video["height"].toInt()), SMALL);
        const QJsonObject audio = read.stream("audio");
        QCOMPARE(audio["codec_name"].toString(), QString("aac"));
        QCOMPARE(audio["sample_rate"].toString(), QString("44100"));
        QCOMPARE(audio["channels"].toInt(), 1);
        QVERIFY(std::abs(read.duration() - 2.0) < 0.05);

        const auto pictures = read.pictures();
        QCOMPARE(int(pictures.size()), 60);
        for (int n = 0; n < 60; ++n) {
            QCOMPARE(pictures[n].number, n);
            QCOMPARE(pictures[n].flash, n >= 15 && n < 18);
            QVERIFY(std::abs(pictures[n].seconds - n / 30.0) < 0.001);
        }
    }

    void coloursComeOutAsTheyWentIn_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("1080 high, no multiple of 16") << QSize(1920, 1080);
        QTest::newRow("rows of no multiple of 4 bytes") << QSize(1366, 768);
        QTest::newRow("odd") << QSize(641, 361);
    }

    void coloursComeOutAsTheyWentIn()
    {
        QFETCH(QSize, size);
        const QString file = m_folder.filePath("colours.mov");
        Movie movie(file, size);
        // Four quarters in four colours: a wrong stride or matrix shows at once.
        const std::uint8_t colours[4][3] = {
            {200, 30, 40}, {20, 180, 60}, {30, 50, 210}, {230, 220, 90}};
        std::vector<std::uint8_t> rgb(static_cast<size_t>(size.width() * size.height() * 3));
        for (int y = 0; y < size.height(); ++y)
            for (int x = 0; x < size.width(); ++x)
                memcpy(&rgb[static_cast<size_t>((y * size.width() + x) * 3)],
                       colours[2 * (2 * y / size.height()) + 2 * x / size.width()], 3);
        for (int n = 0; n < 5; ++n) {
            movie.appendSound(n);
            movie.writer->appendPicture(rgb.data(), timeOf(n));
        }
        movie.finish();

        const int width = size.width() & ~1;
        const int height = size.height() & ~1;
        const QByteArray picture = MovieFile(file).pictureAt(0.05);
        QCOMPARE(int(picture.size()), width * height * 3);
        for (int quarter = 0; quarter < 4; ++quarter) {
            const int x = (1 + 2 * (quarter % 2)) * width / 4 + 3;
            const int y = (1 + 2 * (quarter / 2)) * height / 4 + 3;
            for (int c = 0; c < 3; ++c) {
                const int shown = static_cast<uchar>(picture[(y * width + x) * 3 + c]);
                QVERIFY2(std::abs(shown - colours[quarter][c]) <= 6,
                         qPrintable(QString("%1 %2: %3").arg(quarter).arg(c).arg(shown)));
            }
        }
    }

    void anEncoderThatDoesNotWorkIsPassedOver()
    {
        const QString file = m_folder.filePath("fallback.mov");
        // One that is not there, one that makes no H.264, one that works.
        QTest::ignoreMessage(QtDebugMsg, "The movie encoder theoraenc is there but does not work.");
        Movie movie(file, SMALL, {"nosuchencoder", "theoraenc", "openh264enc"});
        for (int n = 0; n < 30; ++n)
            movie.append(n);
        movie.finish();
        QCOMPARE(movie.failures(), QStringList());
        QCOMPARE(int(MovieFile(file).pictures().size()), 30);
    }

    void noEncoderAtAllIsReported()
    {
        Movie movie(m_folder.filePath("none.mov"), SMALL, {"nosuchencoder"});
        QTRY_COMPARE_WITH_TIMEOUT(movie.writer->status(), MovieWriter::Status::Failed, TIMEOUT_MS);
        QTRY_COMPARE_WITH_TIMEOUT(int(movie.failures().size()), 1, TIMEOUT_MS);
        movie.append(0);
        movie.finish();
    }

    void whatComesBeforeTheEncoderIsThereIsInTheMovie()
    {
        constexpr int held = 60;
        constexpr int last = 90;
        HeldEncoder::install();
        const QString file = m_folder.filePath("held.mov");
        // Would never return if it waited for the encoder.
        Movie movie(file, SMALL, {"heldencoder", "x264enc"});
        QVERIFY(HeldEncoder::waitUntilTried());
        for (int n = 0; n < held; ++n) {
            movie.appendSound(n);
            movie.appendPicture(n);
        }
        QTest::ignoreMessage(QtDebugMsg,
                             "The movie encoder heldencoder is there but does not work.");
        HeldEncoder::release();
        for (int n = held; n < last; ++n)
            movie.append(n);
        movie.finish();
        QCOMPARE(movie.failures(), QStringList());

        const MovieFile read(file);
        QCOMPARE(read.complaints(), QString());
        const auto pictures = read.pictures();
        // The beginning as it was, then something of every half second, then all of the rest.
        for (int n = 0; n < 8; ++n)
            QCOMPARE(pictures[n].number, n);
        for (int n = 1; n < pictures.size(); ++n) {
            QVERIFY(std::abs(pictures[n].seconds - pictures[n].number / 30.0) < 0.001);
            QVERIFY2(pictures[n].seconds - pictures[n - 1].seconds < 0.55,
                     qPrintable(QString::number(pictures[n].seconds)));
        }
        QCOMPARE(pictures.last().number, last - 1);
        const MovieFile::Sound sound = read.sound();
        QVERIFY(std::abs(sound.samples.size() - last * 1470) < 2048);
        QVERIFY(std::all_of(sound.samples.begin() + 4096, sound.samples.end() - 4096,
                            [](qint16 s) { return std::abs(s - 1000) < 300; }));
    }

    void anEncoderThatHangsDoesNotHoldUpTheEndOfTheMovie_data()
    {
        QTest::addColumn<QStringList>("encoders");
        QTest::addColumn<QStringList>("failures");
        QTest::newRow("another works") << QStringList{"heldencoder", "x264enc"} << QStringList();
        QTest::newRow("none works") << QStringList{"heldencoder"}
                                    << QStringList{"This computer has no encoder for movies."};
    }

    void anEncoderThatHangsDoesNotHoldUpTheEndOfTheMovie()
    {
        QFETCH(QStringList, encoders);
        QFETCH(QStringList, failures);
        HeldEncoder::install();
        const QString file = m_folder.filePath("late.mov");
        // The size is tried once in a process.
        Movie movie(file, failures.isEmpty() ? QSize(320, 240) : QSize(322, 240), encoders);
        QVERIFY(HeldEncoder::waitUntilTried());
        for (int n = 0; n < 8; ++n) {
            movie.appendSound(n);
            movie.appendPicture(n);
        }
        QElapsedTimer finishing;
        finishing.start();
        movie.writer->finish();
        QVERIFY2(finishing.elapsed() < 2000, qPrintable(QString::number(finishing.elapsed())));
        QCOMPARE(movie.failures(), QStringList());
        // What is left to the background is done all the same, and told.
        HeldEncoder::release();
        Movie::waitUntilCompleted();
        QCOMPARE(movie.failures(), failures);
        QCOMPARE(QFile::exists(file), failures.isEmpty());
        if (failures.isEmpty())
            QCOMPARE(int(MovieFile(file).pictures().size()), 8);
    }

    void aFinishedMovieHoldsNoReserve()
    {
        const QString file = m_folder.filePath("clip.mov");
        Movie movie(file);
        for (int n = 0; n < 150; ++n)
            movie.append(n);
        movie.finish();
        const qint64 content = MovieFile(file).contentBytes();
        const qint64 size = QFileInfo(file).size();
        QVERIFY(content > 10000);
        QVERIFY2(size - content < std::max<qint64>(65536, content / 100),
                 qPrintable(QString("%1 of %2").arg(size).arg(content)));
    }

    void hardwareIsPreferred()
    {
        const QStringList names = MovieEncoders::names();
        QVERIFY(names.indexOf("vah264enc") < names.indexOf("x264enc"));
        QVERIFY(names.indexOf("x264enc") < names.indexOf("openh264enc"));
    }

    void picturesThatComeTooFastAreDroppedEvenlyAndCounted()
    {
        constexpr int first = 30;
        constexpr int last = first + 240;
        const QString file = m_folder.filePath("fast.mov");
        Movie movie(file, QSize(1280, 720));
        QElapsedTimer encoding;
        encoding.start();
        for (int n = 0; n < first; ++n)
            movie.append(n);
        // Three times as fast as the encoder was.
        const std::chrono::nanoseconds interval(encoding.nsecsElapsed() / first / 3);
        const qint64 before = movie.writer->droppedPictures();
        auto due = std::chrono::steady_clock::now();
        for (int n = first; n < last; ++n) {
            movie.appendSound(n);
            movie.appendPicture(n);
            std::this_thread::sleep_until(due += interval);
        }
        movie.finish();
        const qint64 dropped = movie.writer->droppedPictures() - before;
        QVERIFY(dropped > 0);
        const MovieFile read(file);
        QSet<int> numbers;
        int quarters[4] = {0, 0, 0, 0};
        for (const MovieFile::Picture &picture : read.pictures()) {
            if (picture.number < first || numbers.contains(picture.number))
                continue;
            numbers.insert(picture.number);
            ++quarters[(picture.number - first) / 60];
        }
        QCOMPARE(int(numbers.size() + dropped), last - first);
        for (const int quarter : quarters)
            QVERIFY2(quarter * 16 >= numbers.size(), qPrintable(QString::number(quarter)));
        // The sound is whole.
        const MovieFile::Sound sound = read.sound();
        QVERIFY(std::abs(sound.samples.size() - last * 1470) < 2048);
        QVERIFY(std::all_of(sound.samples.begin() + 4096, sound.samples.end() - 4096,
                            [](qint16 s) { return std::abs(s - 1000) < 300; }));
    }

    void whatIsStampedBeforeTheSessionIsLeftOut()
    {
        const QString file = m_folder.filePath("early.mov");
        Movie movie(file);
        for (int n = -5; n < 20; ++n)
            movie.append(n);
        movie.finish();
        QCOMPARE(MovieFile(file).pictures().first().number, 0);
        QCOMPARE(int(MovieFile(file).pictures().size()), 20);
    }

    void theLastPictureStandsWhileTheCameraIsSilent()
    {
        const QString file = m_folder.filePath("standing.mov");
        Movie movie(file);
        for (int n = 0; n < 30; ++n)
            movie.append(n);
        for (int n = 30; n < 300; ++n)
            movie.appendSound(n);
        movie.finish();
        const auto pictures = MovieFile(file).pictures();
        QVERIFY(pictures.size() > 30);
        QCOMPARE(pictures.last().number, 29);
        QVERIFY(pictures.last().seconds > 8.0);
    }

    void aMovieWithoutPicturesLeavesNoFile()
    {
        const QString file = m_folder.filePath("empty.mov");
        {
            Movie movie(file);
            QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(file), TIMEOUT_MS);
        }
        Movie::waitUntilCompleted();
        QVERIFY(!QFile::exists(file));
        {
            Movie movie(file);
            for (int n = 0; n < 30; ++n)
                movie.appendSound(n);
        }
        Movie::waitUntilCompleted();
        QVERIFY(!QFile::exists(file));
    }

    void aSinglePictureIsAMovie()
    {
        const QString file = m_folder.filePath("single.mov");
        Movie movie(file);
        movie.append(0);
        movie.finish();
        QCOMPARE(MovieFile(file).complaints(), QString());
        QCOMPARE(int(MovieFile(file).pictures().size()), 1);
    }

    void aFileThatCannotBeMadeIsReported_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("a folder") << ".";
        QTest::newRow("a missing folder") << "missing/movie.mov";
        QTest::newRow("nothing") << "";
    }

    void aFileThatCannotBeMadeIsReported()
    {
        QFETCH(QString, name);
        Movie movie(name.isEmpty() ? name : m_folder.filePath(name));
        QTRY_COMPARE_WITH_TIMEOUT(movie.failures(),
                                  QStringList("The movie file cannot be created."), TIMEOUT_MS);
        QCOMPARE(movie.writer->status(), MovieWriter::Status::Failed);
        movie.append(0);
        movie.finish();
        QCOMPARE(movie.writer->status(), MovieWriter::Status::Failed);
        QVERIFY(QDir(m_folder.path()).exists());
    }

    void aFolderThatVanishesIsReported()
    {
        QVERIFY(QDir(m_folder.path()).mkdir("vanishing"));
        Movie movie(m_folder.filePath("vanishing/movie.mov"));
        for (int n = 0; n < 10; ++n)
            movie.append(n);
        QVERIFY(QDir(m_folder.filePath("vanishing")).removeRecursively());
        QTRY_COMPARE_WITH_TIMEOUT(movie.writer->status(), MovieWriter::Status::Failed, TIMEOUT_MS);
        QCOMPARE(movie.failures(),
                 QStringList("The recording was stopped because its folder no longer exists."));
        movie.finish();
    }

    void aFolderThatIsRenamedLeavesAWholeMovie()
    {
        QVERIFY(QDir(m_folder.path()).mkdir("before"));
        Movie movie(m_folder.filePath("before/movie.mov"));
        for (int n = 0; n < 30; ++n)
            movie.append(n);
        QVERIFY(QDir(m_folder.path()).rename("before", "after"));
        QTRY_COMPARE_WITH_TIMEOUT(movie.writer->status(), MovieWriter::Status::Failed, TIMEOUT_MS);
        movie.finish();
        QCOMPARE(int(MovieFile(m_folder.filePath("after/movie.mov")).pictures().size()), 30);
    }

private:
    QTemporaryDir m_folder;
};

REGISTER_CORE_TEST(MovieWriterTest)
#include "tst_movie_writer.moc"
