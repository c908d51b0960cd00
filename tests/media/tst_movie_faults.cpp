#include "tests/TestProgram.h"
#include "tests/media/MovieFile.h"
#include "tests/media/RecordProbe.h"
#include "tests/media/SoundServer.h"

#include <QtTest>

#include <QRandomGenerator>

#include <unistd.h>

namespace
{

/// What of a movie may be missing after a fault, in seconds.
constexpr double LAST_SECOND = 1.1;

} // namespace

class MovieFaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_server.pretendAbsent();
        m_file = m_folder.filePath("movie.mov");
    }

    void aKillAtAnyMomentCostsTheLastSecondAtMost_data()
    {
        QTest::addColumn<int>("milliseconds");
        // Moments between two seconds of the recording.
        for (int n = 0; n < 3; ++n)
            QTest::addRow("%d", n) << QRandomGenerator::global()->bounded(1000);
    }

    void aKillAtAnyMomentCostsTheLastSecondAtMost()
    {
        QFETCH(int, milliseconds);
        RecordProbe probe({m_file});
        QVERIFY(probe.waitFor("first picture"));
        QElapsedTimer recorded;
        recorded.start();
        QVERIFY(probe.waitFor("second 3 "));
        QTest::qWait(milliseconds);
        const double seconds = static_cast<double>(recorded.elapsed()) / 1000;
        probe.kill();
        expectMovieUpTo(seconds - LAST_SECOND);
    }

    void aKillWhileTheMovieIsBeingFinishedLeavesAMovie_data()
    {
        QTest::addColumn<int>("milliseconds");
        for (int n = 0; n < 4; ++n)
            QTest::addRow("%d", n) << QRandomGenerator::global()->bounded(60);
    }

    void aKillWhileTheMovieIsBeingFinishedLeavesAMovie()
    {
        QFETCH(int, milliseconds);
        RecordProbe probe({"--seconds", "3", m_file});
        QVERIFY(probe.waitFor("finishing"));
        QTest::qWait(milliseconds); // so that the kills meet different moments
        probe.kill();
        expectMovieUpTo(3 - 2 * LAST_SECOND);
    }

    void aPowerCutCostsTheLastSecondAtMost_data()
    {
        QTest::addColumn<double>("seconds");
        for (int n = 0; n < 3; ++n)
            QTest::addRow("%d", n) << 3 + QRandomGenerator::global()->generateDouble();
    }

    void aPowerCutCostsTheLastSecondAtMost()
    {
        if (geteuid() != 0)
            QSKIP("Only the superuser may mount the disk whose power fails.");
        QFETCH(double, seconds);
        QProcess powered;
        powered.start(QStringLiteral(UNTIL_THE_POWER_FAILS),
                      {QString::number(seconds), m_file, QStringLiteral(RECORDPROBE)});
        QVERIFY(powered.waitForFinished(90000));
        QVERIFY2(powered.exitCode() == 0, powered.readAllStandardError());
        const double recorded = powered.readAllStandardOutput().split(' ').value(1).toDouble();
        QVERIFY(recorded >= seconds);
        expectMovieUpTo(recorded - LAST_SECOND);
    }

    void aFullDiskStopsTheRecordingAndKeepsTheMovie_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("in memory") << "tmpfs";
        if (geteuid() == 0) // who alone may mount its image
            QTest::newRow("with late allocation") << "ext4";
    }

    void aFullDiskStopsTheRecordingAndKeepsTheMovie()
    {
        QFETCH(QString, kind);
        const QByteArray said = onSmallDisk(
            kind, {QStringLiteral(RECORDPROBE), "--size", "1280x720", "--seconds", "60"});
        QVERIFY2(said.contains("failed: The recording was stopped because the disk is full."),
                 said);
        expectPlayableUpToTheFailure(said.split('\n'));
        expectPlayableInMpv();
    }

    void aSecondTryOnAFullDiskLeavesNoFile()
    {
        const QString script = "\"$1\" --size 1280x720 --seconds 60 \"$2\";"
                               "cat /dev/zero >\"${2%/*}/rest\" 2>/dev/null;"
                               "\"$1\" --size 1280x720 --seconds 20 \"${2%/*}/second.mov\";"
                               "ls \"${2%/*}\"";
        const QByteArray said =
            onSmallDisk("tmpfs", {"sh", "-c", script, "sh", QStringLiteral(RECORDPROBE)});
        QCOMPARE(said.count("failed: The recording was stopped because the disk is full."), 2);
        QVERIFY2(said.endsWith("\nmovie.mov\nrest\n"), said);
    }

    void aFileThatMayGrowNoFurtherStopsTheRecordingAndKeepsTheMovie()
    {
        RecordProbe probe(
            {"--size", "1280x720", "--seconds", "60", "--file-limit", "2000000", m_file});
        QVERIFY(probe.waitForEnd());
        QCOMPARE(probe.failure(),
                 QString("The recording was stopped because the movie file cannot be written."));
        expectPlayableUpToTheFailure(probe.lines());
    }

    void aFileThatMayNotBeWrittenIsLeftAlone()
    {
        const QString file = m_folder.filePath("guarded.mov");
        QFile guarded(file);
        QVERIFY(guarded.open(QIODevice::WriteOnly) && guarded.write("mine") == 4);
        guarded.close();
        QVERIFY(guarded.setPermissions(QFile::ReadOwner));
        RecordProbe probe({"--no-rights", "--seconds", "2", file});
        QVERIFY(probe.waitForEnd());
        QCOMPARE(probe.failure(), QString("The movie file cannot be created."));
        QVERIFY(guarded.open(QIODevice::ReadOnly));
        QCOMPARE(guarded.readAll(), QByteArray("mine"));
    }

    void aCameraThatFallsSilentDoesNotHoldTheFileBack()
    {
        RecordProbe probe({"--camera-seconds", "2", m_file});
        QVERIFY(probe.waitFor("silent 6 "));
        probe.kill();
        const MovieFile movie(m_file);
        QCOMPARE(movie.complaints(), QString());
        // The picture stands, a second behind the sound; both are on the disk.
        QVERIFY2(movie.duration() > 3.0, qPrintable(QString::number(movie.duration())));
        QVERIFY(movie.sound().samples.size() > 3 * 44100);
    }

private:
    /// Runs a program on a disk of 3 MB; m_file is what it leaves there. Returns what it said.
    QByteArray onSmallDisk(const QString &kind, const QStringList &command) const
    {
        QProcess mounted;
        mounted.start(QStringLiteral(ON_SMALL_DISK), QStringList{kind, "3M", m_file} + command);
        if (!mounted.waitForFinished(90000) || mounted.exitCode() != 0)
            return "on-small-disk: " + mounted.readAllStandardError();
        return mounted.readAllStandardOutput();
    }

    void expectPlayableInMpv() const
    {
        QProcess mpv;
        mpv.setProcessChannelMode(QProcess::MergedChannels);
        mpv.start("mpv", {"--no-config", "--vo=null", "--ao=null", "--untimed",
                          "--msg-level=all=warn", m_file});
        QVERIFY(mpv.waitForFinished(90000));
        QCOMPARE(mpv.readAll(), QByteArray());
        QCOMPARE(mpv.exitCode(), 0);
    }

    void expectMovieUpTo(double seconds)
    {
        const MovieFile movie(m_file);
        QCOMPARE(movie.complaints(), QString());
        QCOMPARE(movie.container(), QString("qt  "));
        const auto pictures = movie.pictures();
        QVERIFY(!pictures.isEmpty());
        QVERIFY2(pictures.last().seconds > seconds,
                 qPrintable(QString("%1 of %2 s").arg(pictures.last().seconds).arg(seconds)));
        expectUnbroken(pictures);
    }

    static void expectUnbroken(const QVector<MovieFile::Picture> &pictures)
    {
        for (int n = 1; n < pictures.size(); ++n)
            QVERIFY(pictures[n].number > pictures[n - 1].number);
    }

    void expectPlayableUpToTheFailure(const QList<QByteArray> &said)
    {
        // The last whole second that the probe told of before the failure.
        double seconds = 0;
        for (const QByteArray &line : said) {
            if (line.startsWith("second "))
                seconds = line.split(' ').value(1).toDouble();
        }
        const MovieFile movie(m_file);
        QCOMPARE(movie.complaints(), QString());
        QVERIFY2(seconds > 1, "failed too early to tell anything");
        QVERIFY2(movie.duration() > seconds - 1.0 - LAST_SECOND,
                 qPrintable(QString("%1 of %2 s").arg(movie.duration()).arg(seconds)));
        expectUnbroken(movie.pictures());
    }

    QTemporaryDir m_folder;
    SoundServer m_server{m_folder.path()};
    QString m_file;
};

REGISTER_CORE_TEST(MovieFaultsTest)
#include "tst_movie_faults.moc"
