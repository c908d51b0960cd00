#pragma once

#include <cstdint>
#include <map>

/// How the emulated camera shows the desk at one moment.
struct CameraView {
    double zoom = 1.0;       ///< optical and digital together, 1 = the whole desk
    double blur = 0.0;       ///< 0 = sharp, 1 = as far out of focus as it gets
    double brightness = 1.0; ///< factor on the picture's values, 1 = the middle level

    bool operator==(const CameraView &other) const
    {
        return zoom == other.zoom && blur == other.blur && brightness == other.brightness;
    }
    bool operator!=(const CameraView &other) const { return !(*this == other); }
};

/// The camera behind the extension unit: a lens that drives while a zoom key is held, an autofocus
/// run and brightness levels. A value with the time passed in, in milliseconds of any monotonic
/// clock; no threads.
class CameraModel
{
public:
    static constexpr std::int64_t OPTICAL_TRAVEL_MS = 1000; ///< from one end to the other
    static constexpr std::int64_t DIGITAL_TRAVEL_MS = 1500; ///< from 1000 to DIGITAL_MAX
    static constexpr std::int64_t FOCUS_MS = 800;
    static constexpr double DIGITAL_MAX = 4000.0; ///< thousandths
    static constexpr double OPTICAL_FACTOR = 3.0; ///< magnification at 100 percent
    static constexpr int BRIGHTNESS_MIN = 1;
    static constexpr int BRIGHTNESS_MAX = 11;
    static constexpr int BRIGHTNESS_START = 6;

    /// A parameter as the extension unit sees it: keys act on 1 and 0, values are stored where
    /// they can be. Unknown ids and read-only values are left alone.
    void write(std::uint64_t id, std::uint64_t value, std::int64_t nowMs);
    /// 0 for an unknown id.
    [[nodiscard]] std::uint64_t read(std::uint64_t id, std::int64_t nowMs);
    [[nodiscard]] CameraView view(std::int64_t nowMs);

    /// From now on `id` reads as `value`, whatever the camera does; for tests of a reader.
    void override(std::uint64_t id, std::uint64_t value) { m_overrides[id] = value; }
    void clearOverrides() { m_overrides.clear(); }

    /// Back to the state after power-on; overrides stay.
    void powerOn();

private:
    void advance(std::int64_t nowMs);
    void drive(double elapsedMs);
    void stepBrightness(int step);
    [[nodiscard]] double blur(std::int64_t nowMs) const;

    std::map<std::uint64_t, std::uint64_t> m_overrides;
    std::int64_t m_advancedMs = 0;
    std::int64_t m_focusStartMs = 0;
    double m_opticalPercent = 0.0;
    double m_digitalThousandths = 1000.0;
    int m_brightness = BRIGHTNESS_START;
    bool m_zoomInKey = false;
    bool m_zoomOutKey = false;
    bool m_focusKey = false;
    bool m_brightnessUpKey = false;
    bool m_brightnessDownKey = false;
    bool m_focused = false; ///< whether an autofocus run was ever started
};
