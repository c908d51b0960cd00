#include "tests/TestProgram.h"
#include "tests/canvas/RawFrame.h"
#include "tests/canvas/ReferencePipeline.h"
#include "tests/canvas/ViewOf.h"

#include <QtTest>

namespace
{

using ReferencePipeline::same;

} // namespace

/// What changes the picture between two frames, and what stops it.
class StandingPictureTest : public QObject
{
    Q_OBJECT

private slots:
    void freezesThePictureThatStands();
    void freezesOnlyWhatExists();
    void fitsAFrozenPictureOfAnotherSizeIntoTheCallersBuffer();
    void newSizesKeepTheRotation();
    void clearPaintingTakesTheDrawingAway();
    void fillsTheBoard();
    void saysTheViewWithoutTheLock();
    void zoomsAndTurnsWhatIsShown();
    void refreshShowsChangesOfTheStandingPicture();
    void refreshTimerRunsOnlyBetweenStartAndStop();
    void aSilentSourceIsNoReasonToWait();
    void handsOutPicturesThatLiveOn();
};

void StandingPictureTest::freezesThePictureThatStands()
{
    ImageCanvas canvas;
    RawFrame first = RawFrame::of({64, 48}, 3, 1);
    RawFrame second = RawFrame::of({64, 48}, 3, 2);
    first.handTo(canvas);
    canvas.frozen = true;
    const QImage standing = first.image();
    second.handTo(canvas);
    QVERIFY(same(canvas.currentImage(), standing));
    QVERIFY(same(second.image(), standing));
    canvas.effectMode = ImageCanvas::EffectNegative;
    second = RawFrame::of({64, 48}, 3, 2);
    second.handTo(canvas);
    QImage inverted = standing;
    inverted.invertPixels();
    QVERIFY(same(canvas.currentImage(), inverted));
    canvas.frozen = false;
    canvas.effectMode = ImageCanvas::EffectColor;
    second = RawFrame::of({64, 48}, 3, 2);
    second.handTo(canvas);
    QVERIFY(same(canvas.currentImage(), second.image()));
}

void StandingPictureTest::freezesOnlyWhatExists()
{
    ImageCanvas canvas;
    canvas.imageCaptured(QImage());
    canvas.frozen = true;
    RawFrame first = RawFrame::of({64, 48}, 3, 1);
    first.handTo(canvas);
    QVERIFY(same(canvas.currentImage(), first.image()));
    RawFrame second = RawFrame::of({64, 48}, 3, 2);
    second.handTo(canvas);
    QVERIFY(same(canvas.currentImage(), first.image()));
}

void StandingPictureTest::fitsAFrozenPictureOfAnotherSizeIntoTheCallersBuffer()
{
    ImageCanvas canvas;
    RawFrame small = RawFrame::of({102, 77}, 3, 1);
    canvas.imageCaptured(small.image());
    const QImage standing = canvas.currentImage();
    canvas.frozen = true;
    for (const int pixelBytes : {3, 4}) {
        RawFrame large = RawFrame::of({192, 108}, pixelBytes, 2);
        large.handTo(canvas);
        QVERIFY(same(canvas.currentImage(), standing));
        QVERIFY(same(large.image(), ReferencePipeline::fitted(standing, large.size)
                                        .convertToFormat(large.image().format())));
        RawFrame tiny = RawFrame::of({4, 2}, pixelBytes, 2);
        tiny.handTo(canvas);
        QVERIFY(same(
            tiny.image(),
            ReferencePipeline::fitted(standing, tiny.size).convertToFormat(tiny.image().format())));
    }
}

void StandingPictureTest::newSizesKeepTheRotation()
{
    ImageCanvas canvas;
    RawFrame::of({128, 72}).handTo(canvas);
    canvas.rotate();
    QCOMPARE(canvas.zoomScale(), 0.5625);
    RawFrame::of({64, 48}).handTo(canvas);
    QCOMPARE(canvas.rotation(), 1);
    QCOMPARE(canvas.zoomScale(), 0.75);
    QCOMPARE(QSize(canvas.actualWidth(), canvas.actualHeight()), QSize(48, 64));
}

void StandingPictureTest::clearPaintingTakesTheDrawingAway()
{
    ImageCanvas canvas;
    RawFrame frame = RawFrame::of({128, 72});
    frame.handTo(canvas);
    canvas.resize(128, 72);
    canvas.clearPainting();
    frame.handTo(canvas);
    QVERIFY(same(canvas.currentImage(), frame.image()));
}

void StandingPictureTest::fillsTheBoard()
{
    ImageCanvas canvas;
    canvas.fillCanvas(QColor(10, 200, 30));
    QCOMPARE(canvas.boardColor(), QColor(10, 200, 30));
    QCOMPARE(canvas.pictureSize(), QSize(1280, 720));
    QCOMPARE(canvas.currentImage().pixelColor(1279, 719), QColor(10, 200, 30));
    QCOMPARE(canvas.fillColor, QColor(Qt::black));
}

void StandingPictureTest::saysTheViewWithoutTheLock()
{
    ImageCanvas canvas;
    RawFrame::of({128, 72}).handTo(canvas);
    canvas.rotateRev();
    QCOMPARE(canvas.rotation(), 3);
    QCOMPARE(canvas.minimumScale(), 0.5625);
    QCOMPARE(canvas.actualWidth(), 72);
    QCOMPARE(canvas.actualHeight(), 128);
    QCOMPARE(canvas.transformedWidth(), 40);
    QCOMPARE(canvas.transformedHeight(), 72);
}

void StandingPictureTest::zoomsAndTurnsWhatIsShown()
{
    ImageCanvas canvas;
    RawFrame frame = RawFrame::of({128, 72});
    frame.handTo(canvas);
    ViewGeometry view = viewOf({128, 72});
    for (int i = 0; i < 3; ++i) {
        canvas.zoomIn();
        view.zoomIn();
    }
    canvas.setViewport(100, 50);
    view.setViewport(100, 50);
    canvas.rotate();
    view.turn(true);
    QCOMPARE(canvas.centerPoint(), view.centerPoint());
    const QImage input = RawFrame::of({128, 72}).image();
    frame = RawFrame::of({128, 72});
    frame.handTo(canvas);
    const QImage expected = ReferencePipeline::run(
        input, {view, ImageCanvas::EffectColor, ImageCanvas::MaskNone, QImage()});
    QVERIFY(same(canvas.currentImage(), expected));
}

void StandingPictureTest::refreshShowsChangesOfTheStandingPicture()
{
    ImageCanvas canvas;
    RawFrame frame = RawFrame::of({64, 48});
    frame.handTo(canvas);
    const QImage first = canvas.currentImage();
    canvas.autoRefresh();
    // Nothing changed: the very same memory, not worked out again.
    QCOMPARE(canvas.currentImage().constBits(), first.constBits());
    canvas.effectMode = ImageCanvas::EffectNegative;
    QVERIFY(same(canvas.currentImage(), first));
    canvas.autoRefresh();
    QImage inverted = first;
    inverted.invertPixels();
    QVERIFY(same(canvas.currentImage(), inverted));
}

void StandingPictureTest::refreshTimerRunsOnlyBetweenStartAndStop()
{
    ImageCanvas canvas;
    RawFrame::of({64, 48}).handTo(canvas);
    canvas.stopAutoRefresh();
    canvas.startAutoRefresh();
    canvas.startAutoRefresh();
    canvas.effectMode = ImageCanvas::EffectBW;
    const QImage before = canvas.currentImage();
    QTRY_VERIFY(!same(canvas.currentImage(), before));
    canvas.stopAutoRefresh();
    const QImage grey = canvas.currentImage();
    canvas.effectMode = ImageCanvas::EffectNegative;
    // Three intervals of the timer, in which nothing may happen.
    QTest::qWait(150);
    QVERIFY(same(canvas.currentImage(), grey));
}

void StandingPictureTest::aSilentSourceIsNoReasonToWait()
{
    ImageCanvas canvas;
    canvas.show();
    RawFrame::of({64, 48}).handTo(canvas);
    const QImage before = canvas.currentImage();
    canvas.effectMode = ImageCanvas::EffectBW;
    QTRY_VERIFY(!same(canvas.currentImage(), before));
}

void StandingPictureTest::handsOutPicturesThatLiveOn()
{
    QImage kept;
    QImage copy;
    {
        ImageCanvas canvas;
        RawFrame frame = RawFrame::of({64, 48});
        frame.handTo(canvas);
        kept = canvas.currentImage();
        copy = kept.copy();
        for (unsigned i = 2; i < 10; ++i)
            RawFrame::of({64, 48}, 3, i).handTo(canvas);
        QVERIFY(same(kept, copy));
        // Writing to what was handed out leaves the canvas's own picture alone.
        QImage mine = canvas.currentImage();
        const QImage before = mine.copy();
        mine.fill(Qt::black);
        QVERIFY(same(canvas.currentImage(), before));
    }
    QVERIFY(same(kept, copy));
}

REGISTER_TEST(StandingPictureTest)
#include "tst_standing_picture.moc"
