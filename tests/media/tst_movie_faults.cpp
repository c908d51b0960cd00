#include "tests/TestProgram.h"
#include "tests/media/DisturbedMovies.h"

#include <QRandomGenerator>

#include <unistd.h>

namespace
{

using Outcome = DisturbedMovies::Outcome;

Outcome killedAfter(const QString &file, int milliseconds)
{
    RecordProbe probe({file});
    Outcome outcome;
    outcome.asPlanned = probe.waitFor("first picture") && probe.waitFor("second 3 ");
    QElapsedTimer since;
    since.start();
    // So that the kills meet different moments between two seconds of the recording.
    QThread::msleep(static_cast<unsigned long>(milliseconds));
    outcome.seconds = 3 + static_cast<double>(since.elapsed()) / 1000;
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
    outcome.asPlanned =
        powered.waitForFinished(DisturbedMovies::FAULT_TIMEOUT_MS) && powered.exitCode() == 0;
    outcome.said = powered.readAllStandardError();
    outcome.seconds = powered.readAllStandardOutput().split(' ').value(1).toDouble();
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

/// Movies that end without being finished.
class MovieFaultsTest : public QObject, private DisturbedMovies
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const bool mounts = geteuid() == 0;
        auto *random = QRandomGenerator::global();
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

    void cleanupTestCase() { waitForDone(); }

    void aFaultCostsTheLastSecondAtMost_data()
    {
        QTest::addColumn<double>("missing");
        for (const QString &movie : movies()) {
            const QByteArray name = movie.toUtf8();
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
};

REGISTER_CORE_TEST(MovieFaultsTest)
#include "tst_movie_faults.moc"
