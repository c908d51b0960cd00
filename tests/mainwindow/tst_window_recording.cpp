#include "tests/Timeout.h"
#include "tests/mainwindow/WindowProbe.h"

#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"
#include "mainwindow/RecordingStatus.h"
#include "mainwindow/pages/MoreToolWindow.h"
#include "sources/LiveRecording.h"
#include "sources/LiveSource.h"
#include "tests/sources/LiveRig.h"
#include "tools/virtualcamera/VirtualCamera.h"

#include "tests/TestProgram.h"

#include <QLabel>
#include <QMessageBox>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>

using namespace WindowProbe;

namespace
{

constexpr char NO_PICTURE[] = "Nothing was recorded because no picture came from the camera.";
/// A colour that the camera's sheet does not have.
constexpr QRgb INK = 0xFFFF00FF;

/// Of each picture of a movie whether there is ink on it, runs of the same answer as one.
QVector<bool> inkOf(const QString &movie)
{
    constexpr int WIDTH = 320;
    constexpr int HEIGHT = 180;
    QProcess reader;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("LD_PRELOAD");
    reader.setProcessEnvironment(environment);
    reader.start("ffmpeg", {"-v", "error", "-i", movie, "-an", "-vf",
                            QString("scale=%1:%2").arg(WIDTH).arg(HEIGHT), "-pix_fmt", "rgb24",
                            "-f", "rawvideo", "-"});
    if (!reader.waitForFinished(TIMEOUT_MS) || reader.exitCode() != 0)
        return {};
    const QByteArray pictures = reader.readAllStandardOutput();
    QVector<bool> answers;
    for (int start = 0; start + WIDTH * HEIGHT * 3 <= pictures.size();
         start += WIDTH * HEIGHT * 3) {
        const auto *pixels = reinterpret_cast<const uchar *>(pictures.constData()) + start;
        int inked = 0;
        for (int i = 0; i < WIDTH * HEIGHT * 3; i += 3)
            inked += pixels[i] > 170 && pixels[i + 1] < 100 && pixels[i + 2] > 170 ? 1 : 0;
        const bool isInked = inked > 50;
        if (answers.isEmpty() || answers.last() != isInked)
            answers.append(isInked);
    }
    return answers;
}

} // namespace

/// The record button with a camera that is not ready: the movie begins when the camera does, or the
/// user is told that there is none.
class WindowRecordingTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        beOnOneself();
        usualSettings();
        qputenv("PULSE_SERVER", "unix:" + m_home.path().toLocal8Bit() + "/nobody");
        m_camera = std::make_unique<VirtualCamera>();
    }
    void cleanupTestCase() { m_camera.reset(); }

    void init()
    {
        m_camera->unplug();
        m_camera->faults().silent = 0;
        m_folder = std::make_unique<QTemporaryDir>();
        Config::setRecordPath(m_folder->path());
        m_window = std::make_unique<MainWindow>();
        m_window->show(); // which gives the canvas its size
    }
    void cleanup()
    {
        m_window.reset();
        m_camera->faults().silent = 0;
    }

    void aCameraThatIsAboutToOpenIsRecorded()
    {
        const MessageLog log;
        QVERIFY(m_camera->plug());
        QVERIFY(QTest::qWaitFor([&log] { return log.count("DEVICE FOUND") > 0; }, TIMEOUT_MS));
        QVERIFY(!m_window->liveSource()->running());
        record()->click();
        QVERIFY(showsRecording());
        QTRY_VERIFY_WITH_TIMEOUT(m_window->liveSource()->running(), TIMEOUT_MS);
        // No less than a recorded second: sooner or later the file shows it.
        QTRY_VERIFY_WITH_TIMEOUT(movieBytes() > 50000, TIMEOUT_MS);
        QVERIFY(showsRecording());
        record()->click();
        QVERIFY(!showsRecording());
        QCOMPARE(movies().size(), 1);
        QVERIFY(movieBytes() > 50000);
    }

    void aPauseIsSeenAndLeavesOutWhatComesMeanwhile()
    {
        bringUp();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        ImageButton *pause = m_window->button(Command::PauseRecording);
        const auto press = [this] {
            QTest::keyClick(m_window.get(), Qt::Key_R, Qt::ControlModifier | Qt::ShiftModifier);
        };
        press(); // nothing runs
        QVERIFY(!pause->isVisible() && !pause->isChecked());
        record()->click();
        QVERIFY(pause->isVisible() && !pause->isChecked());
        QTRY_VERIFY_WITH_TIMEOUT(movieBytes() > 50000, TIMEOUT_MS);
        QElapsedTimer took;
        took.start();
        press();
        qInfo("paused in %lld ms", static_cast<long long>(took.elapsed()));
        QVERIFY(pause->isChecked());
        QVERIFY(m_window->liveSource()->liveRecording().paused());
        QVERIFY2(m_window->windowTitle().startsWith(QString::fromUtf8("\u2016")),
                 qPrintable(m_window->windowTitle()));
        // In every mode, and nothing is written any more.
        enter(*m_window, Modes::DrawingBoard);
        QVERIFY(pause->isVisible() && pause->isChecked());
        qint64 before = -1;
        QTRY_VERIFY_WITH_TIMEOUT(
            [&] {
                const qint64 size = std::exchange(before, movieBytes());
                QTest::qWait(1200); // longer than from one save to the next
                return size == movieBytes() && before == size;
            }(),
            TIMEOUT_MS);
        pause->click();
        QVERIFY(!pause->isChecked());
        QTRY_VERIFY_WITH_TIMEOUT(movieBytes() > before + 50000, TIMEOUT_MS);
        // It is stopped while it is paused.
        pause->click();
        enter(*m_window, Modes::Live);
        record()->click();
        QVERIFY(!pause->isVisible() && !pause->isChecked());
        QCOMPARE(movies().size(), 1);
        QVERIFY(movieBytes() > 50000);
        // The next one is not paused.
        record()->click();
        QVERIFY(!pause->isChecked() && !m_window->liveSource()->liveRecording().paused());
        record()->click();
    }

    void howItIsDoingIsSeenInEveryModeAndNamedAfterwards()
    {
        bringUp();
        const auto *status = m_window->findChild<RecordingStatus *>();
        QVERIFY(status && !status->isVisible());
        // The narrowest window.
        m_window->resize(m_window->minimumSize());
        record()->click();
        for (const int mode : {Modes::Film, Modes::Photograph, Modes::DrawingBoard, Modes::Live}) {
            enter(*m_window, mode);
            QVERIFY(status->isVisible());
            // At the upper right, and over no button of the modes.
            QVERIFY(status->geometry().right() > m_window->width() - 30);
            for (const Commands::Row &row : Commands::rowsOf(Commands::Group::Modes))
                QVERIFY(!m_window->button(row.command)->geometry().intersects(status->geometry()));
        }
        QTRY_VERIFY_WITH_TIMEOUT(movieBytes() > 50000, TIMEOUT_MS);
        QTRY_VERIFY_WITH_TIMEOUT(status->toolTip().contains("The disk lasts"), TIMEOUT_MS);
        // There is no sound server.
        QTRY_VERIFY_WITH_TIMEOUT(status->toolTip().contains("No sound is recorded"), TIMEOUT_MS);
        const LiveRecording &recording = m_window->liveSource()->liveRecording();
        QVERIFY(!recording.lastMovie());
        record()->click();
        QVERIFY(!status->isVisible());
        QVERIFY(recording.lastMovie());
        QCOMPARE(recording.lastMovie()->fileName, m_folder->filePath(movies().first()));
        // It is completed on a thread of its own.
        QTRY_VERIFY_WITH_TIMEOUT(recording.lastMovie()->lengthUs > 0 &&
                                     recording.lastMovie()->bytes > 50000,
                                 TIMEOUT_MS);
        m_window->button(Command::More)->click();
        auto *more = qobject_cast<MoreToolWindow *>(m_window->currentToolWindow());
        QVERIFY(more);
        more->showPage(Pages::Id::Recording);
        QString text;
        for (const QLabel *label : more->findChildren<QLabel *>())
            text += label->text();
        QVERIFY2(text.contains(movies().first()), qPrintable(text));
        QVERIFY(button(*more, "Open its folder")->isVisible());
    }

    void whatIsTakenBackLeavesTheMovie()
    {
        bringUp();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        const auto recordSomeMore = [this] {
            const qint64 before = movieBytes();
            QTRY_VERIFY_WITH_TIMEOUT(movieBytes() > before + 50000, TIMEOUT_MS);
        };
        record()->click();
        recordSomeMore();
        ImageCanvas *canvas = m_window->currentCanvas();
        canvas->setMouseMode(ImageCanvas::Line);
        canvas->penColor = QColor(INK);
        canvas->penWidth = 12;
        QTest::mousePress(canvas, Qt::LeftButton, {}, QPoint(200, 250));
        QMouseEvent move(QEvent::MouseMove, QPoint(500, 400), Qt::NoButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(canvas, &move);
        QTest::mouseRelease(canvas, Qt::LeftButton, {}, QPoint(500, 400));
        recordSomeMore();
        QTest::keyClick(m_window.get(), Qt::Key_Z, Qt::ControlModifier);
        recordSomeMore();
        record()->click();
        QCOMPARE(movies().size(), 1);
        // On a slow disk the movie is completed in the background.
        const QString movie = m_folder->filePath(movies().first());
        QTRY_COMPARE_WITH_TIMEOUT(inkOf(movie), QVector<bool>({false, true, false}), TIMEOUT_MS);
    }

    void aCameraThatWasPulledIsSaid()
    {
        bringUp();
        m_camera->unplug();
        QTRY_VERIFY_WITH_TIMEOUT(standsStill(), TIMEOUT_MS);
        expectComplaint([this] { record()->click(); });
    }

    void noCameraIsSaid()
    {
        expectComplaint([this] { record()->click(); });
    }

    void aStopBeforeTheFirstPictureIsSaid()
    {
        bringUp();
        m_camera->faults().silent = 1;
        expectComplaint([this] {
            record()->click();
            QVERIFY(m_window->recording());
            record()->click();
            QVERIFY(!m_window->recording());
        });
    }

    void theNextRecordingIsComplete()
    {
        bringUp();
        m_camera->faults().silent = 1;
        expectComplaint([this] { record()->click(); });
        m_camera->faults().silent = 0;
        record()->click();
        QTRY_VERIFY_WITH_TIMEOUT(movieBytes() > 50000, TIMEOUT_MS);
        record()->click();
        QCOMPARE(movies().size(), 1);
    }

private:
    ImageButton *record() const { return button(*m_window, "Record video"); }

    /// Whether the time of a recording is painted over the picture, which has no other indication
    /// here.
    bool clockShows() const
    {
        const ImageCanvas *canvas = m_window->currentCanvas();
        QImage painted(canvas->size(), QImage::Format_ARGB32_Premultiplied);
        painted.fill(Qt::transparent);
        {
            QPainter painter(&painted);
            m_window->osdProcessors().value(m_window->currentCanvas())->postPaint(&painter);
        }
        QImage empty(painted.size(), painted.format());
        empty.fill(Qt::transparent);
        return painted != empty;
    }

    bool showsRecording() const
    {
        for (const ImageButton *each : m_window->findChildren<ImageButton *>()) {
            if (each->accessibleName() == "Record video" &&
                each->isChecked() != m_window->recording())
                qFatal("a record button disagrees with the recording");
        }
        if (clockShows() != m_window->recording())
            qFatal("the clock disagrees with the recording");
        return m_window->recording();
    }

    void bringUp()
    {
        QVERIFY(m_camera->plug());
        QTRY_VERIFY_WITH_TIMEOUT(m_window->liveSource()->running(), TIMEOUT_MS);
        QTRY_VERIFY_WITH_TIMEOUT(!standsStill(), TIMEOUT_MS);
    }

    /// Whether no picture comes for as long as several would.
    bool standsStill() const
    {
        const QImage before = m_window->currentCanvas()->currentImage();
        return !QTest::qWaitFor([&] { return m_window->currentCanvas()->currentImage() != before; },
                                500);
    }

    QStringList movies() const { return QDir(m_folder->path()).entryList({"*.mov"}, QDir::Files); }
    qint64 movieBytes() const
    {
        const QFileInfoList files = QDir(m_folder->path()).entryInfoList({"*.mov"}, QDir::Files);
        return files.isEmpty() ? 0 : files.first().size();
    }

    /// That one message box comes of it, and that nothing is left of the recording then.
    void expectComplaint(const std::function<void()> &action)
    {
        QStringList said;
        whenAsked<QMessageBox>(m_window.get(), [&](QMessageBox *box) {
            said << box->windowTitle() << box->text();
            box->accept();
        });
        action();
        QTRY_COMPARE_WITH_TIMEOUT(said, QStringList({"Error", NO_PICTURE}), TIMEOUT_MS);
        QTRY_VERIFY(!m_window->recording());
        QVERIFY(!showsRecording());
        QTRY_COMPARE(movies(), QStringList());
    }

    QTemporaryDir m_home;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<VirtualCamera> m_camera;
    std::unique_ptr<MainWindow> m_window;
};

REGISTER_TEST(WindowRecordingTest)
#include "tst_window_recording.moc"
