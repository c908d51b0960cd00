#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/e2e/ProgramUnderTest.h"

#include "diagnostics/TerminalLines.h"
#include "settings/CanvasModes.h"
#include "tools/virtualcamera/VirtualCamera.h"

#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QSettings>
#include <QtTest>

#include <memory>
#include <unistd.h>

using TerminalLines::Line;

namespace
{

/// A command that makes HOME a disk of its own, in a name space of its own, does `then` to it and
/// becomes the program.
QStringList onADisk(const QString &then)
{
    QStringList command{"unshare", "--mount"};
    if (geteuid() != 0)
        command += QStringList{"--user", "--map-root-user"};
    return command +
           QStringList{"sh", "-c",
                       "mount -t tmpfs -o size=1m none \"$HOME\" && " + then + " && exec \"$0\""};
}

QStringList pictures(const QString &folder)
{
    QStringList found;
    QDirIterator files(folder, {"*.jpg"}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        found += files.next();
    return found;
}

} // namespace

/// The program in homes and languages that are not like others, and beside itself.
class ProgramHomesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(ProgramUnderTest::waitForWindowManager());
        m_camera = std::make_unique<VirtualCamera>();
        ProgramUnderTest program;
        QElapsedTimer timer;
        timer.start();
        QVERIFY(program.start() && program.waitForWindow());
        m_usualMs = timer.elapsed();
        QVERIFY(program.closeAndWait());
    }
    void cleanupTestCase() { m_camera.reset(); }
    void init()
    {
        m_camera->unplug();
        m_camera->faults().claimBusy = 0;
    }

    void picturesAndSettingsAreKeptInAnyHome_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("documents");
        QTest::addColumn<QString>("variable");
        QTest::newRow("missing") << "not/there/yet" << QByteArray("Documents") << QString();
        QTest::newRow("German, no runtime folder")
            << "german" << QByteArray("Dokumente") << "XDG_RUNTIME_DIR";
        QTest::newRow("odd name, plain locale")
            << "it's a \"home\" $x ü" << QByteArray("Documents") << "LC_ALL=C";
    }

    void picturesAndSettingsAreKeptInAnyHome()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, documents);
        QFETCH(QString, variable);
        const QString home = QDir::homePath() + '/' + name;
        if (documents != "Documents") {
            QVERIFY(QDir().mkpath(home + "/.config"));
            QFile names(home + "/.config/user-dirs.dirs");
            QVERIFY(names.open(QIODevice::WriteOnly));
            names.write("XDG_DOCUMENTS_DIR=\"$HOME/" + documents + "\"\n");
        }
        QProcessEnvironment environment = inHome(home);
        environment.remove(variable);
        if (variable.contains('='))
            environment.insert(variable.section('=', 0, 0), variable.section('=', 1));
        ProgramUnderTest program;
        QVERIFY2(comesAsUsual(program, environment), program.output().constData());
        program.pressKeys("ctrl+s");
        const QString folder =
            home + '/' + QString::fromUtf8(documents) + "/Document Camera/images";
        QVERIFY2(QTest::qWaitFor([&folder] { return !pictures(folder).isEmpty(); }, TIMEOUT_MS),
                 program.output().constData());
        QVERIFY(program.acceptSettings());
        QVERIFY(program.closeAndWait());
        QCOMPARE(program.exitCode(), 0);
        QVERIFY(QFile::exists(home + "/.config/Quillmark/Document Camera.conf"));
    }

    void whatCannotBeSavedIsSaid_data()
    {
        QTest::addColumn<QString>("then");
        QTest::addColumn<bool>("asks");
        // The folder of the pictures cannot even be made, so the user is asked for another one.
        QTest::newRow("read-only") << "mount -o remount,ro \"$HOME\"" << true;
        QTest::newRow("full") << "{ cat /dev/zero >\"$HOME/full\" 2>/dev/null || true; }" << false;
    }

    void whatCannotBeSavedIsSaid()
    {
        QFETCH(QString, then);
        QFETCH(bool, asks);
        const QString home = QDir::homePath() + "/disk";
        QVERIFY(QDir().mkpath(home));
        ProgramUnderTest program;
        QVERIFY2(comesAsUsual(program, inHome(home), onADisk(then)), program.output().constData());
        program.pressKeys("ctrl+s");
        QVERIFY2(program.waitForOutput("The snapshot " + home.toUtf8()),
                 program.output().constData());
        QVERIFY(!asks || program.acceptDialog());
        QVERIFY(program.acceptSettings());
        QVERIFY(program.closeAndWait());
        QCOMPARE(program.exitCode(), 0);
        const QString file = home + "/.config/Quillmark/Document Camera.conf";
        QVERIFY2(program.output().contains(
                     TerminalLines::text(Line::SettingsNotWritten, {file}).toUtf8()),
                 program.output().constData());
    }

    void languagesFromRightToLeftLeaveItAsItIs()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        QImage usual;
        QVERIFY(shows(usual, environment));
        environment.insert("LC_ALL", "he_IL.UTF-8");
        QVERIFY(shows(usual, environment));
        QVERIFY(shows(usual, environment, {"-reverse"}));
    }

    void aSecondInstanceSaysThatTheCameraIsTaken()
    {
        QVERIFY(m_camera->plug());
        ProgramUnderTest first;
        QVERIFY(first.start());
        QVERIFY(first.waitForWindow());
        QTRY_VERIFY_WITH_TIMEOUT(m_camera->statistics().framesSent > 3, TIMEOUT_MS);
        // The camera is one program's at a time.
        m_camera->faults().claimBusy = 1;
        ProgramUnderTest second;
        QVERIFY(second.start());
        QVERIFY(second.waitForWindow());
        const QString holder = QString("document-camera (process %1)").arg(first.processId());
        // The emulated camera's own process holds the device as well.
        QVERIFY(second.waitForOutput("The camera is held by "));
        QVERIFY2(second.output().contains(holder.toUtf8()), second.output().constData());
        const auto before = m_camera->statistics().framesSent;
        QTRY_VERIFY_WITH_TIMEOUT(m_camera->statistics().framesSent > before + 3, TIMEOUT_MS);
        // What one program saves the other does not undo.
        QVERIFY(second.chooseSeries());
        QVERIFY(second.closeAndWait());
        QVERIFY(first.closeAndWait());
        QCOMPARE(first.exitCode(), 0);
        QCOMPARE(second.exitCode(), 0);
        const QSettings stored(QDir::homePath() + "/.config/Quillmark/Document Camera.conf",
                               QSettings::IniFormat);
        QCOMPARE(stored.value("snapshotMode").toInt(), int(CanvasModes::Continuous));
    }

private:
    /// Whether the program's window comes about as fast there as in an ordinary home.
    bool comesAsUsual(ProgramUnderTest &program, const QProcessEnvironment &environment,
                      const QStringList &before = {}) const
    {
        // Other tests load the machine more at one time than at another.
        const qint64 mostMs = 3 * m_usualMs + 1000;
        QElapsedTimer timer;
        timer.start();
        if (!program.start(environment, {}, before) || !program.waitForWindow())
            return false;
        if (timer.elapsed() > mostMs)
            qWarning("%lld ms, but %lld usually", timer.elapsed(), m_usualMs);
        return timer.elapsed() <= mostMs;
    }

    /// Whether the program comes to show that; `picture` null takes what it shows once it has come
    /// to rest.
    static bool shows(QImage &picture, const QProcessEnvironment &environment,
                      const QStringList &arguments = {})
    {
        constexpr int AT_REST = 50;
        ProgramUnderTest program;
        if (!program.start(environment, arguments) || !program.waitForWindow())
            return false;
        QImage last;
        int same = 0;
        const bool wanted = picture.isNull();
        const bool seen = QTest::qWaitFor(
            [&] {
                const QImage now = ProgramUnderTest::screenshot();
                same = now == last ? same + 1 : 0;
                last = now;
                return wanted ? same == AT_REST : now == picture;
            },
            TIMEOUT_MS);
        picture = last;
        return seen && program.closeAndWait();
    }

    static QProcessEnvironment inHome(const QString &home)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HOME", home);
        for (const char *name : {"XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"})
            environment.remove(name);
        return environment;
    }

    std::unique_ptr<VirtualCamera> m_camera;
    /// From the start to the window, in an ordinary home.
    qint64 m_usualMs = 0;
};

REGISTER_TEST(ProgramHomesTest)
#include "tst_program_homes.moc"
