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
    /// How fast what is shown falls, in decibels a second.
    static constexpr double FALL = 24.0;
    struct Level {
        /// Of the loudest sample of the latest buffer, and the root of its mean square.
        double peak = SILENCE;
        double rms = SILENCE;
        /// The same for the eye, which looks now and then and sees nothing that lasts a hundredth
        /// of a second: as high as any buffer was, less what it has fallen since.
        double shownPeak = SILENCE;
        double shownRms = SILENCE;
        /// How much of the latest sound holds nothing but zeros.
        qint64 zerosUs = 0;
    };

    void take(const SoundBuffer &buffer);
    [[nodiscard]] Level level() const;

private:
    /// Guards all members.
    mutable std::mutex m_mutex;
    Level m_level;
    qint64 m_zeros = 0;
};
