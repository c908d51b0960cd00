#include "tests/TestProgram.h"
#include "tests/media/DisturbedMovies.h"

#include <unistd.h>

namespace
{

using Outcome = DisturbedMovies::Outcome;

constexpr int STALL_SECONDS = 12;
constexpr int BEGUN_STALL_SECONDS = 22;

/// Runs a program on a disk of that kind and size, with the name of a movie there.
Outcome onSmallDisk(const QString &file, const QStringList &kindAndSize, const QStringList &command)
{
    return DisturbedMovies::byScript(QStringLiteral(ON_SMALL_DISK),
                                     kindAndSize + QStringList{file} + command);
}

struct Stall {
    const char *name;
    /// The line of the recording after which it begins; empty: it begins before the recording.
    const char *line;
    int seconds;
};

/// STALL_SECONDS=30 makes them longer.
std::vector<Stall> stalls()
{
    const int longer = qEnvironmentVariableIntValue("STALL_SECONDS");
    return {{"stalled", "second 2 ", longer > 0 ? longer : STALL_SECONDS},
            // Longer than the sound is kept without encoders.
            {"begun in a stall", "", longer > 0 ? longer : BEGUN_STALL_SECONDS}};
}

/// Records for five seconds longer than the share stalls.
Outcome onStallingShare(const QString &file, const Stall &stall)
{
    const int seconds = stall.seconds + 5;
    Outcome outcome = DisturbedMovies::byScript(QStringLiteral(ON_STALLING_SHARE),
                                                {stall.line, QString::number(stall.seconds), file,
                                                 QStringLiteral(RECORDPROBE), "--seconds",
                                                 QString::number(seconds)});
    outcome.seconds = seconds;
    return outcome;
}

Outcome upToTheEnd(const QString &file, const QStringList &arguments)
{
    RecordProbe probe(arguments + QStringList{file});
    Outcome outcome;
    outcome.asPlanned = probe.waitForEnd();
    outcome.said = probe.lines().join('\n');
    outcome.failure = probe.failure();
    return outcome;
}

} // namespace

/// Movies on disks that fill, stall or may not be written.
class MovieDisksTest : public QObject, private DisturbedMovies
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const bool mounts = geteuid() == 0;
        for (const char *kind : {"tmpfs", "ext4"}) {
            if (mounts || qstrcmp(kind, "tmpfs") == 0)
                record(QString("full ") + kind, [kind](const QString &file) {
                    return onSmallDisk(file, {kind, "2M"},
                                       {QStringLiteral(RECORDPROBE), "--size", "1280x720",
                                        "--seconds", "60", "--least-free", "0"});
                });
        }
        record("nearly full", [](const QString &file) {
            const QString script = "\"$1\" --size 1280x720 --seconds 60 \"$2\";"
                                   "echo left $(df --output=avail --block-size=1 \"$2\" | tail -1)";
            return onSmallDisk(file, {"tmpfs", "53M"},
                               {"sh", "-c", script, "sh", QStringLiteral(RECORDPROBE)});
        });
        record("filling", [](const QString &file) {
            // Another program takes twenty megabytes a second.
            const QString script =
                "(while head -c 2000000 /dev/zero >>\"${2%/*}/rest\" 2>/dev/null; do sleep 0.1;"
                " done) & filler=$!;"
                "\"$1\" --size 1280x720 --seconds 60 \"$2\"; kill $filler";
            return onSmallDisk(file, {"tmpfs", "200M"},
                               {"sh", "-c", script, "sh", QStringLiteral(RECORDPROBE)});
        });
        record("second try", [](const QString &file) {
            const QString script = "\"$1\" --size 1280x720 --seconds 60 --least-free 0 \"$2\";"
                                   "cat /dev/zero >\"${2%/*}/rest\" 2>/dev/null;"
                                   "\"$1\" --size 1280x720 --seconds 20 \"${2%/*}/second.mov\";"
                                   "ls \"${2%/*}\"";
            return onSmallDisk(file, {"tmpfs", "1M"},
                               {"sh", "-c", script, "sh", QStringLiteral(RECORDPROBE)});
        });
        record("may not grow", [](const QString &file) {
            return upToTheEnd(file,
                              {"--size", "1280x720", "--seconds", "60", "--file-limit", "2000000"});
        });
        for (const Stall &stall : stalls())
            record(stall.name,
                   [stall](const QString &file) { return onStallingShare(file, stall); });
    }

    void cleanupTestCase() { waitForDone(); }

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
        const Outcome outcome = recorded("full " + kind);
        QVERIFY2(
            outcome.said.contains("failed: The recording was stopped because the disk is full."),
            outcome.said);
        expectPlayableUpToTheFailure(outcome);
        expectPlayableInMpv(outcome.file);
    }

    /// A movie is completed while there is room, so that nothing of it is lost.
    void aDiskThatIsNearlyFullCompletesTheMovie()
    {
        const Outcome outcome = recorded("nearly full");
        QVERIFY2(
            outcome.said.contains("failed: The recording was stopped because the disk is full."),
            outcome.said);
        expectPlayableUpToTheFailure(outcome);
        expectPlayableInMpv(outcome.file);
        // The movie leaves no room unused that it had kept.
        const qint64 content = MovieFile(outcome.file).contentBytes();
        QVERIFY(QFileInfo(outcome.file).size() - content < std::max<qint64>(65536, content / 50));
        const int told = outcome.said.lastIndexOf("left ");
        const qint64 left =
            outcome.said.mid(told).split('\n').first().split(' ').last().toLongLong();
        QVERIFY2(left > 45000000, qPrintable(QString::number(left)));
    }

    void aDiskThatSomebodyElseFillsCompletesTheMovie()
    {
        const Outcome outcome = recorded("filling");
        QVERIFY2(
            outcome.said.contains("failed: The recording was stopped because the disk is full."),
            outcome.said);
        expectPlayableUpToTheFailure(outcome);
        const qint64 content = MovieFile(outcome.file).contentBytes();
        QVERIFY(QFileInfo(outcome.file).size() - content < std::max<qint64>(65536, content / 50));
    }

    void aShareThatStallsCostsNothing_data()
    {
        QTest::addColumn<QString>("name");
        for (const Stall &stall : stalls())
            QTest::newRow(stall.name) << stall.name;
    }

    /// The recording goes on meanwhile, also one that began when nobody answered.
    void aShareThatStallsCostsNothing()
    {
        QFETCH(QString, name);
        const Outcome outcome = recorded(name);
        QVERIFY2(outcome.asPlanned, outcome.said);
        QVERIFY2(outcome.said.contains("\nback\n"), outcome.said);
        QVERIFY2(!outcome.said.contains("failed: "), outcome.said);
        const int from = outcome.said.indexOf("stalled\n");
        const int told =
            outcome.said.mid(from, outcome.said.indexOf("\nback\n") - from).count("\nsecond ");
        QVERIFY2(told >= int(outcome.seconds) - 8, outcome.said);
        const MovieFile movie(outcome.file);
        QCOMPARE(movie.complaints(), QString());
        QVERIFY2(movie.duration() > outcome.seconds - LAST_SECOND - allowance(outcome),
                 qPrintable(QString::number(movie.duration())));
        const auto pictures = movie.pictures();
        expectUnbroken(pictures);
        // A machine under load drops some, but nowhere as many as half a second has; players say of
        // a picture that stands longer than that that it does not belong to its sound.
        for (int n = 1; n < pictures.size(); ++n)
            QVERIFY2(pictures[n].number - pictures[n - 1].number < 15 + 30 * allowance(outcome),
                     qPrintable(QString::number(pictures[n].number)));
        QVERIFY(movie.sound().samples.size() >
                (outcome.seconds - LAST_SECOND - allowance(outcome)) * 44100);
        expectPlayableInMpv(outcome.file);
    }

    void aSecondTryOnAFullDiskLeavesNoFile()
    {
        const QByteArray said = recorded("second try").said;
        QCOMPARE(said.count("failed: The recording was stopped because the disk is full."), 2);
        QVERIFY2(said.contains("\nmovie.mov\nrest\n") && !said.contains("second.mov"), said);
    }

    void aFileThatMayGrowNoFurtherStopsTheRecordingAndKeepsTheMovie()
    {
        const Outcome outcome = recorded("may not grow");
        QVERIFY(outcome.asPlanned);
        QCOMPARE(outcome.failure,
                 QString("The recording was stopped because the movie file cannot be written."));
        expectPlayableUpToTheFailure(outcome);
    }

    void aFileThatMayNotBeWrittenIsLeftAlone()
    {
        const QString file = path("guarded.mov");
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

private:
    static void expectPlayableInMpv(const QString &file)
    {
        QProcess mpv;
        mpv.setProcessChannelMode(QProcess::MergedChannels);
        mpv.start("mpv", {"--no-config", "--vo=null", "--ao=null", "--ao-null-untimed", "--untimed",
                          "--msg-level=all=warn", file});
        QVERIFY(mpv.waitForFinished(FAULT_TIMEOUT_MS));
        QCOMPARE(mpv.readAll(), QByteArray());
        QCOMPARE(mpv.exitCode(), 0);
    }
};

REGISTER_CORE_TEST(MovieDisksTest)
#include "tst_movie_disks.moc"
