#pragma once

#include "sources/recording/Microphone.h"
#include "sources/recording/RecordingState.h"

#include <QtGlobal>

/// A running recording of the live picture, as the camera sees it: handed each frame after the
/// canvas has written the shown picture back into it.
///
/// Made and finished on the GUI thread; pictures come on the camera's frame thread.
class FrameRecorder
{
public:
    virtual ~FrameRecorder() = default;

    /// `rgb`: packed 8-bit RGB, `width * height * 3` bytes, valid during the call only.
    /// `microseconds`: captureMicroseconds() at the frame's arrival.
    /// Never waits for the GUI thread; a picture that cannot be taken at once is dropped.
    virtual void pictureCaptured(const void *rgb, int width, int height, qint64 microseconds) = 0;

    /// Between setPaused(true) and setPaused(false) nothing is recorded, and what follows joins on
    /// to what was before. GUI thread.
    virtual void setPaused(bool paused) = 0;

    /// Has the sound come from that microphone from now on. GUI thread.
    virtual void chooseMicrophone(const MicrophoneChoice &microphone) = 0;
    /// How it is doing. GUI thread.
    [[nodiscard]] virtual RecordingState state() const = 0;

    /// Has the movie file completed in the background. No picture comes during or after this call.
    virtual void finish() = 0;

    /// Whether a picture that suits the movie has come, be it written or not. Any thread.
    virtual bool pictureCame() const = 0;
    /// Whether the movie has a picture. Any thread.
    virtual bool hasPictures() const = 0;
};
