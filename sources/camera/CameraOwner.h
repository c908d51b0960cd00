#pragma once

#include "sources/camera/CameraLink.h"

#include <memory>

class UvcCamera;

/// Who uses the camera, for the one that keeps it. GUI thread; no call waits for the bus.
class CameraOwner
{
public:
    [[nodiscard]] virtual CameraLink cameraLink() const = 0;
    /// The camera in use, for as long as no other has taken over.
    [[nodiscard]] virtual const UvcCamera &camera() const = 0;

    /// Goes on with that camera, which is open and found, in place of the one in use: the picture
    /// that was streamed is streamed from it, and a recording goes on. Returns the one before, from
    /// which nothing comes any more. Destroying it may wait.
    [[nodiscard]] virtual std::unique_ptr<UvcCamera>
    takeOver(std::unique_ptr<UvcCamera> camera) = 0;

    /// From now on that camera is wanted. Returns the one in use when it is another one, from which
    /// nothing comes any more. A recording goes on. Destroying it may wait.
    [[nodiscard]] virtual std::unique_ptr<UvcCamera> choose(const CameraChoice &choice) = 0;

    /// Asks the camera in use for its stream again. A recording goes on.
    virtual void restartStream() = 0;

protected:
    ~CameraOwner() = default;
};
