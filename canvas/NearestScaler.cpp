#include "NearestScaler.h"

#include <QImage>
#include <QPainter>

#include <cstring>

namespace
{

/// Asks the toolkit's painter itself which source pixels it takes along one axis: a line of
/// pixels whose colours are their positions, drawn with the factor of that axis. The positions
/// start at 1, as what the painter leaves out stays 0.
std::vector<int> painterPositions(int from, int to, bool vertical)
{
    const QSize sourceSize = vertical ? QSize(1, from) : QSize(from, 1);
    const QSize targetSize = vertical ? QSize(1, to) : QSize(to, 1);
    QImage source(sourceSize, QImage::Format_RGB888);
    for (int i = 0; i < from; ++i) {
        uchar *pixel = vertical ? source.scanLine(i) : source.bits() + 3 * i;
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
        const uchar *pixel = vertical ? target.constScanLine(i) : target.constBits() + 3 * i;
        positions[static_cast<std::size_t>(i)] = (pixel[0] << 16 | pixel[1] << 8 | pixel[2]) - 1;
    }
    return positions;
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
}

void NearestScaler::scale(const ConstPixelRows &source, const PixelRows &destination) const
{
    const auto bytes = static_cast<std::size_t>(source.pixelBytes);
    for (int y = 0; y < destination.height; ++y) {
        const int sourceRow = m_rows[static_cast<std::size_t>(y)];
        uchar *out = destination.row(y);
        if (sourceRow == UNPAINTED) {
            std::memset(out, 0, destination.rowBytes());
            continue;
        }
        if (y > 0 && m_rows[static_cast<std::size_t>(y) - 1] == sourceRow) {
            std::memcpy(out, destination.row(y - 1), destination.rowBytes());
            continue;
        }
        for (const int column : m_columns) {
            if (column == UNPAINTED)
                std::memset(out, 0, bytes);
            else
                std::memcpy(out, source.pixel(column, sourceRow), bytes);
            out += bytes;
        }
    }
}

void NearestScaler::scaleToRgb32(const ConstPixelRows &source, const PixelRows &destination) const
{
    if (source.pixelBytes == 4) {
        scale(source, destination);
        return;
    }
    for (int y = 0; y < destination.height; ++y) {
        const int sourceRow = m_rows[static_cast<std::size_t>(y)];
        uchar *out = destination.row(y);
        for (const int column : m_columns) {
            std::uint32_t value = 0xff000000U;
            if (sourceRow != UNPAINTED && column != UNPAINTED) {
                const uchar *pixel = source.pixel(column, sourceRow);
                value |= static_cast<std::uint32_t>(pixel[0] << 16 | pixel[1] << 8 | pixel[2]);
            }
            std::memcpy(out, &value, 4);
            out += 4;
        }
    }
}
