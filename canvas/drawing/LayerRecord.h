#pragma once

#include "canvas/drawing/AnnotationLayer.h"
#include "canvas/drawing/LayerPart.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// What one step of drawing has changed: the state before the step, or, once the step is undone,
/// the state after it. The same record therefore serves undo and redo.
///
/// It holds parts of the drawing, or all of it, in the orientation that the layer had then, and
/// follows the layer's turns when it is next needed.
class LayerRecord
{
public:
    /// The parts that a shape has changed. `turns` are the layer's quarter turns clockwise so far.
    LayerRecord(std::vector<LayerPart> parts, int turns);
    /// All of the drawing before it was erased or replaced.
    LayerRecord(AnnotationLayer whole, int turns);

    /// Exchanges the record's content with the drawing's. False without memory: the drawing has not
    /// changed, and the record is of no use any more.
    [[nodiscard]] bool exchangeWith(AnnotationLayer &drawing, int turns);

    /// Packs what is not packed yet, `mostTiles` at most at a time where that can be chosen.
    void pack(std::size_t mostTiles);
    [[nodiscard]] bool isPacked() const { return m_isPacked; }
    /// The memory that the record takes.
    [[nodiscard]] std::size_t bytes() const;

    /// When the owner first saw the record unused; every exchange resets it to NOT_KNOWN.
    static constexpr std::int64_t NOT_KNOWN = -1;
    std::int64_t restingSinceMs = NOT_KNOWN;

private:
    [[nodiscard]] bool turnTo(int turns, QSize size);
    [[nodiscard]] bool unpackWhole();

    /// Those that a shape has changed, or all of a packed drawing.
    std::vector<LayerPart> m_parts;
    AnnotationLayer m_whole;
    bool m_isWhole;
    bool m_isPacked = false;
    std::size_t m_packedParts = 0;
    int m_turns;
};
