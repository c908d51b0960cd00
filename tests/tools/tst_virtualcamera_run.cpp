#include "tests/TestProgram.h"
#include "tests/Timeout.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <memory>

/// The runner with a program that uses the camera, as two processes.
class VirtualCameraRunTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void programStreams_data();
    void programStreams();
    void exitCodeComesThrough();
    void refusesWhatItCannotDo_data();
    void refusesWhatItCannotDo();
    void scriptPlugsAndUnplugs();
    void obeysCommands();
    void passesSignalsOnAndCleansUp();
    void sweepsUpAfterAKilledRunner();
    void knowsARealCamera();

private:
    [[nodiscard]] std::unique_ptr<QProcess> start(const QStringList &options,
                                                  const QStringList &program);
    [[nodiscard]] QStringList leftovers() const;

    QTemporaryDir m_folder;
};

namespace
{

const QString BIN = QStringLiteral(BINARY_DIR);

/// Reads lines from the program until that one comes.
bool waitForLine(QProcess &process, const QByteArray &line)
{
    do {
        while (process.canReadLine()) {
            if (process.readLine().trimmed() == line)
                return true;
        }
    } while (process.waitForReadyRead(20000));
    return false;
}

int finish(QProcess &process)
{
    return process.waitForFinished(30000) && process.exitStatus() == QProcess::NormalExit
               ? process.exitCode()
               : -1;
}

} // namespace

void VirtualCameraRunTest::initTestCase()
{
    QVERIFY(m_folder.isValid());
}

std::unique_ptr<QProcess> VirtualCameraRunTest::start(const QStringList &options,
                                                      const QStringList &program)
{
    auto process = std::make_unique<QProcess>();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("TMPDIR", m_folder.path());
    process->setProcessEnvironment(environment);
    process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process->start(BIN + "/virtualcamera-run", QStringList(options) << "--die-with-parent"
                                                                    << "--" << program);
    process->waitForStarted();
    return process;
}

QStringList VirtualCameraRunTest::leftovers() const
{
    return QDir(m_folder.path()).entryList({"umockdev.*"}, QDir::Dirs);
}

void VirtualCameraRunTest::programStreams_data()
{
    QTest::addColumn<QString>("transport");
    QTest::newRow("bulk") << "bulk";
    QTest::newRow("isochronous") << "iso";
}

void VirtualCameraRunTest::programStreams()
{
    QFETCH(QString, transport);
    // Slow enough that libuvc, which keeps one frame, loses none on a machine that is busy.
    const auto run =
        start({"--transport", transport, "--fps", "3"}, {BIN + "/uvc_probe", "frames", "6"});
    QCOMPARE(finish(*run), 0);
    const QList<QByteArray> lines = run->readAllStandardOutput().trimmed().split('\n');
    QCOMPARE(lines.size(), 6);
    for (int i = 1; i < lines.size(); ++i)
        QCOMPARE(lines[i].toInt(), lines[i - 1].toInt() + 1);
    QVERIFY(leftovers().isEmpty());
}

void VirtualCameraRunTest::exitCodeComesThrough()
{
    QCOMPARE(finish(*start({}, {BIN + "/uvc_probe", "exit", "7"})), 7);
    QCOMPARE(finish(*start({}, {"/nonexistent/program"})), 127);
}

void VirtualCameraRunTest::refusesWhatItCannotDo_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::newRow("option") << QStringList{"--nonsense", "1"};
    QTest::newRow("fault") << QStringList{"--fault", "nonsense"};
    QTest::newRow("script") << QStringList{"--script", "plug"};
    QTest::newRow("pace") << QStringList{"--fps", "0"};
    QTest::newRow("make") << QStringList{"--make", "1d6b"};
    QTest::newRow("format") << QStringList{"--formats", "h264:640x480"};
    QTest::newRow("transport") << QStringList{"--transport", "carrier pigeon"};
}

void VirtualCameraRunTest::refusesWhatItCannotDo()
{
    QFETCH(QStringList, options);
    QCOMPARE(finish(*start(options, {"true"})), 2);
}

void VirtualCameraRunTest::scriptPlugsAndUnplugs()
{
    const auto run = start({"--script", "0.1:plug;0.4:unplug;0.7:plug;1:unplug dirty"},
                           {BIN + "/uvc_probe", "watch"});
    for (int round = 0; round < 2; ++round) {
        QVERIFY(waitForLine(*run, "found"));
        QVERIFY(waitForLine(*run, "gone"));
    }
    run->terminate();
    QCOMPARE(finish(*run), 128 + SIGTERM);
}

void VirtualCameraRunTest::obeysCommands()
{
    const QString fifo = m_folder.filePath("commands"), answer = m_folder.filePath("stats");
    const auto run = start({"--commands", fifo, "--unplugged"}, {BIN + "/uvc_probe", "watch"});
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(fifo), TIMEOUT_MS);
    QFile commands(fifo);
    QVERIFY(commands.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    commands.write("plug\n");
    QVERIFY(waitForLine(*run, "found"));
    commands.write("parameter 0x7000001D 9\nnonsense\nstats " + answer.toLocal8Bit() + "\n");
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(answer), TIMEOUT_MS);
    QFile file(answer);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QJsonObject stats = QJsonDocument::fromJson(file.readAll()).object();
    QCOMPARE(stats["plugged"].toBool(), true);
    QCOMPARE(stats["brightness"].toInt(), 9);
    commands.write("unplug\n");
    QVERIFY(waitForLine(*run, "gone"));
    commands.write("quit\n");
    QCOMPARE(finish(*run), 128 + SIGTERM);
}

void VirtualCameraRunTest::passesSignalsOnAndCleansUp()
{
    const auto run = start({}, {BIN + "/uvc_probe", "watch"});
    QVERIFY(waitForLine(*run, "found"));
    QCOMPARE(leftovers().size(), 1);
    ::kill(static_cast<pid_t>(run->processId()), SIGINT);
    QCOMPARE(finish(*run), 128 + SIGINT);
    QVERIFY(leftovers().isEmpty());
}

void VirtualCameraRunTest::sweepsUpAfterAKilledRunner()
{
    const auto run = start({}, {BIN + "/uvc_probe", "watch"});
    QVERIFY(waitForLine(*run, "found"));
    run->kill();
    QVERIFY(run->waitForFinished(30000));
    QCOMPARE(leftovers().size(), 1);
    QCOMPARE(finish(*start({}, {"true"})), 0);
    QVERIFY(leftovers().isEmpty());
}

void VirtualCameraRunTest::knowsARealCamera()
{
    const auto write = [this](const QString &path, const QByteArray &text) {
        QDir(m_folder.path()).mkpath(QFileInfo(path).path());
        QFile file(m_folder.filePath(path));
        return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
    };
    const QString script = QStringLiteral(VIRTUALCAMERA_DIR) + "/camera-on-bus";
    const QString bus = m_folder.filePath("bus");
    QCOMPARE(QProcess::execute(script, {bus}), 1);
    QVERIFY(write("bus/1-1/idVendor", "04fc\n") && write("bus/1-1/idProduct", "1234\n"));
    QVERIFY(write("bus/1-2/idVendor", "046d\n") && write("bus/1-2/idProduct", "6330\n"));
    QCOMPARE(QProcess::execute(script, {bus}), 1);
    QVERIFY(write("bus/2-1/idVendor", "04fc\n") && write("bus/2-1/idProduct", "6330\n"));
    QCOMPARE(QProcess::execute(script, {bus}), 0);
}

REGISTER_CORE_TEST(VirtualCameraRunTest)
#include "tst_virtualcamera_run.moc"
