#include "tests/TestProgram.h"
#include "tests/canvas/DrawnCanvas.h"

#include <QtTest>

#include <qpa/qwindowsysteminterface_p.h>

using namespace DrawnCanvas;

/// When a stroke is shown, and strokes of fingers and pens.
class CanvasStrokesTest : public QObject
{
    Q_OBJECT

private slots:
    void aStrokeShowsWithTheNextFrame()
    {
        const auto canvas = canvasOf();
        canvas->setMouseMode(CanvasModes::Freehand);
        CanvasMouse::press(*canvas, {10, 60});
        for (int x = 20; x < 150; x += 10) {
            CanvasMouse::move(*canvas, QPoint(x, 60));
            QImage frame = paper();
            canvas->imageCaptured(frame.bits(), FRAME.width(), FRAME.height(), false, false);
            QVERIFY(isRed(frame, x, 60));
        }
    }

    void aStrokeShowsWithTheFirstRefreshOfAStillPicture()
    {
        const auto canvas = canvasOf();
        canvas->show();
        canvas->startAutoRefresh();
        QVERIFY(QTest::qWaitForWindowExposed(canvas.get()));
        canvas->setMouseMode(CanvasModes::Freehand);
        CanvasMouse::press(*canvas, {10, 60});
        for (int x = 20; x < 150; x += 10) {
            RefreshWatch watch(*canvas);
            CanvasMouse::move(*canvas, QPoint(x, 60));
            QTRY_VERIFY(watch.refreshed);
            QVERIFY(isRed(canvas->grab().toImage(), x, 60));
        }
    }

    void aStrokeOverAStandingPictureShowsWithoutWaitingForARefresh()
    {
        // Not on the screen and not refreshed: nothing but the stroke itself asks for a new
        // picture.
        const auto canvas = canvasOf();
        QElapsedTimer sinceFrame;
        sinceFrame.start();
        // A source that is still in motion carries the stroke with its next frame.
        QTRY_VERIFY(sinceFrame.elapsed() > 40);
        canvas->setMouseMode(CanvasModes::Freehand);
        CanvasMouse::drag(*canvas, {{10, 60}, {90, 60}});
        QVERIFY(!isRed(canvas->currentImage(), 50, 60));
        QTRY_VERIFY(isRed(canvas->currentImage(), 50, 60));
    }

    void aFingerDrawsLikeTheMouse()
    {
        const auto canvas = canvasOf();
        canvas->show();
        QVERIFY(QTest::qWaitForWindowExposed(canvas.get()));
        canvas->setMouseMode(CanvasModes::Line);
        QTouchDevice *device = QTest::createTouchDevice();
        QTest::touchEvent(canvas.get(), device).press(0, QPoint(10, 60), canvas.get());
        QTest::touchEvent(canvas.get(), device).move(0, QPoint(60, 60), canvas.get());
        QTest::touchEvent(canvas.get(), device).move(0, QPoint(90, 60), canvas.get());
        QTest::touchEvent(canvas.get(), device).release(0, QPoint(90, 60), canvas.get());
        QVERIFY(isRed(shown(*canvas), 50, 60));
        QVERIFY(isRed(shown(*canvas), 90, 60));
        QVERIFY(!isRed(shown(*canvas), 100, 60));
    }

    void aPenDrawsEveryPointThatTheTabletDelivers()
    {
        const auto canvas = canvasOf();
        canvas->show();
        QVERIFY(QTest::qWaitForWindowExposed(canvas.get()));
        canvas->setMouseMode(CanvasModes::Freehand);
        // As with a tablet at an X server: the server moves no mouse for the pen.
        QWindowSystemInterfacePrivate::TabletEvent::setPlatformSynthesizesMouse(false);
        const auto zigzag = [](int x) { return QPoint(x, x / 10 % 2 == 0 ? 20 : 100); };
        penEvent(*canvas, {10, 60}, Qt::LeftButton);
        for (int x = 20; x <= 150; x += 10)
            penEvent(*canvas, zigzag(x), Qt::LeftButton);
        penEvent(*canvas, zigzag(150), Qt::NoButton);
        QTRY_VERIFY(isRed(shown(*canvas), 150, zigzag(150).y()));
        for (int x = 20; x <= 150; x += 10)
            QVERIFY2(isRed(shown(*canvas), x, zigzag(x).y()), qPrintable(QString::number(x)));
    }

    void theToolkitDeliversEveryPoint()
    {
        QVERIFY(!QCoreApplication::testAttribute(Qt::AA_CompressHighFrequencyEvents));
        QVERIFY(!QCoreApplication::testAttribute(Qt::AA_CompressTabletEvents));
    }

private:
    /// What the window system hands to the toolkit when the pen of a tablet is at that point.
    static void penEvent(QWidget &widget, QPoint point, Qt::MouseButtons buttons)
    {
        static ulong milliseconds = 0;
        QWindowSystemInterface::handleTabletEvent(widget.windowHandle(), ++milliseconds, point,
                                                  widget.mapToGlobal(point), QTabletEvent::Stylus,
                                                  QTabletEvent::Pen, buttons, buttons ? 0.5 : 0.0,
                                                  0, 0, 0.0, 0.0, 0, 1, Qt::NoModifier);
    }

    /// Set once the refresh timer has run after the watch was made.
    struct RefreshWatch : QObject {
        explicit RefreshWatch(ImageCanvas &canvas) { canvas.installEventFilter(this); }
        bool eventFilter(QObject *, QEvent *event) override
        {
            refreshed = refreshed || event->type() == QEvent::Paint;
            return false;
        }
        bool refreshed = false;
    };
};

REGISTER_TEST(CanvasStrokesTest)
#include "tst_canvas_strokes.moc"
