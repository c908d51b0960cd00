#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

/// The pauses of a recording: what lies in one is left out, and what follows moves up.
///
/// They are counted in whole frames of the sound, so that pictures and sound move by the same time
/// however many there are. Positions are microseconds from the start of the recording, pauses
/// included. One thread at a time.
class RecordingPauses
{
public:
    explicit RecordingPauses(int sampleRate);

    /// A pause begins; nothing changes while one lasts. It begins no earlier than a fade after the
    /// sound that has been cut already.
    void begin(std::int64_t positionUs);
    /// The pause ends; nothing changes without one.
    void end(std::int64_t positionUs);
    [[nodiscard]] bool lasting() const;

    /// Where that position is in the movie; nothing for one within a pause.
    [[nodiscard]] std::optional<std::int64_t> inMovie(std::int64_t positionUs) const;

    /// Takes the samples that follow those of the last call, and returns those that lie in no
    /// pause. Before a pause and after it the sound fades for five milliseconds, as a wave that is
    /// cut off is heard as a click.
    [[nodiscard]] std::vector<std::int16_t> cut(std::vector<std::int16_t> samples);

private:
    struct Pause {
        std::int64_t from;
        std::int64_t to;
        /// The frames of all pauses before.
        std::int64_t before;
    };

    [[nodiscard]] std::int64_t toFrames(std::int64_t us) const;
    void fadeAround(const Pause &pause, std::vector<std::int16_t> &samples) const;

    const std::int64_t m_sampleRate;
    const std::int64_t m_fade;
    std::vector<Pause> m_pauses;
    /// How many samples have been taken.
    std::int64_t m_taken = 0;
    /// The first pause that touches samples which have not been taken yet.
    std::size_t m_next = 0;
};
