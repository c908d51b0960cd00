#include "sources/camera/StandardControls.h"

#include "sources/camera/CameraParameters.h"

#include <algorithm>
#include <initializer_list>

using namespace CameraParameter;

namespace
{

using Control = StandardControl;

constexpr unsigned long WITHOUT_ZOOM = 1000; ///< a digital zoom, in thousandths
constexpr std::int64_t PERCENT = 100;

// The modes of exposure, a bit each. The two in the middle set the exposure time by themselves.
constexpr std::int64_t MANUAL = 1, AUTOMATIC = 2, SHUTTER_PRIORITY = 4, APERTURE_PRIORITY = 8;

std::optional<Control> automaticOf(Control control)
{
    switch (control) {
    case Control::Exposure:
        return Control::ExposureAuto;
    case Control::Focus:
        return Control::FocusAuto;
    case Control::WhiteBalance:
        return Control::WhiteBalanceAuto;
    default:
        return std::nullopt;
    }
}

/// The first of these bits that `modes` has; 0 for none.
std::int64_t firstOf(std::int64_t modes, std::initializer_list<std::int64_t> bits)
{
    for (const std::int64_t bit : bits) {
        if (modes & bit)
            return bit;
    }
    return 0;
}

std::int64_t modeFor(std::int64_t modes, bool automatic)
{
    return automatic ? firstOf(modes, {APERTURE_PRIORITY, AUTOMATIC})
                     : firstOf(modes, {MANUAL, SHUTTER_PRIORITY});
}

} // namespace

void StandardControls::learn(Control control, const ControlAnswers &answers)
{
    m_ranges.erase(control);
    const auto range = ControlRange::of(StandardControlRow::of(control), answers);
    if (range)
        m_ranges.emplace(control, *range);
}

void StandardControls::note(Control control, std::int64_t value)
{
    const auto found = m_ranges.find(control);
    if (found != m_ranges.end())
        found->second.current = found->second.nearest(value);
}

bool StandardControls::has(Control control) const
{
    return m_ranges.count(control) != 0;
}

ControlRange StandardControls::range(Control control) const
{
    const auto found = m_ranges.find(control);
    return found == m_ranges.end() ? ControlRange() : found->second;
}

std::optional<StandardControls::Settings> StandardControls::write(unsigned long parameter,
                                                                  unsigned long value)
{
    const int zoomDirection = parameter == ZOOM_IN_KEY ? 1 : -1;
    switch (parameter) {
    case ZOOM_IN_KEY:
    case ZOOM_OUT_KEY:
        if (!has(Control::Zoom))
            return std::nullopt;
        if (value == 0) {
            // The other key may be held by now.
            m_zoomDirection = m_zoomDirection == zoomDirection ? 0 : m_zoomDirection;
            return Settings();
        }
        m_zoomDirection = zoomDirection;
        return zoom();
    case OPTICAL_ZOOM_POSITION:
        if (!has(Control::Zoom))
            return std::nullopt;
        return Settings{take(Control::Zoom, range(Control::Zoom).minimum)};
    case DIGITAL_ZOOM:
        return Settings();
    case AUTOFOCUS_KEY:
        if (!has(Control::FocusAuto))
            return std::nullopt;
        return value ? focusOnce() : Settings();
    case BRIGHTNESS_UP_KEY:
    case BRIGHTNESS_DOWN_KEY:
        if (!has(Control::Brightness))
            return std::nullopt;
        return value ? stepBrightness(parameter == BRIGHTNESS_UP_KEY ? 1 : -1) : Settings();
    default:
        return std::nullopt;
    }
}

std::optional<unsigned long> StandardControls::read(unsigned long parameter) const
{
    switch (parameter) {
    case BRIGHTNESS:
    case BRIGHTNESS_MIN:
    case BRIGHTNESS_MAX:
        if (!has(Control::Brightness))
            return std::nullopt;
        return static_cast<unsigned long>(parameter == BRIGHTNESS       ? brightnessLevel()
                                          : parameter == BRIGHTNESS_MIN ? 1
                                                                        : BRIGHTNESS_LEVELS);
    case OPTICAL_ZOOM_POSITION:
    case OPTICAL_ZOOM_PERCENT:
        return has(Control::Zoom) ? std::optional(zoomPercent()) : std::nullopt;
    case DIGITAL_ZOOM:
    case SECOND_ZOOM:
        return WITHOUT_ZOOM;
    default:
        return std::nullopt;
    }
}

StandardControls::Settings StandardControls::zoom()
{
    const ControlRange all = range(Control::Zoom);
    const std::int64_t distance =
        std::max(all.step, (all.maximum - all.minimum) / ZOOM_STEPS / all.step * all.step);
    const std::int64_t next = all.nearest(all.current + m_zoomDirection * distance);
    if (m_zoomDirection == 0 || next == all.current)
        return {};
    return {take(Control::Zoom, next)};
}

StandardControls::Settings StandardControls::set(Control control, std::int64_t value)
{
    if (!has(control))
        return {};
    Settings settings = switchAutomatic(control, false);
    settings.push_back(take(control, range(control).nearest(value)));
    return settings;
}

bool StandardControls::hasAutomatic(Control control) const
{
    const auto automatic = automaticOf(control);
    if (!automatic || !has(*automatic))
        return false;
    const std::int64_t modes = range(Control::ExposureAuto).maximum;
    return control != Control::Exposure || modeFor(modes, true) != 0;
}

bool StandardControls::automatic(Control control) const
{
    const auto automatic = automaticOf(control);
    if (!automatic || !hasAutomatic(control))
        return false;
    const std::int64_t current = range(*automatic).current;
    return control == Control::Exposure ? (current & (AUTOMATIC | APERTURE_PRIORITY)) != 0
                                        : current != 0;
}

StandardControls::Settings StandardControls::setAutomatic(Control control, bool on)
{
    if (!hasAutomatic(control))
        return {};
    if (!on && has(control))
        return set(control, range(control).current);
    return switchAutomatic(control, on);
}

StandardControls::Setting StandardControls::take(Control control, std::int64_t value)
{
    m_ranges[control].current = value;
    return {control, value};
}

StandardControls::Settings StandardControls::stepBrightness(int direction)
{
    const ControlRange all = range(Control::Brightness);
    const int level = std::clamp(brightnessLevel() + direction, 1, BRIGHTNESS_LEVELS);
    std::int64_t value = all.nearest(all.minimum + (all.maximum - all.minimum) * (level - 1) /
                                                       (BRIGHTNESS_LEVELS - 1));
    // A camera with fewer steps would stay where it is.
    if (value == all.current || (value > all.current) != (direction > 0))
        value = all.nearest(all.current + direction * all.step);
    if (value == all.current)
        return {};
    return {take(Control::Brightness, value)};
}

StandardControls::Settings StandardControls::focusOnce()
{
    // A camera that follows by itself begins anew when that is switched off and on.
    Settings settings;
    if (automatic(Control::Focus))
        settings.push_back(take(Control::FocusAuto, 0));
    settings.push_back(take(Control::FocusAuto, 1));
    return settings;
}

StandardControls::Settings StandardControls::switchAutomatic(Control control, bool on)
{
    if (!hasAutomatic(control) || automatic(control) == on)
        return {};
    const Control which = *automaticOf(control);
    const std::int64_t modes = range(Control::ExposureAuto).maximum;
    const std::int64_t value = which == Control::ExposureAuto ? modeFor(modes, on) : (on ? 1 : 0);
    if (which == Control::ExposureAuto && value == 0)
        return {};
    return {take(which, value)};
}

int StandardControls::brightnessLevel() const
{
    const ControlRange all = range(Control::Brightness);
    const std::int64_t width = all.maximum - all.minimum;
    return 1 +
           static_cast<int>(((all.current - all.minimum) * (BRIGHTNESS_LEVELS - 1) * 2 + width) /
                            (2 * width));
}

unsigned long StandardControls::zoomPercent() const
{
    const ControlRange all = range(Control::Zoom);
    return static_cast<unsigned long>((all.current - all.minimum) * PERCENT /
                                      (all.maximum - all.minimum));
}
