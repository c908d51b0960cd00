#pragma once

#include "sources/LiveSourceBase.h"
#include "sources/camera/CameraOwner.h"

#include <QElapsedTimer>
#include <QSize>
#include <QString>
#include <QTimer>

#include <memory>
#include <optional>
#include <vector>

class CameraSettings;
class ICaptureCB;
class LiveRecording;
class LiveSourcePrivate;

/// The document camera: waits for it to be plugged in, streams its pictures to the canvas, carries
/// the camera controls, and records.
///
/// Every operation belongs to the GUI thread, which must hold no lock that the canvas or a recorder
/// takes, as a teardown waits for the frame in flight. Frames reach the callback and the recorder
/// on the camera's frame thread. No operation waits for the camera for longer than a tenth of a
/// second: what takes longer goes on by itself, a stream that was asked for last in place of
/// earlier ones.
class LiveSource : public LiveSourceBase, public CameraOwner
{
    Q_OBJECT

public:
    /// `callback` is not owned and outlives the source. `resolution` is the preview's size in
    /// pixels, `recordingResolution` that of movies.
    LiveSource(ICaptureCB *callback, QSize resolution, QSize recordingResolution, QObject *parent);
    ~LiveSource() override;

    /// False until the camera has been opened; stays true from then on, also when it is unplugged
    /// or could not really be opened.
    bool running() const override;

    /// Bytes transferred; negative (a libuvc error code) on failure. A camera that has gone, was
    /// never opened or has neither the extension unit nor a standard control for the parameter
    /// fails at once. While the camera does not answer, what
    /// is written is sent later, and what is read is the parameter's last known value.
    int ksPropSet(unsigned long property, void *data, unsigned long length) override;
    int ksPropGet(unsigned long property, void *data, unsigned long length) override;

    /// Looks for the camera's extension unit; without one the standard controls take its place, as
    /// far as the camera has them.
    void initUVCControl();
    /// The controls that any camera may have, for a page that shows them.
    [[nodiscard]] CameraSettings &cameraSettings();
    /// False for an open camera that has nothing to zoom with.
    [[nodiscard]] bool cameraZooms() const;

    void startCapture();
    void stopCapture();
    /// The camera keeps streaming while other modes are shown: both do nothing.
    void pauseCapture();
    void resumeCapture();

    /// Restarts the stream at the recording size and records it into a QuickTime file of that name.
    /// Nothing happens while the camera is not running.
    void startRecord(const QString &fileName);
    /// As startRecord(), but while there is no camera yet the recording begins when it is open.
    /// Without a picture within three seconds of the beginning, or of the call while no camera is
    /// on the bus, recordFailed() comes.
    void requestRecord(const QString &fileName);
    /// Ends the recording; recordFailed() comes afterwards when it got no picture.
    void stopRecord();

    /// Restarts the stream when the size differs from the current one.
    void setResolution(QSize resolution);
    /// A size of the preview that takes the place of the resolution with each camera that has it;
    /// an empty one for none. The stream is restarted if need be, that of a recording later. It
    /// counts until the resolution is changed.
    void setPreviewSize(QSize size);
    [[nodiscard]] QSize previewSize() const { return m_previewSize; }
    /// The sizes of pictures that the camera in use offers, the largest first.
    [[nodiscard]] std::vector<QSize> cameraSizes() const;
    /// Takes effect at the next recording.
    void setRecordingResolution(QSize resolution);

    /// Turns the camera's pictures over before anybody sees them: Qt::Horizontal changes left and
    /// right, Qt::Vertical top and bottom. Not at first; from the next picture on.
    void setMirrored(Qt::Orientations directions);
    [[nodiscard]] Qt::Orientations mirrored() const;

    [[nodiscard]] QSize resolution() const { return m_resolution; }
    [[nodiscard]] QSize recordingResolution() const { return m_recordingResolution; }
    /// Whether the camera streams for a recording.
    [[nodiscard]] bool recording() const;
    /// Whether a recording has been requested and not ended, whether or not it has begun.
    [[nodiscard]] bool recordRequested() const;
    /// To pause it, and to ask after it.
    [[nodiscard]] LiveRecording &liveRecording();
    [[nodiscard]] const LiveRecording &liveRecording() const;

    [[nodiscard]] CameraLink cameraLink() const override;
    [[nodiscard]] const UvcCamera &camera() const override;
    [[nodiscard]] std::unique_ptr<UvcCamera> takeOver(std::unique_ptr<UvcCamera> camera) override;
    [[nodiscard]] std::unique_ptr<UvcCamera> choose(const CameraChoice &choice) override;
    void restartStream() override;

public slots:
    /// One look at the bus; opens the camera once it has been there for more than two seconds.
    void checkExistance();

signals:
    /// The movie cannot be written on (disk full, folder gone, no picture), `sentence` tells the
    /// user why; its file is playable up to here, and removed if it has no picture. A recording
    /// that is not ended yet still wants its stopRecord(). Emitted from the event loop on the GUI
    /// thread, at most once a recording.
    void recordFailed(const QString &sentence);
    /// The resolution was changed, so that the preview's own size counts no more.
    void previewSizeDropped();

private:
    void beginRecording();
    void openCamera();
    void askAgainSoon();
    [[nodiscard]] QSize wantedSize() const;
    void createCaptureGraph(bool record);
    void tearDownCaptureGraph();

    std::unique_ptr<LiveSourcePrivate> m_private;
    QTimer m_existenceTimer;
    CameraChoice m_choice;
    bool m_running = false;
    /// The camera is being opened.
    bool m_opening = false;
    bool m_askingAgain = false;
    /// How long the camera has been seen without a break; invalid while it is not there.
    QElapsedTimer m_presenceTimer;
    /// The size of the stream that is wanted now, if there is one.
    std::optional<QSize> m_streamSize;
    QSize m_resolution;
    QSize m_previewSize;
    QSize m_recordingResolution;
};
