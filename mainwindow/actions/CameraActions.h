#pragma once

class CanvasDeck;
class LiveSourceBase;
class Popups;

/// What the buttons of camera and view do: on the live canvas they drive the camera's optics, on
/// the others the digital zoom; each closes the open pop-up and shows its indication. GUI thread.
class CameraActions
{
public:
    CameraActions(CanvasDeck *deck, Popups *popups, LiveSourceBase *camera);

    // On the live canvas a zoom lasts from start to stop; on another canvas the start is one step.
    void zoomInStart();
    void zoomInStop();
    void zoomOutStart();
    void zoomOutStop();
    /// Stops a zoom that was started and not stopped: a button that is hidden while it is pressed,
    /// or a key that is released in another window, sends no stop.
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
    CanvasDeck *m_deck;
    Popups *m_popups;
    LiveSourceBase *m_camera;
    bool m_zoomingIn = false;
    bool m_zoomingOut = false;
};
