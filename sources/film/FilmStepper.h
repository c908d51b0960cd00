#pragma once

#include <array>

/// The arithmetic of winding a film: the speed table, the place that is wound from step to step,
/// and the conversions between seconds and percent. No player, no timer, no thread.
class FilmStepper
{
public:
    /// Multipliers of the normal speed, from rewind to the fastest wind.
    static constexpr std::array<int, 8> speeds{-2, 1, 2, 4, 8, 16, 32, 100};
    static constexpr int normalIndex = 1;

    [[nodiscard]] int speedIndex() const { return m_speedIndex; }
    [[nodiscard]] bool atNormalSpeed() const { return m_speedIndex == normalIndex; }
    void setNormalSpeed() { m_speedIndex = normalIndex; }
    /// One place up or down the table, staying at its ends.
    void faster();
    void slower();

    /// Seconds from the start of the film, in whole milliseconds.
    [[nodiscard]] double position() const { return m_position; }
    void setPosition(double seconds);
    /// Moves the position by `elapsedMs` at the current speed. Returns the place before it is cut
    /// to milliseconds; it may lie before the start or beyond the end.
    double advance(long long elapsedMs);

    /// Whether winding ends there. A film of unknown length ends at once.
    [[nodiscard]] static bool beyondEnds(double seconds, double duration);
    /// Percent of a duration in seconds, cut to whole ones, 0 to 100; 0 unless the duration is
    /// finite and greater than 0.
    [[nodiscard]] static int percent(double seconds, double duration);
    /// The place of a percentage, cut to whole seconds; 0 unless the duration is finite.
    [[nodiscard]] static double secondsAt(int percent, double duration);
    /// Cut towards zero to multiples of 1 / `timeScale` seconds; 0 for what is not a number.
    [[nodiscard]] static double truncated(double seconds, int timeScale);

private:
    int m_speedIndex = normalIndex;
    double m_position = 0;
};
