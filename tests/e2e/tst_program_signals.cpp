#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/e2e/ProgramUnderTest.h"
#include "tests/media/MovieFile.h"

#include "settings/CanvasModes.h"
#include "tools/virtualcamera/VirtualCamera.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QSettings>
#include <QtTest>

#include <csignal>
#include <memory>

namespace
{

constexpr int END_MS = 2000;
/// In the window as it opens.
constexpr QPoint RECORD_BUTTON(72, 616);

QString movie()
{
    QDirIterator found(QDir::homePath(), {"*.mov"}, QDir::Files, QDirIterator::Subdirectories);
    return found.hasNext() ? found.next() : QString();
}

} // namespace

/// A program that is told to end.
class ProgramSignalsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(ProgramUnderTest::waitForWindowManager());
        m_camera = std::make_unique<VirtualCamera>();
        QVERIFY(m_camera->plug());
    }
    void cleanupTestCase() { m_camera.reset(); }
    void init() { m_camera->faults().hangControls = 0; }

    void aSignalWritesTheSettingsAndEndsIt_data()
    {
        QTest::addColumn<int>("number");
        QTest::newRow("HUP") << SIGHUP;
        QTest::newRow("INT") << SIGINT;
        QTest::newRow("TERM") << SIGTERM;
    }

    /// What could not be written when it was chosen.
    void aSignalWritesTheSettingsAndEndsIt()
    {
        QFETCH(int, number);
        // Nothing can be written while a file is in the way of their folder.
        const QString folder = QDir::homePath() + "/.config/Quillmark";
        QVERIFY(QDir(folder).removeRecursively() && QDir().mkpath(QDir::homePath() + "/.config"));
        QFile inTheWay(folder);
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        ProgramUnderTest program;
        QVERIFY(program.start());
        QVERIFY(program.waitForWindow());
        QVERIFY(program.chooseSeries());
        QVERIFY(inTheWay.remove());
        program.sendSignal(number);
        QElapsedTimer sinceSignal;
        sinceSignal.start();
        QVERIFY(program.waitForEnd());
        QCOMPARE(program.exitCode(), 128 + number);
        QVERIFY2(sinceSignal.elapsed() < END_MS,
                 qPrintable(QString::number(sinceSignal.elapsed())));
        const QSettings stored(folder + "/Document Camera.conf", QSettings::IniFormat);
        QCOMPARE(stored.value("snapshotMode").toInt(), int(CanvasModes::Continuous));
    }

    /// The camera hangs and a movie runs, which is finished all the same.
    void theMovieIsFinishedAlsoWhileTheCameraHangs()
    {
        ProgramUnderTest program;
        QVERIFY(program.start());
        QVERIFY(program.waitForWindow());
        const auto frames = [this] { return m_camera->statistics().framesSent; };
        const quint64 before = frames();
        QTRY_VERIFY_WITH_TIMEOUT(frames() > before + 3, TIMEOUT_MS);
        QVERIFY(program.click(RECORD_BUTTON));
        QTRY_VERIFY_WITH_TIMEOUT(!movie().isEmpty(), TIMEOUT_MS);
        QElapsedTimer recording;
        recording.start();
        QTRY_VERIFY_WITH_TIMEOUT(recording.elapsed() > 3000, TIMEOUT_MS);
        m_camera->faults().hangControls = -1;
        program.sendSignal(SIGTERM);
        QElapsedTimer sinceSignal;
        sinceSignal.start();
        QVERIFY(program.waitForEnd());
        QCOMPARE(program.exitCode(), 128 + SIGTERM);
        QVERIFY2(sinceSignal.elapsed() < END_MS,
                 qPrintable(QString::number(sinceSignal.elapsed())));
        const MovieFile file(movie());
        QCOMPARE(file.complaints(), QString());
        QVERIFY2(file.duration() > 2.5, qPrintable(QString::number(file.duration())));
    }

    void aSecondSignalEndsItAtOnce()
    {
        ProgramUnderTest program;
        QVERIFY(program.start());
        QVERIFY(program.waitForWindow());
        // Nothing of it runs between the two.
        program.sendSignal(SIGSTOP);
        program.sendSignal(SIGTERM);
        program.sendSignal(SIGINT);
        program.sendSignal(SIGCONT);
        QVERIFY(program.waitForEnd());
        QVERIFY(program.exitCode() == 128 + SIGTERM || program.exitCode() == 128 + SIGINT);
    }

private:
    std::unique_ptr<VirtualCamera> m_camera;
};

REGISTER_TEST(ProgramSignalsTest)
#include "tst_program_signals.moc"
