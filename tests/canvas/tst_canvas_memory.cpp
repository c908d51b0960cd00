#include "tests/TestProgram.h"
#include "tests/canvas/RawFrame.h"
#include "tests/canvas/ReferencePipeline.h"

#include <QtTest>

#include <atomic>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace
{

using ReferencePipeline::noise;
using ReferencePipeline::same;

/// Far above any bookkeeping and far below a frame.
constexpr std::size_t LARGE_BLOCK = 100000;

std::atomic<bool> memoryIsShort{false};
/// How many bytes the large blocks take that are held now. Frames get theirs from operator new[].
std::atomic<std::size_t> largeBytes{0};

void *allocate(std::size_t bytes, std::size_t alignment = alignof(std::max_align_t))
{
    if (bytes >= LARGE_BLOCK && memoryIsShort)
        return nullptr;
    void *block = std::aligned_alloc(alignment, (bytes + alignment - 1) / alignment * alignment);
    if (block && malloc_usable_size(block) >= LARGE_BLOCK)
        largeBytes += malloc_usable_size(block);
    return block;
}

void release(void *block)
{
    if (block && malloc_usable_size(block) >= LARGE_BLOCK)
        largeBytes -= malloc_usable_size(block);
    std::free(block);
}

} // namespace

void *operator new[](std::size_t bytes)
{
    if (void *block = allocate(bytes))
        return block;
    throw std::bad_alloc();
}

void *operator new[](std::size_t bytes, const std::nothrow_t &) noexcept
{
    return allocate(bytes);
}

void *operator new[](std::size_t bytes, std::align_val_t alignment, const std::nothrow_t &) noexcept
{
    return allocate(bytes, static_cast<std::size_t>(alignment));
}

void operator delete[](void *block) noexcept
{
    release(block);
}

void operator delete[](void *block, std::align_val_t) noexcept
{
    release(block);
}

void operator delete[](void *block, std::size_t) noexcept
{
    release(block);
}

/// What the canvas holds, and what it does when it gets no memory.
class CanvasMemoryTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { memoryIsShort = false; }

    void aFrameWithoutMemoryIsLeftOut()
    {
        ImageCanvas canvas;
        RawFrame first = RawFrame::of({640, 480}, 3, 1);
        first.handTo(canvas);
        const QImage standing = canvas.currentImage().copy();

        memoryIsShort = true;
        RawFrame larger = RawFrame::of({800, 600}, 3, 2);
        larger.handTo(canvas);
        canvas.imageCaptured(noise({800, 600}, QImage::Format_RGB888, 3));
        QVERIFY(same(canvas.currentImage(), standing));
        QCOMPARE(canvas.actualWidth(), 640);

        memoryIsShort = false;
        larger = RawFrame::of({800, 600}, 3, 2);
        larger.handTo(canvas);
        QVERIFY(same(canvas.currentImage(), larger.image()));
    }

    void theBufferComesBackAsShownWithoutMemory()
    {
        ImageCanvas canvas;
        for (const unsigned seed : {0U, 1U})
            RawFrame::of({640, 480}, 3, seed).handTo(canvas);
        // The first frame's memory is there for the next one, but none for what is made of it.
        const QImage standing = canvas.currentImage();
        canvas.effectMode = ImageCanvas::EffectNegative;
        memoryIsShort = true;
        RawFrame second = RawFrame::of({640, 480}, 3, 2);
        second.handTo(canvas);
        QVERIFY(same(canvas.currentImage(), standing));
        QVERIFY(same(second.image(), standing));
    }

    void aStandingPictureComesBackWithTheMemory()
    {
        ImageCanvas canvas;
        const QImage picture = noise({640, 480}, QImage::Format_RGB888, 1);
        canvas.imageCaptured(picture);
        canvas.effectMode = ImageCanvas::EffectNegative;
        memoryIsShort = true;
        canvas.autoRefresh();
        QVERIFY(same(canvas.currentImage(), picture));

        memoryIsShort = false;
        canvas.autoRefresh();
        QImage inverted = picture;
        inverted.invertPixels();
        QVERIFY(same(canvas.currentImage(), inverted));
    }

    void aLargePhotographsMemoryIsGivenBack_data()
    {
        QTest::addColumn<int>("turns");
        QTest::addColumn<int>("zooms");
        QTest::addColumn<bool>("effects");
        QTest::newRow("turned") << 1 << 0 << true;
        QTest::newRow("zoomed, masked") << 0 << 1 << true;
        QTest::newRow("turned and zoomed") << 1 << 2 << true;
        QTest::newRow("turned, then followed by a plain one") << 1 << 0 << false;
    }

    void aLargePhotographsMemoryIsGivenBack()
    {
        QFETCH(int, turns);
        QFETCH(int, zooms);
        QFETCH(bool, effects);
        ImageCanvas canvas;
        const QSize small(320, 240);
        const QSize large(1600, 1200);
        const auto show = [&](QSize size) {
            canvas.effectMode = effects ? ImageCanvas::EffectMosaic : ImageCanvas::EffectColor;
            canvas.maskMode = effects ? ImageCanvas::MaskCircle : ImageCanvas::MaskNone;
            RawFrame frame = RawFrame::of(size);
            for (int i = 0; i < 4; ++i)
                frame.handTo(canvas);
        };
        for (int i = 0; i < turns; ++i)
            canvas.rotate();
        show(small);
        for (int i = 0; i < zooms; ++i)
            canvas.zoomIn();
        show(small);
        const std::size_t before = largeBytes;
        QVERIFY(before > 0);
        show(large);
        QVERIFY(largeBytes > before + std::size_t{1600} * 1200 * 3);
        if (!effects)
            canvas.rotateRev();
        show(small);
        QVERIFY2(largeBytes <= before, qPrintable(QString::number(largeBytes)));
    }
};

REGISTER_TEST(CanvasMemoryTest)
#include "tst_canvas_memory.moc"
