#include "tests/TestProgram.h"
#include "tests/canvas/RawFrame.h"
#include "tests/canvas/ReferencePipeline.h"

#include <QtTest>

#include <cstring>
#include <functional>
#include <memory>
#include <set>

/// What is done to a canvas before its frames come.
struct CanvasPreparation {
    std::function<void(ImageCanvas &)> run;
};
Q_DECLARE_METATYPE(CanvasPreparation)

namespace
{

using ReferencePipeline::same;

constexpr QSize SIZE(64, 48);

using Memory = std::shared_ptr<std::uint8_t>;

/// A frame that the source has written into the canvas's memory, and handed over.
Memory lentFrame(ImageCanvas &canvas, const RawFrame &frame, bool mirror = false)
{
    Memory memory = canvas.memoryForFrame(frame.size.width(), frame.size.height());
    if (!memory)
        return memory;
    std::memcpy(memory.get(), frame.bytes.data(), frame.bytes.size());
    canvas.imageCaptured(memory.get(), frame.size.width(), frame.size.height(), mirror, false);
    return memory;
}

/// What stands in the source's memory when the canvas has had it.
QImage answerIn(const Memory &memory, QSize size)
{
    return QImage(memory.get(), size.width(), size.height(), size.width() * 3,
                  QImage::Format_RGB888)
        .copy();
}

} // namespace

/// A source that writes its frames straight into the canvas's memory.
class LentMemoryTest : public QObject
{
    Q_OBJECT

private slots:
    void aFrameThatNeedsNoStepIsNotCopied();
    void everyPictureIsAsThatOfACopy_data();
    void everyPictureIsAsThatOfACopy();
    void aStepLeavesTheFrameItself_data();
    void aStepLeavesTheFrameItself();
    void aSourceThatHasGoneLeavesTheMemory();
    void foreignMemoryIsCopied();
    void theSameMemoryComesBack();
    void anEmptyFrameHasNone();
};

void LentMemoryTest::aFrameThatNeedsNoStepIsNotCopied()
{
    ImageCanvas canvas;
    RawFrame::of(SIZE).handTo(canvas);
    const RawFrame frame = RawFrame::of(SIZE, 3, 7);
    const Memory memory = lentFrame(canvas, frame);
    QCOMPARE(canvas.currentImage().constBits(), static_cast<const uchar *>(memory.get()));
    QVERIFY(same(canvas.currentImage(), frame.image()));
    // It is shown from now on, so the next frame gets other memory.
    QVERIFY(canvas.memoryForFrame(SIZE.width(), SIZE.height()) != memory);
}

void LentMemoryTest::everyPictureIsAsThatOfACopy_data()
{
    using Prepare = std::function<void(ImageCanvas &)>;
    QTest::addColumn<CanvasPreparation>("prepare");
    QTest::addColumn<QSize>("size");
    const auto row = [](const char *name, const Prepare &prepare, QSize size = SIZE) {
        QTest::newRow(name) << CanvasPreparation{prepare} << size;
    };
    const Prepare nothing = [](ImageCanvas &) {};
    row("plain", nothing);
    row("rows with padding", nothing, {65, 31});
    row("another size", nothing, {128, 72});
    row("negative", [](ImageCanvas &canvas) { canvas.effectMode = CanvasModes::EffectNegative; });
    row("grey", [](ImageCanvas &canvas) { canvas.effectMode = CanvasModes::EffectBW; });
    row("mosaic", [](ImageCanvas &canvas) { canvas.effectMode = CanvasModes::EffectMosaic; });
    row("an effect that there is not",
        [](ImageCanvas &canvas) { canvas.effectMode = static_cast<CanvasModes::EffectMode>(99); });
    row("masked", [](ImageCanvas &canvas) { canvas.maskMode = CanvasModes::MaskCircle; });
    row("turned", [](ImageCanvas &canvas) { canvas.rotate(); });
    row("upside down", [](ImageCanvas &canvas) {
        canvas.rotate();
        canvas.rotate();
    });
    row("zoomed", [](ImageCanvas &canvas) { canvas.zoomIn(); });
    row("frozen", [](ImageCanvas &canvas) { canvas.frozen = true; });
    row("drawn on", [](ImageCanvas &canvas) {
        canvas.resize(SIZE);
        canvas.setMouseMode(CanvasModes::Line);
        QTest::mousePress(&canvas, Qt::LeftButton, {}, {5, 5});
        QMouseEvent move(QEvent::MouseMove, {40, 30}, Qt::NoButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&canvas, &move);
        QTest::mouseRelease(&canvas, Qt::LeftButton, {}, {40, 30});
    });
}

void LentMemoryTest::everyPictureIsAsThatOfACopy()
{
    QFETCH(CanvasPreparation, prepare);
    QFETCH(QSize, size);
    ImageCanvas lent, copied;
    for (ImageCanvas *canvas : {&lent, &copied}) {
        RawFrame::of(SIZE).handTo(*canvas);
        prepare.run(*canvas);
    }
    for (unsigned seed = 1; seed < 4; ++seed) {
        const RawFrame frame = RawFrame::of(size, 3, seed);
        RawFrame handed = frame;
        handed.handTo(copied);
        const Memory memory = lentFrame(lent, frame);
        QVERIFY(same(lent.currentImage(), copied.currentImage()));
        QVERIFY(same(answerIn(memory, size), handed.image()));
    }
}

void LentMemoryTest::aStepLeavesTheFrameItself_data()
{
    QTest::addColumn<bool>("mirror");
    QTest::newRow("upright") << false;
    QTest::newRow("mirrored") << true;
}

/// The answer is written over the source's memory, so the frame is kept elsewhere.
void LentMemoryTest::aStepLeavesTheFrameItself()
{
    QFETCH(bool, mirror);
    ImageCanvas canvas;
    RawFrame::of(SIZE).handTo(canvas);
    canvas.effectMode = CanvasModes::EffectNegative;
    const RawFrame frame = RawFrame::of(SIZE, 3, 5);
    const Memory memory = lentFrame(canvas, frame, mirror);
    QImage inverted = frame.image();
    inverted.invertPixels();
    QVERIFY(same(answerIn(memory, SIZE), inverted));
    canvas.effectMode = CanvasModes::EffectColor;
    canvas.autoRefresh();
    QVERIFY(same(canvas.currentImage(), frame.image().mirrored(false, mirror)));
}

void LentMemoryTest::aSourceThatHasGoneLeavesTheMemory()
{
    ImageCanvas canvas;
    RawFrame::of(SIZE).handTo(canvas);
    const RawFrame frame = RawFrame::of(SIZE, 3, 5);
    (void)lentFrame(canvas, frame); // and lets go of it
    for (int i = 0; i < 6; ++i) {
        const Memory next = canvas.memoryForFrame(SIZE.width(), SIZE.height());
        std::memset(next.get(), 0, frame.bytes.size()); // never handed over
    }
    QVERIFY(same(canvas.currentImage(), frame.image()));
}

void LentMemoryTest::foreignMemoryIsCopied()
{
    ImageCanvas canvas;
    RawFrame::of(SIZE).handTo(canvas);
    const Memory unused = canvas.memoryForFrame(SIZE.width(), SIZE.height());
    RawFrame frame = RawFrame::of(SIZE, 3, 5);
    frame.handTo(canvas);
    QVERIFY(canvas.currentImage().constBits() != frame.bytes.data());
    QVERIFY(canvas.currentImage().constBits() != unused.get());
}

void LentMemoryTest::theSameMemoryComesBack()
{
    ImageCanvas canvas;
    std::set<std::uint8_t *> places;
    for (unsigned seed = 0; seed < 20; ++seed)
        places.insert(lentFrame(canvas, RawFrame::of(SIZE, 3, seed)).get());
    QVERIFY2(places.size() <= 4, qPrintable(QString::number(places.size())));
}

void LentMemoryTest::anEmptyFrameHasNone()
{
    ImageCanvas canvas;
    QVERIFY(!canvas.memoryForFrame(0, 48));
    QVERIFY(!canvas.memoryForFrame(64, -1));
}

REGISTER_TEST(LentMemoryTest)
#include "tst_lent_memory.moc"
