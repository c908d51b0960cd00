#pragma once

#include <QtGlobal>

#include <mutex>

struct SoundBuffer;

/// How loud sound is, and for how long it has been digital silence. Any thread.
class SoundMeter
{
public:
    /// In decibels of full scale, SILENCE at least.
    static constexpr double SILENCE = -96.0;
    struct Level {
        /// Of the loudest sample, and the root of the mean square, of a tenth of a second.
        double peak = SILENCE;
        double rms = SILENCE;
        /// How much of the latest sound holds nothing but zeros.
        qint64 zerosUs = 0;
    };

    void take(const SoundBuffer &buffer);
    [[nodiscard]] Level level() const;

private:
    /// Guards all members.
    mutable std::mutex m_mutex;
    Level m_level;
    int m_peak = 0;
    double m_squares = 0;
    qint64 m_count = 0;
    qint64 m_zeros = 0;
};
