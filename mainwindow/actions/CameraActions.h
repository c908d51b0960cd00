#pragma once

#include <functional>

class CanvasDeck;
class LiveSourceBase;
class Popups;

/// What the buttons of camera and view do: on the live canvas they drive the camera's optics, on
/// the others, and with a camera that has none, the digital zoom; each closes the open pop-up and
/// shows its indication. GUI thread.
class CameraActions
{
public:
    CameraActions(CanvasDeck *deck, Popups *popups, LiveSourceBase *camera);

    /// Asked whether the camera can zoom; one that cannot leaves it to the canvas. Without it every
    /// camera can.
    void setZoomQuery(std::function<bool()> cameraZooms);

    // On the live canvas a zoom lasts from start to stop; on another canvas the start is one step.
    void zoomInStart();
    void zoomInStop();
    void zoomOutStart();
    void zoomOutStop();
    /// Stops a zoom that was started and not stopped: a button that is hidden while it is pressed,
    /// or a key that is released in another window, sends no stop. Unlike a stop it closes no
    /// pop-up, as it may be one that takes the focus, and is being given it.
    void releaseZoom();
    void zoomReset();

    void autoFocus();
    void brightnessDown();
    void brightnessUp();
    void rotate();
    void rotateRev();
    void setMacro(bool on);
    /// Freezes or releases the current canvas.
    void setFrozen(bool on);

private:
    [[nodiscard]] bool zoomsOptically() const;
    void endZoomIn();
    void endZoomOut();

    CanvasDeck *m_deck;
    Popups *m_popups;
    LiveSourceBase *m_camera;
    std::function<bool()> m_cameraZooms;
    bool m_zoomingIn = false;
    bool m_zoomingOut = false;
};
