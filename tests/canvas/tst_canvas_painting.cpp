#include "RawFrame.h"
#include "ReferencePipeline.h"

#include <QtTest>

#include <QPainter>

namespace
{

using ReferencePipeline::noise;
using ReferencePipeline::same;

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
    void paintsAsThePainterScales();
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

void CanvasPaintingTest::paintsAsThePainterScales()
{
    ImageCanvas canvas;
    const QImage picture = noise({128, 72}, QImage::Format_RGB888, 12);
    canvas.imageCaptured(picture);
    const QImage whole = canvas.currentImage();
    for (const QSize &size : {QSize(100, 100), QSize(333, 177), QSize(128, 72), QSize(61, 500)}) {
        canvas.resize(size);
        const ViewGeometry::Fit fit = ViewGeometry::fit(picture.size(), size);
        QImage expected(size, QImage::Format_RGB32);
        expected.fill(Qt::black);
        QPainter painter(&expected);
        painter.drawImage(QRect(fit.margin, fit.size), whole);
        painter.end();
        const QRect inner =
            QRect(fit.margin, fit.size) & QRect({0, 0}, size).adjusted(2, 2, -2, -2);
        QVERIFY(same(painted(canvas).copy(inner), expected.copy(inner)));
    }
}

QTEST_MAIN(CanvasPaintingTest)
#include "tst_canvas_painting.moc"
