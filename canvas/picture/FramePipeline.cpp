#include "canvas/picture/FramePipeline.h"

#include "canvas/picture/FrameSteps.h"
#include "canvas/picture/Overlay.h"

#include <algorithm>
#include <cstring>

namespace
{

constexpr int MOSAIC_BLOCK = 8;
/// Scratch memory that is this many times larger than needed is given back.
constexpr std::size_t TOO_LARGE = 2;

/// The part, enlarged to whole blocks of the mosaic, which are counted from the picture's corner.
QRect wholeBlocks(const QRect &part, QSize picture)
{
    const int left = part.left() / MOSAIC_BLOCK * MOSAIC_BLOCK;
    const int top = part.top() / MOSAIC_BLOCK * MOSAIC_BLOCK;
    const int right = (part.right() / MOSAIC_BLOCK + 1) * MOSAIC_BLOCK;
    const int bottom = (part.bottom() / MOSAIC_BLOCK + 1) * MOSAIC_BLOCK;
    return QRect(left, top, right - left, bottom - top) & QRect({0, 0}, picture);
}

/// Copies the bytes between two rows from the source where both pictures have one shape, and else
/// sets them to 0. They are part of a picture whose width is no multiple of four, because pictures
/// are handed over as blocks.
void copyPadding(const ConstPixelRows *source, const PixelRows &destination)
{
    const std::size_t used = destination.rowBytes();
    const std::size_t padding = static_cast<std::size_t>(destination.stride) - used;
    if (padding == 0)
        return;
    for (int y = 0; y < destination.height; ++y) {
        if (source)
            std::memcpy(destination.row(y) + used, source->row(y) + used, padding);
        else
            std::memset(destination.row(y) + used, 0, padding);
    }
}

/// From 4 bytes a pixel to 3; transparent pixels leave the destination as it is.
void drawWithoutAlpha(const ConstPixelRows &source, const PixelRows &destination)
{
    for (int y = 0; y < source.height; ++y) {
        for (int x = 0; x < source.width; ++x) {
            const uchar *in = source.pixel(x, y);
            uchar *out = destination.pixel(x, y);
            if (in[3] == 0)
                continue;
            out[0] = in[2];
            out[1] = in[1];
            out[2] = in[0];
        }
    }
}

} // namespace

/// The picture on its way through the steps: read-only rows of the input until the first step
/// that changes something, then rows of its own.
class FramePipeline::Work
{
public:
    Work(FramePipeline &pipeline, const FramePtr &input, const QRect &part, bool isResult)
        : m_pipeline(pipeline)
        , m_input(input)
        , m_part(part)
        , m_isResult(isResult)
        , m_now(input->rows())
    {
    }

    [[nodiscard]] bool isInput() const { return !m_owned; }
    [[nodiscard]] bool usesScratch() const { return m_owned && !m_isResult; }
    [[nodiscard]] bool failed() const { return m_failed; }
    [[nodiscard]] const ConstPixelRows &now() const { return m_now; }
    /// The frame that everything was written to, if it has the result's size; otherwise null.
    [[nodiscard]] FramePtr result() const { return m_result; }

    /// Turns the input, or takes the part of it without touching a pixel.
    void turn(int quarterTurns)
    {
        if (quarterTurns == 0) {
            m_now = m_now.part(m_part);
            return;
        }
        const ConstPixelRows source = m_now;
        if (begin(false))
            FrameSteps::turn(source, quarterTurns, m_part, m_rows);
    }

    /// Runs a step that writes from one picture into another, which may be the same.
    template <typename Step>
    void through(Step step)
    {
        const ConstPixelRows source = m_now;
        if (m_owned || begin(true))
            step(source, m_rows);
    }

    /// Runs a step that changes a picture in place.
    template <typename Step>
    void inPlace(Step step)
    {
        const ConstPixelRows source = m_now;
        if (!m_owned) {
            if (!begin(true))
                return;
            FrameSteps::copy(source, m_rows);
        }
        step(m_rows);
    }

    /// Keeps only that part of the rows.
    void crop(const QRect &part)
    {
        m_now = m_now.part(part);
        if (m_owned)
            m_rows = m_rows.part(part);
    }

private:
    bool begin(bool sameShape)
    {
        const QImage::Format format = m_input->format();
        Frame *target = nullptr;
        if (m_isResult) {
            m_result = m_pipeline.m_pool.acquire(m_part.size(), format);
            target = m_result.get();
        } else {
            target = scratch(m_pipeline.m_work, m_part.size(), format);
        }
        m_failed = !target;
        if (m_failed)
            return false;
        m_rows = target->rows();
        const ConstPixelRows source = m_input->rows();
        if (m_isResult)
            copyPadding(sameShape ? &source : nullptr, m_rows);
        m_now = m_rows;
        m_owned = true;
        return true;
    }

    FramePipeline &m_pipeline;
    const FramePtr &m_input;
    QRect m_part;
    bool m_isResult;
    bool m_owned = false;
    bool m_failed = false;
    ConstPixelRows m_now;
    PixelRows m_rows;
    std::shared_ptr<Frame> m_result;
};

bool FramePipeline::changesNothing(const Overlay &layer, const Settings &settings)
{
    const ViewGeometry &view = settings.view;
    return view.rotation() == 0 && view.visibleRectangle() == QRect({0, 0}, view.frameSize()) &&
           !layer.isUsed() && settings.effect != CanvasModes::EffectBW &&
           settings.effect != CanvasModes::EffectNegative &&
           settings.effect != CanvasModes::EffectMosaic && settings.mask == CanvasModes::MaskNone;
}

FramePtr FramePipeline::run(const FramePtr &input, const Overlay &layer, const Settings &settings)
{
    if (!input) {
        m_work.reset();
        m_scaled.reset();
        return nullptr;
    }
    const ViewGeometry &view = settings.view;
    if (input->size() == view.frameSize() && changesNothing(layer, settings)) {
        m_work.reset();
        return input;
    }
    const QRect seen = view.visibleRectangle();
    const bool blocks = settings.effect == CanvasModes::EffectMosaic;
    const QRect part = blocks ? wholeBlocks(seen, view.rotatedSize()) : seen;
    const bool fits = part == seen && seen.size() == input->size();

    // Drawing and every effect except the mosaic change each pixel independently, so only the
    // visible part has to be processed.
    Work work(*this, input, part, fits);
    work.turn(view.rotation());
    if (layer.isUsed())
        work.inPlace([&](const PixelRows &rows) { FrameSteps::layOver(layer, part, rows); });
    if (settings.effect == CanvasModes::EffectBW)
        work.through(FrameSteps::grey);
    else if (settings.effect == CanvasModes::EffectNegative)
        work.through(FrameSteps::negative);
    else if (blocks)
        work.through(FrameSteps::mosaic);
    work.crop(seen.translated(-part.topLeft()));
    if (settings.mask != CanvasModes::MaskNone)
        work.inPlace([&](const PixelRows &rows) { FrameSteps::mask(settings.mask, rows); });

    if (!work.usesScratch())
        m_work.reset();
    if (work.failed())
        return nullptr;
    if (fits)
        return work.isInput() ? input : work.result();
    return fit(work.now(), input->format(), input->size());
}

FramePtr FramePipeline::fitted(const FramePtr &picture, QSize size)
{
    if (!picture || picture->size() == size)
        return picture;
    return fit(picture->rows(), picture->format(), size);
}

FramePtr FramePipeline::fit(const ConstPixelRows &picture, QImage::Format format, QSize size)
{
    const QSize scaled = picture.size().scaled(size, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    const bool bars = scaled != size;
    // A picture with bars is always RGB888, whatever came in.
    const std::shared_ptr<Frame> result =
        m_pool.acquire(size, bars ? QImage::Format_RGB888 : format);
    if (!result)
        return nullptr;
    const PixelRows rows = result->rows();
    copyPadding(nullptr, rows);
    const QRect middle({(size.width() - scaled.width()) / 2, (size.height() - scaled.height()) / 2},
                       scaled);
    const int right = middle.x() + middle.width();
    const int below = middle.y() + middle.height();
    FrameSteps::fillBlack(rows.part({0, 0, size.width(), middle.y()}));
    FrameSteps::fillBlack(rows.part({0, middle.y(), middle.x(), middle.height()}));
    FrameSteps::fillBlack(rows.part({right, middle.y(), size.width() - right, middle.height()}));
    FrameSteps::fillBlack(rows.part({0, below, size.width(), size.height() - below}));
    if (picture.pixelBytes == rows.pixelBytes) {
        m_scaled.reset();
        scaleInto(picture, rows.part(middle));
        return result;
    }
    Frame *between = scratch(m_scaled, scaled, format);
    if (!between)
        return nullptr;
    scaleInto(picture, between->rows());
    FrameSteps::fillBlack(rows.part(middle));
    drawWithoutAlpha(between->rows(), rows.part(middle));
    return result;
}

void FramePipeline::scaleInto(const ConstPixelRows &picture, const PixelRows &destination)
{
    if (picture.size() == destination.size()) {
        FrameSteps::copy(picture, destination);
        return;
    }
    m_scaler.prepare(picture.size(), destination.size());
    m_scaler.scale(picture, destination);
}

Frame *FramePipeline::scratch(std::unique_ptr<Frame> &frame, QSize size, QImage::Format format)
{
    const std::size_t needed = Frame::bytesFor(size, format) + Frame::SLACK;
    if (frame && frame->capacity() > TOO_LARGE * needed)
        frame.reset();
    if (!frame || !frame->reshape(size, format)) {
        frame.reset();
        frame = Frame::create(size, format);
    }
    return frame.get();
}
