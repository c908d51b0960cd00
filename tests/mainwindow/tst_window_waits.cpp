#include "tests/Timeout.h"
#include "tests/mainwindow/WindowProbe.h"

#include "canvas/ImageCanvas.h"
#include "sources/LiveSource.h"
#include "sources/camera/CameraParameters.h"
#include "tools/virtualcamera/VirtualCamera.h"

#include "tests/TestProgram.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <vector>

using namespace WindowProbe;

namespace
{

/// The longest that the window may be away on a machine that compiles meanwhile; a wait for an
/// answer of the camera takes one and a half seconds and more.
constexpr qint64 AWAY_MS = 700;

/// The longest time for which the event loop did not come round.
class Heartbeat : public QObject
{
public:
    Heartbeat()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        connect(&m_timer, &QTimer::timeout, this, [this] { beat(); });
        m_timer.start(5);
        m_sinceBeat.start();
    }
    [[nodiscard]] qint64 longestMs()
    {
        beat();
        return m_longestMs;
    }

private:
    void beat() { m_longestMs = std::max(m_longestMs, m_sinceBeat.restart()); }

    QTimer m_timer;
    QElapsedTimer m_sinceBeat;
    qint64 m_longestMs = 0;
};

} // namespace

/// The window goes on while the camera does not answer.
class WindowWaitsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        beOnOneself();
        usualSettings();
        qputenv("PULSE_SERVER", "unix:" + m_home.path().toLocal8Bit() + "/nobody");
        Config::setRecordPath(m_home.path());
        Config::setResolutionIndex(0);
        Config::setRecordingResolutionIndex(1);
        m_camera = std::make_unique<VirtualCamera>();
        QVERIFY(m_camera->plug());
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        QTRY_VERIFY_WITH_TIMEOUT(m_window->liveSource()->running(), TIMEOUT_MS);
        QTRY_VERIFY_WITH_TIMEOUT(m_camera->statistics().framesSent > 10, TIMEOUT_MS);
    }
    void cleanupTestCase()
    {
        m_camera->faults().hangControls = 0;
        m_window.reset();
        m_camera.reset();
    }

    void theBrightnessScaleIsShownWithoutAnAnswer()
    {
        m_camera->faults().hangControls = -1;
        Heartbeat heartbeat;
        m_window->button(Command::BrightnessUp)->click();
        QTest::qWait(1200); // as long as the scale is on the screen
        const qint64 longest = heartbeat.longestMs();
        m_camera->faults().hangControls = 0;
        qInfo("away for %lld ms at most", longest);
        QVERIFY2(longest < AWAY_MS, qPrintable(QString::number(longest)));
    }

    void aZoomKeyThatWasLateIsLetGoOf()
    {
        using namespace CameraParameter;
        (void)m_camera->takeExtensionTransfers();
        m_camera->faults().hangControls = 1;
        Heartbeat heartbeat;
        m_window->zoomInStart();
        m_window->zoomInStop();
        std::vector<ExtensionTransfer> seen;
        const std::vector<ExtensionTransfer> released{{true, 19, ZOOM_IN_KEY}, {true, 20, 0}};
        QTRY_VERIFY_WITH_TIMEOUT(
            [&] {
                for (const ExtensionTransfer &transfer : m_camera->takeExtensionTransfers())
                    seen.push_back(transfer);
                return std::search(seen.begin(), seen.end(), released.begin(), released.end()) !=
                       seen.end();
            }(),
            TIMEOUT_MS);
        QVERIFY2(heartbeat.longestMs() < AWAY_MS,
                 qPrintable(QString::number(heartbeat.longestMs())));
    }

    void aRecordingFollowsAControlWithoutAnAnswer()
    {
        m_camera->faults().hangControls = 1;
        m_window->button(Command::BrightnessDown)->click();
        m_window->record();
        QTRY_COMPARE_WITH_TIMEOUT(m_window->currentCanvas()->pictureSize(),
                                  Config::recordingResolution(), TIMEOUT_MS);
        QVERIFY(m_window->liveSource()->recording());
        m_window->record();
        QTRY_COMPARE_WITH_TIMEOUT(m_window->currentCanvas()->pictureSize(), Config::resolution(),
                                  TIMEOUT_MS);
    }

private:
    QTemporaryDir m_home;
    std::unique_ptr<VirtualCamera> m_camera;
    std::unique_ptr<MainWindow> m_window;
};

REGISTER_TEST(WindowWaitsTest)
#include "tst_window_waits.moc"
