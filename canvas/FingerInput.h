#pragma once

#include "canvas/PointerReceiver.h"

#include <QPoint>
#include <QPointF>

#include <cstddef>
#include <cstdint>
#include <vector>

/// What the fingers on a touch screen mean: one draws, two move and zoom the view, a tap with
/// several takes a step back or does it again. A part of PointerInput.
class FingerInput
{
public:
    /// How long after the first finger a second one always makes a gesture of it.
    static constexpr std::int64_t SECOND_FINGER_MS = 80;
    /// How far a finger may slide before it is meant to move, in pixels of the widget.
    static constexpr double SLIDE = 12.0;
    /// The longest tap, from the first finger's press to the last one's release.
    static constexpr std::int64_t TAP_MS = 500;

    struct Finger {
        enum class State { Pressed, Moved, Released };
        int id = 0;
        State state = State::Moved;
        QPointF point;
    };

    /// The strokes of all pointers. All but the first do nothing while the stroke that runs is
    /// another pointer's, or none does.
    class Strokes
    {
    public:
        virtual void beginFingerStroke(QPoint point) = 0;
        virtual void moveFingerStroke(QPoint point) = 0;
        virtual void endFingerStroke(QPoint point) = 0;
        virtual void leaveFingerStroke() = 0;
        virtual void cancelFingerStroke() = 0;

    protected:
        Strokes() = default;
        ~Strokes() = default;
    };

    /// Both must live longer.
    FingerInput(PointerReceiver &receiver, Strokes &strokes);

    /// What has changed of the fingers. While a pen is near, a first finger is the hand that holds
    /// it.
    void take(const std::vector<Finger> &changes, std::int64_t ms, bool isPenNear);
    /// Those that are down belong to the hand that another pointer is in.
    void ignore();
    /// Whatever fingers were there have gone, and their releases were lost.
    void forget();
    /// They were not meant for us.
    void cancel();

    /// Whether they move the view, or may be about to.
    [[nodiscard]] bool isGesture() const { return m_touch == Touch::Gesture; }

private:
    enum class Touch { None, Draws, Gesture, Ignored };

    struct Down {
        int id = 0;
        QPointF start;
        QPointF point;
    };

    [[nodiscard]] Down *find(int id);
    void press(const Finger &finger, std::int64_t ms, bool isPenNear);
    /// Whether it is elsewhere now.
    bool move(const Finger &finger);
    void release(const Finger &finger, std::int64_t ms);
    void beginGesture();
    void grip();
    void moveGesture();
    void end(std::int64_t ms);

    PointerReceiver &m_receiver;
    Strokes &m_strokes;
    Touch m_touch = Touch::None;
    std::vector<Down> m_down;
    std::int64_t m_firstMs = 0;
    /// The most fingers of the gesture at a time, and whether any of them has slid.
    std::size_t m_most = 0;
    bool m_slid = false;
    bool m_gripped = false;
    QPointF m_gripMiddle;
    double m_gripDistance = 0.0;
};
