#pragma once

#include "canvas/drawing/LayerRecord.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>

/// The steps of a drawing that can be undone and redone, oldest first. Limited in number and
/// memory: the oldest are packed, and then forgotten.
/// Not locked: its owner's lock guards it.
class LayerHistory
{
public:
    static constexpr int MOST_STEPS = 500;
    static constexpr std::size_t MOST_BYTES = std::size_t{64} << 20;
    /// Records are packed when they have not been used for this long.
    static constexpr std::int64_t REST_MS = 2000;

    /// What a record is: a step of the user; a change that is undone and redone with the step after
    /// it; or as much of a change as there was memory for, which is no step of its own but is
    /// undone and redone with the step before it.
    enum class Kind { Step, BeforeStep, AfterStep };

    /// Adds what has just been done. Steps that had been undone cannot be redone any more.
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

    /// Packs some of the unused records; to be called repeatedly while nothing else is to be done.
    /// The time may be of any clock that never runs backwards.
    void packSome(std::int64_t nowMs);

    [[nodiscard]] int steps() const { return m_steps; }
    [[nodiscard]] std::size_t bytes() const { return m_bytes; }

private:
    struct Entry {
        LayerRecord record;
        Kind kind = Kind::Step;
    };

    /// Exchanges one record and keeps count of its memory.
    bool exchangeAt(std::size_t index, const Exchange &exchange);
    void packAt(std::size_t index, std::size_t mostTiles);
    void forgetUndone();
    void forgetOldest();
    /// Packs and forgets until the bounds hold.
    void keepBounds();

    std::deque<Entry> m_entries;
    /// The number of steps that are done; those after them have been undone.
    std::size_t m_done = 0;
    int m_steps = 0;
    int m_stepsDone = 0;
    std::size_t m_bytes = 0;
};
