#include "canvas/picture/ScreenScaler.h"

#include "canvas/picture/FrameKernels.h"

namespace
{

/// How many values wide loads may read past a column.
constexpr std::size_t SLACK = 8;

} // namespace

void ScreenScaler::scale(const ConstPixelRows &source, const PixelRows &destination)
{
    prepare(source, destination.size());
    if (m_nearest) {
        m_nearestScaler.scaleToRgb32(source, destination);
        return;
    }
    const FrameKernels &kernels = FrameKernels::current();
    const FrameKernels::WeightedColumns columns{m_offsets.data(), m_weights.data(), m_pairs,
                                                m_offsets.size()};
    for (int y = 0; y < destination.height; ++y) {
        const AxisFilter::Taps rows = m_rows.at(static_cast<std::size_t>(y));
        kernels.weighRows(source.row(rows.first), source.stride, rows.weights, rows.count,
                          m_sums.data(), source.rowBytes());
        kernels.weighColumns(m_sums.data(), source.pixelBytes, columns,
                             reinterpret_cast<std::uint32_t *>(destination.row(y)));
    }
}

void ScreenScaler::prepare(const ConstPixelRows &source, QSize to)
{
    const QSize from = source.size();
    if (from == m_from && to == m_to && source.pixelBytes == m_pixelBytes)
        return;
    m_from = from;
    m_to = to;
    m_pixelBytes = source.pixelBytes;
    const bool squares =
        to.width() / SQUARES_FROM >= from.width() && to.height() / SQUARES_FROM >= from.height();
    m_nearest = squares || to == from;
    if (m_nearest) {
        m_nearestScaler.prepare(from, to);
        return;
    }
    m_rows = AxisFilter(from.height(), to.height());
    layOutColumns(AxisFilter(from.width(), to.width()));
    // The last columns also mix, with weights of 0, values that lie past the row.
    const auto behind = std::size_t{2} * static_cast<std::size_t>(m_pairs * m_pixelBytes);
    m_sums.assign(source.rowBytes() + behind + SLACK, 0);
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
