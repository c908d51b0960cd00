#include "tests/TestProgram.h"
#include "tests/media/HeldEncoder.h"
#include "tests/media/MovieFile.h"
#include "tests/media/WrittenMovie.h"

#include "sources/recording/MovieEncoders.h"

#include <QtTest>

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <atomic>
#include <cstdlib>
#include <limits>

/// Which encoder a movie gets, and what one that hangs or fails does to it.
class MovieEncodersTest : public QObject
{
    Q_OBJECT

private slots:
    void anEncoderThatDoesNotWorkIsPassedOver()
    {
        const QString file = m_folder.filePath("fallback.mov");
        // One that is not there, one that makes no H.264, one that works.
        QTest::ignoreMessage(QtDebugMsg, "The movie encoder theoraenc is there but does not work.");
        WrittenMovie movie(file, SMALL, {"nosuchencoder", "theoraenc", "openh264enc"});
        for (int n = 0; n < 30; ++n)
            movie.append(n);
        movie.finish();
        QCOMPARE(movie.failures(), QStringList());
        QCOMPARE(int(MovieFile(file).pictures().size()), 30);
    }

    void noEncoderAtAllIsReported()
    {
        WrittenMovie movie(m_folder.filePath("none.mov"), SMALL, {"nosuchencoder"});
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
        WrittenMovie movie(file, SMALL, {"heldencoder", "x264enc"});
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
        for (int n = 0; n < 16; ++n)
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
        const QString file = m_folder.filePath(failures.isEmpty() ? "late.mov" : "none.mov");
        // The size is tried once in a process.
        WrittenMovie movie(file, failures.isEmpty() ? QSize(320, 240) : QSize(322, 240), encoders);
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
        WrittenMovie::waitUntilCompleted();
        QCOMPARE(movie.failures(), failures);
        QCOMPARE(QFile::exists(file), failures.isEmpty());
        if (failures.isEmpty())
            QCOMPARE(int(MovieFile(file).pictures().size()), 8);
    }

    /// Else what waits in memory would make the disk seem to fill up more slowly than it does.
    void whatHasNotBeenWrittenDoesNotCountAsTimeOnTheDisk()
    {
        constexpr int count = 330;
        HeldEncoder::install();
        WrittenMovie movie(m_folder.filePath("stalled.mov"), QSize(326, 240),
                           {"heldencoder", "x264enc"});
        QVERIFY(HeldEncoder::waitUntilTried());
        for (int n = 0; n < count; ++n) {
            movie.appendSound(n);
            movie.appendPicture(n);
        }
        QVERIFY(movie.writer->progress().lengthUs > 10000000);
        QCOMPARE(movie.writer->progress().elapsedUs, qint64(0));
        HeldEncoder::release();
        QTRY_VERIFY_WITH_TIMEOUT(movie.writer->progress().elapsedUs > 10000000, TIMEOUT_MS);
        movie.finish();
    }

    /// Two recordings may be begun within a second, after which they are named.
    void aMovieOfTheSameNameWaitsForTheOneBefore()
    {
        HeldEncoder::install();
        const QString file = m_folder.filePath("twice.mov");
        WrittenMovie first(file, QSize(324, 240), {"heldencoder", "x264enc"});
        QVERIFY(HeldEncoder::waitUntilTried());
        for (int n = 0; n < 8; ++n) {
            first.appendSound(n);
            first.appendPicture(n);
        }
        first.writer->finish();
        WrittenMovie second(file, SMALL, {"x264enc"});
        for (int n = 0; n < 6; ++n) {
            second.appendSound(n);
            second.appendPicture(n);
        }
        // One of another name that was begun later is there before it.
        WrittenMovie other(m_folder.filePath("other.mov"), SMALL, {"x264enc"});
        for (int n = 0; n < 6; ++n)
            other.append(n);
        other.writer->finish();
        QTRY_VERIFY_WITH_TIMEOUT(other.writer->progress().bytes > 0, TIMEOUT_MS);
        QCOMPARE(second.writer->progress().freeBytes, qint64(-1));
        HeldEncoder::release();
        for (int n = 6; n < 60; ++n)
            second.append(n);
        second.finish();
        QCOMPARE(first.failures() + second.failures(), QStringList());
        const MovieFile read(file);
        QCOMPARE(read.complaints(), QString());
        QCOMPARE(read.stream("video")["width"].toInt(), SMALL.width());
        QCOMPARE(read.pictures().first().number, 0);
        QCOMPARE(read.pictures().last().number, 59);
    }

    /// What has been recorded needs little of the room that a disk keeps, and the user has ended
    /// it: there is nothing to be said.
    void aMovieThatWasStoppedAsTheDiskFillsIsKept()
    {
        HeldEncoder::install();
        const QString file = m_folder.filePath("stopped.mov");
        std::atomic<int> failures{0};
        MovieWriter::Settings settings{file, QSize(328, 240), {"heldencoder", "x264enc"}};
        settings.leastFreeBytes = std::numeric_limits<qint64>::max();
        settings.withSound = false;
        const auto writer =
            MovieWriter::create(settings, [&failures](const QString &) { ++failures; });
        writer->startSession(START_US);
        QVERIFY(HeldEncoder::waitUntilTried());
        SyntheticPictures pictures(settings.pictureSize);
        for (int n = 0; n < 8; ++n)
            writer->appendPicture(pictures.picture(n, false), timeOf(n));
        writer->finish();
        HeldEncoder::release();
        WrittenMovie::waitUntilCompleted();
        QCOMPARE(int(failures), 0);
        QCOMPARE(int(MovieFile(file).pictures().size()), 8);
    }

    void hardwareIsPreferred()
    {
        const QStringList names = MovieEncoders::names();
        QVERIFY(names.indexOf("vah264enc") < names.indexOf("x264enc"));
        QVERIFY(names.indexOf("x264enc") < names.indexOf("openh264enc"));
    }

private:
    QTemporaryDir m_folder;
};

REGISTER_CORE_TEST(MovieEncodersTest)
#include "tst_movie_encoders.moc"
