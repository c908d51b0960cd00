#include "tests/TestProgram.h"
#include "tests/e2e/ProgramUnderTest.h"

#include "diagnostics/TerminalLines.h"
#include "tools/virtualcamera/VirtualCamera.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QtTest>

#include <functional>
#include <memory>
#include <unistd.h>

using TerminalLines::Line;

namespace
{

QByteArray lineOf(Line line, const QStringList &words = {})
{
    return TerminalLines::text(line, words).toLocal8Bit() + '\n';
}

QProcessEnvironment with(const QString &name, const QString &value)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (value.isNull())
        environment.remove(name);
    else
        environment.insert(name, value);
    return environment;
}

bool write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
           file.write(content) == content.size();
}

QString settingsFile()
{
    return QDir::homePath() + "/.config/Quillmark/Document Camera.conf";
}

/// How often the program prints each line.
QMap<QByteArray, int> linesOf(const QByteArray &output)
{
    QMap<QByteArray, int> lines;
    for (const QByteArray &line : output.split('\n')) {
        if (!line.isEmpty())
            ++lines[line];
    }
    return lines;
}

} // namespace

/// What the program says in the terminal, fault by fault, and with what code it ends.
class ProgramTerminalTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(ProgramUnderTest::waitForWindowManager());
        m_camera = std::make_unique<VirtualCamera>();
    }
    void cleanupTestCase() { m_camera.reset(); }
    void init()
    {
        m_camera->unplug();
        m_camera->faults().denyOpen = 0;
        m_camera->faults().claimBusy = 0;
        m_camera->faults().missingSize = 0;
        QFile::remove(settingsFile());
        QDir(settingsFile()).removeRecursively();
    }

    void theCommandLineNeedsNoDisplayAndNoHome_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("code");
        QTest::addColumn<QByteArray>("begin");
        QTest::newRow("version") << QStringList{"--version"} << 0
                                 << QByteArray("Document Camera 1.00\n");
        QTest::newRow("help") << QStringList{"--help"} << 0 << QByteArray("Usage: document-camera");
        QTest::newRow("unknown") << QStringList{"--nonsense"} << 2
                                 << QByteArray("document-camera: unknown option '--nonsense'");
        QTest::newRow("stray") << QStringList{"film.mp4"} << 2
                               << QByteArray("document-camera: unexpected argument 'film.mp4'");
    }

    void theCommandLineNeedsNoDisplayAndNoHome()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, code);
        QFETCH(QByteArray, begin);
        QProcessEnvironment environment = with("DISPLAY", {});
        const QString home = QDir::homePath() + "/untouched";
        QVERIFY(QDir().mkpath(home));
        environment.insert("HOME", home);
        environment.remove("XDG_CONFIG_HOME");
        ProgramUnderTest program;
        QVERIFY(program.start(environment, arguments));
        QVERIFY(program.waitForEnd());
        QCOMPARE(program.exitCode(), code);
        QVERIFY2(program.output().startsWith(begin), program.output().constData());
        QVERIFY(code == 0 || program.output().count('\n') == 1);
        QVERIFY(QDir(home).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    }

    void withoutADisplayItSaysSoAndLeaves_data()
    {
        QTest::addColumn<QString>("missing");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("tried");
        const QString variables = "DISPLAY=:4711, WAYLAND_DISPLAY is not set";
        const QString option = "-display :4712, WAYLAND_DISPLAY is not set";
        QTest::newRow("no server") << QString() << QStringList() << variables;
        QTest::newRow("no runtime folder") << "XDG_RUNTIME_DIR" << QStringList() << variables;
        QTest::newRow("option") << QString() << QStringList{"-display", ":4712"} << option;
        QTest::newRow("option with two dashes and without the variable")
            << "DISPLAY" << QStringList{"--display", ":4712"} << option;
    }

    void withoutADisplayItSaysSoAndLeaves()
    {
        QFETCH(QString, missing);
        QFETCH(QStringList, arguments);
        QFETCH(QString, tried);
        ProgramUnderTest program;
        QProcessEnvironment environment = with("DISPLAY", ":4711");
        environment.remove("QT_QPA_PLATFORM");
        environment.remove(missing);
        QVERIFY(program.start(environment, arguments));
        QVERIFY(program.waitForEnd());
        QCOMPARE(program.exitCode(), 1);
        QCOMPARE(program.output(), lineOf(Line::NoDisplay, {tried}));
    }

    void aRunWithoutFaultsIsSilent()
    {
        QVERIFY(m_camera->plug());
        ProgramUnderTest program;
        QVERIFY(program.start());
        QVERIFY(program.waitForWindow());
        QTRY_VERIFY_WITH_TIMEOUT(m_camera->statistics().framesSent > 3, 60000);
        QVERIFY(program.closeAndWait());
        QMap<QByteArray, int> lines = linesOf(program.output());
        // The camera library's own remarks on this camera.
        lines.remove("unsupported descriptor subtype VS_COLORFORMAT");
        lines.remove("attempt to claim already-claimed interface 1");
        QCOMPARE(lines.keys(), QList<QByteArray>{"DEVICE FOUND"});
        QCOMPARE(program.exitCode(), 0);
    }

    void aCameraThatMayNotBeOpenedIsExplained()
    {
        m_camera->faults().denyOpen = 1;
        QVERIFY(m_camera->plug());
        const QByteArray line = lineOf(Line::CameraNotPermitted, {node()});
        const QString said = runUntil("uvc_open() failed.", line, [this] {
            m_camera->unplug();
            m_camera->faults().denyOpen = 0;
            return m_camera->plug();
        });
        QVERIFY2(!said.startsWith("wrong"), qPrintable(said));
    }

    void aCameraThatDoesNotOpenIsExplained()
    {
        QVERIFY(m_camera->plug());
        // Opening a folder in its place fails with a reason of its own.
        const QString place = m_camera->root() + node();
        QVERIFY(QFile::rename(place, place + "-aside"));
        QVERIFY(QDir().mkdir(place));
        const QByteArray line = lineOf(Line::CameraNotOpened, {"I/O error"});
        const QString said = runUntil("uvc_open() failed.", line, [this, &place] {
            if (!QDir().rmdir(place) || !QFile::rename(place + "-aside", place))
                return false;
            m_camera->unplug();
            return m_camera->plug();
        });
        QVERIFY2(!said.startsWith("wrong"), qPrintable(said));
    }

    void theProgramThatHoldsTheCameraIsNamed()
    {
        QVERIFY(m_camera->plug());
        m_camera->faults().claimBusy = 1;
        QProcess holder;
        // The emulated bus is kept from a program without the USB library, the files behind it are
        // not.
        holder.start("sh",
                     {"-c", "exec 3<>" + m_camera->root() + node() + "; echo; exec sleep 60"});
        QVERIFY(holder.waitForReadyRead());
        const QString name = QString("sleep (process %1)").arg(holder.processId());
        // Others that hold it are named beside it: the emulated camera's own process.
        const QString form = TerminalLines::text(Line::CameraTaken);
        const QString said =
            runUntil("uvc_open() failed.", form.section("%1", 0, 0).toLatin1(), [this, &holder] {
                holder.kill();
                m_camera->faults().claimBusy = 0;
                return holder.waitForFinished();
            });
        QVERIFY2(said.contains(name), qPrintable(said));
        QVERIFY2(said.contains(form.section("%1", 1)), qPrintable(said));
    }

    void aSizeThatTheCameraRefusesIsNamed()
    {
        m_camera->faults().missingSize = 2;
        QVERIFY(m_camera->plug());
        const QString said = runUntil("uvc_get_stream_ctrl_format_size() failed.",
                                      lineOf(Line::SizeNotOffered, {"1280 x 720"}));
        QVERIFY2(!said.startsWith("wrong"), qPrintable(said));
        // Another resolution, as it is chosen in the settings.
        QVERIFY(write(settingsFile(), "[General]\nresolution=0\n"));
        ProgramUnderTest program;
        QVERIFY(program.start());
        QVERIFY2(livePicture(), program.output().constData());
    }

    void aSnapshotThatIsNotWrittenIsNamedOnce()
    {
        QVERIFY(write(settingsFile(), "[General]\nsnapshotPath=/proc\n"));
        ProgramUnderTest program;
        QVERIFY(program.start());
        QVERIFY(program.waitForWindow());
        program.pressKeys("ctrl+s");
        QVERIFY(program.waitForOutput("The snapshot /proc/"));
        QVERIFY2(program.output().contains(": make room there or choose"),
                 program.output().constData());
        QVERIFY(program.output().contains(
            TerminalLines::text(Line::SnapshotNotWritten).section("%1", 0, 0).toLatin1()));
        const int before = program.output().count("/proc/");
        program.pressKeys("ctrl+s");
        QVERIFY(QTest::qWaitFor([&] { return program.output().count("/proc/") > before; }, 60000));
        QVERIFY(program.closeAndWait());
        QCOMPARE(program.output().count("The snapshot /proc/"), 1);
    }

    void faultsOfTheMachineAreSaidAndSurvived_data()
    {
        QTest::addColumn<QString>("variable");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QByteArray>("line");
        const QString empty = QDir::homePath() + "/no-fonts.conf";
        QVERIFY(write(empty, "<fontconfig></fontconfig>"));
        QTest::newRow("no font") << "FONTCONFIG_FILE" << empty << lineOf(Line::NoFont);
        for (const char *scale : {"abc", "0", "-1", "1000", "nan"})
            QTest::addRow("scale %s", scale)
                << "QT_SCALE_FACTOR" << scale
                << lineOf(Line::VariableIgnored, {QString("QT_SCALE_FACTOR=") + scale});
        QTest::newRow("platform") << "QT_QPA_PLATFORM"
                                  << "nonsense"
                                  << lineOf(Line::VariableIgnored, {"QT_QPA_PLATFORM=nonsense"});
        QTest::newRow("locale") << "LC_ALL"
                                << "tlh_QO.UTF-8" << QByteArray();
    }

    void faultsOfTheMachineAreSaidAndSurvived()
    {
        QFETCH(QString, variable);
        QFETCH(QString, value);
        QFETCH(QByteArray, line);
        ProgramUnderTest program;
        QVERIFY(program.start(with(variable, value)));
        QVERIFY2(program.waitForWindow(), program.output().constData());
        QVERIFY(program.closeAndWait());
        QCOMPARE(program.exitCode(), 0);
        if (!line.isEmpty())
            QCOMPARE(program.output().count(line), 1);
    }

    void settingsThatCannotBeReadAreSaidAndLeftAlone_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<bool>("readable");
        const QByteArray unreadable = lineOf(Line::SettingsUnreadable, {settingsFile()});
        QTest::newRow("binary") << QByteArray("\x7f\x45\x4c\x46\0\x01\xff[[[\n=\n]]", 16)
                                << unreadable << true;
        QTest::newRow("folder") << QByteArray() << unreadable << true;
        QTest::newRow("forbidden")
            << QByteArray("[General]\nresolution=1\n") << unreadable << false;
        QTest::newRow("out of range")
            << QByteArray("[General]\nresolution=99\nsnapshotMode=1\n")
            << lineOf(Line::SettingsOutOfRange, {settingsFile(), "resolution=99"}) << true;
    }

    void settingsThatCannotBeReadAreSaidAndLeftAlone()
    {
        QFETCH(QByteArray, content);
        const QString path = settingsFile();
        QFETCH(QByteArray, line);
        QFETCH(bool, readable);
        QVERIFY(content.isEmpty() ? QDir().mkpath(path) : write(path, content));
        QFile file(path);
        QVERIFY(readable || file.setPermissions({}));
        // Permissions do not count for the system's user, unless that is taken from it.
        QStringList asOthers;
        if (!readable && geteuid() == 0)
            asOthers = QStringList{"setpriv", "--bounding-set=-dac_override,-dac_read_search"};
        ProgramUnderTest program;
        QVERIFY(program.start(QProcessEnvironment::systemEnvironment(), {}, asOthers));
        QVERIFY(program.waitForWindow());
        QVERIFY(program.closeAndWait());
        QCOMPARE(program.exitCode(), 0);
        QCOMPARE(program.output().count(line), 1);
        QCOMPARE(program.output().count("The settings"), 1);
        QVERIFY(readable || file.setPermissions(QFile::ReadOwner));
        QVERIFY(content.isEmpty() ? QFileInfo(path).isDir()
                                  : file.open(QIODevice::ReadOnly) && file.readAll() == content);
        file.close();
        QVERIFY(QFile::remove(path) || QDir(path).removeRecursively());
        ProgramUnderTest after;
        QVERIFY(after.start());
        QVERIFY(after.waitForWindow());
        QVERIFY(after.closeAndWait());
        QCOMPARE(after.output().count("The settings"), 0);
    }

private:
    /// Whether the camera's frames go to the program.
    bool livePicture()
    {
        const quint64 before = quint64(m_camera->statistics().framesSent);
        return QTest::qWaitFor(
            [this, before] { return quint64(m_camera->statistics().framesSent) > before + 3; },
            60000);
    }

    /// What the program prints with that camera until it has printed `line`; then it is closed.
    /// With a remedy, the live picture must come once that has been followed. `line` must be
    /// printed once, and after `always`, which every version has printed. Otherwise the text begins
    /// with "wrong".
    QString runUntil(const QByteArray &always, const QByteArray &line,
                     const std::function<bool()> &remedy = {})
    {
        ProgramUnderTest program;
        if (!program.start() || !program.waitForWindow() || !program.waitForOutput(line))
            return "wrong: " + program.output();
        if (remedy && (!remedy() || !livePicture()))
            return "wrong: no live picture: " + program.output();
        program.closeAndWait();
        const QByteArray said = program.output();
        const int at = said.indexOf(always);
        if (said.count(line) != 1 || at < 0 || said.indexOf(line) < at)
            return "wrong: " + said;
        return said;
    }

    /// The camera's device file, as programs see it.
    QString node() const
    {
        const QDir bus(m_camera->root() + "/dev/bus/usb/001");
        return "/dev/bus/usb/001/" + bus.entryList(QDir::System | QDir::Files).value(0);
    }

    std::unique_ptr<VirtualCamera> m_camera;
};

REGISTER_TEST(ProgramTerminalTest)
#include "tst_program_terminal.moc"
