#include "canvas/drawing/LayerHistory.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace
{

/// The limit of one call: a megabyte, which takes less than a millisecond.
constexpr std::size_t TILES_AT_ONCE = 64;

} // namespace

void LayerHistory::add(LayerRecord record, Kind kind)
{
    forgetUndone();
    if (kind == Kind::AfterStep && !canUndo())
        return;
    m_bytes += record.bytes();
    m_entries.push_back({std::move(record), kind});
    m_done = m_entries.size();
    if (kind == Kind::BeforeStep)
        return;
    m_steps += kind == Kind::Step ? 1 : 0;
    m_stepsDone = m_steps;
    keepBounds();
}

void LayerHistory::clear()
{
    m_entries.clear();
    m_done = 0;
    m_steps = 0;
    m_stepsDone = 0;
    m_bytes = 0;
}

bool LayerHistory::exchangeAt(std::size_t index, const Exchange &exchange)
{
    LayerRecord &record = m_entries[index].record;
    m_bytes -= record.bytes();
    const bool exchanged = exchange(record);
    m_bytes += record.bytes();
    if (!exchanged)
        clear();
    return exchanged;
}

bool LayerHistory::undo(const Exchange &exchange)
{
    if (!canUndo())
        return false;
    for (bool isStep = false; !isStep;) {
        isStep = m_entries[m_done - 1].kind == Kind::Step;
        if (!exchangeAt(m_done - 1, exchange))
            return false;
        --m_done;
    }
    --m_stepsDone;
    keepBounds();
    return true;
}

bool LayerHistory::redo(const Exchange &exchange)
{
    if (!canRedo())
        return false;
    for (bool isStep = false; !isStep;) {
        isStep = m_entries[m_done].kind == Kind::Step;
        if (!exchangeAt(m_done, exchange))
            return false;
        ++m_done;
    }
    for (; m_done < m_entries.size() && m_entries[m_done].kind == Kind::AfterStep; ++m_done) {
        if (!exchangeAt(m_done, exchange))
            return false;
    }
    ++m_stepsDone;
    keepBounds();
    return true;
}

void LayerHistory::forgetUndone()
{
    while (m_entries.size() > m_done) {
        m_bytes -= m_entries.back().record.bytes();
        m_entries.pop_back();
    }
    m_steps = m_stepsDone;
}

void LayerHistory::forgetOldest()
{
    const auto forget = [this](Entry &entry) {
        m_bytes -= entry.record.bytes();
        m_steps -= entry.kind == Kind::Step ? 1 : 0;
    };
    if (m_done == 0) {
        // All steps have been taken back: forget the one that redo would reach last.
        forget(m_entries.back());
        m_entries.pop_back();
        return;
    }
    m_stepsDone -= m_entries.front().kind == Kind::Step ? 1 : 0;
    forget(m_entries.front());
    m_entries.pop_front();
    --m_done;
}

void LayerHistory::keepBounds()
{
    while (m_steps > MOST_STEPS)
        forgetOldest();
    for (std::size_t i = 0; i < m_entries.size() && m_bytes > MOST_BYTES; ++i)
        packAt(i, std::numeric_limits<std::size_t>::max() / 2);
    while (m_bytes > MOST_BYTES && !m_entries.empty())
        forgetOldest();
}

void LayerHistory::packAt(std::size_t index, std::size_t mostTiles)
{
    LayerRecord &record = m_entries[index].record;
    if (record.isPacked())
        return;
    m_bytes -= record.bytes();
    record.pack(mostTiles);
    m_bytes += record.bytes();
}

void LayerHistory::packSome(std::int64_t nowMs)
{
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        LayerRecord &record = m_entries[i].record;
        if (record.isPacked())
            continue;
        if (record.restingSinceMs == LayerRecord::NOT_KNOWN) {
            record.restingSinceMs = nowMs;
        } else if (nowMs - record.restingSinceMs >= REST_MS) {
            packAt(i, TILES_AT_ONCE);
            return;
        }
    }
}
