#include "tests/mainwindow/WindowParts.h"
#include "tests/mainwindow/WindowProbe.h"

#include "canvas/ImageCanvas.h"
#include "mainwindow/Modes.h"
#include "widgets/Panel.h"

#include "tests/TestProgram.h"

#include <QPointer>
#include <QSignalSpy>

using namespace WindowProbe;

/// The four modes and the side panel.
class WindowModesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { beOnOneself(); }
    void init() { usualSettings(); }
    void modesShowTheirPartsAndButtons_data();
    void modesShowTheirPartsAndButtons();
    void theCurrentModesButtonChangesNothing();
    void panelFollowsTheCanvasOfTheMode();
    void sidePanelOpensAndCloses();
    void aLargeWindowKeepsItsSizeWithThePanel_data();
    void aLargeWindowKeepsItsSizeWithThePanel();
};

void WindowModesTest::modesShowTheirPartsAndButtons_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    for (int from = 0; from < 4; ++from) {
        for (int to = 0; to < 4; ++to) {
            if (from != to)
                QTest::addRow("%d to %d", from, to) << from << to;
        }
    }
}

void WindowModesTest::modesShowTheirPartsAndButtons()
{
    QFETCH(int, from);
    QFETCH(int, to);
    const QStringList parts[] = {
        {"live box", "record time"}, {"film bar", "position"}, {"index", "photograph bar"}, {}};
    MainWindow window;
    enter(window, from);
    // What the mode left may have shown goes with it.
    if (from == 1)
        button(window, "Volume")->click();
    if (from == 2) {
        button(window, "Thumbnails")->click();
        button(window, "Slideshow interval")->click();
        QCOMPARE(shownParts(window), (QStringList{"index", "interval", "interval label",
                                                  "photograph bar", "scroll bar", "strip"}));
    }
    QSignalSpy changed(&window, SIGNAL(modeChanged()));
    enter(window, to);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(window.currentMode(), to);
    QCOMPARE(stack(window)->currentIndex(), to);
    QCOMPARE(window.currentCanvas(), stack(window)->widget(to));
    QCOMPARE(shownParts(window), parts[to]);
    // The modes of the buttons that are not in all of them.
    const QMap<Command, QList<int>> modes{
        {Command::Hand, {1, 2, 3}},     {Command::FillBackground, {3}}, {Command::AutoFocus, {0}},
        {Command::BrightnessDown, {0}}, {Command::BrightnessUp, {0}},   {Command::Freeze, {0}},
        {Command::Record, {0}},         {Command::Settings, {0}},
    };
    for (int i = 0; i <= int(Command::Print); ++i) {
        const bool expected = modes.value(Command(i), {0, 1, 2, 3}).contains(to);
        QCOMPARE(window.button(Command(i))->isEnabled(), expected);
        QCOMPARE(!window.button(Command(i))->isHidden(), expected);
    }
    enter(window, from);
    QCOMPARE(shownParts(window), parts[from]);
    for (const char *name : {"Volume", "Thumbnails", "Slideshow interval", "Slideshow"})
        QVERIFY(!button(window, name)->isChecked());
}

void WindowModesTest::theCurrentModesButtonChangesNothing()
{
    MainWindow window;
    QSignalSpy changed(&window, SIGNAL(modeChanged()));
    window.lineHold();
    enter(window, 0);
    QCOMPARE(changed.count(), 0);
    QVERIFY(window.currentToolWindow());
    QVERIFY(window.button(Command::Hand)->isHidden());
}

void WindowModesTest::panelFollowsTheCanvasOfTheMode()
{
    MainWindow window;
    window.button(Command::Arrow)->click();
    window.currentCanvas()->maskMode = ImageCanvas::MaskTop;
    window.currentCanvas()->effectMode = ImageCanvas::EffectNegative;
    window.button(Command::Freeze)->click();
    QVERIFY(window.currentCanvas()->frozen);

    enter(window, 3);
    QVERIFY(window.button(Command::Hand)->isChecked());
    QVERIFY(!window.button(Command::Mask)->isChecked());
    QVERIFY(!window.button(Command::Freeze)->isChecked());
    const struct {
        ImageCanvas::MouseMode mode;
        Command button;
    } tools[] = {{ImageCanvas::Hand, Command::Hand},
                 {ImageCanvas::Text, Command::Text},
                 {ImageCanvas::Clip, Command::Clip},
                 {ImageCanvas::Eraser, Command::Eraser}};
    for (const auto &tool : tools) {
        window.button(tool.button)->click();
        QCOMPARE(window.currentCanvas()->mouseMode(), tool.mode);
        enter(window, 0);
        QVERIFY(window.button(Command::Arrow)->isChecked());
        QVERIFY(window.button(Command::Mask)->isChecked());
        QVERIFY(window.button(Command::Freeze)->isChecked());
        enter(window, 3);
        QVERIFY(window.button(tool.button)->isChecked());
    }
    // A mode that no tool has checks nothing.
    window.currentCanvas()->setMouseMode(ImageCanvas::MouseMode(12));
    enter(window, 0);
    enter(window, 3);
    for (int i = 0; i < 12; ++i)
        QVERIFY(!window.button(Command(i))->isChecked());
    window.button(Command::Line)->click();
    window.button(Command::Circle)->click();
    QVERIFY(!window.button(Command::Line)->isChecked());
}

void WindowModesTest::sidePanelOpensAndCloses()
{
    MainWindow window;
    window.expand();
    QCOMPARE(window.size(), QSize(800, 768));
    QVERIFY(window.findChild<Panel *>()->isHidden());
    QCOMPARE(stack(window)->geometry(), QRect(36, 25, 745, 668));

    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.move(300, 10);
    const QPoint before = window.pos();
    button(window, "Side panel")->click();
    QCOMPARE(window.size(), QSize(938, 768));
    QCOMPARE(window.pos(), before - QPoint(138, 0));
    QCOMPARE(stack(window)->geometry(), QRect(174, 25, 745, 668));
    QCOMPARE(window.findChild<Panel *>()->pos(), QPoint(40, 30));

    window.lineHold();
    QPointer<ToolWindow> popup = window.currentToolWindow();
    button(window, "Side panel")->click();
    QVERIFY(!popup);
    QVERIFY(!window.currentToolWindow());
    QCOMPARE(window.pos(), before);

    // The minimum width takes a part of the step: the right edge stays all the same.
    window.expand();
    window.resize(820, 768);
    const int right = window.geometry().right();
    window.expand();
    QCOMPARE(window.width(), 800);
    QCOMPARE(window.geometry().right(), right);
}

void WindowModesTest::aLargeWindowKeepsItsSizeWithThePanel_data()
{
    QTest::addColumn<int>("state");
    QTest::newRow("maximised") << int(Qt::WindowMaximized);
    QTest::newRow("full screen") << int(Qt::WindowFullScreen);
}

void WindowModesTest::aLargeWindowKeepsItsSizeWithThePanel()
{
    QFETCH(int, state);
    MainWindow window;
    window.show();
    window.setWindowState(Qt::WindowState(state));
    QTRY_VERIFY(window.windowState() & Qt::WindowState(state));
    QCoreApplication::processEvents();
    const QRect before = window.geometry();
    const QRect open = stack(window)->geometry();
    button(window, "Side panel")->click();
    QCOMPARE(window.geometry(), before);
    QCOMPARE(stack(window)->geometry(), open.adjusted(-138, 0, 0, 0));
    button(window, "Side panel")->click();
    QCOMPARE(window.geometry(), before);
    QCOMPARE(stack(window)->geometry(), open);
}

REGISTER_TEST(WindowModesTest)
#include "tst_window_modes.moc"
