#pragma once

#include "sources/recording/MovieQuality.h"
#include "sources/recording/RecordingState.h"

#include <QSize>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <memory>

/// Writes one QuickTime movie: H.264 pictures and mono AAC sound at 44.1 kHz, both stamped in
/// microseconds of one clock.
///
/// The file stays a valid movie at every moment from the first second on, also while it is being
/// finished, so that a kill, a power cut or a full disk costs its last second at most. It holds no
/// more than its pictures, its sound and their index once it is finished, and may be of any length.
///
/// File and encoder are opened on a thread of the writer. What is appended before they are there is
/// kept: all of the sound, and the first pictures and then two a second, so the movie begins when
/// the session does. The append calls copy and never wait for the encoder or the disk. start..(),
/// append..(), setPaused() and finish() are serialised by the caller; status() and the counters
/// belong to any thread. The failure handler runs on a thread of the writer, or in appendSound().
class MovieWriter
{
public:
    enum class Status {
        Waiting,  ///< no session yet
        Writing,  ///< between startSession() and finish()
        Finished, ///< after finish()
        Failed    ///< nothing is taken any more; what is written stays playable
    };

    /// Called once with one sentence for the user when nothing can be written any more, also after
    /// finish(), when the file is completed in the background. It must not call back into the
    /// writer, and may outlive it.
    using FailureHandler = std::function<void(const QString &sentence)>;

    struct Settings {
        QString fileName;
        /// In pixels; an odd width or height loses its last column or row in the movie.
        QSize pictureSize;
        /// Names of the encoders to try in this order; empty for the best that this machine has.
        QStringList encoders = {};
        MovieQuality quality = MovieQuality::Standard;
        /// Without it nothing is to be appended but pictures.
        bool withSound = true;
        /// A disk with less than that left is full.
        qint64 leastFreeBytes = RecordingRules::LEAST_FREE_BYTES;
    };

    /// Returns at once. A file that cannot be opened, like any other failure, is reported through
    /// the handler, before the return or after it, and leaves a writer with the status Failed.
    static std::unique_ptr<MovieWriter> create(const Settings &settings, FailureHandler failed);
    /// Finishes. Waits for the file half a second at most, and only while the program ends.
    virtual ~MovieWriter() = default;

    virtual Status status() const = 0;

    /// Begins the movie: what is stamped earlier than `timeUs` is left out.
    virtual void startSession(qint64 timeUs) = 0;

    /// Packed rows of red, green, blue bytes in the size of the settings, top row first. Left out
    /// and counted when the encoder is four pictures behind or not there yet.
    virtual void appendPicture(const std::uint8_t *rgb, qint64 presentationUs) = 0;

    /// One channel at 44100 samples a second. Holes are filled with silence.
    virtual void appendSound(const std::int16_t *samples, int count, qint64 presentationUs) = 0;

    /// What is stamped from `presentationUs` on, of which nothing has been appended yet, is left
    /// out until the pause ends, and then moves up. While it lasts the file is as whole as ever.
    virtual void setPaused(bool paused, qint64 presentationUs) = 0;

    /// Has the file completed in the background, also during a pause, and returns at once. Another
    /// movie of the same name waits for that. One without any picture is removed.
    virtual void finish() = 0;

    /// Whether a picture has been taken into the movie.
    virtual bool hasPictures() const = 0;

    /// How many pictures came too fast for the encoder.
    virtual qint64 droppedPictures() const = 0;

    /// What is in the file, and what its disk has left, as of a second ago at most.
    virtual MovieProgress progress() const = 0;
};
