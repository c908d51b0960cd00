#pragma once

#include <QtGlobal>

#include <optional>

/// Counts the milliseconds of a clock that it is handed, and stands still while it is held.
class StopWatch
{
public:
    /// Begins at zero.
    void start(qint64 nowMs)
    {
        m_startMs = nowMs;
        m_heldMs.reset();
    }
    void stop() { m_startMs.reset(); }
    [[nodiscard]] bool isRunning() const { return m_startMs.has_value(); }

    /// Nothing happens when it is held already, or goes on already.
    void setHeld(bool held, qint64 nowMs)
    {
        if (!isRunning() || held == m_heldMs.has_value())
            return;
        if (held) {
            m_heldMs = nowMs;
            return;
        }
        m_startMs = *m_startMs + nowMs - *m_heldMs;
        m_heldMs.reset();
    }

    /// Zero while it does not run.
    [[nodiscard]] qint64 elapsedMs(qint64 nowMs) const
    {
        return m_startMs ? m_heldMs.value_or(nowMs) - *m_startMs : 0;
    }

private:
    std::optional<qint64> m_startMs;
    /// Since when it has been held.
    std::optional<qint64> m_heldMs;
};
