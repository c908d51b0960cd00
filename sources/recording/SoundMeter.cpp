#include "sources/recording/SoundMeter.h"

#include "sources/recording/SoundCapture.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace
{

constexpr int WINDOW = SoundCapture::SAMPLE_RATE / 10;

double decibels(double amplitude)
{
    constexpr double FULL_SCALE = 32768.0;
    if (amplitude <= 0)
        return SoundMeter::SILENCE;
    return std::max(SoundMeter::SILENCE, 20 * std::log10(amplitude / FULL_SCALE));
}

} // namespace

void SoundMeter::take(const SoundBuffer &buffer)
{
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
    m_peak = std::max(m_peak, peak);
    m_squares += double(squares);
    m_count += buffer.count;
    m_zeros = zeros == buffer.count ? m_zeros + zeros : zeros;
    m_level.zerosUs = m_zeros * 1000000 / SoundCapture::SAMPLE_RATE;
    if (m_count < WINDOW)
        return;
    m_level.peak = decibels(m_peak);
    m_level.rms = decibels(std::sqrt(m_squares / double(m_count)));
    m_peak = 0;
    m_squares = 0;
    m_count = 0;
}

SoundMeter::Level SoundMeter::level() const
{
    const std::lock_guard lock(m_mutex);
    return m_level;
}
