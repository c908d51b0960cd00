#include "canvas/ImageCanvas.h"
#include "sources/pictures/PictureMemory.h"
#include "tests/TestProgram.h"
#include "tests/canvas/ReferencePipeline.h"

#include <QtTest>

using ReferencePipeline::noise;
using ReferencePipeline::same;

/// What the canvas does with a picture that nobody changes any more, instead of copying it.
class KeptPicturesTest : public QObject
{
    Q_OBJECT

    /// A width with padding behind each row.
    static QImage picture(unsigned seed = 1)
    {
        return PictureMemory::copyOf(noise({321, 241}, QImage::Format_RGB888, seed));
    }

private slots:
    void itIsShownFromItsOwnMemory()
    {
        ImageCanvas canvas;
        const QImage handed = picture();
        canvas.imageCaptured(handed);
        QCOMPARE(canvas.currentImage().constBits(), handed.constBits());
        QVERIFY(same(canvas.currentImage(), handed));
    }

    void anyOtherIsCopied()
    {
        ImageCanvas canvas;
        const QImage handed = noise({321, 241}, QImage::Format_RGB888, 1);
        canvas.imageCaptured(handed);
        QVERIFY(canvas.currentImage().constBits() != handed.constBits());
        QVERIFY(same(canvas.currentImage(), handed));
    }

    void whoWritesToItAfterwardsDoesNotChangeTheCanvas()
    {
        ImageCanvas canvas;
        const QImage expected = picture().copy();
        QImage handed = picture();
        canvas.imageCaptured(handed);
        handed.fill(Qt::red);
        QVERIFY(same(canvas.currentImage(), expected));
    }

    void stepsLeaveItAsItIs()
    {
        ImageCanvas canvas;
        canvas.resize(400, 300);
        const QImage handed = picture();
        const QImage before = handed.copy();
        canvas.imageCaptured(handed);
        const auto refresh = [&canvas] { canvas.autoRefresh(); };
        canvas.effectMode = ImageCanvas::EffectNegative;
        refresh();
        QVERIFY(!same(canvas.currentImage(), before));
        canvas.effectMode = ImageCanvas::EffectMosaic;
        refresh();
        canvas.effectMode = ImageCanvas::EffectColor;
        canvas.maskMode = ImageCanvas::MaskCircle;
        refresh();
        canvas.maskMode = ImageCanvas::MaskNone;
        canvas.zoom({0.9, 0.9}, 3);
        canvas.rotate();
        refresh();
        QVERIFY(same(handed, before));
        // To scale it for the screen reads behind the last row.
        (void)canvas.grab();
        canvas.rotateRev();
        canvas.zoomReset();
        refresh();
        QCOMPARE(canvas.currentImage().constBits(), handed.constBits());
        (void)canvas.grab();
    }

    void itsMemoryGoesWithItsLastHolder()
    {
        ImageCanvas canvas;
        QImage handed = picture(1);
        canvas.imageCaptured(handed);
        handed = QImage();
        QVERIFY(PictureMemory::holds(canvas.currentImage()));
        QVERIFY(same(canvas.currentImage(), noise({321, 241}, QImage::Format_RGB888, 1)));
        handed = picture(2);
        canvas.imageCaptured(handed);
        QVERIFY(same(canvas.currentImage(), handed));
    }

    void withoutASizeThereIsNone()
    {
        QVERIFY(PictureMemory::create({0, 7}).isNull());
        QVERIFY(PictureMemory::copyOf(QImage()).isNull());
        QVERIFY(!PictureMemory::holds(QImage()));
    }
};

REGISTER_TEST(KeptPicturesTest)
#include "tst_kept_pictures.moc"
