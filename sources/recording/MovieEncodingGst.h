#pragma once

#include "sources/gst/GstPointers.h"
#include "sources/recording/QuickTimeFile.h"

#include <gst/app/gstappsink.h>
#include <gst/app/gstappsrc.h>

#include <functional>
#include <mutex>
#include <optional>

/// The encoders of a movie: pictures and sound go in at two sources and come out as chunks for its
/// file. One thread at a time.
class MovieEncoding
{
public:
    enum class State {
        Running,
        Ended, ///< both streams have come out to their ends
        Failed
    };

    MovieEncoding() = default;
    ~MovieEncoding();
    MovieEncoding(const MovieEncoding &) = delete;
    MovieEncoding &operator=(const MovieEncoding &) = delete;

    /// `encoder` and `soundEncoder` as MovieEncoders describes them, the
    /// latter empty for a movie without sound. `changed` is called on any
    /// thread when the state has changed. False when this machine lacks a part.
    [[nodiscard]] bool start(const QString &encoder, const QString &soundEncoder,
                             std::function<void()> changed);

    [[nodiscard]] GstAppSrc *pictures() const { return GST_APP_SRC(m_pictures.get()); }
    /// Null without sound.
    [[nodiscard]] GstAppSrc *sound() const
    {
        return m_sound ? GST_APP_SRC(m_sound.get()) : nullptr;
    }

    [[nodiscard]] State state() const;

    /// Nothing comes out any more.
    void stop();

    /// What has come out since the last call, a chunk of each stream at most. Adds the tracks to
    /// the file when their first samples come out.
    QVector<QuickTimeFile::Chunk> take(QuickTimeFile &file);

private:
    struct Stream {
        GstPtr<GstElement> sink;
        bool sound;
        int track = -1;
    };

    std::optional<QuickTimeFile::Chunk> take(Stream &stream, QuickTimeFile &file);
    void noteMessage(GstMessage *message);

    GstPtr<GstElement> m_pipeline;
    GstPtr<GstElement> m_pictures;
    GstPtr<GstElement> m_sound;
    Stream m_streams[2]{{nullptr, false}, {nullptr, true}};
    std::function<void()> m_changed;

    /// Guards m_state, which the encoders' threads set.
    mutable std::mutex m_mutex;
    State m_state = State::Running;
};
