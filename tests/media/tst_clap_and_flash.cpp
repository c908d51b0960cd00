#include "MovieFile.h"
#include "RecordProbe.h"
#include "SoundServer.h"

#include <QtTest>

#include <algorithm>
#include <cmath>

namespace
{

/// One picture.
constexpr double TOLERANCE = 0.033;

double median(QVector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
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

    void pictureAndSoundBelongTogetherFromTheStart()
    {
        RecordProbe probe({"--claps", m_server->pipe(), "--seconds", "7", m_file});
        QVERIFY(probe.waitForEnd());
        const QVector<double> lags = MovieFile(m_file).clapsAfterFlashes();
        QVERIFY(lags.size() >= 4);
        QVERIFY2(std::fabs(median(lags)) < TOLERANCE, qPrintable(QString::number(median(lags))));
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

    void aMicrophoneThatCountsFastStaysTogetherWithThePicture()
    {
        // Half a second a minute would be lost without correction.
        RecordProbe probe(
            {"--claps", m_server->pipe(), "--ppm", "8000", "--seconds", "11", m_file});
        QVERIFY(probe.waitForEnd());
        const QVector<double> lags = MovieFile(m_file).clapsAfterFlashes();
        QVERIFY(lags.size() >= 7);
        const double late = median(lags.mid(lags.size() - 3));
        QVERIFY2(std::fabs(late) < 2 * TOLERANCE, qPrintable(QString::number(late)));
    }

private:
    QTemporaryDir m_folder;
    std::unique_ptr<SoundServer> m_server;
    QString m_file;
};

QTEST_GUILESS_MAIN(ClapAndFlashTest)
#include "tst_clap_and_flash.moc"
