#pragma once

#include "canvas/drawing/LayerRecord.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>

/// The steps of a drawing that can be taken back and done again, oldest first. Bounded in number
/// and in memory: what is oldest is packed, and then forgotten.
/// Not locked: its owner's lock guards it.
class LayerHistory
{
public:
    static constexpr int MOST_STEPS = 500;
    static constexpr std::size_t MOST_BYTES = std::size_t{64} << 20;
    /// Records are packed when they have rested for this long.
    static constexpr std::int64_t REST_MS = 2000;

    /// What a record belongs to: a step of the user, a change that comes with the step after it, or
    /// what there was memory for of a change that is no step: it goes and comes with the step
    /// before.
    enum class Kind { Step, BeforeStep, AfterStep };

    /// Adds what has just been done. What had been taken back cannot be done again any more.
    void add(LayerRecord record, Kind kind = Kind::Step);
    void clear();

    [[nodiscard]] bool isEmpty() const { return m_entries.empty(); }
    [[nodiscard]] bool canUndo() const { return m_stepsDone != 0; }
    [[nodiscard]] bool canRedo() const { return m_steps != m_stepsDone; }

    using Exchange = std::function<bool(LayerRecord &)>;
    /// Calls `exchange` with the records of the step before, or of the one after, in the order in
    /// which they apply. False when there is none, or when `exchange` answers false for one: then
    /// all records are forgotten.
    bool undo(const Exchange &exchange);
    bool redo(const Exchange &exchange);

    /// Packs some of what has rested; to be called again and again while nothing else is to be
    /// done. The time may be of any clock that never runs backwards.
    void packSome(std::int64_t nowMs);

    [[nodiscard]] int steps() const { return m_steps; }
    [[nodiscard]] std::size_t bytes() const { return m_bytes; }

private:
    struct Entry {
        LayerRecord record;
        Kind kind;
    };

    /// Exchanges one record and keeps count of its memory.
    bool exchangeAt(std::size_t index, const Exchange &exchange);
    void packAt(std::size_t index, std::size_t mostTiles);
    void forgetUndone();
    void forgetOldest();
    /// Packs and forgets until the bounds hold.
    void keepBounds();

    std::deque<Entry> m_entries;
    /// As many are done; the others have been taken back.
    std::size_t m_done = 0;
    int m_steps = 0;
    int m_stepsDone = 0;
    std::size_t m_bytes = 0;
};
