#include "canvas/ImageCanvas.h"
#include "canvas/ToolCursor.h"
#include "tests/TestProgram.h"
#include "tests/canvas/CanvasPointers.h"

#include <QBitmap>
#include <QPainter>
#include <QTest>
#include <QTextEdit>

namespace
{

/// In the pixels of its picture.
QRect visiblePlace(const QCursor &cursor)
{
    const QImage image = cursor.pixmap().toImage().convertToFormat(QImage::Format_ARGB32);
    QRect visible;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 127)
                visible |= QRect(x, y, 1, 1);
        }
    }
    return visible;
}

QSize visibleSize(const QCursor &cursor)
{
    return visiblePlace(cursor).size();
}

ToolCursor pen(double width, const QColor &color = Qt::red)
{
    ToolCursor cursor;
    cursor.tool = CanvasModes::Freehand;
    cursor.penWidth = width;
    cursor.penColor = color;
    return cursor;
}

struct ChangeCount : QObject {
    explicit ChangeCount(QWidget &widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::CursorChange ? 1 : 0;
        return false;
    }
    int count = 0;
};

void enter(ImageCanvas &canvas)
{
    QEvent event(QEvent::Enter);
    QCoreApplication::sendEvent(&canvas, &event);
}

/// White paper of 400x300 at its own size, and a pen 12 wide.
void takePen(ImageCanvas &canvas)
{
    canvas.resize(400, 300);
    QImage picture(400, 300, QImage::Format_RGB888);
    picture.fill(Qt::white);
    canvas.imageCaptured(picture);
    canvas.setMouseMode(CanvasModes::Freehand);
    canvas.penWidth = 12;
}

} // namespace

class ToolCursorTest : public QObject
{
    Q_OBJECT

private slots:
    void thePenIsARingOfItsWidthAndColour();
    void thePenIsSeenInItsWholeWidthOnItsOwnColour();
    void theEraserIsASquareOfItsSize();
    void everyToolIsSeenOnBlackAndOnWhite();
    void everyPointerIsSharpOnASharpScreen();
    void everyPointerIsWholeAtEveryRatio();
    void handsOpenAndClose();
    void theCanvasShowsItsToolWithTheZoom();
    void aPinchChangesThePointerOnce();
    void writtenTextLiesOnThePicture();
};

void ToolCursorTest::thePenIsARingOfItsWidthAndColour()
{
    // With a hairline of white and one of black around it.
    QVERIFY(std::abs(visibleSize(pen(40.0).cursor()).width() - 44) <= 1);
    QVERIFY(visibleSize(pen(3.0).cursor()).width() >= 13);
    const QImage ring = pen(40.0).cursor().pixmap().toImage();
    const QPoint middle(ring.width() / 2, ring.height() / 2);
    QCOMPARE(qAlpha(ring.pixel(middle)), 0);
    // On the ring, a pixel inside its edge.
    QCOMPARE(QColor(ring.pixel(middle.x() + 19, middle.y())), QColor(Qt::red));
    QCOMPARE(pen(40.0).cursor().hotSpot(), middle);
}

void ToolCursorTest::thePenIsSeenInItsWholeWidthOnItsOwnColour()
{
    for (const QColor &color : {QColor(Qt::black), QColor(Qt::white), QColor(Qt::red)}) {
        for (const double width : {3.0, 12.0, 40.0}) {
            const QPixmap ring = pen(width, color).cursor().pixmap();
            QImage picture(ring.size(), QImage::Format_RGB32);
            picture.fill(color);
            QPainter(&picture).drawPixmap(0, 0, ring);
            QRect seen;
            for (int y = 0; y < picture.height(); ++y) {
                for (int x = 0; x < picture.width(); ++x) {
                    const int gray = qGray(picture.pixel(x, y));
                    if (std::abs(gray - qGray(color.rgb())) > 80)
                        seen |= QRect(x, y, 1, 1);
                }
            }
            const int least = static_cast<int>(std::max(width, 9.0));
            QVERIFY2(seen.width() >= least && seen.height() >= least,
                     qPrintable(QString("%1 %2").arg(color.name()).arg(seen.width())));
        }
    }
}

void ToolCursorTest::theEraserIsASquareOfItsSize()
{
    ToolCursor cursor;
    cursor.tool = CanvasModes::Eraser;
    cursor.eraserSide = 51.0;
    QVERIFY(std::abs(visibleSize(cursor.cursor()).width() - 53) <= 1);
    cursor.eraserSide = 27.0;
    QVERIFY(std::abs(visibleSize(cursor.cursor()).height() - 29) <= 1);
}

void ToolCursorTest::everyToolIsSeenOnBlackAndOnWhite()
{
    for (const CanvasModes::MouseMode tool :
         {CanvasModes::Freehand, CanvasModes::Line, CanvasModes::Eraser, CanvasModes::Clip}) {
        for (const QColor &color : {QColor(Qt::black), QColor(Qt::white)}) {
            ToolCursor cursor = pen(6.0, color);
            cursor.tool = tool;
            cursor.eraserSide = 15.0;
            const QImage image = cursor.cursor().pixmap().toImage();
            int dark = 0;
            int light = 0;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    const QColor pixel = image.pixelColor(x, y);
                    dark += pixel.alpha() > 127 && pixel.lightness() < 64 ? 1 : 0;
                    light += pixel.alpha() > 127 && pixel.lightness() > 191 ? 1 : 0;
                }
            }
            QVERIFY2(dark >= 8 && light >= 8, qPrintable(QString::number(tool)));
        }
    }
}

void ToolCursorTest::everyPointerIsSharpOnASharpScreen()
{
    for (const CanvasModes::MouseMode tool :
         {CanvasModes::Freehand, CanvasModes::Line, CanvasModes::Eraser, CanvasModes::Clip}) {
        ToolCursor cursor = pen(12.0);
        cursor.tool = tool;
        cursor.eraserSide = 25.0;
        const QCursor usual = cursor.cursor();
        cursor.pixelRatio = 2.0;
        const QCursor sharp = cursor.cursor();
        const QPixmap picture = sharp.pixmap();
        QCOMPARE(picture.devicePixelRatio(), 2.0);
        QCOMPARE(picture.size(), usual.pixmap().size() * 2);
        // The hot spot stays in the middle, and the picture is not the usual one enlarged.
        QCOMPARE(sharp.hotSpot(), usual.hotSpot());
        cursor.hotSpotOnScreen = true;
        QCOMPARE(cursor.cursor().hotSpot(), QPoint(picture.width() / 2, picture.height() / 2));
        QImage enlarged = usual.pixmap().toImage().scaled(picture.size());
        QVERIFY(picture.toImage().convertToFormat(QImage::Format_ARGB32) !=
                enlarged.convertToFormat(QImage::Format_ARGB32));
    }
}

void ToolCursorTest::everyPointerIsWholeAtEveryRatio()
{
    // A screen of 768 lines has a ratio below 1.
    for (const double ratio : {0.75, 0.93, 1.0, 1.5, 2.0}) {
        for (const CanvasModes::MouseMode tool :
             {CanvasModes::Freehand, CanvasModes::Line, CanvasModes::Eraser}) {
            ToolCursor cursor = pen(20.0);
            cursor.tool = tool;
            cursor.eraserSide = 25.0;
            cursor.pixelRatio = ratio;
            cursor.hotSpotOnScreen = true;
            const QRect visible = visiblePlace(cursor.cursor());
            const QPoint off = visible.center() - cursor.cursor().hotSpot();
            QVERIFY2(off.manhattanLength() <= 2,
                     qPrintable(QString("%1 %2: %3").arg(ratio).arg(tool).arg(off.x())));
            // Nothing is cut off.
            const QRect picture = cursor.cursor().pixmap().rect();
            QVERIFY(picture.adjusted(1, 1, -1, -1).contains(visible));
            if (tool == CanvasModes::Freehand)
                QVERIFY(std::abs(visible.width() - 20.0 * ratio - 4.0 * std::max(ratio, 1.0)) <= 2);
        }
    }
}

void ToolCursorTest::handsOpenAndClose()
{
    ToolCursor cursor;
    QCOMPARE(cursor.cursor().shape(), Qt::OpenHandCursor);
    cursor.dragging = true;
    QCOMPARE(cursor.cursor().shape(), Qt::ClosedHandCursor);
    cursor.tool = CanvasModes::Text;
    QCOMPARE(cursor.cursor().shape(), Qt::IBeamCursor);
}

void ToolCursorTest::theCanvasShowsItsToolWithTheZoom()
{
    ImageCanvas canvas;
    takePen(canvas);
    enter(canvas);
    const int whole = visibleSize(canvas.cursor()).width();
    QVERIFY(std::abs(whole - 16) <= 1);
    canvas.zoomIn();
    // Each painting brings the pointer in line.
    (void)canvas.grab();
    QVERIFY(std::abs(visibleSize(canvas.cursor()).width() - 28) <= 1);
    canvas.zoomReset();
    canvas.penWidth = 30;
    (void)canvas.grab();
    QVERIFY(std::abs(visibleSize(canvas.cursor()).width() - 34) <= 1);
    canvas.setMouseMode(CanvasModes::Hand);
    (void)canvas.grab();
    QCOMPARE(canvas.cursor().shape(), Qt::OpenHandCursor);
    QTest::mousePress(&canvas, Qt::LeftButton, {}, {100, 100});
    QCOMPARE(canvas.cursor().shape(), Qt::ClosedHandCursor);
    QTest::mouseRelease(&canvas, Qt::LeftButton, {}, {100, 100});
    QCOMPARE(canvas.cursor().shape(), Qt::OpenHandCursor);
}

void ToolCursorTest::aPinchChangesThePointerOnce()
{
    ImageCanvas canvas;
    takePen(canvas);
    CanvasPointers::Hand hand(canvas);
    hand.press(0, {150, 150}, 0);
    hand.press(1, {200, 150}, 10);
    ChangeCount changes(canvas);
    for (int i = 1; i <= 50; ++i) {
        hand.move(1, {200.0 + i, 150}, 10 + i);
        (void)canvas.grab();
    }
    QCOMPARE(canvas.zoomScale(), 2.0);
    QCOMPARE(changes.count, 0);
    hand.lift(0, 100);
    hand.lift(1, 101);
    QCOMPARE(changes.count, 1);
    QVERIFY(std::abs(visibleSize(canvas.cursor()).width() - 28) <= 1);
}

void ToolCursorTest::writtenTextLiesOnThePicture()
{
    QPalette dark(Qt::black);
    dark.setColor(QPalette::Base, Qt::black);
    QApplication::setPalette(dark);
    ImageCanvas canvas;
    canvas.resize(400, 300);
    QImage picture(400, 300, QImage::Format_RGB888);
    picture.fill(Qt::yellow);
    canvas.imageCaptured(picture);
    canvas.setMouseMode(CanvasModes::Text);
    canvas.show();
    QTest::mouseClick(&canvas, Qt::LeftButton, {}, {50, 50});
    const auto *editor = canvas.findChild<QTextEdit *>();
    QVERIFY(editor->isVisible());
    const QImage shown = canvas.grab().toImage();
    QApplication::setPalette(QPalette());
    QCOMPARE(shown.pixelColor(editor->geometry().center()), QColor(Qt::yellow));
    int outline = 0;
    for (int x = editor->x(); x <= editor->geometry().right(); ++x)
        outline += shown.pixelColor(x, editor->y()) == QColor(0x0074E6) ? 1 : 0;
    QVERIFY2(outline > editor->width() / 3 && outline < editor->width(),
             qPrintable(QString::number(outline)));
}

REGISTER_TEST(ToolCursorTest)
#include "tst_tool_cursor.moc"
