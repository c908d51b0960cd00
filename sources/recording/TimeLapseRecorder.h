#pragma once

#include "sources/recording/FrameRecorder.h"
#include "sources/recording/MovieWriter.h"

#include <QSize>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>

/// Takes a picture now and then, and shows thirty of them a second: a movie of what is slow,
/// without sound.
class TimeLapseRecorder final : public FrameRecorder
{
public:
    /// `writer` writes no sound; `pictureSize` is its own, pictures of another size are left out.
    TimeLapseRecorder(std::unique_ptr<MovieWriter> writer, std::chrono::seconds interval,
                      QSize pictureSize);
    /// Finishes.
    ~TimeLapseRecorder() override;
    TimeLapseRecorder(const TimeLapseRecorder &) = delete;
    TimeLapseRecorder &operator=(const TimeLapseRecorder &) = delete;

    void pictureCaptured(const void *rgb, int width, int height, qint64 microseconds) override;
    void setPaused(bool paused) override;
    void chooseMicrophone(const MicrophoneChoice &) override {}
    [[nodiscard]] RecordingState state() const override;
    void finish() override;

    bool pictureCame() const override { return m_pictureCame; }
    bool hasPictures() const override { return m_writer->hasPictures(); }

private:
    [[nodiscard]] qint64 elapsedUs(qint64 nowUs) const;

    const qint64 m_intervalUs;
    const QSize m_pictureSize;
    std::atomic<bool> m_pictureCame{false};

    /// Guards all members below.
    mutable std::mutex m_mutex;
    const std::unique_ptr<MovieWriter> m_writer;
    /// When the first picture came, moved by the pauses.
    std::optional<qint64> m_startUs;
    std::optional<qint64> m_pausedSinceUs;
    bool m_paused = false;
    /// When the next picture is due, as elapsedUs().
    qint64 m_dueUs = 0;
    /// The pictures in the movie.
    qint64 m_pictures = 0;
};
