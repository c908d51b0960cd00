#include "sources/FilmSource.h"
#include "sources/recording/MovieWriter.h"
#include "sources/threads/DetachedThreads.h"
#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/fakes/RecordingSink.h"
#include "tests/media/MovieFile.h"
#include "tests/media/SyntheticPictures.h"

#include <QtTest>

#include <QTemporaryDir>

#include <thread>

namespace
{

constexpr int pictures = 90;

qint64 timeOf(int number)
{
    return 5000000000 + number * 1000000LL / 30;
}

/// Three seconds as the program records them. `killedPath`: what a kill just before the end leaves.
bool record(const QString &path, QSize size, const QString &killedPath)
{
    SyntheticPictures camera(size);
    const auto writer = MovieWriter::create({path, size}, [](const QString &) {});
    writer->startSession(timeOf(0));
    const std::vector<std::int16_t> sound(1470, 1000);
    for (int n = 0; n < pictures; ++n) {
        writer->appendSound(sound.data(), int(sound.size()), timeOf(n));
        // Offered until the encoder has caught up.
        qint64 dropped = 0;
        do {
            dropped = writer->droppedPictures();
            writer->appendPicture(camera.picture(n, false), timeOf(n));
            std::this_thread::yield();
        } while (writer->droppedPictures() > dropped);
    }
    const bool whole =
        QTest::qWaitFor([&] { return MovieFile(path).pictures().size() == pictures; }, TIMEOUT_MS);
    if (!whole || !QFile::copy(path, killedPath))
        return false;
    writer->finish();
    if (!DetachedThreads::allEnded(std::chrono::milliseconds(TIMEOUT_MS)))
        return false;
    return writer->status() == MovieWriter::Status::Finished;
}

/// The number in the strip at the top left; the picture has to stand upright for it.
int numberIn(const QImage &picture)
{
    constexpr int cell = SyntheticPictures::CELL;
    int number = 0;
    for (int bit = 0; bit < 16; ++bit) {
        if (qGray(picture.pixel((bit + 1) * cell + cell / 2, cell / 2)) > 128)
            number |= 1 << bit;
    }
    return number;
}

} // namespace

/// What the program records, it plays.
class FilmOwnRecordingsTest : public QObject
{
    Q_OBJECT

private slots:
    void aRecordingPlaysFromItsFirstPictureToItsLast_data()
    {
        QTest::addColumn<QSize>("recorded");
        QTest::addColumn<QSize>("played");
        QTest::addColumn<bool>("killed");
        QTest::newRow("1280x720") << QSize(1280, 720) << QSize(1280, 720) << false;
        QTest::newRow("1024x768") << QSize(1024, 768) << QSize(1024, 768) << false;
        QTest::newRow("odd") << QSize(641, 361) << QSize(640, 360) << false;
        QTest::newRow("killed") << QSize(1280, 720) << QSize(1280, 720) << true;
    }

    void aRecordingPlaysFromItsFirstPictureToItsLast()
    {
        QFETCH(QSize, recorded);
        QFETCH(QSize, played);
        QFETCH(bool, killed);
        const QTemporaryDir folder;
        const QString whole = folder.filePath("recording.mov");
        const QString cut = folder.filePath("killed.mov");
        QVERIFY(record(whole, recorded, cut));
        const QString path = killed ? cut : whole;

        RecordingSink sink;
        sink.readNumber = numberIn;
        FilmSource source(&sink, nullptr);
        source.setFile(path);
        QTRY_VERIFY_WITH_TIMEOUT(sink.refreshing(), TIMEOUT_MS);
        QCOMPARE(source.currentPosition(), 100);
        QCOMPARE(sink.last().size(), played);
        const QVector<int> numbers = sink.numbers();
        QCOMPARE(numbers.first(), 0);
        QCOMPARE(numbers.last(), pictures - 1);
        for (int i = 1; i < numbers.size(); ++i)
            QVERIFY(numbers[i] > numbers[i - 1]);

        // Three seconds: 40 and 70 percent lie in the second and the third.
        source.pause();
        for (const auto &[percent, number] : {std::pair(70, 60), std::pair(40, 30)}) {
            source.setPosition(percent);
            QTRY_COMPARE_WITH_TIMEOUT(sink.lastNumber(), number, TIMEOUT_MS);
        }
    }
};

REGISTER_CORE_TEST(FilmOwnRecordingsTest)
#include "tst_film_own_recordings.moc"
