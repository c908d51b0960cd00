#include "Pointer.h"
#include "WindowProbe.h"

#include "app/Config.h"
#include "canvas/ImageCanvas.h"
#include "mainwindow/ModeRules.h"
#include "sources/CameraParameters.h"
#include "sources/LiveSource.h"
#include "tools/virtualcamera/VirtualCamera.h"
#include "widgets/Panel.h"

#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QLabel>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTextEdit>

#include <memory>

using ButtonTable::PanelButton;
using namespace WindowProbe;

namespace
{

constexpr int PATIENCE_MS = 20000;

/// What stands on the screen now, in screen coordinates.
QImage screen()
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage().convertToFormat(
        QImage::Format_RGB32);
}

bool near(QRgb a, QRgb b)
{
    return qAbs(qRed(a) - qRed(b)) < 40 && qAbs(qGreen(a) - qGreen(b)) < 40 &&
           qAbs(qBlue(a) - qBlue(b)) < 40;
}

/// Presses a button, waits for its pop-up, lets the button go.
ToolWindow *hold(const MainWindow &window, PanelButton which)
{
    ImageButton *toolButton = window.panelButton(which);
    // A pop-up lies over the button beside its own.
    if (window.currentToolWindow())
        window.currentToolWindow()->close();
    Pointer::moveTo(Pointer::middle(toolButton));
    Pointer::press();
    const bool opened = QTest::qWaitFor(
        [&] {
            ToolWindow *popup = window.currentToolWindow();
            return popup && popup->toolButton() == toolButton && popup->isVisible();
        },
        PATIENCE_MS);
    QSignalSpy released(toolButton, SIGNAL(released()));
    Pointer::release();
    const bool up = QTest::qWaitFor([&] { return released.count() == 1; }, PATIENCE_MS);
    ToolWindow *popup = window.currentToolWindow();
    if (!opened || !up || !popup || !QTest::qWaitForWindowExposed(popup, PATIENCE_MS))
        return nullptr;
    return popup;
}

/// The buttons of a pop-up in the row with that top, from left to right.
QList<ImageButton *> row(const ToolWindow *popup, int y)
{
    QList<ImageButton *> buttons;
    for (ImageButton *button : popup->findChildren<ImageButton *>()) {
        if (button->isCheckable() && button->y() == y)
            buttons << button;
    }
    std::sort(buttons.begin(), buttons.end(),
              [](const ImageButton *a, const ImageButton *b) { return a->x() < b->x(); });
    return buttons;
}

bool clicked(ImageButton *button)
{
    QSignalSpy spy(button, SIGNAL(clicked()));
    Pointer::click(button);
    return QTest::qWaitFor([&spy] { return spy.count() == 1; }, PATIENCE_MS);
}

} // namespace

/// Drives the whole window as a teacher does, with the mouse and the keyboard of a real display
/// server, a window manager and the emulated camera.
class TestMainWindowDriven : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();
    void everyButtonAnswersInEveryMode_data();
    void everyButtonAnswersInEveryMode();
    void everyLineChoiceShowsInThePicture();
    void everyShapeIsFilledAsChosen_data();
    void everyShapeIsFilledAsChosen();
    void everyEraserWidthErases();
    void textIsWrittenAsChosen();
    void everyMaskCoversItsPart();
    void everyEffectShowsInThePicture();
    void everyBoardColorFillsTheBoard();
    void holdingInEveryModeOpensEveryPopUp();
    void popUpFollowsTheMovedAndResizedWindow();
    void sidePanelKeepsTheRightEdge();
    void maximisedWindowKeepsItsSize();
    void buttonsSteerTheCamera();
    void aZoomHeldOverAModeChangeIsReleased();
    void keysServeThePresenter();
    void everyKeyGoesToTheTextBeingTyped();

private:
    [[nodiscard]] QPoint onCanvas(int x, int y) const;
    /// The colour on the screen at a point of the canvas, once it is `expected`, or after a while.
    [[nodiscard]] bool shows(int x, int y, QRgb expected) const;
    void enterMode(int mode);
    [[nodiscard]] bool liveRuns() const;
    [[nodiscard]] bool wrote(std::uint64_t id, std::uint64_t value);

    std::unique_ptr<VirtualCamera> m_camera;
    std::unique_ptr<MainWindow> m_window;
    std::vector<ExtensionTransfer> m_transfers;
    /// Of one test: what it saves.
    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestMainWindowDriven::initTestCase()
{
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    m_camera = std::make_unique<VirtualCamera>();
    QVERIFY(m_camera->plug());
}

void TestMainWindowDriven::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    Config::setSnapshotPath(m_folder->path());
    Config::setRecordPath(m_folder->path());
    Config::setSnapshotMode(CanvasModes::Single);
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get(), PATIENCE_MS));
}

void TestMainWindowDriven::cleanup()
{
    m_window.reset();
}

void TestMainWindowDriven::cleanupTestCase()
{
    m_camera.reset();
}

QPoint TestMainWindowDriven::onCanvas(int x, int y) const
{
    return m_window->currentCanvas()->mapToGlobal(QPoint(x, y));
}

bool TestMainWindowDriven::shows(int x, int y, QRgb expected) const
{
    const QPoint point = onCanvas(x, y);
    return QTest::qWaitFor([&] { return near(screen().pixel(point), expected); }, PATIENCE_MS);
}

void TestMainWindowDriven::enterMode(int mode)
{
    QVERIFY(clicked(button(*m_window, modes()[mode])));
    QCOMPARE(m_window->currentMode(), mode);
}

bool TestMainWindowDriven::liveRuns() const
{
    return QTest::qWaitFor(
        [this] {
            const CameraStatistics camera = m_camera->statistics();
            return camera.streaming && camera.deliveries.size() > 2 &&
                   m_window->currentCanvas()->pictureSize() == QSize(1280, 720);
        },
        PATIENCE_MS);
}

bool TestMainWindowDriven::wrote(std::uint64_t id, std::uint64_t value)
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
        PATIENCE_MS);
}

void TestMainWindowDriven::everyButtonAnswersInEveryMode_data()
{
    QTest::addColumn<int>("mode");
    for (int mode = 0; mode < 4; ++mode)
        QTest::newRow(qPrintable(modes()[mode])) << mode;
}

void TestMainWindowDriven::everyButtonAnswersInEveryMode()
{
    QFETCH(int, mode);
    if (mode != 0)
        enterMode(mode);
    if (mode == 2)
        QVERIFY(clicked(button(*m_window, "Slideshow interval")));
    // Dialogs that some of them open are dismissed as they come.
    QTimer dismisser;
    connect(&dismisser, &QTimer::timeout, this, [] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (dialog && dialog->isVisible())
            dialog->reject();
    });
    dismisser.start(50);

    int answered = 0;
    for (ImageButton *each : m_window->findChildren<ImageButton *>()) {
        const bool switchesMode = modes().contains(each->accessibleName());
        const bool togglesPanel = each->accessibleName() == "Side panel";
        // A click on a group's title hides its buttons, a second one shows them again.
        const bool isTitle = each->text() == "Noting" || each->text() == "Assisting" ||
                             each->text() == "Adjustment" || each->text() == "Recording";
        if (!each->isVisible() || switchesMode || togglesPanel)
            continue;
        // A pop-up lies over the button beside its own.
        if (m_window->currentToolWindow())
            m_window->currentToolWindow()->close();
        QVERIFY2(clicked(each), qPrintable(each->accessibleName() + each->text()));
        QTRY_VERIFY_WITH_TIMEOUT(!QApplication::activeModalWidget(), PATIENCE_MS);
        if (isTitle)
            QVERIFY(clicked(each));
        ++answered;
    }
    const int expected[] = {24 + 4 + 1 + 1, 19 + 4 + 1 + 7, 19 + 4 + 1 + 6, 20 + 4 + 1};
    QCOMPARE(answered, expected[mode]);
    QCOMPARE(m_window->currentMode(), mode);
}

void TestMainWindowDriven::everyLineChoiceShowsInThePicture()
{
    enterMode(3);
    QVERIFY(clicked(m_window->panelButton(PanelButton::Line)));
    const QRgb colors[] = {0xFF000000, 0xFFFF0000, 0xFFFFFF00, 0xFF0000FF};
    ToolWindow *popup = hold(*m_window, PanelButton::Line);
    QVERIFY(popup);
    // Out of the way of the board: the pop-up stays open while lines are drawn.
    for (int i = 0; i < 4; ++i) {
        QVERIFY(clicked(row(popup, 20)[i]));
        QVERIFY(clicked(row(popup, 43)[i]));
        const int y = 350 + 40 * i;
        Pointer::drag(onCanvas(200, y), onCanvas(500, y));
        QVERIFY2(shows(350, y, colors[i]), qPrintable(QString::number(i)));
        // As wide as chosen, on a picture that is shown smaller than it is.
        const double shrink = 745.0 / 1280.0;
        int thickness = 0;
        const QImage picture = screen();
        for (int dy = -15; dy <= 15; ++dy)
            thickness += near(picture.pixel(onCanvas(350, y + dy)), colors[i]) ? 1 : 0;
        QVERIFY2(qAbs(thickness - 3 * (i + 1) * shrink) <= 2.0,
                 qPrintable(QString("%1: %2").arg(i).arg(thickness)));
        QCOMPARE(m_window->currentToolWindow(), popup);
    }
}

void TestMainWindowDriven::everyShapeIsFilledAsChosen_data()
{
    QTest::addColumn<int>("tool");
    QTest::newRow("rectangle") << int(PanelButton::Rectangle);
    QTest::newRow("circle") << int(PanelButton::Circle);
    QTest::newRow("arrow") << int(PanelButton::Arrow);
    QTest::newRow("triangle") << int(PanelButton::Triangle);
}

void TestMainWindowDriven::everyShapeIsFilledAsChosen()
{
    QFETCH(int, tool);
    enterMode(3);
    ToolWindow *popup = hold(*m_window, PanelButton(tool));
    QVERIFY(popup);
    QVERIFY(popup->height() > 80);
    const QRgb colors[] = {0xFFFFFFFF, 0xFF000000, 0xFFFF0000, 0xFFFFFF00, 0xFF0000FF};
    for (const int i : {4, 3, 2, 1, 0}) {
        QVERIFY(clicked(row(popup, 67)[i]));
        // Its own place for each, below the pop-up; the middle of the way lies inside every shape.
        const int x = 100 + 120 * i;
        Pointer::drag(onCanvas(x, 420), onCanvas(x + 80, 480));
        QVERIFY2(shows(x + 40, 450, colors[i]), qPrintable(QString::number(i)));
        if (i != 0)
            QVERIFY(m_window->currentCanvas()->fillEnabled);
    }
    QVERIFY(!m_window->currentCanvas()->fillEnabled);
}

void TestMainWindowDriven::everyEraserWidthErases()
{
    enterMode(3);
    m_window->currentCanvas()->penWidth = 12;
    for (int i = 0; i < 4; ++i) {
        QVERIFY(clicked(m_window->panelButton(PanelButton::Line)));
        m_window->currentCanvas()->penWidth = 12;
        const int y = 400 + 40 * i;
        Pointer::drag(onCanvas(200, y), onCanvas(500, y));
        QVERIFY(shows(350, y, 0xFF000000));
        ToolWindow *popup = hold(*m_window, PanelButton::Eraser);
        QVERIFY(popup);
        QVERIFY(clicked(row(popup, 20)[i]));
        Pointer::drag(onCanvas(350, y), onCanvas(352, y));
        QVERIFY2(shows(351, y, 0xFFFFFFFF), qPrintable(QString::number(i)));
        QVERIFY(shows(300, y, 0xFF000000));
    }
    QVERIFY(clicked(m_window->panelButton(PanelButton::EraseAll)));
    QVERIFY(shows(300, 400, 0xFFFFFFFF));
}

void TestMainWindowDriven::textIsWrittenAsChosen()
{
    enterMode(3);
    const QRgb colors[] = {0xFF000000, 0xFFFF0000, 0xFFFFFF00, 0xFF0000FF};
    const auto inked = [this](QRect area, QRgb color) {
        const QImage picture = screen();
        int count = 0;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x)
                count += near(picture.pixel(onCanvas(x, y)), color) ? 1 : 0;
        }
        return count;
    };
    int smaller = 0;
    for (int i = 0; i < 4; ++i) {
        ToolWindow *popup = hold(*m_window, PanelButton::Text);
        QVERIFY(popup);
        QVERIFY(clicked(row(popup, 43)[i]));
        auto *sizes = popup->findChildren<QComboBox *>()[1];
        QVERIFY(sizes->isEditable());
        sizes->setEditText(i < 2 ? "18" : "36");
        const QPoint at(60 + 150 * i, 420);
        Pointer::click(onCanvas(at.x(), at.y()));
        auto *editor = m_window->currentCanvas()->findChild<QTextEdit *>();
        QVERIFY(editor);
        QTRY_VERIFY_WITH_TIMEOUT(editor->isVisible() && editor->hasFocus(), PATIENCE_MS);
        Pointer::type("MM");
        QTRY_COMPARE_WITH_TIMEOUT(editor->toPlainText(), QString("MM"), PATIENCE_MS);
        Pointer::click(onCanvas(700, 60));
        QTRY_VERIFY_WITH_TIMEOUT(!editor->isVisible(), PATIENCE_MS);
        const QRect area(at, QSize(140, 90));
        QTRY_VERIFY_WITH_TIMEOUT(inked(area, colors[i]) > 20, PATIENCE_MS);
        if (i == 1)
            smaller = inked(area, colors[i]);
        if (i == 3)
            QTRY_VERIFY_WITH_TIMEOUT(inked(area, colors[i]) > 2 * smaller, PATIENCE_MS);
    }
}

void TestMainWindowDriven::everyMaskCoversItsPart()
{
    enterMode(3);
    // The board is 745 wide and 419 high in the middle of the canvas.
    const struct {
        QPoint covered;
        QPoint open;
    } parts[] = {{{40, 150}, {372, 334}},
                 {{80, 334}, {372, 334}},
                 {{80, 334}, {600, 334}},
                 {{372, 200}, {372, 450}}};
    ToolWindow *popup = hold(*m_window, PanelButton::Mask);
    QVERIFY(popup);
    for (int i = 0; i < 4; ++i) {
        QVERIFY(clicked(row(popup, 18)[i]));
        QVERIFY2(shows(parts[i].covered.x(), parts[i].covered.y(), 0xFF000000),
                 qPrintable(QString::number(i)));
        QVERIFY2(shows(parts[i].open.x(), parts[i].open.y(), 0xFFFFFFFF),
                 qPrintable(QString::number(i)));
        QVERIFY(m_window->panelButton(PanelButton::Mask)->isChecked());
    }
    QVERIFY(clicked(m_window->panelButton(PanelButton::Mask)));
    QVERIFY(shows(372, 200, 0xFFFFFFFF));
    QVERIFY(clicked(m_window->panelButton(PanelButton::Mask)));
    QVERIFY(shows(372, 200, 0xFF000000));
}

void TestMainWindowDriven::everyEffectShowsInThePicture()
{
    enterMode(3);
    m_window->currentCanvas()->fillCanvas(QColor(200, 40, 90));
    QVERIFY(shows(372, 400, 0xFFC8285A));
    ToolWindow *popup = hold(*m_window, PanelButton::Effect);
    QVERIFY(popup);
    const QRgb expected[] = {0xFFC8285A, qRgb(93, 93, 93), qRgb(55, 215, 165), 0xFFC8285A};
    for (const int i : {1, 2, 3, 0}) {
        QVERIFY(clicked(row(popup, 18)[i]));
        QVERIFY2(shows(372, 400, expected[i]), qPrintable(QString::number(i)));
        QCOMPARE(int(m_window->currentCanvas()->effectMode.load()), i);
    }
}

void TestMainWindowDriven::everyBoardColorFillsTheBoard()
{
    enterMode(3);
    ToolWindow *popup = hold(*m_window, PanelButton::FillBackground);
    QVERIFY(popup);
    const QRgb colors[] = {0xFFFFFFFF, 0xFF000000, 0xFFFFFF00, 0xFF0000FF};
    for (const int i : {3, 2, 1, 0}) {
        QVERIFY(clicked(row(popup, 20)[i]));
        QVERIFY2(shows(372, 450, colors[i]), qPrintable(QString::number(i)));
    }
}

void TestMainWindowDriven::holdingInEveryModeOpensEveryPopUp()
{
    for (int mode = 0; mode < 4; ++mode) {
        if (mode != 0)
            enterMode(mode);
        for (const PanelButton each : poppingButtons()) {
            if (!m_window->panelButton(each)->isVisible())
                continue;
            ToolWindow *popup = hold(*m_window, each);
            QVERIFY2(popup, qPrintable(QString("%1 in mode %2").arg(int(each)).arg(mode)));
            QCOMPARE(popup->pos(), m_window->panelButton(each)->mapToGlobal(
                                       QPoint(m_window->panelButton(each)->width() + 3, 0)));
        }
        // The next mode is entered with a pop-up open, and closes it.
        QVERIFY(m_window->currentToolWindow());
    }
    enterMode(0);
    QVERIFY(!m_window->currentToolWindow());
}

void TestMainWindowDriven::popUpFollowsTheMovedAndResizedWindow()
{
    ToolWindow *popup = hold(*m_window, PanelButton::Circle);
    QVERIFY(popup);
    ImageButton *circle = m_window->panelButton(PanelButton::Circle);
    const auto beside = [&] {
        return popup->pos() == circle->mapToGlobal(QPoint(circle->width() + 3, 0));
    };
    QVERIFY(beside());
    const QString id = QString::number(m_window->winId());
    for (const QPoint place : {QPoint(40, 60), QPoint(300, 150), QPoint(0, 0)}) {
        const QPoint before = m_window->pos();
        Pointer::run({"windowmove", id, QString::number(place.x()), QString::number(place.y())});
        QTRY_VERIFY_WITH_TIMEOUT(m_window->pos() != before, PATIENCE_MS);
        QTRY_VERIFY_WITH_TIMEOUT(beside(), PATIENCE_MS);
        QVERIFY(popup->isVisible());
    }
    Pointer::run({"windowsize", id, "1200", "900"});
    QTRY_COMPARE_WITH_TIMEOUT(m_window->size(), QSize(1200, 900), PATIENCE_MS);
    QTRY_VERIFY_WITH_TIMEOUT(beside(), PATIENCE_MS);
}

void TestMainWindowDriven::sidePanelKeepsTheRightEdge()
{
    m_window->move(400, 100);
    QTRY_VERIFY_WITH_TIMEOUT(qAbs(m_window->x() - 400) < 20, PATIENCE_MS);
    const int right = m_window->geometry().right();
    ImageButton *side = button(*m_window, "Side panel");
    QVERIFY(hold(*m_window, PanelButton::Line));
    for (const bool open : {false, true, false, true}) {
        QVERIFY(clicked(side));
        QTRY_COMPARE_WITH_TIMEOUT(m_window->width(), open ? 938 : 800, PATIENCE_MS);
        QTRY_COMPARE_WITH_TIMEOUT(m_window->geometry().right(), right, PATIENCE_MS);
        QCOMPARE(m_window->findChild<Panel *>()->isVisible(), open);
        QVERIFY(!m_window->currentToolWindow());
    }
}

void TestMainWindowDriven::maximisedWindowKeepsItsSize()
{
    m_window->showMaximized();
    QTRY_VERIFY_WITH_TIMEOUT(m_window->isMaximized() && m_window->width() > 1900, PATIENCE_MS);
    // The new place is told after the new size, and the pointer needs both.
    QTRY_VERIFY_WITH_TIMEOUT(m_window->geometry().right() < 1920, PATIENCE_MS);
    const QSize size = m_window->size();
    QCOMPARE(stack(*m_window)->geometry(), QRect(174, 25, size.width() - 193, size.height() - 100));
    QVERIFY(clicked(button(*m_window, "Side panel")));
    QTRY_COMPARE_WITH_TIMEOUT(stack(*m_window)->geometry(),
                              QRect(36, 25, size.width() - 55, size.height() - 100), PATIENCE_MS);
    QCOMPARE(m_window->size(), size);
    QVERIFY(clicked(button(*m_window, "Side panel")));
    QVERIFY(hold(*m_window, PanelButton::Text));
    for (const int mode : {1, 2, 3, 0})
        enterMode(mode);
    QVERIFY(!m_window->currentToolWindow());
    m_window->showNormal();
    QTRY_COMPARE_WITH_TIMEOUT(m_window->size(), QSize(938, 768), PATIENCE_MS);
}

void TestMainWindowDriven::buttonsSteerTheCamera()
{
    using namespace CameraParameter;
    QVERIFY(liveRuns());
    (void)m_camera->takeExtensionTransfers();
    m_transfers.clear();
    const struct {
        PanelButton button;
        std::uint64_t pressed;
    } zooms[] = {{PanelButton::ZoomIn, ZOOM_IN_KEY}, {PanelButton::ZoomOut, ZOOM_OUT_KEY}};
    for (const auto &zoom : zooms) {
        Pointer::moveTo(Pointer::middle(m_window->panelButton(zoom.button)));
        Pointer::press();
        QVERIFY(wrote(zoom.pressed, 1));
        Pointer::release();
        QVERIFY(wrote(zoom.pressed, 0));
    }
    QVERIFY(clicked(m_window->panelButton(PanelButton::AutoFocus)));
    QVERIFY(wrote(AUTOFOCUS_KEY, 1));
    QVERIFY(clicked(m_window->panelButton(PanelButton::BrightnessUp)));
    QVERIFY(wrote(BRIGHTNESS_UP_KEY, 1));
    QVERIFY(clicked(m_window->panelButton(PanelButton::BrightnessDown)));
    QVERIFY(wrote(BRIGHTNESS_DOWN_KEY, 1));
    QVERIFY(clicked(m_window->panelButton(PanelButton::ZoomReset)));
    QVERIFY(wrote(OPTICAL_ZOOM_POSITION, 0));
}

void TestMainWindowDriven::aZoomHeldOverAModeChangeIsReleased()
{
    using namespace CameraParameter;
    QVERIFY(liveRuns());
    (void)m_camera->takeExtensionTransfers();
    m_transfers.clear();
    Pointer::moveTo(Pointer::middle(m_window->panelButton(PanelButton::ZoomIn)));
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

void TestMainWindowDriven::keysServeThePresenter()
{
    using namespace CameraParameter;
    QVERIFY(liveRuns());
    m_transfers.clear();
    (void)m_camera->takeExtensionTransfers();
    Pointer::key("space");
    QTRY_VERIFY_WITH_TIMEOUT(m_window->currentCanvas()->frozen, PATIENCE_MS);
    QVERIFY(m_window->panelButton(PanelButton::Freeze)->isChecked());
    Pointer::key("space");
    QTRY_VERIFY_WITH_TIMEOUT(!m_window->currentCanvas()->frozen, PATIENCE_MS);
    Pointer::key("KP_Subtract");
    QVERIFY(wrote(ZOOM_OUT_KEY, 1));
    QVERIFY(wrote(ZOOM_OUT_KEY, 0));

    Pointer::key("ctrl+s");
    QTRY_COMPARE_WITH_TIMEOUT(QDir(m_folder->path()).entryList({"*.jpg"}).size(), 1, PATIENCE_MS);

    Pointer::key("F11");
    QTRY_VERIFY_WITH_TIMEOUT(m_window->isFullScreen() && m_window->height() == 1080, PATIENCE_MS);
    Pointer::key("Escape");
    QTRY_VERIFY_WITH_TIMEOUT(!m_window->isFullScreen() && m_window->height() == 768, PATIENCE_MS);
    Pointer::key("Escape");

    for (int i = 0; i < 3; ++i) {
        QImage image(64, 48, QImage::Format_RGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(m_folder->filePath(QString("%1.png").arg(i))));
    }
    enterMode(2);
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
        return QTest::qWaitFor([&] { return index->text() == text; }, PATIENCE_MS);
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

void TestMainWindowDriven::everyKeyGoesToTheTextBeingTyped()
{
    enterMode(3);
    QVERIFY(clicked(m_window->panelButton(PanelButton::Text)));
    Pointer::click(onCanvas(200, 350));
    auto *editor = m_window->currentCanvas()->findChild<QTextEdit *>();
    QTRY_VERIFY_WITH_TIMEOUT(editor->isVisible() && editor->hasFocus(), PATIENCE_MS);
    for (const char *name :
         {"a", "space", "plus", "minus", "Next", "F11", "ctrl+s", "ctrl+p", "Escape", "b"})
        Pointer::key(name);
    QTRY_COMPARE_WITH_TIMEOUT(editor->toPlainText(), QString("a +-b"), PATIENCE_MS);
    QVERIFY(!m_window->isFullScreen());
    QCOMPARE(m_window->currentCanvas()->zoomScale(), 1.0);
    // Choosing a colour in the pop-up does not take the keys away.
    ToolWindow *popup = hold(*m_window, PanelButton::Text);
    QVERIFY(popup);
    QVERIFY(clicked(row(popup, 43)[1]));
    Pointer::type("c +");
    QTRY_COMPARE_WITH_TIMEOUT(editor->toPlainText(), QString("a +-bc +"), PATIENCE_MS);
    QCOMPARE(m_window->currentCanvas()->zoomScale(), 1.0);
}

QTEST_MAIN(TestMainWindowDriven)
#include "tst_main_window_driven.moc"
