#include "resources/SkinImages.h"
#include "tests/TestProgram.h"
#include "widgets/FramelessWindow.h"

#include <QPushButton>
#include <QtTest>

class FramelessWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void flagMakesAFramelessToolWindow();
    void takesTheSizeOfItsBackground();
    void paintsItsBackground();
    void nullBackgroundIsHarmless();
    void topStripDragsTheWindow_data();
    void topStripDragsTheWindow();
    void otherButtonsDoNotDrag();
    void dragEndsWithTheButton();
    void maximizedOrMinimizedWindowStays_data();
    void maximizedOrMinimizedWindowStays();
    void dragStopsOnceMaximized();
    void keepsTheFocusUntilTheTabKey();
    void takesTheFocusBackFromAWidgetThatGoes_data();
    void takesTheFocusBackFromAWidgetThatGoes();
};

namespace
{

QImage chequered(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgb(x, y, (x + y) % 2 * 255));
    }
    return image;
}

// Sends what the window system would: local and global coordinates may be fractions.
bool send(QWidget &window, QEvent::Type type, QPointF local, QPointF global, Qt::MouseButton button,
          Qt::MouseButtons held)
{
    QMouseEvent event(type, local, local, global, button, held, Qt::NoModifier);
    event.ignore();
    QCoreApplication::sendEvent(&window, &event);
    return event.isAccepted();
}

} // namespace

void FramelessWindowTest::flagMakesAFramelessToolWindow()
{
    QWidget parent;
    const FramelessWindow tool(QImage(), true, &parent);
    QCOMPARE(int(tool.windowFlags()) & 0xfff, 0x80b);
    const FramelessWindow plain(QImage(), false, nullptr);
    QCOMPARE(int(plain.windowFlags()) & 0x80b, int(Qt::Window));
}

void FramelessWindowTest::takesTheSizeOfItsBackground()
{
    FramelessWindow window(chequered(40, 30), true, nullptr);
    QCOMPARE(window.size(), QSize(40, 30));
    QCOMPARE(window.minimumSize(), QSize(40, 30));
    window.setBackgroundImage(chequered(60, 20));
    QCOMPARE(window.size(), QSize(60, 20));
    QCOMPARE(window.minimumSize(), QSize(60, 20));
    window.setBackgroundImage(SkinImages::load(":/icons/Background/POP_BK_COLOR_1LINE"));
    QCOMPARE(window.size(), QSize(292, 47));
}

void FramelessWindowTest::paintsItsBackground()
{
    const QImage background = chequered(40, 30);
    FramelessWindow window(background, true, nullptr);
    for (const QPalette::ColorGroup group :
         {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        QCOMPARE(window.palette().brush(group, window.backgroundRole()).textureImage(), background);
    QImage shown = window.grab().toImage().convertToFormat(QImage::Format_RGB32);
    if (window.devicePixelRatioF() > 1.0) {
        shown = shown.scaled(40, 30);
        shown.setDevicePixelRatio(1.0);
    }
    QCOMPARE(shown, background);
}

void FramelessWindowTest::nullBackgroundIsHarmless()
{
    FramelessWindow window(QImage(), false, nullptr);
    QCOMPARE(window.minimumSize(), QSize(0, 0));
    window.resize(20, 20);
    window.grab();
    window.setBackgroundImage(QImage());
    QCOMPARE(window.size(), QSize(0, 0));
}

void FramelessWindowTest::topStripDragsTheWindow_data()
{
    QTest::addColumn<double>("y");
    QTest::addColumn<bool>("drags");
    QTest::newRow("top") << 0.0 << true;
    QTest::newRow("last row") << 25.0 << true;
    QTest::newRow("rounds down to the last row") << 25.4 << true;
    QTest::newRow("rounds up below it") << 25.5 << false;
    QTest::newRow("below") << 26.0 << false;
}

void FramelessWindowTest::topStripDragsTheWindow()
{
    QFETCH(double, y);
    QFETCH(bool, drags);
    FramelessWindow window(chequered(100, 80), true, nullptr);
    window.move(50, 60);
    window.show();
    const bool accepted = send(window, QEvent::MouseButtonPress, {10, y}, {60.6, 60 + y},
                               Qt::LeftButton, Qt::LeftButton);
    QCOMPARE(accepted, drags);
    // The offset was rounded from 60.6 to 61, so 81.4 (81) moves it by 20.
    send(window, QEvent::MouseMove, {30, y}, {81.4, 60 + y + 5}, Qt::NoButton, Qt::LeftButton);
    QCOMPARE(window.pos(), drags ? QPoint(70, 65) : QPoint(50, 60));
}

void FramelessWindowTest::otherButtonsDoNotDrag()
{
    FramelessWindow window(chequered(100, 80), true, nullptr);
    window.move(50, 60);
    window.show();
    QVERIFY(!send(window, QEvent::MouseButtonPress, {10, 5}, {60, 65}, Qt::RightButton,
                  Qt::RightButton));
    send(window, QEvent::MouseMove, {20, 5}, {70, 65}, Qt::NoButton, Qt::RightButton);
    QCOMPARE(window.pos(), QPoint(50, 60));
    // It does not handle a move without a press either.
    send(window, QEvent::MouseMove, {20, 5}, {70, 65}, Qt::NoButton, Qt::LeftButton);
    QCOMPARE(window.pos(), QPoint(50, 60));
}

void FramelessWindowTest::dragEndsWithTheButton()
{
    FramelessWindow window(chequered(100, 80), true, nullptr);
    window.move(50, 60);
    window.show();
    send(window, QEvent::MouseButtonPress, {10, 5}, {60, 65}, Qt::LeftButton, Qt::LeftButton);
    // Another button's release leaves the drag alone while the left one is held.
    send(window, QEvent::MouseButtonRelease, {10, 5}, {60, 65}, Qt::RightButton, Qt::LeftButton);
    send(window, QEvent::MouseMove, {11, 5}, {61, 65}, Qt::NoButton, Qt::LeftButton);
    QCOMPARE(window.pos(), QPoint(51, 60));
    QVERIFY(
        send(window, QEvent::MouseButtonRelease, {10, 5}, {61, 65}, Qt::LeftButton, Qt::NoButton));
    send(window, QEvent::MouseMove, {20, 5}, {90, 65}, Qt::NoButton, Qt::LeftButton);
    QCOMPARE(window.pos(), QPoint(51, 60));
}

void FramelessWindowTest::maximizedOrMinimizedWindowStays_data()
{
    QTest::addColumn<int>("state");
    QTest::newRow("maximized") << int(Qt::WindowMaximized);
    QTest::newRow("minimized") << int(Qt::WindowMinimized);
    QTest::newRow("full screen") << int(Qt::WindowFullScreen);
}

void FramelessWindowTest::maximizedOrMinimizedWindowStays()
{
    QFETCH(int, state);
    FramelessWindow window(chequered(100, 80), false, nullptr);
    window.setWindowState(Qt::WindowState(state));
    QVERIFY(
        !send(window, QEvent::MouseButtonPress, {10, 5}, {60, 65}, Qt::LeftButton, Qt::LeftButton));
    const QPoint before = window.pos();
    send(window, QEvent::MouseMove, {20, 5}, {90, 65}, Qt::NoButton, Qt::LeftButton);
    QCOMPARE(window.pos(), before);
}

void FramelessWindowTest::dragStopsOnceMaximized()
{
    FramelessWindow window(chequered(100, 80), false, nullptr);
    send(window, QEvent::MouseButtonPress, {10, 5}, {60, 65}, Qt::LeftButton, Qt::LeftButton);
    window.setWindowState(Qt::WindowMaximized);
    const QPoint before = window.pos();
    send(window, QEvent::MouseMove, {20, 5}, {90, 95}, Qt::NoButton, Qt::LeftButton);
    QCOMPARE(window.pos(), before);
    window.setWindowState(Qt::WindowNoState);
    send(window, QEvent::MouseMove, {20, 5}, {90, 95}, Qt::NoButton, Qt::LeftButton);
    QVERIFY(window.pos() != before);
}

void FramelessWindowTest::keepsTheFocusUntilTheTabKey()
{
    FramelessWindow window(chequered(100, 80), false, nullptr);
    QPushButton button(&window);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(window.hasFocus());
    QTest::keyClick(&window, Qt::Key_Tab);
    QVERIFY(button.hasFocus());
    // A widget with the focus has it again when the window comes back from behind another one.
    FramelessWindow other(chequered(10, 10), false, nullptr);
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(button.hasFocus());
    // A widget that has vanished meanwhile does not get it back, and no other one gets it.
    QPushButton second(&window);
    second.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    button.hide();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(window.hasFocus());
}

void FramelessWindowTest::takesTheFocusBackFromAWidgetThatGoes_data()
{
    QTest::addColumn<bool>("hidden");
    QTest::newRow("hidden") << true;
    QTest::newRow("disabled") << false;
}

void FramelessWindowTest::takesTheFocusBackFromAWidgetThatGoes()
{
    QFETCH(bool, hidden);
    FramelessWindow window(chequered(100, 80), false, nullptr);
    QPushButton first(&window);
    QWidget bar(&window);
    QPushButton second(&bar);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    second.setFocus(Qt::TabFocusReason);
    QVERIFY(second.hasFocus());
    // With the bar that it lies in.
    if (hidden)
        bar.hide();
    else
        second.setEnabled(false);
    QVERIFY(window.hasFocus());
    QVERIFY(!first.hasFocus());
}

REGISTER_TEST(FramelessWindowTest)
#include "tst_frameless_window.moc"
