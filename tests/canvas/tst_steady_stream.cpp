#include "canvas/ImageCanvas.h"
#include "tests/canvas/CanvasMouse.h"
#include "tests/canvas/LargeAllocations.h"

#include <QtTest>

#include <QPainter>

#include <vector>

using namespace LargeAllocations;

/// In a steady stream a frame must cost its arithmetic only: freshly mapped memory costs more than
/// all of it.
class SteadyStreamTest : public QObject
{
    Q_OBJECT

private slots:
    void theCounterSeesAPicture()
    {
        const int before = count();
        const long faultsBefore = pageFaults();
        QImage picture(1920, 1080, QImage::Format_RGB888);
        picture.fill(1);
        QVERIFY(count() > before);
        QVERIFY(pageFaults() - faultsBefore > 100);
    }

    void allocatesNothingLargeAndFaultsNoPage_data()
    {
        QTest::addColumn<int>("effect");
        QTest::addColumn<int>("mask");
        QTest::addColumn<int>("turns");
        QTest::addColumn<int>("zooms");
        QTest::addColumn<bool>("frozen");
        QTest::newRow("plain") << 0 << 0 << 0 << 0 << false;
        QTest::newRow("black and white") << 1 << 0 << 0 << 0 << false;
        QTest::newRow("mosaic, masked") << 3 << 1 << 0 << 0 << false;
        QTest::newRow("turned") << 0 << 0 << 1 << 0 << false;
        QTest::newRow("turned, zoomed, negative, masked") << 2 << 4 << 3 << 3 << false;
        QTest::newRow("mosaic, zoomed") << 3 << 0 << 0 << 2 << false;
        QTest::newRow("frozen") << 1 << 0 << 0 << 0 << true;
    }

    void allocatesNothingLargeAndFaultsNoPage()
    {
        QFETCH(int, effect);
        QFETCH(int, mask);
        QFETCH(int, turns);
        QFETCH(int, zooms);
        QFETCH(bool, frozen);
        ImageCanvas canvas;
        canvas.resize(1000, 670);
        std::vector<uchar> frame(std::size_t{1920} * 1080 * 3, uchar{100});
        QImage screen(canvas.size(), QImage::Format_RGB32);
        const auto showOne = [&](uchar value) {
            std::fill(frame.begin(), frame.end(), value);
            canvas.imageCaptured(frame.data(), 1920, 1080, false, false);
            canvas.render(&screen, QPoint(), QRegion(), QWidget::RenderFlags());
        };
        showOne(1);
        canvas.effectMode = static_cast<ImageCanvas::EffectMode>(effect);
        canvas.maskMode = static_cast<ImageCanvas::MaskMode>(mask);
        canvas.frozen = frozen;
        for (int i = 0; i < turns; ++i)
            canvas.rotate();
        for (int i = 0; i < zooms; ++i)
            canvas.zoomIn();
        for (int i = 0; i < 10; ++i)
            showOne(static_cast<uchar>(i));

        const int allocationsBefore = count();
        const long faultsBefore = pageFaults();
        for (int i = 0; i < 20; ++i)
            showOne(static_cast<uchar>(i));
        const long faults = pageFaults() - faultsBefore;
        QCOMPARE(count() - allocationsBefore, 0);
        // A few for bookkeeping; one frame alone has 1519 pages.
        QVERIFY2(faults < 10, qPrintable(QString::number(faults)));
    }

    void aCameraCostsOnePictureAtATime()
    {
        ImageCanvas canvas;
        canvas.resize(1000, 670);
        QImage screen(canvas.size(), QImage::Format_RGB32);
        const auto showOne = [&](uchar value) {
            const std::shared_ptr<std::uint8_t> frame = canvas.memoryForFrame(1920, 1080);
            std::fill_n(frame.get(), 1920 * 1080 * 3, value);
            canvas.imageCaptured(frame.get(), 1920, 1080, false, false);
            canvas.render(&screen, QPoint(), QRegion(), QWidget::RenderFlags());
        };
        const int allocationsAtFirst = count();
        for (int i = 0; i < 10; ++i)
            showOne(static_cast<uchar>(i));
        // The frame that is shown, the one that is decoded meanwhile, one in reserve, and no
        // picture in the pixels of the screen.
        QVERIFY2(count() - allocationsAtFirst <= 3,
                 qPrintable(QString::number(count() - allocationsAtFirst)));
        const int allocationsBefore = count();
        const long faultsBefore = pageFaults();
        for (int i = 0; i < 20; ++i)
            showOne(static_cast<uchar>(i));
        QCOMPARE(count() - allocationsBefore, 0);
        QVERIFY(pageFaults() - faultsBefore < 10);
    }

    void undoAndRedoOfAStrokeTakeNothingLarge()
    {
        ImageCanvas canvas;
        canvas.resize(1000, 670);
        std::vector<uchar> frame(std::size_t{1920} * 1080 * 3, uchar{200});
        QImage screen(canvas.size(), QImage::Format_RGB32);
        const auto showOne = [&] {
            canvas.imageCaptured(frame.data(), 1920, 1080, false, false);
            canvas.render(&screen, QPoint(), QRegion(), QWidget::RenderFlags());
        };
        showOne();
        const QImage blank = canvas.currentImage();
        canvas.setMouseMode(CanvasModes::Line);
        CanvasMouse::drag(canvas, {{100, 100}, {900, 600}});
        for (int i = 0; i < 6; ++i) {
            showOne();
            i % 2 == 0 ? canvas.undo() : canvas.redo();
        }

        const int allocationsBefore = count();
        const long faultsBefore = pageFaults();
        for (int i = 0; i < 20; ++i) {
            i % 2 == 0 ? canvas.undo() : canvas.redo();
            showOne();
        }
        const long faults = pageFaults() - faultsBefore;
        QCOMPARE(count() - allocationsBefore, 0);
        QVERIFY2(faults < 10, qPrintable(QString::number(faults)));
        QVERIFY(canvas.canUndo());
        QVERIFY(canvas.currentImage() != blank);
    }
};

QTEST_MAIN(SteadyStreamTest)
#include "tst_steady_stream.moc"
