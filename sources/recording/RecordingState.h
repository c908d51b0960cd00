#pragma once

#include "sources/recording/SoundMeter.h"

#include <QString>
#include <QtGlobal>

#include <optional>

/// What a movie is on the disk.
struct MovieProgress {
    /// Pictures and sound that are in the file; at the end the whole file.
    qint64 bytes = 0;
    /// How long it plays, in microseconds.
    qint64 lengthUs = 0;
    /// How long it had been recorded when it had that many bytes, in microseconds.
    qint64 elapsedUs = 0;
    /// What its disk has left; -1 when that is not known.
    qint64 freeBytes = -1;
};

/// How a recording is doing at one moment.
struct RecordingState {
    bool running = false;
    bool paused = false;
    bool withSound = true;
    /// The microphone; empty while silence is recorded.
    QString heard;
    SoundMeter::Level level;
    /// Pictures that came too fast for the encoder.
    qint64 dropped = 0;
    MovieProgress movie;
};

/// Rules of what is worth telling of a recording. Pure functions.
namespace RecordingRules
{

/// The recording ends when its disk has no more than that left, while there is still room for its
/// end.
constexpr qint64 LEAST_FREE_BYTES = qint64{50} * 1000 * 1000;
/// A disk that lasts no longer than that is told of.
constexpr int FEW_MINUTES = 5;
/// Sound that has been nothing but zeros for so long comes from no microphone that is switched on.
constexpr qint64 LONG_SILENCE_US = qint64{10} * 1000 * 1000;

/// How many whole minutes the disk lasts at the rate of so far, or at that of `bytesPerSecond`
/// while there is too little to tell; nothing when the disk tells nothing.
[[nodiscard]] std::optional<int> minutesLeft(const MovieProgress &movie, qint64 bytesPerSecond);

/// Whether the movie is mute: no microphone is heard, or one that delivers nothing.
[[nodiscard]] bool isMute(const RecordingState &state);

/// How many of the five bars a level lights.
constexpr int BARS = 5;
[[nodiscard]] int barsOf(double peakDecibels);

} // namespace RecordingRules
