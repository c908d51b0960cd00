#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

/// Turns stamped pieces of sound into one unbroken run of samples that keeps to the stamps.
///
/// A sound device counts its samples by a clock of its own, so over half an hour its sound would
/// drift away from the pictures, and a device that loses samples leaves holes. Holes are filled
/// with silence and repetitions are cut; slow drift is corrected by a single sample now and then,
/// which nobody hears. A stamp says when a piece arrived, so a busy machine makes it too late and
/// nothing makes it too early: each piece waits a quarter of a second for the next ones, and the
/// earliest stamp among them counts. One thread at a time.
class SoundTimeline
{
public:
    explicit SoundTimeline(int sampleRate);

    /// Takes a piece that begins `positionUs` microseconds after the start of the run, and returns
    /// the samples to append: those of pieces that have waited long enough. Sample n of everything
    /// returned so far belongs to the time n / sampleRate. A hole of more than ten seconds is
    /// filled no further than that at a time.
    std::vector<std::int16_t> place(const std::int16_t *samples, int count,
                                    std::int64_t positionUs);
    /// The samples of the pieces that still wait, at the end of the run.
    std::vector<std::int16_t> placeRest();

private:
    struct Piece {
        std::vector<std::int16_t> samples;
        std::int64_t positionUs;
    };

    std::int64_t toSamples(std::int64_t us) const;
    void placeFirst(std::vector<std::int16_t> &placed);
    /// By how many samples the earliest stamp of the waiting pieces is ahead of the run.
    std::int64_t samplesAhead() const;
    void measureDrift(std::int64_t ahead, int count);
    void correctDrift(std::vector<std::int16_t> &samples);

    int m_sampleRate;
    std::deque<Piece> m_waiting;
    /// How many samples have been returned.
    std::int64_t m_placed = 0;
    /// By how many samples the earliest stamp of the last two seconds is ahead of the run.
    std::int64_t m_drift = 0;
    /// The same of the two seconds under way, and how many of their samples have come.
    std::int64_t m_earliest = 0;
    int m_windowSamples = 0;
};
