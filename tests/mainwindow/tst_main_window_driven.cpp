#include "tests/mainwindow/DrivenWindow.h"

#include "canvas/ImageCanvas.h"
#include "mainwindow/Modes.h"
#include "settings/Config.h"
#include "sources/LiveSource.h"
#include "sources/camera/CameraParameters.h"
#include "tools/virtualcamera/VirtualCamera.h"
#include "widgets/Panel.h"

#include "tests/TestProgram.h"

#include <QDialog>
#include <QDir>
#include <QLabel>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <memory>

using namespace DrivenWindow;
using namespace WindowProbe;

/// Drives the whole window as a teacher does, with the mouse and the keyboard of a real display
/// server, a window manager and the emulated camera. One window serves test after test, as a
/// teacher's does, until one has left it changed.
class MainWindowDrivenTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();
    void everyButtonAnswersInEveryMode_data();
    void everyButtonAnswersInEveryMode();
    void holdingInEveryModeOpensEveryPopUp();
    void popUpFollowsTheMovedAndResizedWindow();
    void sidePanelKeepsTheRightEdge();
    void maximisedWindowKeepsItsSize();
    void buttonsSteerTheCamera();
    void aZoomHeldOverAModeChangeIsReleased();
    void aZoomEndsWithItsKey();
    void keysServeThePresenter();

private:
    [[nodiscard]] bool liveRuns() const;
    [[nodiscard]] bool wrote(std::uint64_t id, std::uint64_t value);

    std::unique_ptr<VirtualCamera> m_camera;
    std::unique_ptr<MainWindow> m_window;
    std::vector<ExtensionTransfer> m_transfers;
    /// The folder into which a window saves.
    std::unique_ptr<QTemporaryDir> m_folder;
};

void MainWindowDrivenTest::initTestCase()
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    m_camera = std::make_unique<VirtualCamera>();
    QVERIFY(m_camera->plug());
}

void MainWindowDrivenTest::init()
{
    if (m_window) {
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get(), TIMEOUT_MS));
        return;
    }
    m_folder = std::make_unique<QTemporaryDir>();
    Config::setSnapshotPath(m_folder->path());
    Config::setRecordPath(m_folder->path());
    Config::setSnapshotMode(CanvasModes::Single);
    m_window = open();
    QVERIFY(m_window);
}

void MainWindowDrivenTest::cleanup()
{
    if (!QTest::currentTestFailed())
        return;
    // A button that is still down would swallow the presses of the tests that follow.
    Pointer::release();
    m_window.reset();
}

void MainWindowDrivenTest::cleanupTestCase()
{
    m_window.reset();
    m_camera.reset();
}

bool MainWindowDrivenTest::liveRuns() const
{
    // The camera itself may still stream to a window of before.
    const auto *source = m_window->findChild<LiveSource *>();
    return QTest::qWaitFor(
        [this, source] {
            return source->cameraLink().frames > 2 &&
                   m_window->currentCanvas()->pictureSize() == QSize(1280, 720);
        },
        TIMEOUT_MS);
}

bool MainWindowDrivenTest::wrote(std::uint64_t id, std::uint64_t value)
{
    return QTest::qWaitFor(
        [&] {
            for (const ExtensionTransfer &transfer : m_camera->takeExtensionTransfers())
                m_transfers.push_back(transfer);
            for (std::size_t i = 1; i < m_transfers.size(); ++i) {
                const ExtensionTransfer &first = m_transfers[i - 1];
                const ExtensionTransfer &second = m_transfers[i];
                if (first.write && first.value == id && second.write && second.value == value) {
                    m_transfers.erase(m_transfers.begin(), m_transfers.begin() + int(i) + 1);
                    return true;
                }
            }
            return false;
        },
        TIMEOUT_MS);
}

void MainWindowDrivenTest::everyButtonAnswersInEveryMode_data()
{
    QTest::addColumn<int>("mode");
    for (int mode = 0; mode < 4; ++mode)
        QTest::newRow(qPrintable(modes()[mode])) << mode;
}

void MainWindowDrivenTest::everyButtonAnswersInEveryMode()
{
    QFETCH(int, mode);
    if (mode != 0)
        QVERIFY(enterMode(*m_window, mode));
    if (mode == 2)
        QVERIFY(clicked(button(*m_window, "Slideshow interval")));
    // Dialogs that some of them open are dismissed as they come, but not before the window manager
    // has shown them: it would show them later, over the buttons.
    QTimer dismisser;
    connect(&dismisser, &QTimer::timeout, this, [] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (dialog && dialog->isActiveWindow())
            dialog->reject();
    });
    dismisser.start(10);

    int answered = 0;
    QStringList gray;
    for (ImageButton *each : m_window->findChildren<ImageButton *>()) {
        const bool switchesMode = modes().contains(each->accessibleName());
        const bool togglesPanel = each->accessibleName() == "Side panel";
        // A click on a group's title hides its buttons, a second one shows them again.
        const bool isTitle = each->text() == "Noting" || each->text() == "Assisting" ||
                             each->text() == "Adjustment" || each->text() == "Recording";
        if (!each->isVisible() || switchesMode || togglesPanel)
            continue;
        // There is nothing to take back, and no presentation to be held or to be made black.
        if (each->isGray()) {
            gray << each->accessibleName();
            continue;
        }
        // A pop-up lies over the button beside its own.
        if (m_window->currentToolWindow())
            m_window->currentToolWindow()->close();
        QVERIFY2(clicked(each), qPrintable(each->accessibleName() + each->text()));
        QTRY_VERIFY_WITH_TIMEOUT(!QApplication::activeModalWidget(), TIMEOUT_MS);
        if (isTitle)
            QVERIFY(clicked(each));
        // The presentation's window may lie over the others.
        if (each == m_window->button(Command::Present))
            m_window->present();
        ++answered;
    }
    // The panel, its titles, About, Presentation, More, and the mode's own.
    const int own[] = {1, 7, 6, 0};
    int expected = Commands::PANEL_GROUP_COUNT + 3 + own[mode];
    for (const Commands::Row &row : Commands::rows())
        expected += Commands::inPanel(row.group) && Modes::contains(row.modes, mode) ? 1 : 0;
    QCOMPARE(answered, expected);
    QCOMPARE(gray, QStringList({"Undo", "Redo", "Hold the presentation", "Black presentation"}));
    QCOMPARE(m_window->currentMode(), mode);
    m_window.reset();
}

void MainWindowDrivenTest::holdingInEveryModeOpensEveryPopUp()
{
    for (int mode = 0; mode < 4; ++mode) {
        if (mode != 0)
            QVERIFY(enterMode(*m_window, mode));
        for (const Command each : poppingButtons()) {
            if (!m_window->button(each)->isVisible())
                continue;
            ToolWindow *popup = hold(*m_window, each);
            QVERIFY2(popup, qPrintable(QString("%1 in mode %2").arg(int(each)).arg(mode)));
            QCOMPARE(popup->pos(), m_window->button(each)->mapToGlobal(
                                       QPoint(m_window->button(each)->width() + 3, 0)));
        }
        // The next mode is entered with a pop-up open, and closes it.
        QVERIFY(m_window->currentToolWindow());
    }
    QVERIFY(enterMode(*m_window, 0));
    QVERIFY(!m_window->currentToolWindow());
}

void MainWindowDrivenTest::popUpFollowsTheMovedAndResizedWindow()
{
    ToolWindow *popup = hold(*m_window, Command::Circle);
    QVERIFY(popup);
    ImageButton *circle = m_window->button(Command::Circle);
    const auto beside = [&] {
        return popup->pos() == circle->mapToGlobal(QPoint(circle->width() + 3, 0));
    };
    QVERIFY(beside());
    const QString id = QString::number(m_window->winId());
    for (const QPoint place : {QPoint(40, 60), QPoint(300, 150), QPoint(0, 0)}) {
        const QPoint before = m_window->pos();
        Pointer::run({"windowmove", id, QString::number(place.x()), QString::number(place.y())});
        QTRY_VERIFY_WITH_TIMEOUT(m_window->pos() != before, TIMEOUT_MS);
        QTRY_VERIFY_WITH_TIMEOUT(beside(), TIMEOUT_MS);
        QVERIFY(popup->isVisible());
    }
    Pointer::run({"windowsize", id, "1200", "900"});
    QTRY_COMPARE_WITH_TIMEOUT(m_window->size(), QSize(1200, 900), TIMEOUT_MS);
    QTRY_VERIFY_WITH_TIMEOUT(beside(), TIMEOUT_MS);
    popup->close();
    Pointer::run({"windowsize", id, "938", "768"});
    QTRY_COMPARE_WITH_TIMEOUT(m_window->size(), QSize(938, 768), TIMEOUT_MS);
}

void MainWindowDrivenTest::sidePanelKeepsTheRightEdge()
{
    m_window->move(400, 100);
    QTRY_VERIFY_WITH_TIMEOUT(qAbs(m_window->x() - 400) < 20, TIMEOUT_MS);
    const int right = m_window->geometry().right();
    ImageButton *side = button(*m_window, "Side panel");
    QVERIFY(hold(*m_window, Command::Line));
    for (const bool open : {false, true, false, true}) {
        QVERIFY(clicked(side));
        QTRY_COMPARE_WITH_TIMEOUT(m_window->width(), open ? 938 : 800, TIMEOUT_MS);
        QTRY_COMPARE_WITH_TIMEOUT(m_window->geometry().right(), right, TIMEOUT_MS);
        QCOMPARE(m_window->findChild<Panel *>()->isVisible(), open);
        QVERIFY(!m_window->currentToolWindow());
    }
}

void MainWindowDrivenTest::maximisedWindowKeepsItsSize()
{
    m_window->showMaximized();
    QTRY_VERIFY_WITH_TIMEOUT(m_window->isMaximized() && m_window->width() > 1900, TIMEOUT_MS);
    // The new place is told after the new size, and the pointer needs both.
    QTRY_VERIFY_WITH_TIMEOUT(m_window->geometry().right() < 1920, TIMEOUT_MS);
    const QSize size = m_window->size();
    QCOMPARE(stack(*m_window)->geometry(), QRect(174, 25, size.width() - 193, size.height() - 100));
    QVERIFY(clicked(button(*m_window, "Side panel")));
    QTRY_COMPARE_WITH_TIMEOUT(stack(*m_window)->geometry(),
                              QRect(36, 25, size.width() - 55, size.height() - 100), TIMEOUT_MS);
    QCOMPARE(m_window->size(), size);
    QVERIFY(clicked(button(*m_window, "Side panel")));
    QVERIFY(hold(*m_window, Command::Text));
    for (const int mode : {1, 2, 3, 0})
        QVERIFY(enterMode(*m_window, mode));
    QVERIFY(!m_window->currentToolWindow());
    m_window->showNormal();
    QTRY_COMPARE_WITH_TIMEOUT(m_window->size(), QSize(938, 768), TIMEOUT_MS);
}

void MainWindowDrivenTest::buttonsSteerTheCamera()
{
    using namespace CameraParameter;
    QVERIFY(liveRuns());
    (void)m_camera->takeExtensionTransfers();
    m_transfers.clear();
    const struct {
        Command button;
        std::uint64_t pressed;
    } zooms[] = {{Command::ZoomIn, ZOOM_IN_KEY}, {Command::ZoomOut, ZOOM_OUT_KEY}};
    for (const auto &zoom : zooms) {
        Pointer::moveTo(Pointer::middle(m_window->button(zoom.button)));
        Pointer::press();
        QVERIFY(wrote(zoom.pressed, 1));
        Pointer::release();
        QVERIFY(wrote(zoom.pressed, 0));
    }
    QVERIFY(clicked(m_window->button(Command::AutoFocus)));
    QVERIFY(wrote(AUTOFOCUS_KEY, 1));
    QVERIFY(clicked(m_window->button(Command::BrightnessUp)));
    QVERIFY(wrote(BRIGHTNESS_UP_KEY, 1));
    QVERIFY(clicked(m_window->button(Command::BrightnessDown)));
    QVERIFY(wrote(BRIGHTNESS_DOWN_KEY, 1));
    QVERIFY(clicked(m_window->button(Command::ZoomReset)));
    QVERIFY(wrote(OPTICAL_ZOOM_POSITION, 0));
}

void MainWindowDrivenTest::aZoomHeldOverAModeChangeIsReleased()
{
    using namespace CameraParameter;
    QVERIFY(liveRuns());
    (void)m_camera->takeExtensionTransfers();
    m_transfers.clear();
    Pointer::moveTo(Pointer::middle(m_window->button(Command::ZoomIn)));
    Pointer::press();
    QVERIFY(wrote(ZOOM_IN_KEY, 1));
    enter(*m_window, 1);
    QVERIFY(wrote(ZOOM_IN_KEY, 0));
    Pointer::release();
    QCOMPARE(m_window->currentCanvas()->zoomScale(), 1.0);

    enter(*m_window, 0);
    Pointer::keyDown("plus");
    QVERIFY(wrote(ZOOM_IN_KEY, 1));
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(wrote(ZOOM_IN_KEY, 0));
    Pointer::keyUp("plus");
}

void MainWindowDrivenTest::aZoomEndsWithItsKey()
{
    using namespace CameraParameter;
    QVERIFY(liveRuns());
    (void)m_camera->takeExtensionTransfers();
    m_transfers.clear();
    Pointer::keyDown("shift");
    Pointer::keyDown("equal");
    QVERIFY(wrote(ZOOM_IN_KEY, 1));
    Pointer::keyUp("shift");
    Pointer::keyUp("equal");
    QVERIFY(wrote(ZOOM_IN_KEY, 0));

    Pointer::keyDown("KP_Add");
    QVERIFY(wrote(ZOOM_IN_KEY, 1));
    Pointer::keyDown("minus");
    QVERIFY(wrote(ZOOM_IN_KEY, 0));
    QVERIFY(wrote(ZOOM_OUT_KEY, 1));
    Pointer::keyUp("KP_Add");
    Pointer::keyUp("minus");
    QVERIFY(wrote(ZOOM_OUT_KEY, 0));
}

void MainWindowDrivenTest::keysServeThePresenter()
{
    using namespace CameraParameter;
    QVERIFY(liveRuns());
    m_transfers.clear();
    (void)m_camera->takeExtensionTransfers();
    Pointer::key("space");
    QTRY_VERIFY_WITH_TIMEOUT(m_window->currentCanvas()->frozen, TIMEOUT_MS);
    QVERIFY(m_window->button(Command::Freeze)->isChecked());
    Pointer::key("space");
    QTRY_VERIFY_WITH_TIMEOUT(!m_window->currentCanvas()->frozen, TIMEOUT_MS);
    Pointer::key("KP_Subtract");
    QVERIFY(wrote(ZOOM_OUT_KEY, 1));
    QVERIFY(wrote(ZOOM_OUT_KEY, 0));

    Pointer::key("ctrl+s");
    QTRY_COMPARE_WITH_TIMEOUT(QDir(m_folder->path()).entryList({"*.jpg"}).size(), 1, TIMEOUT_MS);

    Pointer::key("F11");
    QTRY_VERIFY_WITH_TIMEOUT(m_window->isFullScreen() && m_window->height() == 1080, TIMEOUT_MS);
    Pointer::key("Escape");
    QTRY_VERIFY_WITH_TIMEOUT(!m_window->isFullScreen() && m_window->height() == 768, TIMEOUT_MS);
    Pointer::key("Escape");

    for (int i = 0; i < 3; ++i) {
        QImage image(64, 48, QImage::Format_RGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(m_folder->filePath(QString("%1.png").arg(i))));
    }
    QVERIFY(enterMode(*m_window, 2));
    chooseFile(this, m_folder->filePath("0.png"));
    QVERIFY(clicked(button(*m_window, "Open folder of photographs")));
    QLabel *index = nullptr;
    for (QLabel *label : m_window->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (label->text().contains('/'))
            index = label;
    }
    QVERIFY(index);
    const int count = QDir(m_folder->path()).entryList({"*.jpg", "*.png"}).size();
    const auto reads = [&](int id) {
        const QString text = QString("%1/%2").arg(id).arg(count);
        return QTest::qWaitFor([&] { return index->text() == text; }, TIMEOUT_MS);
    };
    QVERIFY(reads(1));
    const struct {
        const char *key;
        int id;
    } steps[] = {{"Next", 2}, {"Right", 3}, {"Prior", 2}, {"Left", 1}, {"Down", 2}, {"Up", 1}};
    for (const auto &step : steps) {
        Pointer::key(step.key);
        QVERIFY2(reads(step.id), step.key);
    }
}

REGISTER_TEST(MainWindowDrivenTest)
#include "tst_main_window_driven.moc"
