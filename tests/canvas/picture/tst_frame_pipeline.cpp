#include "tests/TestProgram.h"
#include "tests/canvas/ReferencePipeline.h"

#include "canvas/drawing/AnnotationLayer.h"
#include "canvas/picture/FramePipeline.h"

#include <QtTest>

#include <QPainter>

#include <cstring>

namespace
{

using ReferencePipeline::drawing;
using ReferencePipeline::noise;
using ReferencePipeline::same;

FramePtr frameOf(FramePool &pool, const QImage &picture)
{
    const std::shared_ptr<Frame> frame = pool.acquire(picture.size(), picture.format());
    std::memcpy(frame->rows().data, picture.constBits(), frame->byteCount());
    return frame;
}

/// The layer as the drawing tools would leave it.
void drawOn(AnnotationLayer &layer, const QImage &image)
{
    layer.paint({layer.rect()}, [&](QPainter &painter) { painter.drawImage(0, 0, image); });
    layer.setUsed();
}

const QVector<QSize> SIZES{{64, 48}, {80, 45}, {67, 39}, {61, 122}, {40, 40}, {33, 100}, {1, 1},
                           {2, 1},   {1, 9},   {4, 4},   {10, 10},  {17, 5},  {8, 8},    {102, 77}};

} // namespace

class FramePipelineTest : public QObject
{
    Q_OBJECT

private:
    /// Runs one input through both pipelines for every turn, scale, effect and mask.
    void compareAll(QImage::Format format, bool drawn);

private slots:
    void equalsTheReferenceForRgb() { compareAll(QImage::Format_RGB888, false); }
    void equalsTheReferenceForRgbWithADrawing() { compareAll(QImage::Format_RGB888, true); }
    void equalsTheReferenceForArgb() { compareAll(QImage::Format_ARGB32, false); }
    void equalsTheReferenceForArgbWithADrawing() { compareAll(QImage::Format_ARGB32, true); }
    void equalsTheReferenceAtCameraSizes_data();
    void equalsTheReferenceAtCameraSizes();
    void passesAnUntouchedFrameThrough();
    void neverChangesItsInput();
    void fitsAPictureOfAnotherSize();
    void makesNoNewFramesInASteadyStream();
};

void FramePipelineTest::compareAll(QImage::Format format, bool drawn)
{
    unsigned seed = 1;
    for (const QSize &size : SIZES) {
        FramePipeline pipeline;
        const QImage input = noise(size, format, ++seed);
        const FramePtr frame = frameOf(pipeline.pool(), input);
        for (int turns = 0; turns < 4; ++turns) {
            ViewGeometry view;
            view.setFrameSize(size);
            for (int i = 0; i < turns; ++i)
                view.turn(true);
            const QSize turnedSize = view.rotatedSize();
            QImage strokes;
            AnnotationLayer layer;
            layer.reset(turnedSize);
            if (drawn) {
                strokes = drawing(turnedSize, ++seed);
                drawOn(layer, strokes);
            }
            for (const int factor : {0, 1, 2, 3, 6}) {
                view.zoom({turnedSize.width() * 0.6, turnedSize.height() * 0.3}, factor);
                for (int effect = 0; effect <= 4; ++effect) {
                    for (int mask = 0; mask <= 5; ++mask) {
                        const auto effectMode = static_cast<CanvasModes::EffectMode>(effect);
                        const auto maskMode = static_cast<CanvasModes::MaskMode>(mask);
                        const QImage expected =
                            ReferencePipeline::run(input, {view, effectMode, maskMode, strokes});
                        const QImage actual =
                            frameImage(pipeline.run(frame, layer, {view, effectMode, maskMode}));
                        if (same(actual, expected))
                            continue;
                        expected.save("expected.png");
                        actual.save("actual.png");
                        QFAIL(qPrintable(QString("%1x%2 turns %3 factor %4 effect %5 mask %6")
                                             .arg(size.width())
                                             .arg(size.height())
                                             .arg(turns)
                                             .arg(factor)
                                             .arg(effect)
                                             .arg(mask)));
                    }
                }
            }
        }
    }
}

void FramePipelineTest::equalsTheReferenceAtCameraSizes_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("1024x768") << QSize(1024, 768);
    QTest::newRow("1280x720") << QSize(1280, 720);
    QTest::newRow("1920x1080") << QSize(1920, 1080);
    QTest::newRow("1281x721") << QSize(1281, 721);
}

void FramePipelineTest::equalsTheReferenceAtCameraSizes()
{
    QFETCH(QSize, size);
    FramePipeline pipeline;
    const QImage input = noise(size, QImage::Format_RGB888, 7);
    const FramePtr frame = frameOf(pipeline.pool(), input);
    int round = 0;
    for (int turns = 0; turns < 4; ++turns) {
        for (const int factor : {0, 1, 2, 3, 6}) {
            ViewGeometry view;
            view.setFrameSize(size);
            for (int i = 0; i < turns; ++i)
                view.turn(true);
            view.zoom({size.height() * 0.7, size.width() * 0.2}, factor);
            const QImage strokes = drawing(view.rotatedSize(), static_cast<unsigned>(factor));
            AnnotationLayer layer;
            layer.reset(view.rotatedSize());
            drawOn(layer, strokes);
            const auto effect = static_cast<CanvasModes::EffectMode>(round % 4);
            const auto mask = static_cast<CanvasModes::MaskMode>(round % 5);
            ++round;
            QVERIFY2(same(frameImage(pipeline.run(frame, layer, {view, effect, mask})),
                          ReferencePipeline::run(input, {view, effect, mask, strokes})),
                     qPrintable(QString("turns %1 factor %2").arg(turns).arg(factor)));
        }
    }
}

void FramePipelineTest::passesAnUntouchedFrameThrough()
{
    FramePipeline pipeline;
    const FramePtr frame = frameOf(pipeline.pool(), noise({64, 48}, QImage::Format_RGB888, 1));
    ViewGeometry view;
    view.setFrameSize({64, 48});
    QCOMPARE(pipeline.run(frame, AnnotationLayer(), {view}).get(), frame.get());
    QVERIFY(!pipeline.run(nullptr, AnnotationLayer(), {view}));
}

void FramePipelineTest::neverChangesItsInput()
{
    FramePipeline pipeline;
    const QImage input = noise({129, 73}, QImage::Format_RGB888, 3);
    const FramePtr frame = frameOf(pipeline.pool(), input);
    AnnotationLayer layer;
    layer.reset({129, 73});
    drawOn(layer, drawing({129, 73}, 4));
    ViewGeometry view;
    view.setFrameSize({129, 73});
    for (int effect = 0; effect < 4; ++effect) {
        for (int mask = 0; mask < 5; ++mask) {
            const FramePtr result =
                pipeline.run(frame, layer,
                             {view, static_cast<CanvasModes::EffectMode>(effect),
                              static_cast<CanvasModes::MaskMode>(mask)});
            QVERIFY(result != frame);
            QVERIFY(same(frameImage(frame), input));
        }
    }
}

void FramePipelineTest::fitsAPictureOfAnotherSize()
{
    for (const QImage::Format format : {QImage::Format_RGB888, QImage::Format_ARGB32}) {
        FramePipeline pipeline;
        const QImage picture = noise({102, 77}, format, 5);
        for (const QSize &size : {QSize(192, 108), QSize(51, 200), QSize(204, 154), QSize(1, 1)}) {
            const FramePtr fitted = pipeline.fitted(frameOf(pipeline.pool(), picture), size);
            QVERIFY(same(frameImage(fitted), ReferencePipeline::fitted(picture, size)));
        }
    }
}

void FramePipelineTest::makesNoNewFramesInASteadyStream()
{
    FramePipeline pipeline;
    const QImage input = noise({640, 360}, QImage::Format_RGB888, 9);
    ViewGeometry view;
    view.setFrameSize(input.size());
    view.zoom({300, 200}, 2);
    FramePtr shown;
    int made = 0;
    for (int i = 0; i < 50; ++i) {
        shown = pipeline.run(frameOf(pipeline.pool(), input), AnnotationLayer(),
                             {view, CanvasModes::EffectMosaic, CanvasModes::MaskCircle});
        if (i == 5)
            made = pipeline.pool().framesMade();
    }
    QCOMPARE(pipeline.pool().framesMade(), made);
    QVERIFY(made <= 3);
}

REGISTER_CORE_TEST(FramePipelineTest)
#include "tst_frame_pipeline.moc"
