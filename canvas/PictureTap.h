#pragma once

#include "canvas/model/CanvasModel.h"

#include <mutex>

/// Shows the picture of a canvas a second time, elsewhere. It is handed the picture whenever the
/// canvas asks for its own repaint, which may be more often than there is a new one.
class PictureTap
{
public:
    virtual ~PictureTap() = default;

    /// The canvas's own picture, which nobody writes to any more; to keep it costs no copy. Called
    /// on the thread that changed the picture, which waits for it: it must neither wait nor call
    /// the canvas.
    virtual void pictureShown(const CanvasModel::Shown &shown) = 0;
};

/// The one tap that a canvas may have. Any thread.
class PictureTapSlot
{
public:
    /// Hands `tap` the picture now and from then on; null for nobody. When this returns, the tap
    /// before is not called any more.
    void set(PictureTap *tap, const CanvasModel &model)
    {
        const std::lock_guard lock(m_mutex);
        m_tap = tap;
        tellLocked(model);
    }
    void tell(const CanvasModel &model)
    {
        const std::lock_guard lock(m_mutex);
        tellLocked(model);
    }

private:
    void tellLocked(const CanvasModel &model)
    {
        if (m_tap)
            m_tap->pictureShown(model.shown());
    }

    /// Guards m_tap, also while it is called.
    std::mutex m_mutex;
    PictureTap *m_tap = nullptr;
};
