#include "tests/SideBySide.h"
#include "tests/Timeout.h"
#include "tests/media/MovieFile.h"
#include "tests/media/RecordProbe.h"
#include "tests/media/SoundServer.h"

#include <QtTest>

#include <algorithm>
#include <cmath>

namespace
{

/// One picture.
constexpr double TOLERANCE = 0.033 * SLOWER;
/// Nobody sees that sound and picture are apart by less.
constexpr double MOST_LAG = 0.050;
/// Of a microphone that counts fast, in parts per million.
constexpr int FAST_PPM = 4000;

double median(QVector<double> values)
{
    std::sort(values.begin(), values.end());
    const int middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

/// By how much the values grow from one to the next, in the median of all pairs of them (Theil and
/// Sen's estimate), on which single values that are off have no influence.
double medianSlope(const QVector<double> &values)
{
    QVector<double> slopes;
    for (int i = 0; i < values.size(); ++i) {
        for (int j = i + 1; j < values.size(); ++j)
            slopes.append((values[j] - values[i]) / (j - i));
    }
    return median(slopes);
}

} // namespace

/// Something that is seen and heard at once is so in the movie.
class ClapAndFlashTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_server = std::make_unique<SoundServer>(m_folder.path());
        QVERIFY(m_server->start());
        m_file = m_folder.filePath("movie.mov");
    }
    void cleanup() { m_server.reset(); }

    /// CLAP_AND_FLASH_SECONDS=1800 makes it the half hour whose result docs/PERFORMANCE.md gives.
    void pictureAndSoundBelongTogetherFromTheStartToTheEnd()
    {
        const QString length = qEnvironmentVariable("CLAP_AND_FLASH_SECONDS", "7");
        // As far as the clocks of real microphones are off, or farther.
        RecordProbe probe(
            {"--claps", m_server->pipe(), "--ppm", "100", "--seconds", length, m_file});
        QVERIFY(probe.waitForEnd(length.toInt()));
        const MovieFile movie(m_file);
        QCOMPARE(movie.complaints(), QString());
        const QVector<double> lags = movie.clapsAfterFlashes();
        QVERIFY(lags.size() >= length.toInt() / 2);
        tellOf(lags, probe);
        const int parts = std::min(10, int{lags.size()} / 2);
        for (int n = 0; n < parts; ++n) {
            const int from = lags.size() * n / parts;
            const double lag = median(lags.mid(from, lags.size() * (n + 1) / parts - from));
            QVERIFY2(std::fabs(lag) < TOLERANCE, qPrintable(QString::number(lag)));
        }
    }

    void tenPausesTearNothing()
    {
        // Some of them swallow a clap with its flash, and all of them end before the next one.
        const char *const pauses = "1.30-1.75,2.20-2.43,3.50-4.60,5.33-5.80,6.70-7.37,8.25-8.29,"
                                   "8.40-8.77,9.81-10.64,11.21-11.55,12.18-12.60";
        RecordProbe probe(
            {"--claps", m_server->pipe(), "--seconds", "14", "--pauses", pauses, m_file});
        QVERIFY(probe.waitForEnd(14));
        const MovieFile movie(m_file);
        QCOMPARE(movie.complaints(), QString());
        const QVector<Part> parts = partsOf(probe);
        QCOMPARE(int(parts.size()), 10 + 1);
        const auto pictures = movie.pictures();
        QVERIFY(!pictures.isEmpty());
        // Where the movie begins in the time of the probe, by the picture that is its first.
        const double begin = pictures.first().number / 30.0 - pictures.first().seconds;
        for (const MovieFile::Picture &picture : pictures) {
            const double expected = inMovie(picture.number / 30.0, begin, parts);
            QVERIFY2(std::fabs(picture.seconds - expected) < TOLERANCE,
                     qPrintable(QString("%1 at %2").arg(picture.number).arg(picture.seconds)));
        }
        double sum = 14 - parts.last().from;
        for (int n = 0; n + 1 < parts.size(); ++n)
            sum += parts[n].to - std::max(parts[n].from, begin);
        qInfo("%.3f s of %.3f s", movie.duration(), sum);
        QVERIFY2(std::fabs(movie.duration() - sum) < TOLERANCE,
                 qPrintable(QString("%1 of %2 s").arg(movie.duration()).arg(sum)));

        // After every seam a clap comes with its flash.
        const QVector<double> claps = MovieFile::claps(movie.sound());
        const QVector<double> flashes = MovieFile::flashes(pictures);
        QCOMPARE(int(flashes.size()), 10);
        QVERIFY(claps.size() >= flashes.size());
        for (const double flash : flashes) {
            const auto nearest =
                std::min_element(claps.begin(), claps.end(), [flash](double one, double other) {
                    return std::fabs(one - flash) < std::fabs(other - flash);
                });
            qInfo("%.1f ms after its flash", (*nearest - flash) * 1e3);
            QVERIFY2(std::fabs(*nearest - flash) < 0.040, qPrintable(QString::number(flash)));
        }
    }

    void aSteppedDateDoesNotTearTheMovie()
    {
        RecordProbe probe({"--claps", m_server->pipe(), "--seconds", "8", m_file},
                          QStringLiteral(STEPPED_CLOCK));
        QVERIFY(probe.waitForEnd());
        QVERIFY(probe.lines().contains("date stepped"));
        const MovieFile movie(m_file);
        QCOMPARE(movie.complaints(), QString());
        QVERIFY(movie.duration() > 5.0 && movie.duration() < 9.0);
        const QVector<double> lags = movie.clapsAfterFlashes();
        QVERIFY(lags.size() >= 5);
        QVERIFY2(std::fabs(median(lags)) < TOLERANCE, qPrintable(QString::number(median(lags))));
        const auto pictures = movie.pictures();
        for (int n = 1; n < pictures.size(); ++n)
            QVERIFY(pictures[n].seconds - pictures[n - 1].seconds < 1.0);
    }

    /// What it heard before it delivers comes at once, as after a resume; the first claps lie in
    /// there and are not judged.
    void aMicrophoneThatStartsLateAndInABurstShiftsNothing_data()
    {
        QTest::addColumn<double>("silentSeconds");
        QTest::newRow("after the first piece of silence") << 0.4;
        QTest::newRow("after the sound is replaced by silence") << 1.6;
        QTest::newRow("long after that") << 3.7;
    }

    void aMicrophoneThatStartsLateAndInABurstShiftsNothing()
    {
        QFETCH(double, silentSeconds);
        RecordProbe probe({"--claps", m_server->pipe(), "--microphone-silent",
                           QString::number(silentSeconds), "--seconds", "10", m_file});
        QVERIFY(probe.waitForEnd(10));
        const MovieFile movie(m_file);
        QCOMPARE(movie.complaints(), QString());
        const QVector<double> lags = movie.clapsAfterFlashes();
        const int judged = 9 - static_cast<int>(silentSeconds + 1);
        QVERIFY2(lags.size() >= judged, qPrintable(QString::number(lags.size())));
        for (int n = lags.size() - judged; n < lags.size(); ++n) {
            qInfo("clap %d: %.1f ms after its flash", n, lags[n] * 1e3);
            QVERIFY2(std::fabs(lags[n]) < MOST_LAG, qPrintable(QString::number(lags[n])));
        }
    }

    void aMicrophoneThatCountsFastStaysTogetherWithThePicture()
    {
        // A quarter of a second a minute would be lost without correction, which can do 4545 ppm.
        RecordProbe probe({"--claps", m_server->pipe(), "--ppm", QString::number(FAST_PPM),
                           "--seconds", "11", m_file});
        QVERIFY(probe.waitForEnd());
        const QVector<double> lags = MovieFile(m_file).clapsAfterFlashes();
        QVERIFY(lags.size() >= 7);
        for (const double lag : lags)
            qInfo("%.1f ms after its flash", lag * 1e3);
        const double late = median(lags.mid(lags.size() - 3));
        QVERIFY2(std::fabs(late) < 2 * TOLERANCE, qPrintable(QString::number(late)));
        // What the microphone's start left stays; the correction is 10 ms behind the drift.
        const double slope = medianSlope(lags);
        QVERIFY2(slope < FAST_PPM * 1e-6 / 2, qPrintable(QString::number(slope)));
    }

private:
    /// Between two pauses, in seconds from the start of the probe.
    struct Part {
        double from;
        double to;
    };

    static QVector<Part> partsOf(const RecordProbe &probe)
    {
        QVector<Part> parts{{0, 1e9}};
        for (const QByteArray &line : probe.lines()) {
            const double seconds = line.split(' ').value(1).toDouble() * 1e-6;
            if (line.startsWith("paused "))
                parts.last().to = seconds;
            if (line.startsWith("resumed "))
                parts.append({seconds, 1e9});
        }
        return parts;
    }

    /// Where in the movie a moment is that lies in one of the parts.
    static double inMovie(double seconds, double begin, const QVector<Part> &parts)
    {
        double before = 0;
        for (int n = 0; n + 1 < parts.size() && parts[n + 1].from <= seconds; ++n)
            before += parts[n + 1].from - parts[n].to;
        return seconds - begin - before;
    }

    static void tellOf(const QVector<double> &lags, const RecordProbe &probe)
    {
        const auto within = std::count_if(lags.begin(), lags.end(),
                                          [](double lag) { return std::fabs(lag) < TOLERANCE; });
        const auto [least, most] = std::minmax_element(lags.begin(), lags.end());
        qInfo(
            "%d claps, after their flashes by %.1f ms in the median, %.1f at least, %.1f at most; "
            "%d within a picture",
            int{lags.size()}, median(lags) * 1e3, *least * 1e3, *most * 1e3, int(within));
        QByteArray lastSecond;
        for (const QByteArray &line : probe.lines()) {
            if (line.startsWith("second 60 ") || line.startsWith("finished"))
                qInfo("%s", line.constData());
            if (line.startsWith("second "))
                lastSecond = line;
        }
        qInfo("%s", lastSecond.constData());
    }

    QTemporaryDir m_folder;
    std::unique_ptr<SoundServer> m_server;
    QString m_file;
};

REGISTER_CORE_TEST_SIDE_BY_SIDE(ClapAndFlashTest)
#include "tst_clap_and_flash.moc"
