#include "tests/Timeout.h"
#include "tests/mainwindow/WindowProbe.h"

#include "canvas/ImageCanvas.h"
#include "mainwindow/bars/ThumbnailWidget.h"
#include "settings/Config.h"
#include "settings/StoredSettings.h"
#include "sources/LiveSource.h"
#include "sources/PhotographSource.h"
#include "sources/threads/DetachedThreads.h"
#include "tests/fakes/HangingFolder.h"
#include "tools/virtualcamera/VirtualCamera.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTextEdit>

#include <functional>
#include <memory>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace WindowProbe;

namespace
{

/// What "at once" may take beside the compilers of a busy machine.
constexpr int CLOSING_MS = 10000;
/// Two seconds, and as much again for the compilers; a hung disk alone was waited for ten seconds.
constexpr int HUNG_CLOSING_MS = 6000;

/// Brings a window into a state of which it is then closed.
using Arrange = void (*)(MainWindow &window, VirtualCamera &camera);

void waitUntil(const std::function<bool()> &condition, const char *otherwise)
{
    if (!QTest::qWaitFor(condition, TIMEOUT_MS))
        qFatal("%s", otherwise);
}

void waitForCamera(const MainWindow &window)
{
    waitUntil([&] { return window.liveSource()->running(); }, "the camera does not come");
}

/// Waits until the canvas shows another picture than now.
void waitForPicture(const MainWindow &window)
{
    const QImage before = window.currentCanvas()->currentImage();
    waitUntil([&] { return window.currentCanvas()->currentImage() != before; },
              "the picture stands still");
}

void nothing(MainWindow &, VirtualCamera &) {}

void streaming(MainWindow &window, VirtualCamera &)
{
    waitForCamera(window);
}

void recording(MainWindow &window, VirtualCamera &)
{
    const QString folder = QDir::tempPath();
    Config::setRecordPath(folder);
    waitForCamera(window);
    window.button(Command::Record)->click();
    const auto recorded = [&folder] {
        const QFileInfoList movies = QDir(folder).entryInfoList({"*.mov"}, QDir::Files);
        return !movies.isEmpty() && movies.first().size() > 50000;
    };
    waitUntil(recorded, "nothing is recorded");
}

/// The movie that is being written stands on a share that has stopped answering.
void recordingOntoAHungShare(MainWindow &window, VirtualCamera &camera)
{
    recording(window, camera);
    const QString folder = QDir::tempPath();
    static HangingFolder share(folder, HangingFolder::Syncing);
    waitUntil([] { return share.waiting() > 0; }, "the share is not used");
}

void unplugged(MainWindow &window, VirtualCamera &camera)
{
    waitForCamera(window);
    camera.unplug();
    window.zoomInStart();
}

void unpluggedWhileRecording(MainWindow &window, VirtualCamera &camera)
{
    recording(window, camera);
    camera.unplugDirty();
}

void opening(MainWindow &window, VirtualCamera &)
{
    const QString film = QDir::tempPath() + "/film.mp4";
    QProcess::execute("ffmpeg",
                      {"-v", "error", "-y", "-f", "lavfi", "-i", "testsrc=size=320x240:rate=30",
                       "-f", "lavfi", "-i", "sine", "-t", "5", film});
    enter(window, 1);
    chooseFile(&window, film);
    button(window, "Open film")->click();
}

void playing(MainWindow &window, VirtualCamera &camera)
{
    enter(window, 1);
    const QSize before = window.currentCanvas()->pictureSize();
    opening(window, camera);
    waitUntil([&] { return window.currentCanvas()->pictureSize() != before; },
              "the film does not play");
}

void winding(MainWindow &window, VirtualCamera &camera)
{
    playing(window, camera);
    button(window, "Faster")->click();
    waitForPicture(window);
}

/// Pictures enough to be loading still when the window closes.
void thumbnails(MainWindow &window, VirtualCamera &)
{
    const QString first = QDir::tempPath() + "/picture-000.jpg";
    QImage image(4000, 3000, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    image.save(first);
    for (int i = 1; i < 300; ++i) {
        QFile::link(first, QDir::tempPath() + QString("/picture-%1.jpg").arg(i, 3, 10, QChar('0')));
    }
    enter(window, 2);
    chooseFile(&window, first);
    button(window, "Open folder of photographs")->click();
    button(window, "Thumbnails")->click();
}

void sliding(MainWindow &window, VirtualCamera &camera)
{
    thumbnails(window, camera);
    button(window, "Slideshow")->click();
    const auto *photographs = window.findChild<PhotographSource *>();
    waitUntil([&] { return photographs->current() > 0; }, "the slideshow does not go on");
}

void typing(MainWindow &window, VirtualCamera &)
{
    enter(window, 3);
    window.button(Command::Text)->click();
    QTest::mouseClick(window.currentCanvas(), Qt::LeftButton, {}, QPoint(300, 300));
    auto *editor = window.currentCanvas()->findChild<QTextEdit *>();
    if (!editor || !editor->isVisible())
        qFatal("no text editor");
    QTest::keyClicks(editor, "half a word");
}

void waitUntilShown(QWidget *popup)
{
    if (!QTest::qWaitForWindowExposed(popup, TIMEOUT_MS))
        qFatal("the pop-up is not shown");
}

void popup(MainWindow &window, VirtualCamera &)
{
    window.textHold();
    waitUntilShown(window.currentToolWindow());
}

void settings(MainWindow &window, VirtualCamera &)
{
    window.settings();
    waitUntilShown(window.currentToolWindow());
}

void hiddenPopup(MainWindow &window, VirtualCamera &)
{
    window.settings();
    window.currentToolWindow()->close();
}

void series(MainWindow &window, VirtualCamera &)
{
    Config::setSnapshotPath(QDir::tempPath());
    Config::setSnapshotMode(CanvasModes::Continuous);
    Config::setSnapshotInterval(0);
    enter(window, 3);
    window.button(Command::Snapshot)->click();
    waitUntil([] { return !QDir(QDir::tempPath()).entryList({"*.jpg"}).isEmpty(); },
              "no snapshot is saved");
}

void zooming(MainWindow &window, VirtualCamera &)
{
    waitForCamera(window);
    QTest::mousePress(window.button(Command::ZoomIn), Qt::LeftButton);
}

void fullScreen(MainWindow &window, VirtualCamera &)
{
    const QSize before = window.size();
    window.toggleFullScreen();
    waitUntil([&] { return window.isFullScreen() && window.size() != before; },
              "the window does not fill the screen");
}

const QMap<QString, Arrange> &states()
{
    static const QMap<QString, Arrange> all{
        {"nothing", nothing},
        {"streaming", streaming},
        {"recording", recording},
        {"recording onto a hung share", recordingOntoAHungShare},
        {"unplugged", unplugged},
        {"unplugged while recording", unpluggedWhileRecording},
        {"opening", opening},
        {"playing", playing},
        {"winding", winding},
        {"thumbnails", thumbnails},
        {"sliding", sliding},
        {"typing", typing},
        {"popup", popup},
        {"settings", settings},
        {"hidden popup", hiddenPopup},
        {"series", series},
        {"zooming", zooming},
        {"full screen", fullScreen},
    };
    return all;
}

/// The program as main() runs it, closed by its user in that state.
int runAndClose(int argc, char **argv, const QString &state)
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QApplication application(argc, argv);
    StoredSettings::nameFiles();
    VirtualCamera camera;
    if (!camera.plug())
        return 3;
    MainWindow window;
    window.show();
    QTimer::singleShot(0, &window, [&] {
        states()[state](window, camera);
        fputs("closing\n", stdout);
        fflush(stdout);
        window.close();
    });
    return QApplication::exec();
}

/// A socket that takes connections and never answers.
class HangingServer
{
public:
    explicit HangingServer(const QByteArray &path)
        : m_socket(socket(AF_UNIX, SOCK_STREAM, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, path.constData(), sizeof address.sun_path);
        m_listens = bind(m_socket, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0 &&
                    listen(m_socket, 5) == 0;
    }
    ~HangingServer() { close(m_socket); }
    HangingServer(const HangingServer &) = delete;
    HangingServer &operator=(const HangingServer &) = delete;

    [[nodiscard]] bool listens() const { return m_listens; }
    [[nodiscard]] bool wasAsked() const
    {
        pollfd entry{m_socket, POLLIN, 0};
        return poll(&entry, 1, 0) > 0;
    }

private:
    int m_socket;
    bool m_listens = false;
};

} // namespace

/// Closes the window in every state; each time in a process of its own, whose end counts.
class ClosingTest : public QObject
{
    Q_OBJECT

private slots:
    void closingEndsTheProcess_data();
    void closingEndsTheProcess();
    void aHangingPrintServerDoesNotHoldUpTheStart();
    void aHangingSoundServerDoesNotHoldUpTheEnd();
};

void ClosingTest::closingEndsTheProcess_data()
{
    QTest::addColumn<QString>("state");
    for (const QString &state : states().keys())
        QTest::newRow(qPrintable(state)) << state;
}

void ClosingTest::closingEndsTheProcess()
{
    QFETCH(QString, state);
    const QTemporaryDir folder;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("TMPDIR", folder.path());
    environment.insert("XDG_CONFIG_HOME", folder.path() + "/config");
    QProcess child;
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(QCoreApplication::applicationFilePath(), {"--close", state});
    QByteArray output;
    while (!output.contains("closing\n")) {
        QVERIFY2(child.waitForReadyRead(TIMEOUT_MS), output.constData());
        output += child.readAll();
    }
    QElapsedTimer clock;
    clock.start();
    const int bound = state.contains("hung") ? HUNG_CLOSING_MS : CLOSING_MS;
    QVERIFY2(child.waitForFinished(bound), output.constData());
    output += child.readAll();
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QVERIFY2(child.exitCode() == 0, output.constData());
    qInfo("%lld ms", clock.elapsed());
}

void ClosingTest::aHangingPrintServerDoesNotHoldUpTheStart()
{
    const QTemporaryDir folder;
    const QByteArray path = QFile::encodeName(folder.filePath("cups.sock"));
    const HangingServer server(path);
    QVERIFY(server.listens());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("CUPS_SERVER", path);
    QProcess child;
    child.setProcessEnvironment(environment);
    QSignalSpy finished(&child, SIGNAL(finished(int, QProcess::ExitStatus)));
    child.start(QCoreApplication::applicationFilePath(), {"--close", "nothing"});
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, TIMEOUT_MS / 2);
    QCOMPARE(child.exitCode(), 0);
    QVERIFY(!server.wasAsked());
}

void ClosingTest::aHangingSoundServerDoesNotHoldUpTheEnd()
{
    const QTemporaryDir folder;
    const QByteArray path = QFile::encodeName(folder.filePath("pulse.sock"));
    const HangingServer server(path);
    QVERIFY(server.listens());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("TMPDIR", folder.path());
    environment.insert("XDG_CONFIG_HOME", folder.path() + "/config");
    environment.insert("PULSE_SERVER", "unix:" + path);
    QProcess child;
    child.setProcessEnvironment(environment);
    // Once it plays, the thread that waits for the server has been left behind.
    child.start(QCoreApplication::applicationFilePath(), {"--close", "playing"});
    QByteArray output;
    while (!output.contains("closing\n")) {
        QVERIFY2(child.waitForReadyRead(TIMEOUT_MS), output.constData());
        output += child.readAll();
    }
    QVERIFY(server.wasAsked());
    QElapsedTimer clock;
    clock.start();
    QVERIFY(child.waitForFinished(CLOSING_MS));
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QCOMPARE(child.exitCode(), 0);
    qInfo("%lld ms", clock.elapsed());
}

int main(int argc, char **argv)
{
    if (argc == 3 && qstrcmp(argv[1], "--close") == 0)
        DetachedThreads::exitProcess(runAndClose(argc, argv, QString::fromLocal8Bit(argv[2])),
                                     std::chrono::milliseconds(200));
    QCoreApplication application(argc, argv);
    ClosingTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_closing.moc"
