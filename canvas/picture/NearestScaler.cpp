#include "canvas/picture/NearestScaler.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cstring>
#include <limits>

namespace
{

constexpr std::size_t CHUNK = 16;
constexpr std::uint8_t NO_BYTE = 255;

/// Asks the toolkit's painter itself which source pixels it takes along one axis: a line of
/// pixels whose colours are their positions, drawn with the factor of that axis. The positions
/// start at 1, as what the painter leaves out stays 0.
std::vector<int> painterPositions(int from, int to, bool vertical)
{
    const QSize sourceSize = vertical ? QSize(1, from) : QSize(from, 1);
    const QSize targetSize = vertical ? QSize(1, to) : QSize(to, 1);
    QImage source(sourceSize, QImage::Format_RGB888);
    for (int i = 0; i < from; ++i) {
        uchar *pixel = vertical ? source.scanLine(i) : source.bits() + std::ptrdiff_t{3} * i;
        pixel[0] = static_cast<uchar>((i + 1) >> 16);
        pixel[1] = static_cast<uchar>((i + 1) >> 8);
        pixel[2] = static_cast<uchar>(i + 1);
    }
    QImage target(targetSize, QImage::Format_RGB888);
    target.fill(0);
    QPainter painter(&target);
    const double factor = static_cast<double>(to) / from;
    painter.setTransform(QTransform::fromScale(vertical ? 1.0 : factor, vertical ? factor : 1.0));
    painter.drawImage(QPoint(0, 0), source);
    painter.end();

    std::vector<int> positions(static_cast<std::size_t>(to));
    for (int i = 0; i < to; ++i) {
        const uchar *pixel =
            vertical ? target.constScanLine(i) : target.constBits() + std::ptrdiff_t{3} * i;
        positions[static_cast<std::size_t>(i)] = (pixel[0] << 16 | pixel[1] << 8 | pixel[2]) - 1;
    }
    return positions;
}

/// In place of what is left out.
void takeNeighbours(std::vector<int> &positions)
{
    int last = 0;
    for (int &position : positions) {
        last = position < 0 ? last : position;
        position = last;
    }
}

} // namespace

void NearestScaler::prepare(QSize from, QSize to)
{
    if (from == m_from && to == m_to)
        return;
    m_from = from;
    m_to = to;
    m_columns = painterPositions(from.width(), to.width(), false);
    m_rows = painterPositions(from.height(), to.height(), true);
    makeChunks();
    makeOffsets();
}

void NearestScaler::makeChunks()
{
    const std::size_t count = m_columns.size() * 3 / CHUNK;
    m_chunks.assign(count, {});
    for (std::size_t i = 0; i < count; ++i) {
        FrameKernels::ScaledChunk &chunk = m_chunks[i];
        const auto column = [&](std::size_t byte) { return m_columns[(i * CHUNK + byte) / 3]; };
        int lowest = std::numeric_limits<int>::max();
        for (std::size_t byte = 0; byte < CHUNK; ++byte) {
            if (column(byte) != UNPAINTED)
                lowest = std::min(lowest, column(byte));
        }
        chunk.sourceOffset = lowest == std::numeric_limits<int>::max()
                                 ? 0U
                                 : static_cast<std::uint32_t>(lowest) * 3U;
        for (std::size_t byte = 0; byte < CHUNK; ++byte) {
            const int channel = static_cast<int>((i * CHUNK + byte) % 3);
            const int pick = (column(byte) - lowest) * 3 + channel;
            if (column(byte) == UNPAINTED) {
                chunk.picks[byte] = NO_BYTE;
            } else if (pick < static_cast<int>(CHUNK)) {
                chunk.picks[byte] = static_cast<std::uint8_t>(pick);
            } else {
                m_chunks.clear();
                return;
            }
        }
    }
}

void NearestScaler::makeOffsets()
{
    m_offsets = m_columns;
    takeNeighbours(m_offsets);
    for (std::int32_t &offset : m_offsets)
        offset *= 3;
    m_paintedRows = m_rows;
    takeNeighbours(m_paintedRows);
}

void NearestScaler::scaleRow(const unsigned char *source, unsigned char *destination) const
{
    FrameKernels::current().scaleRow(source, m_chunks.data(), m_chunks.size(), destination);
    const std::size_t bytes = m_columns.size() * 3;
    if (!m_chunks.empty()) {
        for (std::size_t byte = m_chunks.size() * CHUNK; byte < bytes; ++byte) {
            const int column = m_columns[byte / 3];
            destination[byte] =
                column == UNPAINTED
                    ? uchar{0}
                    : source[std::size_t{3} * static_cast<std::size_t>(column) + byte % 3];
        }
        return;
    }
    for (const int column : m_columns) {
        if (column == UNPAINTED)
            std::memset(destination, 0, 3);
        else
            std::memcpy(destination, source + std::ptrdiff_t{3} * column, 3);
        destination += 3;
    }
}

void NearestScaler::scale(const ConstPixelRows &source, const PixelRows &destination) const
{
    for (int y = 0; y < destination.height; ++y) {
        const int sourceRow = m_rows[static_cast<std::size_t>(y)];
        uchar *out = destination.row(y);
        if (sourceRow == UNPAINTED) {
            std::memset(out, 0, destination.rowBytes());
        } else if (y > 0 && m_rows[static_cast<std::size_t>(y) - 1] == sourceRow) {
            std::memcpy(out, destination.row(y - 1), destination.rowBytes());
        } else if (source.pixelBytes == 3) {
            scaleRow(source.row(sourceRow), out);
        } else {
            takeWholePixels(source.row(sourceRow), out);
        }
    }
}

void NearestScaler::takeWholePixels(const unsigned char *source, unsigned char *destination) const
{
    for (const int column : m_columns) {
        if (column == UNPAINTED)
            std::memset(destination, 0, 4);
        else
            std::memcpy(destination, source + std::ptrdiff_t{4} * column, 4);
        destination += 4;
    }
}

void NearestScaler::scaleToRgb32(const ConstPixelRows &source, const PixelRows &destination) const
{
    for (int y = 0; y < destination.height; ++y)
        rowToRgb32(source, y, reinterpret_cast<std::uint32_t *>(destination.row(y)));
}

void NearestScaler::rowToRgb32(const ConstPixelRows &source, int y,
                               std::uint32_t *destination) const
{
    const auto row = static_cast<std::size_t>(y);
    if (source.pixelBytes == 3)
        FrameKernels::current().gatherRgb32(source.row(m_paintedRows[row]), m_offsets.data(),
                                            m_offsets.size(), destination);
    else if (m_rows[row] == UNPAINTED)
        std::memset(destination, 0, m_columns.size() * 4);
    else
        takeWholePixels(source.row(m_rows[row]), reinterpret_cast<unsigned char *>(destination));
}

bool NearestScaler::repeats(int y) const
{
    const auto row = static_cast<std::size_t>(y);
    return y > 0 && m_rows[row] == m_rows[row - 1];
}
