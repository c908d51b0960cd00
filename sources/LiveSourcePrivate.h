#pragma once

#include "sources/ICaptureCB.h"
#include "sources/LiveRecording.h"
#include "sources/camera/CameraControls.h"
#include "sources/camera/CameraSettings.h"
#include "sources/camera/FrameMirror.h"
#include "sources/camera/UvcCamera.h"

#include <QtGlobal>

#include <atomic>
#include <functional>
#include <memory>
#include <utility>

/// What the source hides from those who include it: the camera, and what its frames go through.
class LiveSourcePrivate
{
public:
    LiveSourcePrivate(ICaptureCB *receiver, std::function<bool()> cameraIsOpening)
        : callback(receiver)
        , recording(std::move(cameraIsOpening))
    {
    }

    /// Frame thread.
    void frameArrived(void *rgb, int width, int height, qint64 microseconds)
    {
        mirror.apply(static_cast<std::uint8_t *>(rgb), {width, height}, mirrored.load());
        callback->imageCaptured(rgb, width, height, false, false);
        recording.pictureCaptured(rgb, width, height, microseconds);
    }

    /// Whether the camera has to be driven by the controls that any camera may have.
    [[nodiscard]] bool usesStandardControls() const
    {
        return camera->lacksExtensionUnit() && settings.drives();
    }

    ICaptureCB *callback;
    LiveRecording recording;
    FrameMirror mirror; ///< the frame thread's
    std::atomic<Qt::Orientations> mirrored{Qt::Orientations()};
    std::unique_ptr<UvcCamera> camera = std::make_unique<UvcCamera>();
    std::unique_ptr<CameraControls> controls = std::make_unique<CameraControls>(*camera);
    CameraSettings settings;
};
