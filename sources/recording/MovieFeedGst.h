#pragma once

#include "sources/gst/GstPointers.h"

#include <gst/app/gstappsrc.h>

#include <QSize>

#include <cstdint>
#include <mutex>
#include <vector>

/// Hands pictures and sound to the encoders, and keeps what comes before they are there: all of the
/// sound, and enough pictures that the movie shows from its start what happened.
///
/// Times are microseconds since the start of the movie. Any thread; no call waits for an encoder.
class MovieFeed
{
public:
    /// In pixels; an odd width or height loses its last column or row.
    explicit MovieFeed(QSize pictureSize);
    ~MovieFeed();
    MovieFeed(const MovieFeed &) = delete;
    MovieFeed &operator=(const MovieFeed &) = delete;

    /// The encoders are there. `pictures` takes planar pictures, `sound` one channel of samples of
    /// 16 bits, or it is null.
    void connect(GstAppSrc *pictures, GstAppSrc *sound);

    /// The encoders are gone: lets go of all pictures.
    void disconnect();

    /// Packed rows of red, green, blue bytes. False when the encoder is too far behind to take it.
    bool takePicture(const std::uint8_t *rgb, qint64 positionUs);
    /// Shows the last picture once more.
    void repeatPicture(qint64 positionUs);
    /// Appends sound to what has been taken so far. False when the encoders have not come for so
    /// long that nothing more is kept.
    bool takeSound(const std::int16_t *samples, size_t count);

    /// Takes nothing any more; the streams end as soon as they have begun.
    void end();

    [[nodiscard]] bool hasPictures() const;

private:
    struct Picture {
        std::vector<std::uint8_t> planes;
        qint64 positionUs;
    };

    bool wantsToKeep(qint64 positionUs) const;
    void convert(const std::uint8_t *rgb, std::uint8_t *planes) const;
    void setUpPool(GstCaps *caps);
    void pushPicture(GstBuffer *picture, qint64 positionUs);
    void endStreams();
    void pushSound(const std::int16_t *samples, size_t count);

    const QSize m_sourceSize;
    const QSize m_size;
    const int m_lumaStride;
    const int m_chromaStride;
    const size_t m_bytes;

    /// Guards everything below.
    mutable std::mutex m_mutex;
    bool m_ended = false;
    bool m_hasPictures = false;
    std::vector<Picture> m_keptPictures;
    std::vector<std::int16_t> m_keptSound;
    /// Null until the encoders are there.
    GstPtr<GstAppSrc> m_pictures;
    GstPtr<GstAppSrc> m_sound;
    GstPtr<GstBufferPool> m_pool;
    GstPtr<GstBuffer> m_lastPicture;
    guint64 m_mayWait;
    guint64 m_samplesWritten = 0;
};
