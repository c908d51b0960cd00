#include "canvas/ImageCanvas.h"
#include "canvas/StartPicture.h"
#include "resources/Skin.h"
#include "tests/Allocator.h"
#include "tests/TestProgram.h"

#include <QtTest>

#include <malloc.h>

namespace
{

std::size_t allocatedBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

} // namespace

/// What canvases hold while no source feeds them, and while they are not seen.
class StartPictureTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initialiseSkin(); }
    void isTheSkinsPicture();
    void isSharedByTheCanvases();
    void isGoneWithTheLastOfThem();
    void aSourceThatTakesItsPictureAwayLeavesNothing();
    void hiddenCanvasesGiveBackTheirScreen();
};

void StartPictureTest::isTheSkinsPicture()
{
    const QImage expected =
        QImage(":/icons/Background/MAIN_WINDOWS.png").convertToFormat(QImage::Format_RGB888);
    QVERIFY(!expected.isNull());
    QCOMPARE(frameImage(startPicture()), expected);
    const ImageCanvas canvas;
    QCOMPARE(canvas.currentImage(), expected);
}

void StartPictureTest::isSharedByTheCanvases()
{
    ImageCanvas first;
    const ImageCanvas second;
    QCOMPARE(first.currentImage().constBits(), second.currentImage().constBits());
    // What happens to one is not seen in the other.
    const QImage before = second.currentImage().copy();
    first.effectMode = ImageCanvas::EffectNegative;
    first.autoRefresh();
    QVERIFY(first.currentImage() != before);
    QCOMPARE(second.currentImage(), before);
}

void StartPictureTest::isGoneWithTheLastOfThem()
{
    std::weak_ptr<const Frame> watched;
    {
        ImageCanvas canvas;
        watched = startPicture();
        QVERIFY(!watched.expired());
        canvas.fillCanvas(Qt::white);
        QVERIFY(watched.expired());
    }
}

void StartPictureTest::aSourceThatTakesItsPictureAwayLeavesNothing()
{
    QImage picture(640, 360, QImage::Format_RGB888);
    picture.fill(Qt::black);
    ImageCanvas canvas;
    QVERIFY(canvas.isUntouched());
    canvas.imageCaptured(picture);
    QVERIFY(!canvas.isUntouched());
    canvas.forgetFrames();
    QVERIFY(canvas.isUntouched());

    // What stands frozen or is drawn stays to be seen.
    canvas.imageCaptured(picture);
    canvas.frozen = true;
    canvas.forgetFrames();
    QVERIFY(!canvas.isUntouched());
    canvas.frozen = false;
    canvas.setMouseMode(ImageCanvas::Line);
    QTest::mousePress(&canvas, Qt::LeftButton, {}, {20, 20});
    canvas.forgetFrames();
    QVERIFY(!canvas.isUntouched());
    QMouseEvent move(QEvent::MouseMove, QPointF(60, 60), Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&canvas, &move);
    QTest::mouseRelease(&canvas, Qt::LeftButton, {}, {60, 60});
    canvas.forgetFrames();
    QVERIFY(!canvas.isUntouched());
    canvas.clearPainting();
    canvas.forgetFrames();
    QVERIFY(canvas.isUntouched());
}

void StartPictureTest::hiddenCanvasesGiveBackTheirScreen()
{
    if (!SYSTEM_ALLOCATOR)
        QSKIP("the sanitizer's allocator tells nothing");
    ImageCanvas canvas;
    canvas.resize(1000, 700);
    canvas.show();
    QVERIFY(QTest::qWaitForWindowExposed(&canvas));
    canvas.grab();
    const std::size_t shown = allocatedBytes();
    canvas.hide();
    const std::size_t hidden = allocatedBytes();
    const std::size_t picture = std::size_t{1000} * 562 * 4;
    QVERIFY2(shown > hidden && shown - hidden >= picture,
             qPrintable(QString("%1, then %2").arg(shown).arg(hidden)));
}

REGISTER_TEST(StartPictureTest)
#include "tst_start_picture.moc"
