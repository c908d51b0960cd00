#include "canvas/ImageCanvas.h"
#include "tests/TestProgram.h"
#include "tests/canvas/CanvasPointers.h"
#include "tests/canvas/DrawnCanvas.h"
#include "tests/canvas/GoldenPicture.h"

#include <QElapsedTimer>
#include <QTextEdit>
#include <QThread>

#include <atomic>
#include <chrono>
#include <cmath>
#include <functional>
#include <thread>

Q_DECLARE_METATYPE(std::function<void(ImageCanvas &)>)

using namespace DrawnCanvas;
using namespace CanvasPointers;

namespace
{

/// The same way for each pointer.
const std::initializer_list<QPoint> WAY{{45, 30}, {115, 40}, {60, 70}, {110, 95}};

void fingerDrag(QWidget &widget, std::initializer_list<QPoint> points)
{
    Hand hand(widget);
    int ms = 0;
    hand.press(0, *points.begin(), ms);
    for (const QPoint *point = points.begin() + 1; point != points.end(); ++point)
        hand.move(0, *point, ms += 10);
    hand.lift(0, ms);
}

/// Every pixel of the frame has its place in its colour.
QImage map(QSize size)
{
    QImage picture(size, QImage::Format_RGB888);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            picture.setPixelColor(x, y, QColor(x, y, 0));
    }
    return picture;
}

/// How far the canvas shows that pixel of the map from that point, in pixels of the widget.
double missedBy(ImageCanvas &canvas, QPointF mapPoint, QPointF widgetPoint)
{
    const QPoint seen = canvas.transformMousePoint(widgetPoint.toPoint());
    const QColor at = shown(canvas).pixelColor(seen);
    const QPointF off = QPointF(at.red(), at.green()) - mapPoint;
    return std::max(std::abs(off.x()), std::abs(off.y())) * canvas.zoomScale();
}

/// A source that hardly rests, and counts the pictures that the canvas makes between its frames.
class BusySource : private PictureTap
{
public:
    explicit BusySource(ImageCanvas &canvas)
        : m_canvas(canvas)
    {
        canvas.setPictureTap(this);
        m_ownPictures = 0;
        m_thread = std::thread([this] {
            QImage frame = paper();
            for (; !m_stop; ++m_frames) {
                m_canvas.imageCaptured(frame.bits(), FRAME.width(), FRAME.height(), false, false);
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            }
        });
    }
    ~BusySource() override
    {
        m_stop = true;
        m_thread.join();
        m_canvas.setPictureTap(nullptr);
    }

    [[nodiscard]] int frames() const { return m_frames; }
    [[nodiscard]] int ownPictures() const { return m_ownPictures; }

private:
    void pictureShown(const CanvasModel::Shown &) override
    {
        m_ownPictures += QThread::currentThread() == m_canvas.thread() ? 1 : 0;
    }

    ImageCanvas &m_canvas;
    std::atomic<bool> m_stop{false};
    std::atomic<int> m_frames{0};
    /// Written on the canvas's thread alone.
    std::atomic<int> m_ownPictures{0};
    std::thread m_thread;
};

struct PaintCount : QObject {
    explicit PaintCount(QWidget &widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Paint || event->type() == QEvent::UpdateRequest ? 1 : 0;
        return false;
    }
    int count = 0;
};

} // namespace

/// What pens, fingers and the wheel do to a canvas and its drawing.
class CanvasGesturesTest : public QObject
{
    Q_OBJECT

private slots:
    void everyPointerDrawsTheSamePixels_data();
    void everyPointerDrawsTheSamePixels();
    void pressureMakesFreehandThinnerAlone();
    void aStrokeThatIsPressedMoreAndLess();
    void theEraserEndErasesAndLeavesTheToolAlone();
    void theButtonsOfAPenPullAndErase();
    void theEraserEndOpensNoText();
    void aSecondFingerTakesTheStrokeBack();
    void tapsTakeStepsBackAndDoThemAgain();
    void aTouchThatIsCancelledLeavesNothing();
    void twoFingersZoomAboutTheirMiddle();
    void aPinchShowsWithTheNextFrame();
    void theViewMovesBetweenTwoFrames_data();
    void theViewMovesBetweenTwoFrames();
    void manyMovesMakeFewPictures();
    void theWheelZoomsAboutThePointer();
    void theMiddleButtonPullsThePicture();
    void thePointerShowsWhatAPressWillDo();
    void anotherPointerCostsNoPainting();
};

void CanvasGesturesTest::everyPointerDrawsTheSamePixels_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("width");
    for (const Tool &tool : TOOLS) {
        for (const int width : {1, 4})
            QTest::addRow("%s %d", tool.name, width) << int(tool.mode) << width;
    }
}

void CanvasGesturesTest::everyPointerDrawsTheSamePixels()
{
    QFETCH(int, mode);
    QFETCH(int, width);
    const auto drawnBy = [&](const std::function<void(QWidget &)> &pointer) {
        const auto canvas = canvasOf();
        // Something to rub out.
        canvas->setMouseMode(CanvasModes::Line);
        for (int y = 10; y < FRAME.height() && mode == CanvasModes::Eraser; y += 5)
            CanvasMouse::drag(*canvas, {{5, y}, {155, y}});
        canvas->penWidth = width;
        canvas->fillEnabled = true;
        canvas->setMouseMode(static_cast<CanvasModes::MouseMode>(mode));
        pointer(*canvas);
        return shown(*canvas);
    };
    const QImage byMouse = drawnBy([](QWidget &canvas) { CanvasMouse::drag(canvas, WAY); });
    QVERIFY(byMouse != drawnBy([](QWidget &) {}));
    QCOMPARE(drawnBy([](QWidget &canvas) { penDrag(canvas, WAY); }), byMouse);
    QCOMPARE(drawnBy([](QWidget &canvas) { fingerDrag(canvas, WAY); }), byMouse);
    // Switched on, a pen that has no pressure still draws like a mouse.
    QCOMPARE(drawnBy([](QWidget &canvas) {
                 static_cast<ImageCanvas &>(canvas).setPenPressure(true);
                 penDrag(canvas, WAY, {0.0, QTabletEvent::Pen, {}});
             }),
             byMouse);
}

void CanvasGesturesTest::pressureMakesFreehandThinnerAlone()
{
    const auto thickness = [](CanvasModes::MouseMode mode, double pressure) {
        const auto canvas = canvasOf();
        canvas->penWidth = 20;
        canvas->setPenPressure(true);
        canvas->setMouseMode(mode);
        penDrag(*canvas, {{20, 60}, {80, 60}, {140, 60}}, {pressure, QTabletEvent::Pen, {}});
        const QImage picture = shown(*canvas);
        int red = 0;
        for (int y = 0; y < FRAME.height(); ++y)
            red += isRed(picture, 80, y) ? 1 : 0;
        return red;
    };
    QCOMPARE(thickness(CanvasModes::Freehand, 1.0), 20);
    // 20 (0.35 + 0.65 / 2) = 13.5, and half a row on either side is mixed with the paper.
    QVERIFY(std::abs(thickness(CanvasModes::Freehand, 0.5) - 13) <= 1);
    QVERIFY(std::abs(thickness(CanvasModes::Freehand, 0.001) - 7) <= 1);
    QCOMPARE(thickness(CanvasModes::Line, 0.5), 20);
}

void CanvasGesturesTest::aStrokeThatIsPressedMoreAndLess()
{
    const auto canvas = canvasOf();
    canvas->penWidth = 15;
    canvas->setPenPressure(true);
    canvas->setMouseMode(CanvasModes::Freehand);
    pen(*canvas, QEvent::TabletPress, {15, 60}, {0.05, QTabletEvent::Pen, {}});
    for (int i = 0; i <= 40; ++i) {
        const QPointF point(15 + 3.2 * i, 60 + 35 * std::sin(i / 6.0));
        pen(*canvas, QEvent::TabletMove, point,
            {1.0 - std::abs(i - 20) / 20.0 * 0.95, QTabletEvent::Pen, {}});
    }
    pen(*canvas, QEvent::TabletRelease, {143, 60}, {0.0, QTabletEvent::Pen, {}});
    COMPARE_GOLDEN(shown(*canvas), "pen-pressure");
}

void CanvasGesturesTest::theEraserEndErasesAndLeavesTheToolAlone()
{
    const auto canvas = canvasOf();
    canvas->setMouseMode(CanvasModes::Line);
    CanvasMouse::drag(*canvas, {{10, 60}, {150, 60}});
    penDrag(*canvas, {{80, 60}, {80, 60}}, {0.5, QTabletEvent::Eraser, {}});
    QVERIFY(!isRed(shown(*canvas), 80, 60));
    QVERIFY(isRed(shown(*canvas), 30, 60));
    QCOMPARE(canvas->mouseMode(), ImageCanvas::Line);
    penDrag(*canvas, {{10, 100}, {150, 100}});
    QVERIFY(isRed(shown(*canvas), 80, 100));
    // It was a step of its own.
    canvas->undo();
    canvas->undo();
    QVERIFY(isRed(shown(*canvas), 80, 60));
}

void CanvasGesturesTest::theButtonsOfAPenPullAndErase()
{
    const auto canvas = canvasOf();
    canvas->setMouseMode(CanvasModes::Freehand);
    CanvasMouse::drag(*canvas, {{10, 60}, {150, 60}});
    canvas->zoomIn();
    const QPointF before = canvas->centerPoint();
    const QImage drawn = shown(*canvas);
    penDrag(*canvas, {{80, 60}, {60, 50}}, {0.5, QTabletEvent::Pen, Qt::MiddleButton});
    QCOMPARE(canvas->centerPoint(), before + QPointF(10, 5));
    penDrag(*canvas, {{60, 50}, {80, 60}}, {0.5, QTabletEvent::Pen, Qt::MiddleButton});
    QCOMPARE(shown(*canvas), drawn);
    penDrag(*canvas, {{80, 60}, {81, 60}}, {0.5, QTabletEvent::Pen, Qt::RightButton});
    QVERIFY(!isRed(shown(*canvas), 80, 60));
}

void CanvasGesturesTest::theEraserEndOpensNoText()
{
    const auto canvas = canvasOf();
    canvas->show();
    canvas->setMouseMode(CanvasModes::Text);
    penDrag(*canvas, {{40, 30}, {41, 30}}, {0.5, QTabletEvent::Eraser, {}});
    QVERIFY(!canvas->findChild<QTextEdit *>()->isVisible());
    penDrag(*canvas, {{40, 30}, {40, 30}});
    QVERIFY(canvas->findChild<QTextEdit *>()->isVisible());
}

void CanvasGesturesTest::aSecondFingerTakesTheStrokeBack()
{
    for (const Tool &tool : TOOLS) {
        const auto canvas = canvasOf();
        canvas->setMouseMode(CanvasModes::Line);
        CanvasMouse::drag(*canvas, {{5, 60}, {150, 60}});
        const QImage before = shown(*canvas);
        canvas->setMouseMode(tool.mode);
        Hand hand(*canvas);
        hand.press(0, {40, 55}, 0);
        hand.move(0, {120, 60}, 70);
        QVERIFY2(shown(*canvas) != before, tool.name);
        hand.press(1, {20, 20}, 80);
        QVERIFY2(shown(*canvas) == before, tool.name);
        hand.lift(0, 5000);
        hand.lift(1, 5000);
        canvas->undo();
        QVERIFY2(!canvas->canUndo(), tool.name);
    }
}

void CanvasGesturesTest::tapsTakeStepsBackAndDoThemAgain()
{
    const auto canvas = canvasOf();
    const QImage empty = shown(*canvas);
    canvas->setMouseMode(CanvasModes::Freehand);
    CanvasMouse::drag(*canvas, {{5, 60}, {150, 60}});
    const QImage drawn = shown(*canvas);
    Hand hand(*canvas);
    hand.tap({{40, 50}, {80, 50}}, 0);
    QCOMPARE(shown(*canvas), empty);
    QVERIFY(canvas->canRedo());
    hand.tap({{40, 50}, {80, 50}, {120, 50}}, 1000);
    QCOMPARE(shown(*canvas), drawn);
}

void CanvasGesturesTest::aTouchThatIsCancelledLeavesNothing()
{
    const auto canvas = canvasOf();
    const QImage before = shown(*canvas);
    canvas->setMouseMode(CanvasModes::Freehand);
    Hand hand(*canvas);
    hand.press(0, {40, 55}, 0);
    hand.move(0, {120, 70}, 500);
    hand.cancel(510);
    QCOMPARE(shown(*canvas), before);
    QVERIFY(!canvas->canUndo());
}

void CanvasGesturesTest::twoFingersZoomAboutTheirMiddle()
{
    const QSize size(240, 180);
    const auto canvas = canvasOf(size, size);
    canvas->imageCaptured(map(size));
    Hand hand(*canvas);
    hand.press(0, {100, 60}, 0);
    hand.press(1, {140, 60}, 10);
    // Apart, step by step, and along.
    for (int i = 1; i <= 60; ++i) {
        hand.move(0, {100.0 - i, 60.0 + i / 2.0}, 10 + i);
        hand.move(1, {140.0 + i, 60.0 + i / 2.0}, 10 + i);
    }
    QCOMPARE(canvas->zoomScale(), 4.0);
    QVERIFY(missedBy(*canvas, {120, 60}, {120, 90}) <= 8.0);
    // And back: the whole picture, however close the fingers come.
    hand.move(0, {119, 90}, 100);
    hand.move(1, {120, 90}, 101);
    QCOMPARE(canvas->zoomScale(), 1.0);
    QCOMPARE(canvas->centerPoint(), QPointF(120, 90));
    hand.lift(0, 110);
    hand.lift(1, 111);
    // As far apart as a wall: the largest scale.
    hand.press(0, {110, 60}, 1000);
    hand.press(1, {130, 60}, 1001);
    hand.move(1, {5000, 60}, 1010);
    QCOMPARE(canvas->zoomScale(), 6.0);
    hand.lift(0, 1020);
    hand.lift(1, 1021);
    QVERIFY(!canvas->canUndo());
}

void CanvasGesturesTest::aPinchShowsWithTheNextFrame()
{
    const auto canvas = canvasOf();
    canvas->setMouseMode(CanvasModes::Freehand);
    CanvasMouse::drag(*canvas, {{70, 50}, {90, 70}});
    Hand hand(*canvas);
    hand.press(0, {70, 60}, 0);
    hand.press(1, {90, 60}, 10);
    QImage before = shown(*canvas);
    for (int i = 13; i <= 40; i += 3) {
        hand.move(1, {90.0 + i, 60}, 10 + i);
        QImage frame = paper();
        canvas->imageCaptured(frame.bits(), FRAME.width(), FRAME.height(), false, false);
        QVERIFY(frame != before);
        before = frame;
    }
    QCOMPARE(canvas->zoomScale(), 3.0);
    COMPARE_GOLDEN(before, "pinch");
}

void CanvasGesturesTest::theViewMovesBetweenTwoFrames_data()
{
    QTest::addColumn<std::function<void(ImageCanvas &)>>("move");
    const auto row = [](const char *name, const std::function<void(ImageCanvas &)> &move) {
        QTest::newRow(name) << move;
    };
    row("pinch", [](ImageCanvas &canvas) {
        Hand hand(canvas);
        hand.press(0, {70, 60}, 0);
        hand.press(1, {90, 60}, 10);
        hand.move(1, {120, 60}, 20);
    });
    row("wheel", [](ImageCanvas &canvas) { wheel(canvas, {80, 60}, 120); });
    row("hand", [](ImageCanvas &canvas) {
        canvas.setMouseMode(CanvasModes::Hand);
        CanvasMouse::drag(canvas, {{80, 60}, {60, 50}});
    });
}

void CanvasGesturesTest::theViewMovesBetweenTwoFrames()
{
    QFETCH(std::function<void(ImageCanvas &)>, move);
    const auto canvas = canvasOf();
    canvas->show();
    canvas->zoomIn();
    BusySource source(*canvas);
    QTRY_VERIFY(source.frames() > 0);
    const int before = source.ownPictures();
    move(*canvas);
    QTRY_VERIFY(source.ownPictures() > before);
}

void CanvasGesturesTest::manyMovesMakeFewPictures()
{
    const auto canvas = canvasOf();
    canvas->show();
    canvas->zoomIn();
    canvas->setMouseMode(CanvasModes::Hand);
    BusySource source(*canvas);
    QTRY_VERIFY(source.frames() > 0);
    CanvasMouse::press(*canvas, {80, 60});
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < 1000; ++i) {
        CanvasMouse::move(*canvas, QPoint(60 + i % 40, 60));
        QCoreApplication::processEvents();
    }
    CanvasMouse::release(*canvas, {80, 60});
    QTRY_VERIFY(source.ownPictures() > 0);
    // One each 16 ms, and one each 40 ms if the source is kept from running.
    QVERIFY2(source.ownPictures() <= clock.elapsed() / 10 + 2,
             qPrintable(QString::number(source.ownPictures())));
}

void CanvasGesturesTest::theWheelZoomsAboutThePointer()
{
    const QSize size(240, 180);
    const auto canvas = canvasOf(size, size);
    canvas->imageCaptured(map(size));
    const QPointF pointer(180, 45);
    for (const double scale : {2.0, 3.0, 4.0, 5.0, 6.0, 6.0}) {
        wheel(*canvas, pointer, 120);
        QCOMPARE(canvas->zoomScale(), scale);
        QVERIFY(missedBy(*canvas, pointer, pointer) <= 2.0 * scale);
    }
    wheel(*canvas, pointer, -60);
    QCOMPARE(canvas->zoomScale(), 6.0);
    wheel(*canvas, pointer, -60);
    QCOMPARE(canvas->zoomScale(), 5.0);
    wheel(*canvas, pointer, -32768);
    QCOMPARE(canvas->zoomScale(), 1.0);
    QCOMPARE(canvas->centerPoint(), QPointF(120, 90));
}

void CanvasGesturesTest::theMiddleButtonPullsThePicture()
{
    const auto canvas = canvasOf();
    canvas->setMouseMode(CanvasModes::Freehand);
    canvas->zoomIn();
    const QPointF before = canvas->centerPoint();
    CanvasMouse::press(*canvas, {80, 60}, Qt::MiddleButton);
    CanvasMouse::move(*canvas, QPoint(60, 50), Qt::MiddleButton);
    CanvasMouse::release(*canvas, {60, 50}, Qt::MiddleButton);
    QCOMPARE(canvas->centerPoint(), before + QPointF(10, 5));
    QCOMPARE(redPixels(shown(*canvas)), 0);
    QVERIFY(!canvas->canUndo());
}

void CanvasGesturesTest::thePointerShowsWhatAPressWillDo()
{
    const auto canvas = canvasOf();
    canvas->setMouseMode(CanvasModes::Text);
    // A pen in the air is left to the toolkit, whose pointer follows it.
    QVERIFY(!pen(*canvas, QEvent::TabletMove, {50, 50}, {0.0, QTabletEvent::Pen, {}}, false));
    QCOMPARE(canvas->cursor().shape(), Qt::IBeamCursor);
    pen(*canvas, QEvent::TabletMove, {50, 50}, {0.0, QTabletEvent::Eraser, {}}, false);
    QCOMPARE(canvas->cursor().shape(), Qt::BitmapCursor);
    pen(*canvas, QEvent::TabletMove, {50, 50}, {0.0, QTabletEvent::Pen, Qt::MiddleButton}, false);
    QCOMPARE(canvas->cursor().shape(), Qt::OpenHandCursor);
    QVERIFY(
        pen(*canvas, QEvent::TabletPress, {50, 50}, {0.5, QTabletEvent::Pen, Qt::MiddleButton}));
    QCOMPARE(canvas->cursor().shape(), Qt::ClosedHandCursor);
    QVERIFY(pen(*canvas, QEvent::TabletRelease, {50, 50}));
    QCOMPARE(canvas->cursor().shape(), Qt::IBeamCursor);
}

void CanvasGesturesTest::anotherPointerCostsNoPainting()
{
    const auto canvas = canvasOf();
    canvas->show();
    QVERIFY(QTest::qWaitForWindowExposed(canvas.get()));
    QCoreApplication::sendPostedEvents();
    PaintCount paints(*canvas);
    QEvent enter(QEvent::Enter);
    for (const Tool &tool : TOOLS) {
        canvas->setMouseMode(tool.mode);
        canvas->penColor = QColor(int(tool.mode), 1, 1);
        canvas->penWidth = 5 + int(tool.mode);
        QCoreApplication::sendEvent(canvas.get(), &enter);
        QCoreApplication::sendPostedEvents();
    }
    QCOMPARE(paints.count, 0);
}

REGISTER_TEST(CanvasGesturesTest)
#include "tst_canvas_gestures.moc"
