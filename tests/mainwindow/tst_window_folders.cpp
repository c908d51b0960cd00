#include "tests/Timeout.h"
#include "tests/mainwindow/WindowProbe.h"

#include "canvas/ImageCanvas.h"
#include "settings/Config.h"
#include "sources/LiveSource.h"
#include "tools/virtualcamera/VirtualCamera.h"

#include <QDir>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QTemporaryDir>

#include <cstdio>
#include <memory>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

using namespace WindowProbe;

namespace
{

/// A disk of its own under a folder, read-only or of that size, for as long as it lives.
class Disk
{
public:
    Disk(const QString &folder, const QByteArray &size, bool readOnly)
        : m_folder(QFile::encodeName(folder))
    {
        m_mounted = QDir().mkpath(folder) &&
                    mount("none", m_folder, "tmpfs", readOnly ? MS_RDONLY : 0, "size=" + size) == 0;
    }
    ~Disk()
    {
        if (m_mounted)
            umount2(m_folder, MNT_DETACH);
    }
    Disk(const Disk &) = delete;
    Disk &operator=(const Disk &) = delete;

    [[nodiscard]] bool mounted() const { return m_mounted; }

private:
    QByteArray m_folder;
    bool m_mounted = false;
};

/// Mounts that nobody else sees, also for those who may not mount.
void becomeMounter()
{
    const uid_t user = getuid();
    if (unshare(CLONE_NEWNS) != 0) {
        if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
            return;
        if (FILE *map = std::fopen("/proc/self/uid_map", "w")) {
            std::fprintf(map, "0 %u 1\n", user);
            std::fclose(map);
        }
    }
    mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
}

QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files);
}

} // namespace

/// What the window does when the folders of snapshots and recordings refuse.
class WindowFoldersTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();
    void aFileIsNoFolder();
    void aSnapshotThatCannotBeWrittenLeavesNothing_data();
    void aSnapshotThatCannotBeWrittenLeavesNothing();
    void aSeriesOutlivesAFullDisk();
    void aRecordingThatCannotBeWrittenSaysSo_data();
    void aRecordingThatCannotBeWrittenSaysSo();
    void aRecordingSaysThatItsFolderIsGone();

private:
    /// Waits for the message box of a failed recording; its text, or an empty one.
    QString messageAfter(const std::function<void()> &action);
    [[nodiscard]] QList<ImageButton *> recordButtons() const;

    std::unique_ptr<VirtualCamera> m_camera;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<MainWindow> m_window;
};

void WindowFoldersTest::initTestCase()
{
    beOnOneself();
    m_camera = std::make_unique<VirtualCamera>();
    QVERIFY(m_camera->plug());
}

void WindowFoldersTest::init()
{
    usualSettings();
    m_folder = std::make_unique<QTemporaryDir>();
    m_window = std::make_unique<MainWindow>();
    m_window->show();
}

void WindowFoldersTest::cleanup()
{
    m_window.reset();
    m_folder.reset();
}

void WindowFoldersTest::cleanupTestCase()
{
    m_camera.reset();
}

QString WindowFoldersTest::messageAfter(const std::function<void()> &action)
{
    QString title;
    QString text;
    whenAsked<QMessageBox>(m_window.get(), [&](QMessageBox *box) {
        title = box->windowTitle();
        text = box->text();
        box->accept();
    });
    action();
    if (!QTest::qWaitFor([&text] { return !text.isEmpty(); }, TIMEOUT_MS) || title != "Error")
        return {};
    return text;
}

QList<ImageButton *> WindowFoldersTest::recordButtons() const
{
    QList<ImageButton *> buttons;
    for (ImageButton *each : m_window->findChildren<ImageButton *>()) {
        if (each->accessibleName() == "Record video")
            buttons << each;
    }
    return buttons;
}

void WindowFoldersTest::aFileIsNoFolder()
{
    QFile file(m_folder->filePath("plain"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    Config::setSnapshotPath(file.fileName());
    Config::setRecordPath(file.fileName());
    for (const Command which : {Command::Snapshot, Command::Record}) {
        QCOMPARE(messageAfter([&] { m_window->button(which)->click(); }),
                 QString("Please select a folder first."));
        QVERIFY(!m_window->button(which)->isChecked());
    }
    QVERIFY(!m_window->recording());
}

void WindowFoldersTest::aSnapshotThatCannotBeWrittenLeavesNothing_data()
{
    QTest::addColumn<QByteArray>("size");
    QTest::addColumn<bool>("readOnly");
    QTest::newRow("read-only") << QByteArray("1m") << true;
    QTest::newRow("full") << QByteArray("4k") << false;
}

void WindowFoldersTest::aSnapshotThatCannotBeWrittenLeavesNothing()
{
    QFETCH(QByteArray, size);
    QFETCH(bool, readOnly);
    const QString refusing = m_folder->filePath("refusing");
    const Disk disk(refusing, size, readOnly);
    if (!disk.mounted())
        QSKIP("this system lets nobody mount a disk");
    const QString good = m_folder->filePath("good");
    QVERIFY(QDir().mkpath(good));
    enter(*m_window, 3);
    ImageCanvas *board = m_window->currentCanvas();
    const QImage before = board->grab().toImage();
    Config::setSnapshotPath(refusing);
    ImageButton *button = m_window->button(Command::Snapshot);
    button->click();
    // The picture has been tried when the indication is shown, which a good one gets too.
    QTRY_VERIFY_WITH_TIMEOUT(board->grab().toImage() != before, TIMEOUT_MS);
    QCOMPARE(filesIn(refusing), QStringList());
    QVERIFY(!button->isCheckable());
    QVERIFY(!QApplication::activeModalWidget());
    // Nothing hangs on it: the next picture goes to another folder.
    Config::setSnapshotPath(good);
    button->click();
    QTRY_COMPARE_WITH_TIMEOUT(filesIn(good).size(), 1, TIMEOUT_MS);
}

void WindowFoldersTest::aSeriesOutlivesAFullDisk()
{
    const QString folder = m_folder->filePath("series");
    auto disk = std::make_unique<Disk>(folder, "4k", false);
    if (!disk->mounted())
        QSKIP("this system lets nobody mount a disk");
    Config::setSnapshotPath(folder);
    Config::setSnapshotMode(CanvasModes::Continuous);
    Config::setSnapshotInterval(1);
    enter(*m_window, 3);
    ImageCanvas *board = m_window->currentCanvas();
    const QImage before = board->grab().toImage();
    ImageButton *button = m_window->button(Command::Snapshot);
    button->click();
    QTRY_VERIFY_WITH_TIMEOUT(board->grab().toImage() != before, TIMEOUT_MS);
    QVERIFY(board->seriesArmed());
    QCOMPARE(filesIn(folder), QStringList());
    // The disk is taken away and the folder has room again.
    disk.reset();
    QTRY_VERIFY_WITH_TIMEOUT(!filesIn(folder).isEmpty(), TIMEOUT_MS);
    QVERIFY(button->isChecked());
    button->click();
    QVERIFY(!button->isChecked());
    QVERIFY(!board->seriesArmed());
}

void WindowFoldersTest::aRecordingThatCannotBeWrittenSaysSo_data()
{
    QTest::addColumn<QByteArray>("size");
    QTest::addColumn<bool>("readOnly");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("read-only") << QByteArray("1m") << true << "The movie file cannot be created.";
    QTest::newRow("full") << QByteArray("1m") << false
                          << "The recording was stopped because the disk is full.";
}

void WindowFoldersTest::aRecordingThatCannotBeWrittenSaysSo()
{
    QFETCH(QByteArray, size);
    QFETCH(bool, readOnly);
    QFETCH(QString, sentence);
    const QString folder = m_folder->filePath("refusing");
    const Disk disk(folder, size, readOnly);
    if (!disk.mounted())
        QSKIP("this system lets nobody mount a disk");
    QTRY_VERIFY_WITH_TIMEOUT(m_window->liveSource()->running(), TIMEOUT_MS);
    Config::setRecordPath(folder);
    for (ImageButton *record : recordButtons()) {
        QCOMPARE(messageAfter([record] { record->click(); }), sentence);
        QVERIFY(!m_window->recording());
        for (const ImageButton *each : recordButtons())
            QVERIFY(!each->isChecked());
    }
    // The window serves as before.
    QElapsedTimer clock;
    clock.start();
    enter(*m_window, 1);
    enter(*m_window, 0);
    QCOMPARE(m_window->currentMode(), 0);
    QVERIFY(clock.elapsed() < TIMEOUT_MS / 4);
    QTRY_VERIFY_WITH_TIMEOUT(m_window->liveSource()->running(), TIMEOUT_MS);
}

void WindowFoldersTest::aRecordingSaysThatItsFolderIsGone()
{
    const QString folder = m_folder->filePath("passing");
    QVERIFY(QDir().mkpath(folder));
    QTRY_VERIFY_WITH_TIMEOUT(m_window->liveSource()->running(), TIMEOUT_MS);
    Config::setRecordPath(folder);
    m_window->button(Command::Record)->click();
    QTRY_VERIFY_WITH_TIMEOUT(!filesIn(folder).isEmpty(), TIMEOUT_MS);
    QCOMPARE(messageAfter([&] { QVERIFY(QDir(folder).removeRecursively()); }),
             QString("The recording was stopped because its folder no longer exists."));
    QVERIFY(!m_window->recording());
    QVERIFY(!m_window->button(Command::Record)->isChecked());
}

int main(int argc, char **argv)
{
    // Before any thread: a process with threads keeps the mounts it has.
    becomeMounter();
    QApplication application(argc, argv);
    WindowFoldersTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_window_folders.moc"
