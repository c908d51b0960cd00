#include "canvas/ImageCanvas.h"
#include "tests/TestProgram.h"
#include "tests/mainwindow/DeviceSwitch.h"
#include "tests/mainwindow/DrivenWindow.h"
#include "tests/mainwindow/InputDevice.h"

using namespace DrivenWindow;

/// Pens and touch screens that are unplugged while they draw in a window on a real display server.
///
/// The mouse is a device of the server, too. The pointer that a program moves does not do here: the
/// server would have its first press after such a device at the corner of the screen.
class PulledDevicesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { m_window.reset(); }
    void cleanup();
    void theMouseDrawsAfterAPenThatWent();
    void theMouseDrawsAfterATouchScreenThatWent();

private:
    void drawWithMouse(int y);
    [[nodiscard]] ImageCanvas &canvas() const { return *m_window->currentCanvas(); }
    [[nodiscard]] QPoint at(int x, int y) const { return onCanvas(*m_window, x, y); }
    [[nodiscard]] bool isDrawn(int x, int y) const { return shows(*m_window, x, y, 0xFFFF0000); }
    [[nodiscard]] bool isWhite(int x, int y) const { return shows(*m_window, x, y, 0xFFFFFFFF); }

    InputDevice m_mouse{"mouse"};
    std::unique_ptr<MainWindow> m_window;
};

void PulledDevicesTest::initTestCase()
{
    WindowProbe::beOnOneself();
    m_window = open();
    QVERIFY(m_window);
    QVERIFY(enterMode(*m_window, 3));
    canvas().setMouseMode(ImageCanvas::Freehand);
    canvas().penColor = Qt::red;
    canvas().penWidth = 9;
}

void PulledDevicesTest::cleanup()
{
    canvas().clearPainting();
    canvas().autoRefresh();
    QVERIFY(isWhite(350, 300));
}

/// From the left to the right, and on without a button.
void PulledDevicesTest::drawWithMouse(int y)
{
    m_mouse.pushTo(at(200, y));
    m_mouse.holdButton();
    for (int x = 220; x <= 500; x += 20)
        m_mouse.pushTo(at(x, y));
    m_mouse.letGo();
    m_mouse.pushTo(at(500, y + 50));
}

void PulledDevicesTest::theMouseDrawsAfterAPenThatWent()
{
    InputDevice before("stylus");
    before.come();
    before.move(at(200, 200), 0.0);
    before.down(1, at(200, 200), 0.5);
    before.move(at(300, 200), 0.5);
    QVERIFY(isDrawn(280, 200));
    DeviceSwitch::unplug("pen stylus");
    drawWithMouse(300);
    QVERIFY(isDrawn(220, 300));
    QVERIFY(isDrawn(480, 300));
    QVERIFY(isWhite(500, 340));
    // What the pen had drawn stays, and nothing leads from there to the mouse.
    QVERIFY(isDrawn(280, 200));
    QVERIFY(isWhite(250, 250));
    // Its part in the drawing and the mouse's are two steps.
    canvas().undo();
    canvas().autoRefresh();
    QVERIFY(isWhite(350, 300));
    QVERIFY(isDrawn(280, 200));
    DeviceSwitch::plugIn("pen stylus");
    InputDevice again("stylus");
    again.come();
    again.move(at(200, 350), 0.0);
    again.down(1, at(200, 350), 0.5);
    again.move(at(300, 350), 0.5);
    again.up(1, at(300, 350));
    again.go();
    QVERIFY(isDrawn(280, 350));
}

void PulledDevicesTest::theMouseDrawsAfterATouchScreenThatWent()
{
    // Near a pen, a finger is the hand that holds it; a pen is forgotten by the server's clock.
    QTest::qWait(1100);
    InputDevice before("touch");
    before.press(0, at(200, 200));
    before.slide(0, at(300, 200));
    QVERIFY(isDrawn(280, 200));
    DeviceSwitch::unplug("touch");
    drawWithMouse(300);
    QVERIFY(isDrawn(220, 300));
    QVERIFY(isDrawn(480, 300));
    QVERIFY(isWhite(500, 340));
    QVERIFY(isWhite(250, 250));
    DeviceSwitch::plugIn("touch");
    InputDevice again("touch");
    again.press(0, at(200, 350));
    again.slide(0, at(300, 350));
    again.lift(0, at(300, 350));
    QVERIFY(isDrawn(280, 350));
}

REGISTER_TEST(PulledDevicesTest)
#include "tst_pulled_devices.moc"
