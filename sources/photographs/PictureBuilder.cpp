#include "sources/photographs/PictureBuilder.h"

#include "sources/pictures/PictureMemory.h"

#include <QRect>

#include <algorithm>

namespace
{

/// The place in an answer of that size that a place of the whole belongs to.
int placeOf(int place, int whole, int size)
{
    return static_cast<int>(static_cast<qint64>(place) * size / whole);
}

/// The first place of the whole that belongs to that place of the answer.
int beginning(int place, int whole, int size)
{
    return static_cast<int>((static_cast<qint64>(place) * whole + size - 1) / size);
}

/// The first place of the answer that begins there in the whole, or later.
int firstFrom(int place, int whole, int size)
{
    return place == 0 ? 0 : placeOf(place - 1, whole, size) + 1;
}

} // namespace

PictureBuilder::PictureBuilder(QSize whole, QSize size)
    : m_whole(whole)
    , m_picture(PictureMemory::create(size))
{
    if (m_picture.isNull())
        return;
    m_picture.fill(Qt::white);
    if (size == whole)
        return;
    m_sums.fill(0, 3 * size.width());
    m_columns.reserve(size.width() + 1);
    for (int x = 0; x <= size.width(); ++x)
        m_columns.append(beginning(x, whole.width(), size.width()));
}

void PictureBuilder::addRows(const QImage &rows)
{
    const int count = std::min(rows.height(), m_whole.height() - m_row);
    for (int y = 0; y < count; ++y) {
        if (m_columns.isEmpty())
            std::copy_n(rows.constScanLine(y), 3 * m_whole.width(), m_picture.scanLine(m_row));
        else
            sum(rows.constScanLine(y));
        endRow();
    }
}

void PictureBuilder::skipRows(int count)
{
    for (int y = 0; y < count && m_row < m_whole.height(); ++y)
        endRow();
}

void PictureBuilder::sum(const uchar *rgb)
{
    quint32 *sums = m_sums.data();
    for (int x = 0; x < m_picture.width(); ++x, sums += 3) {
        for (int from = m_columns.at(x); from < m_columns.at(x + 1); ++from, rgb += 3) {
            sums[0] += rgb[0];
            sums[1] += rgb[1];
            sums[2] += rgb[2];
        }
    }
    ++m_summedRows;
}

void PictureBuilder::endRow()
{
    const int target = placeOf(m_row, m_whole.height(), m_picture.height());
    ++m_row;
    if (m_summedRows > 0 && placeOf(m_row, m_whole.height(), m_picture.height()) != target)
        writeAverages(target);
}

void PictureBuilder::writeAverages(int row)
{
    uchar *rgb = m_picture.scanLine(row);
    const quint32 *sums = m_sums.constData();
    for (int x = 0; x < m_picture.width(); ++x) {
        const auto count =
            static_cast<quint32>((m_columns.at(x + 1) - m_columns.at(x)) * m_summedRows);
        for (int channel = 0; channel < 3; ++channel)
            *rgb++ = static_cast<uchar>((*sums++ + count / 2) / count);
    }
    m_sums.fill(0);
    m_summedRows = 0;
}

void PictureBuilder::fill(const QRect &part, const uchar *rgb)
{
    const auto column = [this](int x) {
        return firstFrom(std::min(x, m_whole.width()), m_whole.width(), m_picture.width());
    };
    const auto row = [this](int y) {
        return firstFrom(std::min(y, m_whole.height()), m_whole.height(), m_picture.height());
    };
    const int left = column(part.x());
    const int right = column(part.x() + part.width());
    for (int y = row(part.y()); y < row(part.y() + part.height()); ++y) {
        uchar *target = m_picture.scanLine(y) + static_cast<std::ptrdiff_t>(3) * left;
        for (int x = left; x < right; ++x, target += 3)
            std::copy_n(rgb, 3, target);
    }
}
