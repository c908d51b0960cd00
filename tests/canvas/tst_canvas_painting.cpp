#include "tests/TestProgram.h"
#include "tests/canvas/RawFrame.h"
#include "tests/canvas/ReferencePipeline.h"

#include <QtTest>

#include <QPaintEngine>
#include <QPainter>

#include <cmath>
#include <cstring>

namespace
{

using ReferencePipeline::noise;
using ReferencePipeline::same;

FramePtr frameOf(const QImage &picture)
{
    std::shared_ptr<Frame> frame = Frame::create(picture.size(), picture.format());
    std::memcpy(frame->rows().data, picture.constBits(), frame->byteCount());
    return frame;
}

QImage painted(ImageCanvas &canvas)
{
    QImage picture(canvas.size(), QImage::Format_RGB32);
    picture.fill(Qt::magenta);
    canvas.render(&picture, QPoint(), QRegion(), QWidget::RenderFlags());
    return picture;
}

} // namespace

/// Where the picture stands on the canvas, and what is beside it.
class CanvasPaintingTest : public QObject
{
    Q_OBJECT

private slots:
    void paintsThePictureCentredWithBarsAndAFrame();
    void leavesTheBarsOfTheBoardOpen();
    void paintsBlackWithoutAPicture();
    void paintsPixelsAsTheyAreAndAsSquares();
    void losesNoLineOnTheScreen_data();
    void losesNoLineOnTheScreen();
    void scalesAStandingPictureOnce();
    void scalesANewPictureIntoWhatIsPaintedOn();
    void leavesAloneWhatIsNotToBePainted();
};

void CanvasPaintingTest::paintsThePictureCentredWithBarsAndAFrame()
{
    ImageCanvas canvas;
    canvas.resize(200, 200);
    QImage red(128, 72, QImage::Format_RGB888);
    red.fill(Qt::red);
    canvas.imageCaptured(red);
    canvas.imageCaptured(QImage(red));
    const QImage shown = painted(canvas);
    const QColor frame("#484848");
    for (const QPoint &point : {QPoint(0, 0), QPoint(1, 1), QPoint(199, 199), QPoint(198, 100)})
        QCOMPARE(shown.pixelColor(point), frame);
    // 200 * 72 / 128 is 112.5: 112 rows from row 44 on.
    QCOMPARE(shown.pixelColor(100, 43), QColor(Qt::black));
    QCOMPARE(shown.pixelColor(100, 44), QColor(Qt::red));
    QCOMPARE(shown.pixelColor(2, 100), QColor(Qt::red));
    QCOMPARE(shown.pixelColor(197, 155), QColor(Qt::red));
    QCOMPARE(shown.pixelColor(100, 156), QColor(Qt::black));
    QCOMPARE(shown.pixelColor(2, 2), QColor(Qt::black));
}

void CanvasPaintingTest::leavesTheBarsOfTheBoardOpen()
{
    ImageCanvas canvas;
    canvas.setDrawingBoardMode(true);
    canvas.resize(200, 200);
    canvas.fillCanvas(Qt::white);
    const QImage shown = painted(canvas);
    QCOMPARE(shown.pixelColor(100, 10), QColor(Qt::magenta));
    QCOMPARE(shown.pixelColor(100, 100), QColor(Qt::white));
    QVERIFY(!canvas.testAttribute(Qt::WA_OpaquePaintEvent));
    canvas.setDrawingBoardMode(false);
    QVERIFY(canvas.testAttribute(Qt::WA_OpaquePaintEvent));
}

void CanvasPaintingTest::paintsBlackWithoutAPicture()
{
    ImageCanvas canvas;
    canvas.imageCaptured(QImage());
    canvas.resize(50, 40);
    QCOMPARE(painted(canvas).pixelColor(25, 20), QColor(Qt::black));
    canvas.resize(1, 1);
    painted(canvas);
    canvas.resize(0, 0);
    painted(canvas);
}

void CanvasPaintingTest::paintsPixelsAsTheyAreAndAsSquares()
{
    ImageCanvas canvas;
    const QImage picture = noise({128, 72}, QImage::Format_RGB888, 12);
    canvas.imageCaptured(picture);
    for (const QSize &size : {QSize(128, 72), QSize(200, 100), QSize(512, 288), QSize(641, 500)}) {
        canvas.resize(size);
        const ViewGeometry::Fit fit = ViewGeometry::fit(picture.size(), size);
        if (fit.factor > 1.0 && fit.factor < 4.0)
            continue; // interpolated, tested with the scaler
        QImage expected(size, QImage::Format_RGB32);
        expected.fill(Qt::black);
        QPainter painter(&expected);
        painter.drawImage(QRect(fit.margin, fit.size), picture);
        painter.end();
        const QRect inner =
            QRect(fit.margin, fit.size) & QRect({0, 0}, size).adjusted(2, 2, -2, -2);
        QVERIFY(same(painted(canvas).copy(inner), expected.copy(inner)));
    }
}

void CanvasPaintingTest::losesNoLineOnTheScreen_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<int>("width");
    QTest::newRow("one pixel, live picture") << QSize(1920, 1080) << 1;
    QTest::newRow("one pixel, smaller live picture") << QSize(1280, 720) << 1;
    QTest::newRow("default pen, large photograph") << QSize(4624, 3472) << 3;
}

void CanvasPaintingTest::losesNoLineOnTheScreen()
{
    QFETCH(QSize, picture);
    QFETCH(int, width);
    QImage sheet(picture, QImage::Format_RGB888);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    const int lines = 50;
    const auto lineAt = [&](int i) { return (2 * i + 1) * picture.height() / (2 * lines) + i % 7; };
    for (int i = 0; i < lines; ++i)
        painter.fillRect(0, lineAt(i), picture.width(), width, Qt::black);
    painter.end();
    ImageCanvas canvas;
    canvas.resize(1000, 670);
    canvas.imageCaptured(sheet);
    const QImage shown = painted(canvas);
    const ViewGeometry::Fit fit = ViewGeometry::fit(picture, canvas.size());
    for (int i = 0; i < lines; ++i) {
        // What a line takes of the white, over the three rows that it may touch.
        const int row = fit.margin.y() + static_cast<int>(lineAt(i) * fit.factor);
        double taken = 0;
        for (int y = row - 1; y <= row + 2; ++y)
            taken += 255 - qGreen(shown.pixel(500, y));
        QVERIFY2(std::abs(taken - 255 * width * fit.factor) < 8,
                 qPrintable(QString("line %1: %2").arg(i).arg(taken)));
    }
}

void CanvasPaintingTest::scalesAStandingPictureOnce()
{
    const QImage picture = noise({128, 72}, QImage::Format_RGB888, 12);
    FramePool pool;
    const std::shared_ptr<Frame> frame = pool.acquire(picture.size(), picture.format());
    std::memcpy(frame->rows().data, picture.constBits(), frame->byteCount());
    ScaledPicture scaled;
    const QImage first = scaled.image(frame, 1, {100, 56}).copy();
    // The picture is not looked at again until it counts as another one.
    frame->rows().data[0] = static_cast<uchar>(~frame->rows().data[0]);
    QCOMPARE(scaled.image(frame, 1, {100, 56}), first);
    QVERIFY(scaled.image(frame, 2, {100, 56}) != first);
    QCOMPARE(scaled.image(frame, 2, {50, 28}).size(), QSize(50, 28));
    QVERIFY(scaled.image(nullptr, 3, {50, 28}).isNull());
}

/// A source's pictures go by without one of the canvas's own between them and the screen.
void CanvasPaintingTest::scalesANewPictureIntoWhatIsPaintedOn()
{
    const CanvasModel::Shown shown{frameOf(noise({128, 72}, QImage::Format_RGB888, 12)), 1};
    ScaledPicture scaled;
    const QImage expected = scaled.image(shown.picture, 1, {96, 54}).copy();
    for (const QImage::Format format :
         {QImage::Format_RGB32, QImage::Format_ARGB32_Premultiplied, QImage::Format_RGB888}) {
        PicturePainter picturePainter;
        QImage screen(200, 100, format);
        screen.fill(Qt::magenta);
        QPainter painter(&screen);
        painter.translate(30, 20);
        picturePainter.paint(&painter, {96, 60}, shown);
        painter.end();
        QVERIFY(same(screen.copy(30, 23, 96, 54).convertToFormat(QImage::Format_RGB32), expected));
        QCOMPARE(screen.pixelColor(29, 30), QColor(Qt::magenta));
        QCOMPARE(screen.pixelColor(126, 30), QColor(Qt::magenta));
        // Again, as when something on it has changed.
        screen.fill(Qt::magenta);
        painter.begin(&screen);
        painter.translate(30, 20);
        picturePainter.paint(&painter, {96, 60}, shown);
        painter.end();
        QVERIFY(same(screen.copy(30, 23, 96, 54).convertToFormat(QImage::Format_RGB32), expected));
    }
}

void CanvasPaintingTest::leavesAloneWhatIsNotToBePainted()
{
    const CanvasModel::Shown shown{frameOf(noise({128, 72}, QImage::Format_RGB888, 12)), 1};
    const QRect kept(40, 30, 20, 10);
    QImage whole(200, 100, QImage::Format_RGB32);
    for (const bool bySystem : {false, true}) {
        QImage screen(200, 100, QImage::Format_RGB32);
        screen.fill(Qt::magenta);
        whole.fill(Qt::magenta);
        const QRegion region = QRegion(screen.rect()) - kept;
        for (QImage *target : {&whole, &screen}) {
            PicturePainter picturePainter;
            if (target == &screen && bySystem)
                screen.paintEngine()->setSystemClip(region);
            QPainter painter(target);
            if (target == &screen && !bySystem)
                painter.setClipRegion(region);
            picturePainter.paint(&painter, target->size(), shown);
        }
        QVERIFY(whole.pixelColor(kept.center()) != QColor(Qt::magenta));
        QPainter(&whole).fillRect(kept, Qt::magenta);
        QVERIFY(same(screen, whole));
    }
}

REGISTER_TEST(CanvasPaintingTest)
#include "tst_canvas_painting.moc"
