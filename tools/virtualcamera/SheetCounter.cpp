#include "tools/virtualcamera/SheetCounter.h"

#include <QImage>
#include <QMap>
#include <QTransform>

#include <algorithm>
#include <cmath>
#include <vector>

namespace SheetCounter
{
namespace
{

constexpr int GUARD_CELLS = 6;
constexpr int NUMBER_BITS = 16;
constexpr int CHECK_BITS = 8;
/// Outer bar of three cells, then white, black, white; mirrored at the other end.
constexpr std::array<bool, GUARD_CELLS> GUARD{true, true, true, false, true, false};
constexpr double MINIMUM_CELL = 2.5;
/// So many lines of the picture must agree.
constexpr int LINES_NEEDED = 2;

quint32 checksum(quint32 number)
{
    quint32 remainder = 0xA5;
    for (int bit = NUMBER_BITS - 1; bit >= 0; --bit) {
        const bool carry = ((remainder >> 7) ^ (number >> bit)) & 1;
        remainder = (remainder << 1 & 0xFF) ^ (carry ? 0x07u : 0u);
    }
    return remainder;
}

std::optional<quint32> numberOf(const std::array<bool, CELL_COUNT> &row)
{
    for (int i = 0; i < GUARD_CELLS; ++i) {
        const auto at = static_cast<std::size_t>(i);
        if (row[at] != GUARD[at] || row[CELL_COUNT - 1 - at] != GUARD[at])
            return std::nullopt;
    }
    quint32 bits = 0;
    for (std::size_t i = GUARD_CELLS; i < CELL_COUNT - GUARD_CELLS; ++i)
        bits = bits << 1 | row[i];
    const quint32 number = bits >> CHECK_BITS;
    if ((bits & 0xFF) != checksum(number))
        return std::nullopt;
    return number;
}

/// One line of a picture as alternating runs of dark and light.
class Line
{
public:
    /// `threshold` is the lightest dark value; `inverted` takes light for dark.
    Line(const uchar *pixels, int width, int threshold, bool inverted)
        : m_pixels(pixels)
        , m_threshold(threshold)
        , m_inverted(inverted)
    {
        for (int x = 1; x < width; ++x) {
            if (dark(x) != dark(x - 1))
                m_edges.push_back(x);
        }
        m_edges.push_back(width);
    }

    [[nodiscard]] std::optional<quint32> read() const
    {
        for (std::size_t first = 0; first + 3 < m_edges.size(); ++first) {
            const double cell = leftGuard(first);
            if (cell < MINIMUM_CELL)
                continue;
            const double expectedEnd = m_edges[first] + CELL_COUNT * cell;
            for (std::size_t last = first + 6; last < m_edges.size(); ++last) {
                if (m_edges[last] > expectedEnd + 4 * cell)
                    break;
                if (m_edges[last] < expectedEnd - 4 * cell || rightGuard(last) < MINIMUM_CELL)
                    continue;
                if (const auto number = sample(m_edges[first], m_edges[last]))
                    return number;
            }
        }
        return std::nullopt;
    }

private:
    [[nodiscard]] bool dark(int x) const { return (m_pixels[x] <= m_threshold) != m_inverted; }

    /// The cell size that fits a bar of three, a gap of one and a bar of one; 0 if none does.
    [[nodiscard]] static double cellOf(int bar, int gap, int thin)
    {
        const double cell = (bar + gap + thin) / 5.0;
        const double tolerance = 0.3 * cell + 0.6;
        const bool fits = std::abs(bar - 3 * cell) <= tolerance &&
                          std::abs(gap - cell) <= tolerance && std::abs(thin - cell) <= tolerance;
        return fits ? cell : 0.0;
    }
    [[nodiscard]] double leftGuard(std::size_t i) const
    {
        if (!dark(m_edges[i]))
            return 0.0;
        return cellOf(m_edges[i + 1] - m_edges[i], m_edges[i + 2] - m_edges[i + 1],
                      m_edges[i + 3] - m_edges[i + 2]);
    }
    [[nodiscard]] double rightGuard(std::size_t i) const
    {
        if (!dark(m_edges[i] - 1))
            return 0.0;
        return cellOf(m_edges[i] - m_edges[i - 1], m_edges[i - 1] - m_edges[i - 2],
                      m_edges[i - 2] - m_edges[i - 3]);
    }

    /// The row between two edges, read in both directions.
    [[nodiscard]] std::optional<quint32> sample(int begin, int end) const
    {
        std::array<bool, CELL_COUNT> row{};
        const double cell = static_cast<double>(end - begin) / CELL_COUNT;
        for (int i = 0; i < CELL_COUNT; ++i)
            row[static_cast<std::size_t>(i)] = dark(begin + static_cast<int>((i + 0.5) * cell));
        if (const auto number = numberOf(row))
            return number;
        std::reverse(row.begin(), row.end());
        return numberOf(row);
    }

    const uchar *m_pixels;
    int m_threshold;
    bool m_inverted;
    std::vector<int> m_edges;
};

std::optional<quint32> readLine(const uchar *pixels, int width)
{
    const auto [darkest, lightest] = std::minmax_element(pixels, pixels + width);
    const int contrast = *lightest - *darkest;
    if (contrast < 40)
        return std::nullopt;
    for (const double part : {0.5, 0.3, 0.7}) {
        const int threshold = *darkest + static_cast<int>(contrast * part);
        for (const bool inverted : {false, true}) {
            if (const auto number = Line(pixels, width, threshold, inverted).read())
                return number;
        }
    }
    return std::nullopt;
}

std::optional<quint32> readRows(const QImage &grey)
{
    QMap<quint32, int> votes;
    for (int y = 0; y < grey.height(); y += 2) {
        const auto number = readLine(grey.constScanLine(y), grey.width());
        if (number && ++votes[*number] == LINES_NEEDED)
            return number;
    }
    return std::nullopt;
}

} // namespace

std::array<bool, CELL_COUNT> cells(quint32 frameNumber)
{
    std::array<bool, CELL_COUNT> row{};
    const quint32 number = frameNumber % MODULUS;
    const quint32 bits = number << CHECK_BITS | checksum(number);
    for (std::size_t i = 0; i < GUARD_CELLS; ++i)
        row[i] = row[CELL_COUNT - 1 - i] = GUARD[i];
    for (int bit = NUMBER_BITS + CHECK_BITS - 1, i = GUARD_CELLS; bit >= 0; --bit, ++i)
        row[static_cast<std::size_t>(i)] = bits >> bit & 1;
    return row;
}

std::optional<quint32> read(const QImage &picture)
{
    if (picture.isNull())
        return std::nullopt;
    const QImage grey = picture.convertToFormat(QImage::Format_Grayscale8);
    if (const auto number = readRows(grey))
        return number;
    return readRows(grey.transformed(QTransform().rotate(90)));
}

} // namespace SheetCounter
