#pragma once

#include "sources/camera/StandardControl.h"

#include <map>
#include <optional>
#include <vector>

/// What the standard controls of a camera stand at, and what has to be sent to change them: by the
/// numbered parameters of CameraParameter, which a camera without the vendor's unit does not have,
/// or one by one. A value, without a bus: who calls sends what it returns, in that order.
class StandardControls
{
public:
    /// The steps in which the brightness parameters count.
    static constexpr int BRIGHTNESS_LEVELS = 11;
    /// The steps from one end of the zoom to the other.
    static constexpr int ZOOM_STEPS = 40;

    struct Setting {
        StandardControl control;
        std::int64_t value;
    };
    using Settings = std::vector<Setting>;

    /// Takes what the camera has answered about a control in place of what was known of it.
    void learn(StandardControl control, const ControlAnswers &answers);
    void forget(StandardControl control) { m_ranges.erase(control); }
    /// The camera says that a control stands there now.
    void note(StandardControl control, std::int64_t value);
    [[nodiscard]] bool has(StandardControl control) const;
    [[nodiscard]] bool empty() const { return m_ranges.empty(); }
    /// All zero for one that the camera does not have.
    [[nodiscard]] ControlRange range(StandardControl control) const;

    // The numbered parameters ------------------------------------------------------------------
    /// Nothing for a parameter that the camera has no control for.
    [[nodiscard]] std::optional<Settings> write(unsigned long parameter, unsigned long value);
    [[nodiscard]] std::optional<unsigned long> read(unsigned long parameter) const;
    /// Whether a zoom key is held; then zoom() is to be called again and again.
    [[nodiscard]] bool zooming() const { return m_zoomDirection != 0; }
    /// One step in the direction of the held key; none at the end.
    [[nodiscard]] Settings zoom();
    void releaseZoom() { m_zoomDirection = 0; }

    // One by one -------------------------------------------------------------------------------
    /// A value that the camera does not have is replaced by the nearest. What would change it by
    /// itself is switched off.
    [[nodiscard]] Settings set(StandardControl control, std::int64_t value);
    /// Whether the camera can set that control by itself, and does.
    [[nodiscard]] bool hasAutomatic(StandardControl control) const;
    [[nodiscard]] bool automatic(StandardControl control) const;
    /// Off leaves the control where it is known to stand.
    [[nodiscard]] Settings setAutomatic(StandardControl control, bool on);

private:
    Setting take(StandardControl control, std::int64_t value);
    [[nodiscard]] Settings stepBrightness(int direction);
    [[nodiscard]] Settings focusOnce();
    [[nodiscard]] Settings switchAutomatic(StandardControl control, bool on);
    [[nodiscard]] int brightnessLevel() const;
    [[nodiscard]] unsigned long zoomPercent() const;

    std::map<StandardControl, ControlRange> m_ranges;
    int m_zoomDirection = 0;
};
