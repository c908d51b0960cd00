#pragma once

#include "sources/recording/FrameRecorder.h"
#include "sources/recording/MovieWriter.h"
#include "sources/recording/SoundCapture.h"

#include <QSize>

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>

/// Brings the camera's pictures and the sound of its microphone together in a movie.
///
/// Pictures come on the camera's frame thread, sound on "LiveQueue". The first sound buffer fixes
/// the offset between the stamps of the pictures and those of the sound, within 20 ms as both come
/// from one clock, and both are stamped in the time of the sound: without sound no picture is
/// written. Records from construction to finish(); a writer that fails meanwhile takes nothing any
/// more and waits for finish() all the same.
class MovieRecorder final : public FrameRecorder
{
public:
    /// `pictureSize` is that of the writer; pictures of another size are left out.
    MovieRecorder(std::unique_ptr<MovieWriter> writer, std::unique_ptr<SoundCapture> capture,
                  QSize pictureSize);
    /// Finishes.
    ~MovieRecorder() override;
    MovieRecorder(const MovieRecorder &) = delete;
    MovieRecorder &operator=(const MovieRecorder &) = delete;

    void pictureCaptured(const void *rgb, int width, int height, qint64 microseconds) override;

    void setPaused(bool paused) override;

    void chooseMicrophone(const MicrophoneChoice &microphone) override;
    [[nodiscard]] RecordingState state() const override;

    void finish() override;

    bool pictureCame() const override { return m_pictureCame; }
    bool hasPictures() const override { return m_writer->hasPictures(); }

    /// The pictures that the encoder was too slow for.
    qint64 droppedPictures() const { return m_writer->droppedPictures(); }

private:
    void soundCaptured(const SoundBuffer &buffer);
    void startSession(qint64 timeUs);

    const QSize m_pictureSize;
    std::unique_ptr<SoundCapture> m_capture;
    std::atomic<bool> m_pictureCame{false};
    SoundMeter m_meter;

    /// Guards all members below.
    std::mutex m_mutex;
    const std::unique_ptr<MovieWriter> m_writer;
    /// What is added to the stamp of a picture, in microseconds.
    std::optional<qint64> m_offsetUs;
    bool m_paused = false;
};
