#include "tests/TestProgram.h"
#include "tests/Timeout.h"
#include "tests/fakes/HangingFolder.h"
#include "widgets/FileDialogs.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPointer>
#include <QSettings>
#include <QTemporaryDir>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace
{

/// A second for each of two threads, and what a busy machine adds; a silent drive is for ever.
constexpr int BOUND_MS = 8000;

/// A drive that falls silent, and comes back when the test would otherwise hang for ever.
class SilentDrive
{
public:
    explicit SilentDrive(const QString &folder,
                         HangingFolder::Calls calls = HangingFolder::Everything)
        : m_drive(std::make_unique<HangingFolder>(folder, calls))
        , m_rescue([this] {
            std::unique_lock lock(m_mutex);
            if (!m_changed.wait_for(lock, std::chrono::milliseconds(TIMEOUT_MS / 2),
                                    [this] { return m_isOver; }))
                m_drive.reset();
        })
    {
    }
    ~SilentDrive() { comeBack(); }
    SilentDrive(const SilentDrive &) = delete;
    SilentDrive &operator=(const SilentDrive &) = delete;

    void comeBack()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_isOver = true;
        }
        m_changed.notify_all();
        if (m_rescue.joinable())
            m_rescue.join();
        m_drive.reset();
    }

    [[nodiscard]] bool isAsked() const { return m_drive->waiting() > 0; }

private:
    std::unique_ptr<HangingFolder> m_drive;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isOver = false;
    std::thread m_rescue;
};

/// The longest time in which the GUI thread did nothing else.
class Stall : public QObject
{
public:
    Stall()
    {
        m_clock.start();
        startTimer(5);
    }

    [[nodiscard]] qint64 longestMs()
    {
        look();
        return m_longestMs;
    }

protected:
    void timerEvent(QTimerEvent *) override { look(); }

private:
    void look() { m_longestMs = std::max(m_longestMs, m_clock.restart()); }

    QElapsedTimer m_clock;
    qint64 m_longestMs = 0;
};

template <typename Dialog>
Dialog *modal()
{
    return qobject_cast<Dialog *>(QApplication::activeModalWidget());
}

} // namespace

/// The file dialogs beside drives that answer, that do not, and that do so again.
class FileDialogsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void aTypedFileIsChosen();
    void aTypedPathOfASilentDriveIsNotFound();
    void aSilentFolderAtTheStartGivesWayToHome();
    void aSilentNeighbourHoldsNobody();
    void placesAtTheSideMayBeSilent();
    void aListThatNeverComesHoldsNobody();
    void aDriveThatIsBackIsFound();
    void aFileOfASilentDriveIsNotThere();
    void thePlacesAtTheSideShowTheirNames();

private:
    /// Opens the dialog for files in that folder, which `use` is handed once it is shown.
    QString opened(const QString &folder, const std::function<void(QFileDialog *)> &use);
    static void type(QFileDialog *dialog, const QString &text);

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_drive;
    /// What the dialog has refused since it was opened.
    QStringList m_refusals;
    QPointer<QFileDialog> m_dialog;
};

void FileDialogsTest::initTestCase()
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void FileDialogsTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    // A place of its own each time: one that was silent is only asked again when it has answered.
    m_drive = m_folder->filePath("drive");
    QVERIFY(QDir().mkpath(m_drive + "/films"));
    for (const QString &path : {m_folder->filePath("near.mp4"), m_drive + "/films/far.mp4"}) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
}

void FileDialogsTest::cleanup()
{
    // Nothing is left behind.
    QTRY_VERIFY_WITH_TIMEOUT(!m_dialog, TIMEOUT_MS);
    m_folder.reset();
}

QString FileDialogsTest::opened(const QString &folder,
                                const std::function<void(QFileDialog *)> &use)
{
    QTimer shown;
    connect(&shown, &QTimer::timeout, [&] {
        auto *dialog = modal<QFileDialog>();
        if (!dialog)
            return;
        shown.stop();
        m_dialog = dialog;
        use(dialog);
        // A check that has failed leaves it open.
        if (m_dialog && m_dialog->isVisible())
            m_dialog->reject();
    });
    shown.start(5);
    // Left standing, a refusal would hold the test for ever.
    m_refusals.clear();
    QTimer refused;
    connect(&refused, &QTimer::timeout, [this] {
        if (auto *box = modal<QMessageBox>()) {
            m_refusals.append(box->text());
            box->accept();
        }
    });
    refused.start(5);
    return FileDialogs::openFile(nullptr, folder, "Films (*.mp4)");
}

void FileDialogsTest::type(QFileDialog *dialog, const QString &text)
{
    auto *name = dialog->findChild<QLineEdit *>("fileNameEdit");
    name->setFocus();
    QTest::keyClicks(name, text);
}

void FileDialogsTest::aTypedFileIsChosen()
{
    QPointer<QFileDialog> dialog;
    const QString chosen = opened(m_folder->path(), [&](QFileDialog *shown) {
        dialog = shown;
        QTRY_VERIFY_WITH_TIMEOUT(
            shown->findChild<QListView *>("listView")
                    ->model()
                    ->rowCount(shown->findChild<QListView *>("listView")->rootIndex()) == 2,
            TIMEOUT_MS);
        QCOMPARE(shown->directory().absolutePath(), m_folder->path());
        type(shown, m_drive + "/films/far.mp4");
        QMetaObject::invokeMethod(shown, "accept");
    });
    QCOMPARE(m_refusals, QStringList());
    QCOMPARE(chosen, m_drive + "/films/far.mp4");
    QVERIFY(FileDialogs::exists(chosen));
}

void FileDialogsTest::aTypedPathOfASilentDriveIsNotFound()
{
    const SilentDrive drive(m_drive);
    Stall stall;
    const QString chosen = opened(m_folder->path(), [&](QFileDialog *dialog) {
        type(dialog, m_drive + "/films/far.mp4");
        QMetaObject::invokeMethod(dialog, "accept");
        QVERIFY(dialog->isVisible());
        // What does answer is chosen as ever.
        dialog->findChild<QLineEdit *>("fileNameEdit")->setText(m_folder->filePath("near.mp4"));
        QMetaObject::invokeMethod(dialog, "accept");
    });
    const QString refusals = m_refusals.join('|');
    QVERIFY2(refusals.contains("far.mp4"), qPrintable(refusals));
    QCOMPARE(chosen, m_folder->filePath("near.mp4"));
    QVERIFY(drive.isAsked());
    QVERIFY2(stall.longestMs() < BOUND_MS, qPrintable(QString::number(stall.longestMs())));
}

void FileDialogsTest::aSilentFolderAtTheStartGivesWayToHome()
{
    const SilentDrive drive(m_drive);
    Stall stall;
    const QString chosen = opened(m_drive + "/films", [](QFileDialog *dialog) {
        QCOMPARE(dialog->directory().absolutePath(), QDir::homePath());
        dialog->reject();
    });
    QVERIFY(chosen.isEmpty());
    QVERIFY2(stall.longestMs() < BOUND_MS, qPrintable(QString::number(stall.longestMs())));
}

void FileDialogsTest::aSilentNeighbourHoldsNobody()
{
    const SilentDrive drive(m_drive);
    Stall stall;
    const QString chosen = opened(m_folder->path(), [&](QFileDialog *dialog) {
        auto *list = dialog->findChild<QListView *>("listView");
        const auto *files = dialog->findChild<QFileSystemModel *>();
        QTRY_VERIFY_WITH_TIMEOUT(files->index(m_folder->filePath("near.mp4")).isValid(), BOUND_MS);
        QTRY_VERIFY_WITH_TIMEOUT(list->model()->rowCount(list->rootIndex()) > 0, BOUND_MS);
        // As a double click on the silent folder does, and then on the file beside it.
        dialog->setDirectory(m_drive);
        QVERIFY(dialog->directory().absolutePath() != m_drive + "/films");
        dialog->setDirectory(m_folder->path());
        dialog->selectFile(m_folder->filePath("near.mp4"));
        QMetaObject::invokeMethod(dialog, "accept");
    });
    QCOMPARE(chosen, m_folder->filePath("near.mp4"));
    QVERIFY2(stall.longestMs() < BOUND_MS, qPrintable(QString::number(stall.longestMs())));
}

void FileDialogsTest::placesAtTheSideMayBeSilent()
{
    // Kept by the toolkit from one dialog to the next, for all programs.
    QSettings kept(QSettings::UserScope, "QtProject");
    kept.setValue("FileDialog/shortcuts",
                  QStringList{"file://" + m_drive, "file://" + QDir::homePath()});
    kept.setValue("FileDialog/history", QStringList{"file://" + m_drive + "/films"});
    kept.sync();
    {
        const SilentDrive drive(m_drive);
        Stall stall;
        const QString chosen = opened(m_folder->path(), [&](QFileDialog *dialog) {
            dialog->setHistory({m_drive + "/films", m_folder->path()});
            dialog->setSidebarUrls(
                {QUrl::fromLocalFile(m_drive), QUrl::fromLocalFile(m_folder->path())});
            dialog->reject();
        });
        QVERIFY(chosen.isEmpty());
        QVERIFY(drive.isAsked());
        QVERIFY2(stall.longestMs() < BOUND_MS, qPrintable(QString::number(stall.longestMs())));
    }
    kept.remove("FileDialog");
}

void FileDialogsTest::aListThatNeverComesHoldsNobody()
{
    SilentDrive drive(m_drive, HangingFolder::Listing);
    Stall stall;
    const QString chosen = opened(m_drive, [&](QFileDialog *dialog) {
        QTRY_VERIFY_WITH_TIMEOUT(drive.isAsked(), BOUND_MS);
        dialog->reject();
    });
    QVERIFY(chosen.isEmpty());
    QVERIFY(drive.isAsked());
    QVERIFY2(stall.longestMs() < BOUND_MS, qPrintable(QString::number(stall.longestMs())));
    // The dialog stays for its thread's sake, unseen, until the drive answers.
    QVERIFY(m_dialog);
    QVERIFY(!m_dialog->isVisible());
    drive.comeBack();
    QTRY_VERIFY_WITH_TIMEOUT(!m_dialog, TIMEOUT_MS);
}

void FileDialogsTest::aDriveThatIsBackIsFound()
{
    const QString file = m_drive + "/films/far.mp4";
    {
        const SilentDrive drive(m_drive);
        QVERIFY(!FileDialogs::exists(file));
        // No second time-out for what is known to be silent.
        Stall stall;
        QVERIFY(!FileDialogs::exists(m_drive + "/other"));
        QVERIFY2(stall.longestMs() < 1000, qPrintable(QString::number(stall.longestMs())));
        QVERIFY(FileDialogs::exists(m_folder->filePath("near.mp4")));
    }
    QTRY_VERIFY_WITH_TIMEOUT(FileDialogs::exists(file), TIMEOUT_MS);
}

void FileDialogsTest::aFileOfASilentDriveIsNotThere()
{
    const SilentDrive drive(m_drive);
    Stall stall;
    QVERIFY(!FileDialogs::exists(m_drive));
    QVERIFY(!FileDialogs::exists(m_drive + "/films/far.mp4"));
    QVERIFY2(stall.longestMs() < BOUND_MS, qPrintable(QString::number(stall.longestMs())));
}

void FileDialogsTest::thePlacesAtTheSideShowTheirNames()
{
    (void)opened(m_folder->path(), [&](QFileDialog *dialog) {
        auto *places = dialog->findChild<QListView *>("sidebar");
        // The name of this test's home is longer than the first place's.
        dialog->setSidebarUrls({QUrl("file:"), QUrl::fromLocalFile(QDir::homePath())});
        QVERIFY(places->sizeHintForColumn(0) >
                places->sizeHintForIndex(places->model()->index(0, 0)).width());
        QVERIFY(places->viewport()->width() >= places->sizeHintForColumn(0));
        dialog->reject();
    });
}

REGISTER_TEST(FileDialogsTest)
#include "tst_file_dialogs.moc"
