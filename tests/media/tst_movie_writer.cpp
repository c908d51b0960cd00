#include "tests/TestProgram.h"
#include "tests/media/MovieFile.h"
#include "tests/media/WrittenMovie.h"

#include "sources/recording/MovieEncoders.h"

#include <QtTest>

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <cstdlib>

namespace
{

QByteArray contentOfMovie(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class MovieWriterTest : public QObject
{
    Q_OBJECT

private slots:
    void aMovieIsQuickTimeWithPicturesAndMonoSound()
    {
        const QString file = m_folder.filePath("plain.mov");
        WrittenMovie movie(file);
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
        WrittenMovie movie(file, size);
        // Four quarters in four colours: a wrong stride or matrix shows at once.
        const std::uint8_t colours[4][3] = {
            {200, 30, 40}, {20, 180, 60}, {30, 50, 210}, {230, 220, 90}};
        std::vector<std::uint8_t> rgb(static_cast<size_t>(size.width()) *
                                      static_cast<size_t>(size.height()) * 3);
        for (int y = 0; y < size.height(); ++y)
            for (int x = 0; x < size.width(); ++x)
                memcpy(rgb.data() + (qptrdiff{y} * size.width() + x) * 3,
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

    void aFinishedMovieHoldsNoReserve()
    {
        const QString file = m_folder.filePath("clip.mov");
        WrittenMovie movie(file);
        for (int n = 0; n < 150; ++n)
            movie.append(n);
        movie.finish();
        const qint64 content = MovieFile(file).contentBytes();
        const qint64 size = QFileInfo(file).size();
        QVERIFY(content > 10000);
        QVERIFY2(size - content < std::max<qint64>(65536, content / 100),
                 qPrintable(QString("%1 of %2").arg(size).arg(content)));
    }

    void aSmallMovieTakesHalfTheBytes()
    {
        const auto bytesOf = [this](MovieQuality quality) {
            const QString file = m_folder.filePath("quality.mov");
            WrittenMovie movie(file, QSize(1280, 720), {"x264enc"}, quality);
            // Lines of writing under a moving hand, with the noise of a camera.
            std::vector<std::uint8_t> rgb(std::size_t{1280} * 720 * 3);
            std::uint32_t noise = 1;
            for (int n = 0; n < 60; ++n) {
                for (int y = 0; y < 720; ++y) {
                    for (int x = 0; x < 1280; ++x) {
                        const bool ink = (x / 3 * 7 + y / 12 * 13) % 5 == 0 && y / 12 % 2 == 1;
                        const int dx = x - 200 - 8 * n;
                        const bool hand = dx * dx + (y - 360) * (y - 360) < 150 * 150;
                        noise = noise * 1664525 + 1013904223;
                        const int grey = hand ? 120 + (x + y) % 60 : ink ? 60 : 225;
                        memset(rgb.data() + (qptrdiff{y} * 1280 + x) * 3, grey + int(noise >> 29),
                               3);
                    }
                }
                movie.appendSound(n);
                qint64 dropped = 0;
                do {
                    dropped = movie.writer->droppedPictures();
                    movie.writer->appendPicture(rgb.data(), timeOf(n));
                    std::this_thread::yield();
                } while (movie.writer->droppedPictures() > dropped);
            }
            movie.finish();
            return double(MovieFile(file).contentBytes());
        };
        const double ratio = bytesOf(MovieQuality::Small) / bytesOf(MovieQuality::Standard);
        qInfo("%.3f of the bytes", ratio);
        QVERIFY2(ratio > 0.3 && ratio < 0.6, qPrintable(QString::number(ratio)));
    }

    void picturesThatComeTooFastAreDroppedEvenlyAndCounted()
    {
        constexpr int first = 30;
        constexpr int last = first + 240;
        const QString file = m_folder.filePath("fast.mov");
        WrittenMovie movie(file, QSize(1280, 720));
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
        WrittenMovie movie(file);
        for (int n = -5; n < 20; ++n)
            movie.append(n);
        movie.finish();
        QCOMPARE(MovieFile(file).pictures().first().number, 0);
        QCOMPARE(int(MovieFile(file).pictures().size()), 20);
    }

    void theLastPictureStandsWhileTheCameraIsSilent()
    {
        const QString file = m_folder.filePath("standing.mov");
        WrittenMovie movie(file);
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
            WrittenMovie movie(file);
            movie.waitUntilBegun();
        }
        WrittenMovie::waitUntilCompleted();
        QVERIFY(!QFile::exists(file));
        {
            WrittenMovie movie(file);
            for (int n = 0; n < 30; ++n)
                movie.appendSound(n);
        }
        WrittenMovie::waitUntilCompleted();
        QVERIFY(!QFile::exists(file));
    }

    /// What ends the program before the first picture has no time to remove anything.
    void thereIsNoFileBeforeThereIsAPicture()
    {
        const QString file = m_folder.filePath("soon.mov");
        WrittenMovie movie(file);
        movie.waitUntilBegun();
        // Longer than from one save to the next.
        constexpr int SOUND_ALONE_MS = 1200;
        QElapsedTimer time;
        time.start();
        int number = 0;
        for (; time.elapsed() < SOUND_ALONE_MS; ++number) {
            movie.appendSound(number);
            QTest::qWait(30);
            QVERIFY(!QFile::exists(file));
        }
        movie.append(number);
        movie.finish();
        QCOMPARE(movie.failures(), QStringList());
        QCOMPARE(MovieFile(file).complaints(), QString());
        QCOMPARE(int(MovieFile(file).pictures().size()), 1);
    }

    /// One that was recorded a moment before is not given up for one that never comes to be.
    void anEarlierMovieIsWholeUntilThereIsAPicture()
    {
        const QString file = m_folder.filePath("earlier.mov");
        {
            WrittenMovie movie(file);
            movie.append(0);
            movie.finish();
        }
        const QByteArray earlier = contentOfMovie(file);
        {
            WrittenMovie movie(file);
            movie.waitUntilBegun();
        }
        WrittenMovie::waitUntilCompleted();
        QVERIFY(!earlier.isEmpty());
        QCOMPARE(contentOfMovie(file), earlier);
        WrittenMovie movie(file);
        movie.append(0);
        movie.append(1);
        movie.finish();
        QCOMPARE(int(MovieFile(file).pictures().size()), 2);
    }

    void aSinglePictureIsAMovie()
    {
        const QString file = m_folder.filePath("single.mov");
        WrittenMovie movie(file);
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
        WrittenMovie movie(name.isEmpty() ? name : m_folder.filePath(name));
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
        WrittenMovie movie(m_folder.filePath("vanishing/movie.mov"));
        for (int n = 0; n < 10; ++n)
            movie.append(n);
        movie.waitUntilBegun();
        // A file may come between the list of the folder and its end.
        QTRY_VERIFY_WITH_TIMEOUT(QDir(m_folder.filePath("vanishing")).removeRecursively(),
                                 TIMEOUT_MS);
        QTRY_COMPARE_WITH_TIMEOUT(movie.writer->status(), MovieWriter::Status::Failed, TIMEOUT_MS);
        QCOMPARE(movie.failures(),
                 QStringList("The recording was stopped because its folder no longer exists."));
        movie.finish();
    }

    void aFolderThatIsRenamedLeavesAWholeMovie()
    {
        QVERIFY(QDir(m_folder.path()).mkdir("before"));
        WrittenMovie movie(m_folder.filePath("before/movie.mov"));
        for (int n = 0; n < 30; ++n)
            movie.append(n);
        movie.waitUntilBegun();
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
