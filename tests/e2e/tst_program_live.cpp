#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/e2e/LiveProgram.h"
#include "tests/e2e/ProgramUnderTest.h"
#include "tests/fakes/PriorityService.h"

#include "tools/virtualcamera/SheetCounter.h"
#include "tools/virtualcamera/VirtualCamera.h"

#include <QtTest>

#include <QDirIterator>
#include <QElapsedTimer>

#include <memory>
#include <optional>

using LiveProgram::counterOnScreen;

namespace
{

constexpr int LEAVES_WITHIN_MS = 2000;

} // namespace

/// The whole program with a camera on the bus, looked at from outside.
class ProgramLiveTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(ProgramUnderTest::waitForWindowManager());
        m_camera = std::make_unique<VirtualCamera>();
    }
    void cleanupTestCase() { m_camera.reset(); }
    void init() { m_camera->unplug(); }

    void theMovingPictureIsOnTheScreen()
    {
        QVERIFY(m_camera->plug());
        ProgramUnderTest program;
        QElapsedTimer sinceStart;
        sinceStart.start();
        QVERIFY(program.start());
        QVERIFY2(program.waitForWindow(), program.output().constData());
        std::optional<quint32> first;
        QVERIFY(waitForCounter(first));
        QVERIFY(sinceStart.elapsed() > 2000);
        std::optional<quint32> second;
        QVERIFY(QTest::qWaitFor(
            [&first, &second] {
                second = counterOnScreen();
                return second && *second != *first;
            },
            TIMEOUT_MS));
        // What is on the screen was sent a moment ago at most.
        const quint32 behind = (m_camera->statistics().lastFrame - *second) % SheetCounter::MODULUS;
        QVERIFY2(behind < 30, qPrintable(QString::number(behind)));
        QVERIFY(program.output().contains("DEVICE FOUND"));
        QVERIFY(program.closeAndWait());
        QCOMPARE(program.exitCode(), 0);
        QCOMPARE(m_camera->statistics().openHandles, 0);
    }

    void aSnapshotFromTheKeyboardIsAFrameOfTheCamera()
    {
        QVERIFY(m_camera->plug());
        ProgramUnderTest program;
        QVERIFY(program.start());
        QVERIFY(program.waitForWindow());
        std::optional<quint32> onScreen;
        QVERIFY(waitForCounter(onScreen));
        const quint32 before = m_camera->statistics().lastFrame;
        program.pressKeys("ctrl+s");
        QString file;
        QVERIFY(QTest::qWaitFor(
            [&file] {
                QDirIterator found(QDir::homePath(), {"*.jpg"}, QDir::Files,
                                   QDirIterator::Subdirectories);
                file = found.hasNext() ? found.next() : QString();
                return !file.isEmpty() && !QImage(file).isNull();
            },
            TIMEOUT_MS));
        const QImage picture(file);
        QCOMPARE(picture.size(),
                 QSize(m_camera->statistics().streamWidth, m_camera->statistics().streamHeight));
        const auto saved = SheetCounter::read(picture);
        QVERIFY(saved);
        // A frame from around the key press, not an older one and none from the future.
        const quint32 age = (m_camera->statistics().lastFrame - *saved) % SheetCounter::MODULUS;
        QVERIFY(age <= m_camera->statistics().lastFrame - before + 30);
        QVERIFY(program.closeAndWait());
        QCOMPARE(program.exitCode(), 0);
    }

    void aCameraThatIsPluggedInLaterAppears()
    {
        ProgramUnderTest program;
        QVERIFY(program.start());
        QVERIFY(program.waitForWindow());
        QVERIFY(!counterOnScreen());
        QVERIFY(m_camera->plug());
        std::optional<quint32> counter;
        QVERIFY(waitForCounter(counter));
        QVERIFY(program.closeAndWait());
        QCOMPARE(program.exitCode(), 0);
    }

    void noGraphicsDriverIsLoaded()
    {
        ProgramUnderTest program;
        QVERIFY(program.start());
        QVERIFY(program.waitForWindow());
        const QByteArray files = program.mappedFiles();
        QVERIFY(files.contains("libQt5Widgets"));
        QVERIFY2(!files.contains("_dri.so"), files.constData());
        QVERIFY(program.closeAndWait());
    }

    void theProgramLeavesAlsoWhenTheCameraLeftBefore_data()
    {
        QTest::addColumn<bool>("dirty");
        QTest::newRow("clean") << false;
        QTest::newRow("dirty") << true;
    }

    void theProgramLeavesAlsoWhenTheCameraLeftBefore()
    {
        QFETCH(bool, dirty);
        QVERIFY(m_camera->plug());
        ProgramUnderTest program;
        QVERIFY(program.start());
        QVERIFY(program.waitForWindow());
        std::optional<quint32> counter;
        QVERIFY2(waitForCounter(counter), program.output().constData());
        if (dirty)
            m_camera->unplugDirty();
        else
            m_camera->unplug();
        QVERIFY(program.closeAndWait());
        QCOMPARE(program.exitCode(), 0);
    }

    void itsPictureAndItsWindowAreToGoBeforeOtherPrograms()
    {
        const SystemBus bus;
        const PriorityService service(bus);
        QVERIFY(service.serving());
        QVERIFY(m_camera->plug());
        ProgramUnderTest program;
        QVERIFY(program.start());
        QVERIFY(program.waitForWindow());
        QTRY_COMPARE_WITH_TIMEOUT(service.requests.size(), 2, TIMEOUT_MS);
        QCOMPARE(service.requests[0].thread, static_cast<qulonglong>(program.processId()));
        QFile name(QString("/proc/%1/task/%2/comm")
                       .arg(program.processId())
                       .arg(service.requests[1].thread));
        QVERIFY(name.open(QIODevice::ReadOnly));
        QCOMPARE(name.readAll().trimmed(), QByteArray("LiveFrames"));
        QVERIFY(program.closeAndWait());
        QCOMPARE(program.exitCode(), 0);
    }

    void aSystemBusThatHangsHoldsUpNothing()
    {
        const SystemBus bus;
        bus.sendSignal(SIGSTOP);
        QVERIFY(m_camera->plug());
        ProgramUnderTest program;
        QVERIFY(program.start());
        QVERIFY(program.waitForWindow());
        std::optional<quint32> first;
        QVERIFY(waitForCounter(first));
        QTRY_VERIFY_WITH_TIMEOUT(counterOnScreen().value_or(*first) != *first, TIMEOUT_MS);
        QElapsedTimer sinceClose;
        sinceClose.start();
        QVERIFY(program.closeAndWait());
        QVERIFY2(sinceClose.elapsed() < LEAVES_WITHIN_MS,
                 qPrintable(QString::number(sinceClose.elapsed())));
        QCOMPARE(program.exitCode(), 0);
    }

private:
    static bool waitForCounter(std::optional<quint32> &counter)
    {
        return QTest::qWaitFor(
            [&counter] {
                counter = counterOnScreen();
                return counter.has_value();
            },
            TIMEOUT_MS);
    }

    std::unique_ptr<VirtualCamera> m_camera;
};

REGISTER_TEST(ProgramLiveTest)
#include "tst_program_live.moc"
