#pragma once

#include "sources/recording/FrameRecorder.h"
#include "sources/recording/MovieQuality.h"
#include "sources/recording/RecordingRequest.h"
#include "sources/recording/SoundCapture.h"
#include "sources/threads/CallbackGate.h"

#include <QObject>
#include <QSize>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

/// The recording of the live picture, from the request to what is told of it after its end.
///
/// GUI thread, which must hold no lock that a recorder takes; pictures come on the camera's frame
/// thread.
class LiveRecording : public QObject
{
    Q_OBJECT

public:
    /// `cameraIsOpening`: whether a camera that is not open yet will be within three seconds.
    explicit LiveRecording(std::function<bool()> cameraIsOpening);
    ~LiveRecording() override;

    /// The user wants one. It begins when the camera streams for it.
    void request(const QString &fileName);
    /// A picture is awaited from now on, for three seconds.
    void awaitPicture();
    /// The camera is being asked to stream for it.
    void begin();
    /// Records pictures of that size; `microphone` is the camera's own.
    void record(QSize size, MicrophoneId microphone);
    /// Has the movie completed in the background; does nothing without a recording.
    void finish();
    /// Takes a request back that has not begun, which then counts as a recording without pictures.
    void withdraw();

    /// Whether a recording has been requested and not ended, whether or not it has begun.
    [[nodiscard]] bool requested() const { return m_request.requested(); }
    /// Whether the camera streams for it.
    [[nodiscard]] bool begun() const { return m_request.begun(); }

    /// Has nothing recorded until it is taken back; before the beginning too.
    void setPaused(bool paused);
    [[nodiscard]] bool paused() const { return m_request.paused(); }

    /// The microphone of the recordings to come, and of one that runs; the camera's own at first.
    void setMicrophone(const MicrophoneChoice &microphone);
    [[nodiscard]] const MicrophoneChoice &microphone() const { return m_microphone; }

    /// Of the recordings to come; Standard at first.
    void setQuality(MovieQuality quality) { m_quality = quality; }
    [[nodiscard]] MovieQuality quality() const { return m_quality; }

    /// Of the recordings to come: a picture every so many seconds, shown thirty a second; all of
    /// them and sound for zero, as at first.
    void setTimeLapse(std::chrono::seconds interval) { m_timeLapse = interval; }
    [[nodiscard]] std::chrono::seconds timeLapse() const { return m_timeLapse; }

    /// How the recording is doing, if one runs.
    [[nodiscard]] RecordingState state() const;
    struct LastMovie {
        QString fileName;
        qint64 lengthUs = 0;
        qint64 bytes = 0;
    };
    /// The last movie that was recorded since the start of the program, as far as it is completed.
    [[nodiscard]] std::optional<LastMovie> lastMovie() const;

    /// Frame thread, as FrameRecorder says.
    void pictureCaptured(const void *rgb, int width, int height, qint64 microseconds);

signals:
    /// As LiveSource::recordFailed().
    void failed(const QString &sentence);

private slots:
    void reportFailure(int recording, const QString &sentence);
    void checkPictures();

private:
    std::unique_ptr<FrameRecorder> createRecorder(QSize size);
    void reportMissingPictures(bool paused = false);

    const std::function<bool()> m_cameraIsOpening;
    RecordingRequest m_request;
    /// With the ids of the camera in use.
    MicrophoneChoice m_microphone;
    MovieQuality m_quality = MovieQuality::Standard;
    std::chrono::seconds m_timeLapse{0};
    std::optional<LastMovie> m_lastMovie;
    /// Of m_lastMovie, which may still be being completed. The end of the program waits for it.
    std::unique_ptr<FrameRecorder> m_lastRecorder;
    /// Runs while the first picture is awaited.
    QTimer m_pictureTimer;
    /// Guards the pointer to the recorder, which is set while frames already come. Held by the
    /// frame thread while the recorder takes a picture; never held while the recorder is made or
    /// finished.
    std::mutex m_recorderMutex;
    std::unique_ptr<FrameRecorder> m_recorder;
    /// Passes what a movie reports, as it may be completed in the background after this is gone.
    const std::shared_ptr<CallbackGate> m_failures = std::make_shared<CallbackGate>();
};
