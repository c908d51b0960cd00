#include "canvas/drawing/LayerRecord.h"

#include <algorithm>
#include <utility>

namespace
{

constexpr std::size_t TILE_BYTES = std::size_t{LayerPart::TILE} * LayerPart::TILE * 4;

} // namespace

LayerRecord::LayerRecord(std::vector<LayerPart> parts, int turns)
    : m_parts(std::move(parts))
    , m_isWhole(false)
    , m_turns(turns)
{
}

LayerRecord::LayerRecord(AnnotationLayer whole, int turns)
    : m_whole(std::move(whole))
    , m_isWhole(true)
    , m_turns(turns)
{
}

bool LayerRecord::exchangeWith(AnnotationLayer &drawing, int turns)
{
    if (!turnTo(turns, drawing.size()))
        return false;
    if (m_isWhole) {
        if (!unpackWhole())
            return false;
        drawing.exchange(m_whole);
    } else if (!drawing.exchange(m_parts)) {
        return false;
    }
    m_isPacked = false;
    m_packedParts = 0;
    restingSinceMs = NOT_KNOWN;
    return true;
}

bool LayerRecord::turnTo(int turns, QSize size)
{
    const int quarters = (turns - m_turns + 4) % 4;
    const bool clockwise = quarters != 3;
    // The layer's size when the record was made.
    QSize from = quarters % 2 == 0 ? size : size.transposed();
    if (m_isWhole)
        from = m_whole.size();
    for (int left = clockwise ? quarters : 1; left > 0; --left) {
        for (LayerPart &part : m_parts) {
            if (!part.turn(clockwise, from))
                return false;
        }
        if (m_isWhole)
            m_whole.turn(clockwise);
        from.transpose();
    }
    m_turns = turns;
    return true;
}

bool LayerRecord::unpackWhole()
{
    if (m_parts.empty())
        return true;
    // A packed drawing has its parts put into an empty layer.
    if (!m_whole.exchange(m_parts))
        return false;
    m_parts.clear();
    return true;
}

void LayerRecord::pack(std::size_t mostTiles)
{
    if (m_isWhole && !m_isPacked && m_parts.empty()) {
        for (const QRect &tile : m_whole.drawnTiles()) {
            LayerPart part(tile);
            if (!part.copyFrom(m_whole.image())) {
                m_parts.clear();
                m_isPacked = true;
                return;
            }
            part.pack();
            m_parts.push_back(std::move(part));
        }
        m_whole.reset(m_whole.size());
        m_packedParts = m_parts.size();
    }
    const std::size_t end = std::min(m_parts.size(), m_packedParts + mostTiles);
    for (; m_packedParts < end; ++m_packedParts)
        m_parts[m_packedParts].pack();
    m_isPacked = m_packedParts == m_parts.size();
}

std::size_t LayerRecord::bytes() const
{
    std::size_t bytes = sizeof(LayerRecord) + m_parts.size() * sizeof(LayerPart);
    for (const LayerPart &part : m_parts)
        bytes += part.bytes();
    if (m_isWhole && m_parts.empty())
        bytes += m_whole.drawnTiles().size() * TILE_BYTES;
    return bytes;
}
