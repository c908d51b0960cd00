#include "canvas/ImageCanvas.h"
#include "mainwindow/pages/MoreToolWindow.h"
#include "tests/TestProgram.h"
#include "tests/mainwindow/DrivenWindow.h"
#include "tests/mainwindow/InputDevice.h"
#include "widgets/Slider.h"

#include <QCheckBox>
#include <QScrollArea>
#include <QScrollBar>

using namespace DrivenWindow;

/// What a teacher does with a touch screen and a pen to a window on a real display server.
class TouchDrivenTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { m_window.reset(); }
    void aFingerChoosesATool();
    void aFingerHoldsAToolForItsOptions();
    void aFingerDraws();
    void twoFingersZoomAndDrawNothing();
    void tapsTakeTheDrawingBackAndBringItAgain();
    void thePenDrawsEveryPoint();
    void theEraserEndErases();
    void theButtonsOfThePenPullAndErase();
    void theHandUnderThePenDrawsNothing();
    void theWheelZoomsAboutThePointer();
    void aFingerMovesASlider();
    void aFingerPullsAPageOfMore();
    void aFingerThatPullsPressesNothing();

private:
    [[nodiscard]] MoreToolWindow *openMore(Pages::Id page);
    void tap(QPoint screenPoint)
    {
        m_touch.press(0, screenPoint);
        m_touch.lift(0, screenPoint);
    }
    [[nodiscard]] ImageCanvas &canvas() const { return *m_window->currentCanvas(); }
    [[nodiscard]] QPoint at(int x, int y) const { return onCanvas(*m_window, x, y); }

    InputDevice m_touch{"touch"};
    InputDevice m_stylus{"stylus"};
    InputDevice m_eraser{"eraser"};
    std::unique_ptr<MainWindow> m_window;
};

void TouchDrivenTest::initTestCase()
{
    WindowProbe::beOnOneself();
    m_window = open();
    QVERIFY(m_window);
    QVERIFY(enterMode(*m_window, 3));
    canvas().penColor = Qt::red;
    canvas().penWidth = 9;
}

void TouchDrivenTest::aFingerChoosesATool()
{
    ImageButton *line = m_window->button(Command::Line);
    tap(Pointer::middle(line));
    QTRY_VERIFY(line->isChecked());
    QCOMPARE(canvas().mouseMode(), ImageCanvas::Line);
}

void TouchDrivenTest::aFingerHoldsAToolForItsOptions()
{
    const QPoint middle = Pointer::middle(m_window->button(Command::Freehand));
    m_touch.press(0, middle);
    QTRY_VERIFY(m_window->currentToolWindow() && m_window->currentToolWindow()->isVisible());
    m_touch.lift(0, middle);
    QTRY_COMPARE(canvas().mouseMode(), ImageCanvas::Freehand);
    ToolWindow *popup = m_window->currentToolWindow();
    QVERIFY(popup && QTest::qWaitForWindowExposed(popup));
    // A choice in it.
    ImageButton *widest = row(popup, 20).last();
    QVERIFY(!widest->isChecked());
    tap(Pointer::middle(widest));
    QTRY_VERIFY(widest->isChecked());
    // A press on the canvas closes it.
    tap(at(20, 20));
    QTRY_VERIFY(!m_window->currentToolWindow());
    canvas().clearPainting();
    canvas().penWidth = 9;
    canvas().penColor = Qt::red;
}

void TouchDrivenTest::aFingerDraws()
{
    m_touch.press(0, at(200, 300));
    for (int x = 220; x <= 500; x += 20)
        m_touch.slide(0, at(x, 300));
    m_touch.lift(0, at(500, 300));
    QVERIFY(shows(*m_window, 350, 300, 0xFFFF0000));
    QVERIFY(shows(*m_window, 480, 300, 0xFFFF0000));
}

void TouchDrivenTest::twoFingersZoomAndDrawNothing()
{
    m_touch.press(0, at(300, 400));
    m_touch.press(1, at(400, 400));
    for (int i = 10; i <= 100; i += 10) {
        m_touch.slide(0, at(300 - i, 400));
        m_touch.slide(1, at(400 + i, 400));
    }
    QTRY_VERIFY(std::abs(canvas().zoomScale() - 3.0) < 0.1);
    m_touch.lift(0, at(200, 400));
    m_touch.lift(1, at(500, 400));
    canvas().zoomReset();
    canvas().autoRefresh();
    QVERIFY(shows(*m_window, 350, 300, 0xFFFF0000));
    QVERIFY(shows(*m_window, 250, 400, 0xFFFFFFFF));
    QVERIFY(shows(*m_window, 450, 400, 0xFFFFFFFF));
}

void TouchDrivenTest::tapsTakeTheDrawingBackAndBringItAgain()
{
    const auto tapWith = [this](unsigned fingers) {
        for (unsigned i = 0; i < fingers; ++i)
            m_touch.press(i, at(300 + 60 * int(i), 450));
        for (unsigned i = 0; i < fingers; ++i)
            m_touch.lift(i, at(300 + 60 * int(i), 450));
    };
    tapWith(2);
    QVERIFY(shows(*m_window, 350, 300, 0xFFFFFFFF));
    QVERIFY(canvas().canRedo());
    tapWith(3);
    QVERIFY(shows(*m_window, 350, 300, 0xFFFF0000));
}

void TouchDrivenTest::thePenDrawsEveryPoint()
{
    const auto zigzag = [this](int x) { return at(x, x / 20 % 2 == 0 ? 350 : 420); };
    m_stylus.come();
    m_stylus.move(zigzag(200), 0.0);
    m_stylus.down(1, zigzag(200), 0.3);
    for (int x = 220; x <= 500; x += 20)
        m_stylus.move(zigzag(x), 0.8);
    m_stylus.up(1, zigzag(500));
    m_stylus.go();
    for (int x = 220; x < 500; x += 20)
        QVERIFY2(shows(*m_window, x, x / 20 % 2 == 0 ? 350 : 420, 0xFFFF0000),
                 qPrintable(QString::number(x)));
}

void TouchDrivenTest::theEraserEndErases()
{
    m_eraser.come();
    m_eraser.move(at(330, 300), 0.0);
    m_eraser.down(1, at(330, 300), 0.5);
    m_eraser.move(at(350, 300), 0.5);
    m_eraser.up(1, at(350, 300));
    m_eraser.go();
    QVERIFY(shows(*m_window, 350, 300, 0xFFFFFFFF));
    QVERIFY(shows(*m_window, 450, 300, 0xFFFF0000));
    QCOMPARE(canvas().mouseMode(), ImageCanvas::Freehand);
}

void TouchDrivenTest::theButtonsOfThePenPullAndErase()
{
    canvas().zoomIn();
    const QPointF before = canvas().centerPoint();
    m_stylus.come();
    m_stylus.move(at(400, 450), 0.0);
    m_stylus.down(2, at(400, 450), 0.5);
    m_stylus.move(at(360, 450), 0.5);
    m_stylus.up(2, at(360, 450));
    QTRY_VERIFY(canvas().centerPoint().x() > before.x() + 5.0);
    canvas().zoomReset();
    canvas().autoRefresh();
    // Held in the air already, as a hand does.
    m_stylus.move(at(450, 300), 0.0);
    m_stylus.down(3, at(450, 300), 0.0);
    m_stylus.down(1, at(450, 300), 0.5);
    m_stylus.move(at(452, 300), 0.5);
    m_stylus.up(1, at(452, 300));
    m_stylus.up(3, at(452, 300));
    m_stylus.go();
    QVERIFY(shows(*m_window, 450, 300, 0xFFFFFFFF));
    QVERIFY(shows(*m_window, 250, 300, 0xFFFF0000));
    QCOMPARE(canvas().mouseMode(), ImageCanvas::Freehand);
}

void TouchDrivenTest::theHandUnderThePenDrawsNothing()
{
    m_stylus.come();
    m_stylus.move(at(300, 200), 0.0);
    m_touch.press(0, at(400, 500));
    m_touch.slide(0, at(430, 500));
    m_stylus.down(1, at(300, 200), 0.5);
    m_stylus.move(at(360, 200), 0.5);
    m_touch.slide(0, at(460, 500));
    m_stylus.up(1, at(360, 200));
    m_stylus.go();
    m_touch.slide(0, at(490, 500));
    m_touch.lift(0, at(490, 500));
    QVERIFY(shows(*m_window, 340, 200, 0xFFFF0000));
    QVERIFY(shows(*m_window, 450, 500, 0xFFFFFFFF));
    // The pen is forgotten a second after it, by the server's clock.
    QTest::qWait(1100);
    m_touch.press(0, at(400, 500));
    m_touch.slide(0, at(490, 500));
    m_touch.lift(0, at(490, 500));
    QVERIFY(shows(*m_window, 450, 500, 0xFFFF0000));
}

void TouchDrivenTest::theWheelZoomsAboutThePointer()
{
    Pointer::moveTo(at(350, 200));
    Pointer::run({"click", "4"});
    QTRY_COMPARE(canvas().zoomScale(), 2.0);
    QVERIFY(shows(*m_window, 350, 200, 0xFFFF0000));
    Pointer::run({"click", "5"});
    QTRY_COMPARE(canvas().zoomScale(), 1.0);
}

void TouchDrivenTest::aFingerMovesASlider()
{
    QVERIFY(enterMode(*m_window, 2));
    tap(Pointer::middle(m_window->button(Command::SlideshowInterval)));
    const auto shownSlider = [this]() -> Slider * {
        for (auto *slider : m_window->findChildren<Slider *>()) {
            if (slider->isVisible())
                return slider;
        }
        return nullptr;
    };
    QTRY_VERIFY(shownSlider());
    Slider *slider = shownSlider();
    slider->setValue(slider->minimum());
    // The handle is at the very left.
    const int y = slider->height() / 2;
    const QPoint left = slider->mapToGlobal(QPoint(6, y));
    const QPoint right = slider->mapToGlobal(QPoint(slider->width() - 6, y));
    m_touch.press(0, left);
    for (int i = 1; i <= 10; ++i)
        m_touch.slide(0, left + (right - left) * i / 10);
    m_touch.lift(0, right);
    QTRY_COMPARE(slider->value(), slider->maximum());
}

/// Null when it did not open.
MoreToolWindow *TouchDrivenTest::openMore(Pages::Id page)
{
    const auto popup = [this] {
        return qobject_cast<MoreToolWindow *>(m_window->currentToolWindow());
    };
    if (!popup())
        tap(Pointer::middle(m_window->button(Command::More)));
    if (!QTest::qWaitFor([&] { return popup() && popup()->isVisible(); }, TIMEOUT_MS) ||
        !QTest::qWaitForWindowExposed(popup()))
        return nullptr;
    popup()->showPage(page);
    return popup();
}

void TouchDrivenTest::aFingerPullsAPageOfMore()
{
    MoreToolWindow *popup = openMore(Pages::Id::Keys);
    QVERIFY(popup);
    auto *area = popup->findChild<QScrollArea *>();
    QScrollBar *bar = area->verticalScrollBar();
    QTRY_VERIFY(bar->maximum() > 100);
    const QPoint middle = Pointer::middle(area->viewport());
    m_touch.press(0, middle);
    for (int i = 1; i <= 10; ++i)
        m_touch.slide(0, middle - QPoint(0, 10 * i));
    QTRY_COMPARE(bar->value(), 100);
    m_touch.slide(0, middle - QPoint(0, 60));
    m_touch.lift(0, middle - QPoint(0, 60));
    QTRY_COMPARE(bar->value(), 60);
    // The next finger begins where the page stands.
    m_touch.press(0, middle);
    m_touch.slide(0, middle + QPoint(0, 40));
    m_touch.lift(0, middle + QPoint(0, 40));
    QTRY_COMPARE(bar->value(), 20);
}

void TouchDrivenTest::aFingerThatPullsPressesNothing()
{
    MoreToolWindow *popup = openMore(Pages::Id::Pen);
    QVERIFY(popup);
    auto *box = popup->findChild<QCheckBox *>();
    const QPoint on = box->mapToGlobal(QPoint(10, box->height() / 2));
    m_touch.press(0, on);
    QTRY_VERIFY(box->isDown());
    m_touch.slide(0, on + QPoint(0, 40));
    QTRY_VERIFY(!box->isDown());
    m_touch.slide(0, on);
    m_touch.lift(0, on);
    QTRY_VERIFY(QGuiApplication::mouseButtons() == Qt::NoButton);
    QVERIFY(!box->isChecked());
    tap(on);
    QTRY_VERIFY(box->isChecked());
    tap(on);
    QTRY_VERIFY(!box->isChecked());
}

REGISTER_TEST(TouchDrivenTest)
#include "tst_touch_driven.moc"
