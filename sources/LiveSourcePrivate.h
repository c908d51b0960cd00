#pragma once

#include "sources/ICaptureCB.h"
#include "sources/camera/CameraControls.h"
#include "sources/camera/CameraSettings.h"
#include "sources/camera/FrameMirror.h"
#include "sources/camera/UvcCamera.h"
#include "sources/recording/FrameRecorder.h"
#include "sources/threads/CallbackGate.h"

#include <QtGlobal>

#include <atomic>
#include <memory>
#include <mutex>

/// What the source hides from those who include it: the camera, and what its frames go through.
class LiveSourcePrivate
{
public:
    explicit LiveSourcePrivate(ICaptureCB *receiver)
        : callback(receiver)
    {
    }

    /// Frame thread.
    void frameArrived(void *rgb, int width, int height, qint64 microseconds)
    {
        mirror.apply(static_cast<std::uint8_t *>(rgb), {width, height}, mirrored.load());
        callback->imageCaptured(rgb, width, height, false, false);
        const std::lock_guard lock(recorderMutex);
        if (recorder)
            recorder->pictureCaptured(rgb, width, height, microseconds);
    }

    /// Whether the camera has to be driven by the controls that any camera may have.
    [[nodiscard]] bool usesStandardControls() const
    {
        return camera->lacksExtensionUnit() && settings.drives();
    }

    ICaptureCB *callback;
    FrameMirror mirror; ///< the frame thread's
    std::atomic<Qt::Orientations> mirrored{Qt::Orientations()};
    /// Guards the pointer to the recorder, which is set while frames already come. Held by the
    /// frame thread while the recorder takes a picture; never held while the recorder is made or
    /// finished.
    std::mutex recorderMutex;
    std::unique_ptr<FrameRecorder> recorder;
    std::unique_ptr<UvcCamera> camera = std::make_unique<UvcCamera>();
    std::unique_ptr<CameraControls> controls = std::make_unique<CameraControls>(*camera);
    CameraSettings settings;
    /// Passes what a movie reports, as it may be completed in the background after the source is
    /// gone.
    const std::shared_ptr<CallbackGate> failures = std::make_shared<CallbackGate>();
};
