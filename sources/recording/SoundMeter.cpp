#include "sources/recording/SoundMeter.h"

#include "sources/recording/SoundCapture.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace
{

double decibels(double amplitude)
{
    constexpr double FULL_SCALE = 32768.0;
    if (amplitude <= 0)
        return SoundMeter::SILENCE;
    return std::max(SoundMeter::SILENCE, 20 * std::log10(amplitude / FULL_SCALE));
}

/// Follows `level` up at once and down slowly.
double shown(double before, double level, double seconds)
{
    return std::max({SoundMeter::SILENCE, level, before - SoundMeter::FALL * seconds});
}

} // namespace

void SoundMeter::take(const SoundBuffer &buffer)
{
    if (buffer.count <= 0)
        return;
    int peak = 0;
    qint64 squares = 0;
    int zeros = 0;
    for (int n = 0; n < buffer.count; ++n) {
        const int sample = buffer.samples[n];
        peak = std::max(peak, std::abs(sample));
        squares += qint64{sample} * sample;
        zeros = sample == 0 ? zeros + 1 : 0;
    }
    const std::lock_guard lock(m_mutex);
    m_level.peak = decibels(peak);
    m_level.rms = decibels(std::sqrt(double(squares) / buffer.count));
    const double seconds = double(buffer.count) / SoundCapture::SAMPLE_RATE;
    m_level.shownPeak = shown(m_level.shownPeak, m_level.peak, seconds);
    m_level.shownRms = shown(m_level.shownRms, m_level.rms, seconds);
    m_zeros = zeros == buffer.count ? m_zeros + zeros : zeros;
    m_level.zerosUs = m_zeros * 1000000 / SoundCapture::SAMPLE_RATE;
}

SoundMeter::Level SoundMeter::level() const
{
    const std::lock_guard lock(m_mutex);
    return m_level;
}
