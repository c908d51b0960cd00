#pragma once

#include "canvas/FingerInput.h"
#include "canvas/PointerReceiver.h"

#include <QPoint>
#include <QPointF>
#include <Qt>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

/// Turns what mice, pens, fingers and wheels do into strokes and changes of the view. At most one
/// stroke runs at a time.
///
/// The left mouse button, the tip of a pen and one finger drive the chosen tool; the middle mouse
/// button and the lower button of a pen pull the view; the upper one and the eraser end of a pen
/// erase. A second finger soon after the first takes its stroke back, and both move and zoom the
/// view. A tap with two fingers takes a step back, with three does it again. Near a pen a finger is
/// the hand that holds it, and does nothing.
///
/// Knows no widget and no clock: points are in widget coordinates, times in milliseconds of any one
/// clock. Points and pressures that are no numbers, and events whose press was never seen, do
/// nothing. GUI thread.
class PointerInput : private FingerInput::Strokes
{
public:
    /// How long after a pen fingers do nothing.
    static constexpr std::int64_t PALM_MS = 1000;
    /// A pen in the air that has been silent for so long was unplugged, as none is held that still.
    static constexpr std::int64_t SILENT_PEN_MS = 10000;
    /// A notch of a wheel, in the unit of its deltas.
    static constexpr int NOTCH = 120;

    using Finger = FingerInput::Finger;

    struct Pen {
        enum class Phase { Press, Move, Release };
        Phase phase = Phase::Move;
        QPointF point;
        /// 0 to 1; a pen that has never told one above 0 has none.
        double pressure = 0.0;
        /// The button that is pressed or released: the tip is the left one, then the lower and the
        /// upper one are the middle and the right one.
        Qt::MouseButton button = Qt::NoButton;
        Qt::MouseButtons buttons = Qt::NoButton;
        bool isEraserEnd = false;
    };

    /// The receiver must live longer.
    explicit PointerInput(PointerReceiver &receiver);

    /// Whether the pressure of a pen makes freehand lines thinner; off at first.
    void setPressure(bool on) { m_pressureOn = on; }

    void mousePressed(Qt::MouseButton button, QPoint point);
    void mouseMoved(Qt::MouseButtons buttons, QPoint point);
    void mouseReleased(Qt::MouseButton button, QPoint point);

    void pen(const Pen &pen, std::int64_t ms);
    void penEntered(std::int64_t ms);
    void penLeft(std::int64_t ms);

    /// What has changed of the fingers on the canvas.
    void fingers(const std::vector<Finger> &changes, std::int64_t ms);
    /// Whatever fingers were there have gone, and their releases were lost.
    void forgetFingers() { m_fingers.forget(); }
    /// The window system has taken the fingers' events away: they were not meant for us.
    void cancelFingers() { m_fingers.cancel(); }

    /// A turn of the wheel, in eighths of a degree; turning it away from the user zooms in.
    void wheel(int delta, QPointF point);

    /// What the stroke that runs does, or a press of the pointer that was seen last would do.
    [[nodiscard]] PointerReceiver::Tool tool() const;
    [[nodiscard]] bool isStrokeRunning() const { return m_owner != Owner::None; }
    /// Whether fingers move the view, or may be about to.
    [[nodiscard]] bool isGesture() const { return m_fingers.isGesture(); }

private:
    enum class Owner { None, Mouse, Pen, Finger };

    void begin(Owner owner, PointerReceiver::Tool tool, QPoint point);
    void move(QPoint point);
    void end(QPoint point);
    void leave();
    void cancel();
    [[nodiscard]] PointerReceiver::Stroke strokeAt(QPoint point) const;

    [[nodiscard]] static PointerReceiver::Tool toolOf(const Pen &pen);
    void pressPen(const Pen &pen);
    void notePressure(double pressure);
    [[nodiscard]] bool isPenNear(std::int64_t ms) const;

    void beginFingerStroke(QPoint point) override;
    void moveFingerStroke(QPoint point) override;
    void endFingerStroke(QPoint point) override;
    void leaveFingerStroke() override;
    void cancelFingerStroke() override;

    PointerReceiver &m_receiver;
    Owner m_owner = Owner::None;
    PointerReceiver::Tool m_tool = PointerReceiver::Tool::Chosen;
    /// The button that holds the stroke of a mouse or a pen.
    Qt::MouseButton m_button = Qt::NoButton;

    bool m_pressureOn = false;
    bool m_penHasPressure = false;
    /// The last pressures of the stroke, oldest first once there are three.
    std::array<double, 3> m_pressures{};
    std::size_t m_pressureCount = 0;
    PointerReceiver::Tool m_penTool = PointerReceiver::Tool::Chosen;
    /// When a pen was seen last.
    std::optional<std::int64_t> m_penMs;
    bool m_penInAir = false;

    FingerInput m_fingers;

    int m_wheelRest = 0;
};
