#include "canvas/drawing/TextAnchor.h"

#include <algorithm>
#include <cmath>

namespace
{

/// The position closest to `position` at which from..to lies inside 0..extent.
int inside(int position, double from, double to, int extent)
{
    const auto last = static_cast<int>(std::floor(extent - to));
    const auto first = static_cast<int>(std::ceil(-from));
    return std::max(std::min(position, last), first);
}

} // namespace

void TextAnchor::place(QPoint layerPoint)
{
    m_point = layerPoint;
    m_layerChanged = false;
}

void TextAnchor::turn(bool clockwise, QSize size)
{
    m_point = clockwise ? QPoint(size.height() - 1 - m_point.y(), m_point.x())
                        : QPoint(m_point.y(), size.width() - 1 - m_point.x());
    m_layerChanged = true;
}

QPoint TextAnchor::point(const QRectF &text, QSize layer) const
{
    if (!m_layerChanged)
        return m_point;
    return {inside(m_point.x(), text.left(), text.right(), layer.width()),
            inside(m_point.y(), text.top(), text.bottom(), layer.height())};
}
