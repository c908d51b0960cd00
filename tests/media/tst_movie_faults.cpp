#include "tests/TestProgram.h"
#include "tests/media/Lateness.h"
#include "tests/media/MovieFile.h"
#include "tests/media/RecordProbe.h"
#include "tests/media/SoundServer.h"

#include <QtTest>

#include <QRandomGenerator>
#include <QThreadPool>

#include <unistd.h>

#include <functional>
#include <future>
#include <map>
#include <memory>

namespace
{

/// What of a movie may be missing after a fault, in seconds.
constexpr double LAST_SECOND = 1.1;
constexpr int MOVIES_AT_ONCE = 2;
constexpr int FAULT_TIMEOUT_MS = 90000;
constexpr int STALL_SECONDS = 12;

/// What a recording has left.
struct Outcome {
    bool asPlanned = false;
    /// When the machine counts for what is missing.
    Lateness::Clock::time_point from = Lateness::Clock::now();
    Lateness::Clock::time_point to;
    /// As long as it was recorded.
    double seconds = 0;
    /// What the probe said, and why the recording failed.
    QByteArray said;
    QString failure;
    QString file;
};

Outcome killedAfter(const QString &file, int milliseconds)
{
    RecordProbe probe({file});
    Outcome outcome;
    outcome.asPlanned = probe.waitFor("first picture");
    QElapsedTimer recorded;
    recorded.start();
    outcome.asPlanned = outcome.asPlanned && probe.waitFor("second 3 ");
    // So that the kills meet different moments between two seconds of the recording.
    QThread::msleep(static_cast<unsigned long>(milliseconds));
    outcome.seconds = static_cast<double>(recorded.elapsed()) / 1000;
    probe.kill();
    return outcome;
}

Outcome killedWhileFinishing(const QString &file, int milliseconds)
{
    RecordProbe probe({"--seconds", "3", file});
    Outcome outcome;
    outcome.asPlanned = probe.waitFor("finishing");
    // So that the kills meet different moments of the finishing.
    QThread::msleep(static_cast<unsigned long>(milliseconds));
    probe.kill();
    return outcome;
}

Outcome cutOff(const QString &file, double seconds, const QStringList &arguments = {})
{
    QProcess powered;
    powered.start(QStringLiteral(UNTIL_THE_POWER_FAILS),
                  QStringList{QString::number(seconds), file, QStringLiteral(RECORDPROBE)} +
                      arguments);
    Outcome outcome;
    outcome.asPlanned = powered.waitForFinished(FAULT_TIMEOUT_MS) && powered.exitCode() == 0;
    outcome.said = powered.readAllStandardError();
    outcome.seconds = powered.readAllStandardOutput().split(' ').value(1).toDouble();
    return outcome;
}

/// Runs a program on a disk of that kind and size, with the name of a movie there.
Outcome onSmallDisk(const QString &file, const QStringList &kindAndSize, const QStringList &command)
{
    QProcess mounted;
    mounted.start(QStringLiteral(ON_SMALL_DISK), kindAndSize + QStringList{file} + command);
    Outcome outcome;
    outcome.asPlanned = mounted.waitForFinished(FAULT_TIMEOUT_MS) && mounted.exitCode() == 0;
    outcome.said = mounted.readAllStandardOutput() + mounted.readAllStandardError();
    return outcome;
}

/// Records for five seconds longer than the share stalls.
Outcome onStallingShare(const QString &file, int seconds)
{
    QProcess shared;
    shared.start(QStringLiteral(ON_STALLING_SHARE),
                 {QString::number(seconds), file, QStringLiteral(RECORDPROBE), "--seconds",
                  QString::number(seconds + 5)});
    Outcome outcome;
    outcome.asPlanned =
        shared.waitForFinished(seconds * 1000 + FAULT_TIMEOUT_MS) && shared.exitCode() == 0;
    outcome.said = shared.readAllStandardOutput() + shared.readAllStandardError();
    outcome.seconds = seconds + 5;
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

Outcome killedWhileSilent(const QString &file)
{
    RecordProbe probe({"--camera-seconds", "2", file});
    Outcome outcome;
    outcome.asPlanned = probe.waitFor("silent 6 ");
    probe.kill();
    return outcome;
}

} // namespace

/// All movies are recorded in initTestCase(), some at a time, as each spends its time waiting; the
/// tests look at what is left of them.
class MovieFaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_server.pretendAbsent();
        m_recorders.setMaxThreadCount(MOVIES_AT_ONCE);
        const bool mounts = geteuid() == 0;
        auto *random = QRandomGenerator::global();
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
        record("stalled", [](const QString &file) {
            return onStallingShare(file, qEnvironmentVariableIntValue("STALL_SECONDS") > 0
                                             ? qEnvironmentVariableIntValue("STALL_SECONDS")
                                             : STALL_SECONDS);
        });
        record("camera silent", killedWhileSilent);
        for (int n = 0; n < 3 && mounts; ++n)
            record(QString("power %1").arg(n),
                   [seconds = 3 + random->generateDouble()](const QString &file) {
                       return cutOff(file, seconds);
                   });
        if (mounts)
            record("paused", [](const QString &file) {
                return cutOff(file, 4.5, {"--pauses", "3-"});
            });
        for (int n = 0; n < 3; ++n)
            record(QString("kill %1").arg(n), [ms = random->bounded(1000)](const QString &file) {
                return killedAfter(file, ms);
            });
        for (int n = 0; n < 4; ++n)
            record(QString("finish %1").arg(n), [ms = random->bounded(60)](const QString &file) {
                return killedWhileFinishing(file, ms);
            });
    }

    void cleanupTestCase() { m_recorders.waitForDone(); }

    void aFaultCostsTheLastSecondAtMost_data()
    {
        QTest::addColumn<double>("missing");
        for (const auto &movie : m_movies) {
            const QByteArray name = movie.first.toUtf8();
            if (name.startsWith("kill ") || name.startsWith("power "))
                QTest::newRow(name.constData()) << LAST_SECOND;
        }
    }

    void aFaultCostsTheLastSecondAtMost()
    {
        QFETCH(double, missing);
        const Outcome outcome = recorded(QTest::currentDataTag());
        QVERIFY2(outcome.asPlanned, outcome.said);
        QVERIFY(outcome.seconds >= 3);
        expectMovieUpTo(outcome.file, outcome.seconds - missing - allowance(outcome));
    }

    void aKillWhileTheMovieIsBeingFinishedLeavesAMovie_data()
    {
        QTest::addColumn<int>("n");
        for (int n = 0; n < 4; ++n)
            QTest::addRow("%d", n) << n;
    }

    void aKillWhileTheMovieIsBeingFinishedLeavesAMovie()
    {
        QFETCH(int, n);
        const Outcome outcome = recorded(QString("finish %1").arg(n));
        QVERIFY(outcome.asPlanned);
        expectMovieUpTo(outcome.file, 3 - 2 * LAST_SECOND - allowance(outcome));
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

    /// STALL_SECONDS=30 makes it longer.
    void aShareThatStallsCostsNothing()
    {
        const Outcome outcome = recorded("stalled");
        QVERIFY2(outcome.asPlanned, outcome.said);
        // The recording goes on meanwhile.
        const int from = outcome.said.indexOf("\nstalled\n");
        const int to = outcome.said.indexOf("\nback\n");
        QVERIFY2(from > 0 && to > from, outcome.said);
        const int told = outcome.said.mid(from, to - from).count("\nsecond ");
        QVERIFY2(told >= int(outcome.seconds) - 8, outcome.said);
        QVERIFY2(!outcome.said.contains("failed: "), outcome.said);
        const MovieFile movie(outcome.file);
        QCOMPARE(movie.complaints(), QString());
        QVERIFY2(movie.duration() > outcome.seconds - LAST_SECOND - allowance(outcome),
                 qPrintable(QString::number(movie.duration())));
        const auto pictures = movie.pictures();
        expectUnbroken(pictures);
        // A machine under load drops some, but nowhere as many as a second has.
        for (int n = 1; n < pictures.size(); ++n)
            QVERIFY2(pictures[n].number - pictures[n - 1].number < 30 * (1 + allowance(outcome)),
                     qPrintable(QString::number(pictures[n].number)));
        QVERIFY(movie.sound().samples.size() >
                (outcome.seconds - LAST_SECOND - allowance(outcome)) * 44100);
    }

    void aSecondTryOnAFullDiskLeavesNoFile()
    {
        const QByteArray said = recorded("second try").said;
        QCOMPARE(said.count("failed: The recording was stopped because the disk is full."), 2);
        QVERIFY2(said.contains("\nmovie.mov\nrest\n") && !said.contains("second.mov"), said);
    }

    /// What was recorded more than a second before is on the disk, as ever; during a pause that is
    /// all of it.
    void aPowerCutDuringAPauseCostsNothing()
    {
        if (geteuid() != 0)
            QSKIP("Only root may mount.");
        const Outcome outcome = recorded("paused");
        QVERIFY2(outcome.asPlanned, outcome.said);
        QVERIFY(outcome.seconds >= 4.5);
        // When it was paused, which a machine under load does late.
        QFile said(outcome.file + ".said");
        QVERIFY(said.open(QIODevice::ReadOnly));
        const QByteArray line = said.readAll();
        const int told = line.indexOf("paused ");
        QVERIFY2(told >= 0, line);
        const double seconds = line.mid(told).split(' ').value(1).toDouble() * 1e-6;
        const MovieFile movie(outcome.file);
        QCOMPARE(movie.complaints(), QString());
        // The encoder may be four pictures behind.
        const int last = movie.pictures().last().number;
        const double most = seconds * 30 + 1;
        const QByteArray where = QByteArray::number(last) + " of " + QByteArray::number(most);
        QVERIFY2(last <= most, where);
        QVERIFY2(last > most - 5 - allowance(outcome) * 30, where);
        QVERIFY2(movie.duration() > seconds - 0.6 - allowance(outcome),
                 qPrintable(QString::number(movie.duration())));
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
        const Outcome outcome = recorded("camera silent");
        QVERIFY(outcome.asPlanned);
        const MovieFile movie(outcome.file);
        QCOMPARE(movie.complaints(), QString());
        // The picture stands, a second behind the sound; both are on the disk.
        QVERIFY2(movie.duration() > 3.0, qPrintable(QString::number(movie.duration())));
        QVERIFY(movie.sound().samples.size() > 3 * 44100);
    }

private:
    void record(const QString &name, const std::function<Outcome(const QString &file)> &faulty)
    {
        const QString file = m_folder.filePath(QString(name).replace(' ', '-') + ".mov");
        auto task = std::make_shared<std::packaged_task<Outcome()>>([file, faulty] {
            const Lateness::Clock::time_point from = Lateness::Clock::now();
            Outcome outcome = faulty(file);
            outcome.from = from;
            outcome.to = Lateness::Clock::now();
            outcome.file = file;
            return outcome;
        });
        m_movies.emplace(name, task->get_future());
        m_recorders.start([task] { (*task)(); });
    }

    /// Once for each.
    Outcome recorded(const QString &name) { return m_movies.at(name).get(); }

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

    /// What a machine under load may cost beside: a save takes several turns of its threads and of
    /// the disk. On one at rest that is some hundredths of a second.
    double allowance(const Outcome &outcome) const
    {
        constexpr int TURNS = 4;
        return TURNS * m_lateness.most(outcome.from, outcome.to);
    }

    static void expectMovieUpTo(const QString &file, double seconds)
    {
        const MovieFile movie(file);
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

    void expectPlayableUpToTheFailure(const Outcome &outcome) const
    {
        // The last whole second that the probe told of before the failure.
        double seconds = 0;
        for (const QByteArray &line : outcome.said.split('\n')) {
            if (line.startsWith("second "))
                seconds = line.split(' ').value(1).toDouble();
        }
        const MovieFile movie(outcome.file);
        QCOMPARE(movie.complaints(), QString());
        QVERIFY2(seconds > 1, "failed too early to tell anything");
        QVERIFY2(movie.duration() > seconds - 1.0 - LAST_SECOND - allowance(outcome),
                 qPrintable(QString("%1 of %2 s").arg(movie.duration()).arg(seconds)));
        expectUnbroken(movie.pictures());
    }

    QTemporaryDir m_folder;
    SoundServer m_server{m_folder.path()};
    Lateness m_lateness{m_folder.path()};
    std::map<QString, std::future<Outcome>> m_movies;
    QThreadPool m_recorders;
};

REGISTER_CORE_TEST(MovieFaultsTest)
#include "tst_movie_faults.moc"
