#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// Turns stamped pieces of sound into one unbroken run of samples that keeps to the stamps.
///
/// A sound device counts its samples by a clock of its own, so over half an hour its sound would
/// drift away from the pictures, and a device that loses samples or is late leaves holes. Holes are
/// filled with silence and repetitions are cut; slow drift is corrected by a single sample now and
/// then, which nobody hears. One thread at a time.
class SoundTimeline
{
public:
    explicit SoundTimeline(int sampleRate);

    /// The samples to append for a piece that begins `positionUs` microseconds after the start of
    /// the run. Sample n of everything returned so far belongs to the time n / sampleRate. A hole
    /// of more than ten seconds is filled no further than that at a time.
    std::vector<std::int16_t> place(const std::int16_t *samples, int count,
                                    std::int64_t positionUs);

private:
    std::int64_t toSamples(std::int64_t us) const;
    void correctDrift(std::vector<std::int16_t> &samples);

    int m_sampleRate;
    /// How many samples have been returned.
    std::int64_t m_placed = 0;
    /// How many samples the stamps are ahead of the run, smoothed over some seconds.
    double m_drift = 0;
};
