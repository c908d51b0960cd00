#include "tests/TestProgram.h"
#include "tests/media/MovieFile.h"
#include "tests/media/WrittenMovie.h"

#include <QtTest>

#include <QTemporaryDir>

#include <cmath>

namespace
{

constexpr int SAMPLES_A_PICTURE = 1470;
constexpr double PI = 3.14159265358979323846;

/// A tone without an end, a quarter of full scale, from one picture to the next.
std::vector<std::int16_t> tone(int number)
{
    std::vector<std::int16_t> samples;
    for (int n = 0; n < SAMPLES_A_PICTURE; ++n) {
        const double seconds = (double(number) * SAMPLES_A_PICTURE + n) / 44100.0;
        samples.push_back(std::int16_t(8192.0 * std::sin(2 * PI * 440.0 * seconds)));
    }
    return samples;
}

/// The loudest of what lies far above the tone, in decibels of full scale: a click is as loud there
/// as anywhere.
double loudestClick(const QVector<qint16> &samples)
{
    // The differences of the fourth order leave 4e-6 of 440 Hz, and all of a quarter of the rate.
    constexpr int ORDER = 4;
    std::vector<double> rest(samples.begin(), samples.end());
    for (int order = 0; order < ORDER; ++order) {
        for (std::size_t n = rest.size() - 1; n > 0; --n)
            rest[n] = (rest[n] - rest[n - 1]) / std::sqrt(2.0);
    }
    double loudest = 1;
    // The ends of the movie are no seams.
    for (std::size_t n = 8192; n + 8192 < rest.size(); ++n)
        loudest = std::max(loudest, std::fabs(rest[n]));
    return 20 * std::log10(loudest / 32768.0);
}

} // namespace

/// A movie with pauses, by its writer alone.
class PausedMovieTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_file = m_folder.filePath("paused.mov"); }

    void aPauseLeavesOutWhatCameMeanwhile()
    {
        WrittenMovie movie(m_file);
        for (int n = 0; n < 90; ++n) {
            if (n == 30 || n == 60)
                movie.writer->setPaused(n == 30, timeOf(n));
            movie.append(n);
        }
        movie.finish();
        QCOMPARE(movie.failures(), QStringList());
        const MovieFile read(m_file);
        QCOMPARE(read.complaints(), QString());
        const auto pictures = read.pictures();
        QCOMPARE(int(pictures.size()), 60);
        for (int n = 0; n < 60; ++n) {
            QCOMPARE(pictures[n].number, n < 30 ? n : n + 30);
            QVERIFY(std::fabs(pictures[n].seconds - n / 30.0) < 0.001);
        }
        expectSeconds(read.sound(), 2.0);
    }

    void aMovieThatIsStoppedWhilePausedIsComplete()
    {
        WrittenMovie movie(m_file);
        for (int n = 0; n < 90; ++n) {
            if (n == 45)
                movie.writer->setPaused(true, timeOf(n));
            movie.append(n);
        }
        movie.finish();
        const MovieFile read(m_file);
        QCOMPARE(read.complaints(), QString());
        QCOMPARE(int(read.pictures().size()), 45);
        expectSeconds(read.sound(), 1.5);
    }

    void nothingIsWrittenWhileItIsPaused()
    {
        WrittenMovie movie(m_file);
        for (int n = 0; n < 30; ++n)
            movie.append(n);
        movie.writer->setPaused(true, timeOf(30));
        // Also no picture that stands in for those of a silent camera.
        for (int n = 30; n < 60; ++n)
            movie.appendSound(n);
        qint64 size = -1;
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(m_file).size() > 10000, TIMEOUT_MS);
        // Two looks a save apart that agree.
        QTRY_VERIFY_WITH_TIMEOUT(settled(size), TIMEOUT_MS);
        const QByteArray before = bytes();
        for (int n = 60; n < 300; ++n) {
            movie.appendSound(n);
            movie.appendPicture(n);
        }
        QTest::qWait(1200); // longer than it takes until what comes is saved
        QVERIFY(bytes() == before);
        movie.writer->setPaused(false, timeOf(300));
        for (int n = 300; n < 330; ++n)
            movie.append(n);
        movie.finish();
        QCOMPARE(int(MovieFile(m_file).pictures().size()), 60);
    }

    void aPauseBeforeThereIsAnEncoderCounts()
    {
        WrittenMovie movie(m_file);
        movie.append(0);
        movie.writer->setPaused(true, timeOf(1));
        for (int n = 1; n < 30; ++n)
            movie.append(n);
        movie.writer->setPaused(false, timeOf(30));
        for (int n = 30; n < 45; ++n)
            movie.append(n);
        movie.finish();
        const auto pictures = MovieFile(m_file).pictures();
        QCOMPARE(pictures.first().number, 0);
        QCOMPARE(pictures[1].number, 30);
        QVERIFY(std::fabs(pictures[1].seconds - 1 / 30.0) < 0.001);
    }

    void aSeamDoesNotClick()
    {
        constexpr int PERIOD = 30;
        WrittenMovie movie(m_file);
        for (int n = 0; n < 11 * PERIOD; ++n) {
            // A part of a picture, so that the wave is cut anywhere.
            const qint64 offUs = qint64{1777} * (n / PERIOD);
            if (n % PERIOD == 20 && n / PERIOD < 10)
                movie.writer->setPaused(true, timeOf(n) + offUs);
            if (n % PERIOD == 29 && n / PERIOD < 10)
                movie.writer->setPaused(false, timeOf(n) + 2 * offUs);
            const std::vector<std::int16_t> sound = tone(n);
            movie.writer->appendSound(sound.data(), SAMPLES_A_PICTURE, timeOf(n));
            movie.appendPicture(n);
        }
        movie.finish();
        const MovieFile::Sound sound = MovieFile(m_file).sound();
        const double click = loudestClick(sound.samples);
        qInfo("%.1f dB", click);
        QVERIFY2(click < -50, qPrintable(QString::number(click)));
    }

    void aThousandPausesAddUp()
    {
        constexpr int PAUSES = 1000;
        WrittenMovie movie(m_file, QSize(320, 180));
        for (int n = 0; n < 3 * PAUSES; ++n) {
            if (n % 3 == 2)
                movie.writer->setPaused(true, timeOf(n));
            else if (n % 3 == 0)
                movie.writer->setPaused(false, timeOf(n));
            movie.append(n);
        }
        movie.finish();
        const MovieFile read(m_file);
        QCOMPARE(read.complaints(), QString());
        const auto pictures = read.pictures();
        QCOMPARE(int(pictures.size()), 2 * PAUSES);
        QVERIFY(std::fabs(pictures.last().seconds - (2 * PAUSES - 1) / 30.0) < 0.02);
        expectSeconds(read.sound(), 2 * PAUSES / 30.0);
    }

private:
    static void expectSeconds(const MovieFile::Sound &sound, double seconds)
    {
        // An encoder fills its last packet.
        const double heard = sound.startSeconds + sound.samples.size() / 44100.0;
        QVERIFY2(std::fabs(heard - seconds) < 0.033, qPrintable(QString::number(heard)));
    }

    QByteArray bytes() const
    {
        QFile file(m_file);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    bool settled(qint64 &size) const
    {
        const qint64 before = std::exchange(size, QFileInfo(m_file).size());
        QTest::qWait(1200);
        return QFileInfo(m_file).size() == before && size == before;
    }

    QTemporaryDir m_folder;
    QString m_file;
};

REGISTER_CORE_TEST(PausedMovieTest)
#include "tst_paused_movie.moc"
