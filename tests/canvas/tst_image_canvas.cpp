#include "tests/TestProgram.h"
#include "tests/canvas/RawFrame.h"
#include "tests/canvas/ReferencePipeline.h"
#include "tests/canvas/ViewOf.h"

#include <QtTest>

#include <algorithm>
#include <vector>

namespace
{

using ReferencePipeline::noise;
using ReferencePipeline::same;

} // namespace

class ImageCanvasTest : public QObject
{
    Q_OBJECT

private slots:
    void startsAsItsContractSays();
    void keepsAFrameAndLeavesTheBufferAlone();
    void writesTheProcessedPictureBack_data();
    void writesTheProcessedPictureBack();
    void mirrorsOnTheWayInAndOut();
    void makesFourByteFramesOpaque();
    void showsImagesOfAnyWidthWhole_data();
    void showsImagesOfAnyWidthWhole();
    void takesRawFramesInOneBlock();
    void takesImagesWithLongRows();
    void acceptsEmptyFrames();
    void acceptsTheSmallestFrames();
};

void ImageCanvasTest::startsAsItsContractSays()
{
    const ImageCanvas canvas;
    QCOMPARE(canvas.mouseMode(), ImageCanvas::Hand);
    QCOMPARE(canvas.effectMode.load(), ImageCanvas::EffectColor);
    QCOMPARE(canvas.maskMode.load(), ImageCanvas::MaskNone);
    QCOMPARE(canvas.snapshotMode, ImageCanvas::Single);
    QVERIFY(!canvas.frozen);
    QVERIFY(!canvas.seriesArmed());
    QCOMPARE(canvas.penColor, QColor(Qt::black));
    QCOMPARE(canvas.penWidth, 3);
    QVERIFY(!canvas.fillEnabled);
    QCOMPARE(canvas.fillColor, QColor(Qt::black));
    QCOMPARE(canvas.boardColor(), QColor(Qt::white));
    QCOMPARE(canvas.textColor(), QColor(Qt::black));
    QCOMPARE(canvas.fontFace(), QString("Arial"));
    QCOMPARE(canvas.fontSize(), 18);
    QCOMPARE(canvas.font().family(), QString("Arial"));
    QCOMPARE(canvas.font().pointSize(), 18);
    QCOMPARE(canvas.zoomScale(), 1.0);
    QCOMPARE(canvas.rotation(), 0);
}

void ImageCanvasTest::keepsAFrameAndLeavesTheBufferAlone()
{
    ImageCanvas canvas;
    RawFrame frame = RawFrame::of({128, 72});
    const auto before = frame.bytes;
    frame.handTo(canvas);
    QVERIFY(frame.bytes == before);
    QVERIFY(same(canvas.currentImage(), frame.image()));
    QCOMPARE(canvas.pictureSize(), QSize(128, 72));
    // The canvas has a copy of its own.
    std::fill(frame.bytes.begin(), frame.bytes.end(), uchar{0});
    QVERIFY(!same(canvas.currentImage(), frame.image()));
}

void ImageCanvasTest::writesTheProcessedPictureBack_data()
{
    QTest::addColumn<int>("pixelBytes");
    QTest::addColumn<bool>("mirror");
    QTest::addColumn<int>("turns");
    QTest::addColumn<int>("effect");
    for (const int pixelBytes : {3, 4}) {
        for (const bool mirror : {false, true}) {
            for (const int turns : {0, 1, 2}) {
                for (int effect = 0; effect < 4; ++effect)
                    QTest::addRow("%d bytes, mirror %d, turns %d, effect %d", pixelBytes, mirror,
                                  turns, effect)
                        << pixelBytes << mirror << turns << effect;
            }
        }
    }
}

void ImageCanvasTest::writesTheProcessedPictureBack()
{
    QFETCH(int, pixelBytes);
    QFETCH(bool, mirror);
    QFETCH(int, turns);
    QFETCH(int, effect);
    ImageCanvas canvas;
    RawFrame frame = RawFrame::of({128, 72}, pixelBytes);
    frame.handTo(canvas);
    for (int i = 0; i < turns; ++i)
        canvas.rotate();
    canvas.effectMode = static_cast<ImageCanvas::EffectMode>(effect);
    canvas.maskMode = ImageCanvas::MaskCircle;

    frame = RawFrame::of({128, 72}, pixelBytes, 77);
    QImage input = frame.image().convertToFormat(pixelBytes == 4 ? QImage::Format_ARGB32
                                                                 : QImage::Format_RGB888);
    input = input.mirrored(false, mirror);
    ViewGeometry view = viewOf(frame.size);
    for (int i = 0; i < turns; ++i)
        view.turn(true);
    const QImage expected =
        ReferencePipeline::run(input, {view, canvas.effectMode, canvas.maskMode, QImage()});
    frame.handTo(canvas, mirror);
    QVERIFY(same(canvas.currentImage(), expected));
    QVERIFY(same(frame.image(),
                 expected.convertToFormat(frame.image().format()).mirrored(false, mirror)));
}

void ImageCanvasTest::mirrorsOnTheWayInAndOut()
{
    ImageCanvas canvas;
    RawFrame frame = RawFrame::of({40, 31});
    frame.size = {40, 31};
    const QImage before = frame.image();
    frame.handTo(canvas, true);
    QVERIFY(same(canvas.currentImage(), before.mirrored(false, true)));
    QVERIFY(same(frame.image(), before));
}

void ImageCanvasTest::makesFourByteFramesOpaque()
{
    ImageCanvas canvas;
    RawFrame frame = RawFrame::of({16, 8}, 4);
    frame.handTo(canvas);
    for (std::size_t i = 3; i < frame.bytes.size(); i += 4)
        QCOMPARE(int(frame.bytes[i]), 255);
    QCOMPARE(canvas.currentImage().format(), QImage::Format_ARGB32);
}

void ImageCanvasTest::showsImagesOfAnyWidthWhole_data()
{
    QTest::addColumn<QSize>("size");
    for (const QSize &size : {QSize(10, 10), QSize(1023, 20), QSize(1022, 20), QSize(1021, 20),
                              QSize(5, 20), QSize(1, 1), QSize(2479, 3508), QSize(10, 10000)})
        QTest::addRow("%dx%d", size.width(), size.height()) << size;
}

void ImageCanvasTest::showsImagesOfAnyWidthWhole()
{
    QFETCH(QSize, size);
    ImageCanvas canvas;
    const QImage picture = noise(size, QImage::Format_RGB888, 4);
    canvas.imageCaptured(picture);
    QVERIFY(same(canvas.currentImage(), picture));
    const QImage converted = noise(size, QImage::Format_RGB32, 5);
    canvas.imageCaptured(converted);
    QVERIFY(same(canvas.currentImage(), converted.convertToFormat(QImage::Format_RGB888)));
    canvas.effectMode = ImageCanvas::EffectNegative;
    canvas.autoRefresh();
    canvas.effectMode = ImageCanvas::EffectColor;
    canvas.autoRefresh();
    QVERIFY(same(canvas.currentImage(), converted.convertToFormat(QImage::Format_RGB888)));
}

void ImageCanvasTest::takesRawFramesInOneBlock()
{
    ImageCanvas canvas;
    RawFrame raw = RawFrame::of({10, 10});
    const auto before = raw.bytes;
    raw.handTo(canvas);
    // A raw frame has no bytes between its rows and the canvas's picture has two: the 300 bytes
    // come one after the other, and the 20 behind them are black.
    const QImage shown = canvas.currentImage();
    QCOMPARE(shown.sizeInBytes(), qsizetype(320));
    QVERIFY(std::equal(before.begin(), before.end(), shown.constBits()));
    QVERIFY(std::all_of(shown.constBits() + 300, shown.constBits() + 320,
                        [](uchar byte) { return byte == 0; }));
    QVERIFY(raw.bytes == before);
}

void ImageCanvasTest::takesImagesWithLongRows()
{
    ImageCanvas canvas;
    std::vector<uchar> memory(std::size_t{100} * 20);
    for (std::size_t i = 0; i < memory.size(); ++i)
        memory[i] = static_cast<uchar>(i * 7);
    const QImage wrapped(memory.data(), 16, 20, 100, QImage::Format_RGB888);
    canvas.imageCaptured(wrapped);
    QVERIFY(same(canvas.currentImage(), wrapped));
}

void ImageCanvasTest::acceptsEmptyFrames()
{
    ImageCanvas canvas;
    RawFrame::of({64, 48}).handTo(canvas);
    canvas.zoomIn();
    canvas.imageCaptured(QImage());
    QVERIFY(canvas.currentImage().isNull());
    QCOMPARE(canvas.zoomScale(), 1.0);
    QCOMPARE(canvas.transformMousePoint({5, 5}), QPoint(0, 0));
    uchar byte = 42;
    canvas.imageCaptured(&byte, 0, 10, true, true);
    canvas.imageCaptured(&byte, -3, 10, false, false);
    canvas.imageCaptured(nullptr, 10, 10, true, true);
    QCOMPARE(int(byte), 42);
    QVERIFY(canvas.currentImage().isNull());
    canvas.rotate();
    canvas.zoomOut();
    canvas.autoRefresh();
    RawFrame::of({64, 48}).handTo(canvas);
    QCOMPARE(canvas.pictureSize(), QSize(64, 48));
}

void ImageCanvasTest::acceptsTheSmallestFrames()
{
    ImageCanvas canvas;
    for (const QSize &size : {QSize(1, 1), QSize(4, 4), QSize(1, 300), QSize(300, 1)}) {
        RawFrame frame = RawFrame::of(size);
        frame.handTo(canvas);
        for (int i = 0; i < 6; ++i) {
            canvas.zoomIn();
            canvas.rotate();
            canvas.effectMode = static_cast<ImageCanvas::EffectMode>(i % 4);
            canvas.maskMode = static_cast<ImageCanvas::MaskMode>(i % 5);
            frame.handTo(canvas);
            QCOMPARE(canvas.pictureSize(), size);
        }
        canvas.zoomReset();
    }
}

REGISTER_TEST(ImageCanvasTest)
#include "tst_image_canvas.moc"
