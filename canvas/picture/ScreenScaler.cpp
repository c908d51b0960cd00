#include "canvas/picture/ScreenScaler.h"

#include "canvas/picture/FrameKernels.h"

#include <algorithm>
#include <cstring>

namespace
{

/// How many values wide loads may read past a column.
constexpr std::size_t SLACK = 8;
/// What is larger would drive everything else out of the processor's caches.
constexpr std::int64_t CACHED_BYTES = 16LL * 1024 * 1024;
constexpr std::size_t CHANNELS = 4;

} // namespace

void ScreenScaler::scale(const ConstPixelRows &source, const PixelRows &destination)
{
    scale(source, destination, {QPoint(0, 0), destination.size()});
}

void ScreenScaler::scale(const ConstPixelRows &source, const PixelRows &destination,
                         const QRect &part)
{
    prepare(source, destination.size());
    const bool isWhole = part.width() == destination.width;
    if (!isWhole)
        m_row.resize(static_cast<std::size_t>(destination.width));
    // The source's pixels are others than the last time.
    m_upperRow = NO_ROW;
    for (HeldRow &held : m_held)
        held.number = NO_ROW;
    const std::uint32_t *last = nullptr;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        auto *row = reinterpret_cast<std::uint32_t *>(destination.row(y));
        std::uint32_t *made = isWhole ? row : m_row.data();
        if (!last || m_way != Way::Squares || !m_nearestScaler.repeats(y))
            scaleRow(source, y, made);
        else if (isWhole)
            std::memcpy(made, last, destination.rowBytes());
        last = made;
        if (!isWhole)
            std::copy_n(made + part.left(), part.width(), row + part.left());
    }
}

void ScreenScaler::scaleRow(const ConstPixelRows &source, int y, std::uint32_t *destination)
{
    switch (m_way) {
    case Way::Copy:
        FrameKernels::current().toRgb32(source.row(y), static_cast<std::size_t>(source.width),
                                        destination, m_streams);
        break;
    case Way::Double:
        doubleRow(source, y, destination);
        break;
    case Way::Squares:
        m_nearestScaler.rowToRgb32(source, y, destination);
        break;
    case Way::Mix:
        mixRow(source, y, destination);
        break;
    }
}

// Twice as large, every weight is a quarter or three quarters, so the bytes are those of mixRow(),
// from sums that need no weights.
void ScreenScaler::doubleRow(const ConstPixelRows &source, int y, std::uint32_t *destination)
{
    const int upper = y == 0 ? -1 : (y - 1) / 2;
    if (upper != m_upperRow) {
        m_upperRow = upper;
        sumRowsFrom(source, upper);
    }
    const std::vector<std::uint16_t> &sums = m_doubleSums[y % 2 == 1 ? 0 : 1];
    FrameKernels::current().doublePixels(
        sums.data() + CHANNELS, static_cast<std::size_t>(source.width), destination, m_streams);
}

void ScreenScaler::sumRowsFrom(const ConstPixelRows &source, int upper)
{
    const FrameKernels &kernels = FrameKernels::current();
    const auto width = static_cast<std::size_t>(source.width);
    const auto bytesOf = [&](int row) {
        HeldRow &held = m_held[static_cast<std::size_t>(row % 2)];
        if (held.number != row)
            kernels.toRgb32(source.row(row), width, held.pixels.data(), false);
        held.number = row;
        return reinterpret_cast<const std::uint8_t *>(held.pixels.data());
    };
    // The outermost rows and pixels are their own neighbours.
    const std::uint8_t *above = bytesOf(std::max(upper, 0));
    const std::uint8_t *below = bytesOf(std::min(upper + 1, source.height - 1));
    const std::size_t count = CHANNELS * width;
    kernels.sumTwoRows(above, below, count, m_doubleSums[0].data() + CHANNELS,
                       m_doubleSums[1].data() + CHANNELS);
    for (std::vector<std::uint16_t> &sums : m_doubleSums) {
        std::copy_n(sums.data() + CHANNELS, CHANNELS, sums.data());
        std::copy_n(sums.data() + count, CHANNELS, sums.data() + count + CHANNELS);
    }
}

void ScreenScaler::mixRow(const ConstPixelRows &source, int y, std::uint32_t *destination)
{
    const FrameKernels &kernels = FrameKernels::current();
    const FrameKernels::WeightedColumns columns{m_offsets.data(), m_weights.data(), m_pairs,
                                                m_offsets.size()};
    const AxisFilter::Taps rows = m_rows.at(static_cast<std::size_t>(y));
    kernels.weighRows(source.row(rows.first), source.stride, rows.weights, rows.count,
                      m_sums.data(), source.rowBytes());
    kernels.weighColumns(m_sums.data(), source.pixelBytes, columns, destination);
}

ScreenScaler::Way ScreenScaler::wayOf(const ConstPixelRows &source, QSize to)
{
    const QSize from = source.size();
    const bool isPacked = source.pixelBytes == 3;
    if (to == from)
        return isPacked ? Way::Copy : Way::Squares;
    if (to.width() / SQUARES_FROM >= from.width() && to.height() / SQUARES_FROM >= from.height())
        return Way::Squares;
    return isPacked && to == 2 * from ? Way::Double : Way::Mix;
}

void ScreenScaler::prepare(const ConstPixelRows &source, QSize to)
{
    const QSize from = source.size();
    if (from == m_from && to == m_to && source.pixelBytes == m_pixelBytes)
        return;
    m_from = from;
    m_to = to;
    m_pixelBytes = source.pixelBytes;
    m_way = wayOf(source, to);
    m_streams = std::int64_t{4} * to.width() * to.height() > CACHED_BYTES;
    const auto width = static_cast<std::size_t>(from.width());
    switch (m_way) {
    case Way::Copy:
        break;
    case Way::Double:
        for (HeldRow &held : m_held)
            held.pixels.resize(width);
        for (std::vector<std::uint16_t> &sums : m_doubleSums)
            sums.resize(CHANNELS * (width + 2));
        break;
    case Way::Squares:
        m_nearestScaler.prepare(from, to);
        break;
    case Way::Mix: {
        m_rows = AxisFilter(from.height(), to.height());
        layOutColumns(AxisFilter(from.width(), to.width()));
        // The last columns also mix, with weights of 0, values that lie past the row.
        const auto behind = std::size_t{2} * static_cast<std::size_t>(m_pairs * m_pixelBytes);
        m_sums.assign(source.rowBytes() + behind + SLACK, 0);
        break;
    }
    }
}

void ScreenScaler::layOutColumns(const AxisFilter &columns)
{
    m_pairs = (columns.longest() + 1) / 2;
    const auto pairs = static_cast<std::size_t>(m_pairs);
    m_offsets.resize(columns.size());
    m_weights.assign((columns.size() + 1) / 2 * pairs * 4, 0);
    for (std::size_t pixel = 0; pixel < columns.size(); ++pixel) {
        const AxisFilter::Taps taps = columns.at(pixel);
        m_offsets[pixel] = taps.first * m_pixelBytes;
        std::int16_t *weights = m_weights.data() + pixel / 2 * pairs * 4 + pixel % 2 * 2;
        for (int tap = 0; tap < taps.count; ++tap)
            weights[tap / 2 * 4 + tap % 2] = taps.weights[tap];
    }
}
