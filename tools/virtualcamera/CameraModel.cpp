#include "tools/virtualcamera/CameraModel.h"

#include "sources/camera/CameraParameters.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{

constexpr double SECOND_ZOOM_THOUSANDTHS = 1000.0;
/// The end of the autofocus run at which the lens is farthest off, as a part of the whole.
constexpr double FOCUS_TURN = 0.35;

/// Whether a key went down, and notes its new state.
bool goesDown(bool &key, std::uint64_t value)
{
    const bool wasUp = !key;
    key = value != 0;
    return key && wasUp;
}

} // namespace

void CameraModel::write(std::uint64_t id, std::uint64_t value, std::int64_t nowMs)
{
    namespace P = CameraParameter;
    advance(nowMs);
    switch (id) {
    case P::ZOOM_IN_KEY:
        m_zoomInKey = value != 0;
        break;
    case P::ZOOM_OUT_KEY:
        m_zoomOutKey = value != 0;
        break;
    case P::AUTOFOCUS_KEY:
        if (goesDown(m_focusKey, value)) {
            m_focusStartMs = nowMs;
            m_focused = true;
        }
        break;
    case P::BRIGHTNESS_UP_KEY:
        if (goesDown(m_brightnessUpKey, value))
            stepBrightness(1);
        break;
    case P::BRIGHTNESS_DOWN_KEY:
        if (goesDown(m_brightnessDownKey, value))
            stepBrightness(-1);
        break;
    case P::OPTICAL_ZOOM_POSITION:
        m_opticalPercent = std::min(static_cast<double>(value), 100.0);
        break;
    case P::DIGITAL_ZOOM:
        m_digitalThousandths = std::clamp(static_cast<double>(value), 1000.0, DIGITAL_MAX);
        break;
    default:
        break;
    }
}

std::uint64_t CameraModel::read(std::uint64_t id, std::int64_t nowMs)
{
    namespace P = CameraParameter;
    advance(nowMs);
    if (const auto found = m_overrides.find(id); found != m_overrides.end())
        return found->second;
    switch (id) {
    case P::ZOOM_IN_KEY:
        return m_zoomInKey;
    case P::ZOOM_OUT_KEY:
        return m_zoomOutKey;
    case P::AUTOFOCUS_KEY:
        return m_focusKey;
    case P::BRIGHTNESS_UP_KEY:
        return m_brightnessUpKey;
    case P::BRIGHTNESS_DOWN_KEY:
        return m_brightnessDownKey;
    case P::OPTICAL_ZOOM_POSITION:
    case P::OPTICAL_ZOOM_PERCENT:
        return static_cast<std::uint64_t>(std::lround(m_opticalPercent));
    case P::DIGITAL_ZOOM:
        return static_cast<std::uint64_t>(std::lround(m_digitalThousandths));
    case P::SECOND_ZOOM:
        return static_cast<std::uint64_t>(SECOND_ZOOM_THOUSANDTHS);
    case P::BRIGHTNESS:
        return static_cast<std::uint64_t>(m_brightness);
    case P::BRIGHTNESS_MIN:
        return BRIGHTNESS_MIN;
    case P::BRIGHTNESS_MAX:
        return BRIGHTNESS_MAX;
    default:
        return 0;
    }
}

CameraView CameraModel::view(std::int64_t nowMs)
{
    advance(nowMs);
    CameraView view;
    view.zoom =
        (1.0 + (OPTICAL_FACTOR - 1.0) * m_opticalPercent / 100.0) * m_digitalThousandths / 1000.0;
    view.blur = blur(nowMs);
    view.brightness = 1.0 + (m_brightness - BRIGHTNESS_START) * 0.1;
    return view;
}

void CameraModel::powerOn()
{
    auto overrides = std::move(m_overrides);
    *this = CameraModel();
    m_overrides = std::move(overrides);
}

void CameraModel::advance(std::int64_t nowMs)
{
    const std::int64_t elapsedMs = nowMs - m_advancedMs;
    m_advancedMs = nowMs;
    if (elapsedMs > 0 && m_zoomInKey != m_zoomOutKey)
        drive(static_cast<double>(m_zoomInKey ? elapsedMs : -elapsedMs));
}

/// Inwards the lens goes first and the digital factor follows; outwards the other way round.
/// `elapsedMs` is negative outwards.
void CameraModel::drive(double elapsedMs)
{
    constexpr double PERCENT_PER_MS = 100.0 / OPTICAL_TRAVEL_MS;
    constexpr double THOUSANDTHS_PER_MS = (DIGITAL_MAX - 1000.0) / DIGITAL_TRAVEL_MS;
    if (elapsedMs > 0) {
        const double opticalMs = std::min(elapsedMs, (100.0 - m_opticalPercent) / PERCENT_PER_MS);
        m_opticalPercent = std::min(m_opticalPercent + opticalMs * PERCENT_PER_MS, 100.0);
        m_digitalThousandths = std::min(
            m_digitalThousandths + (elapsedMs - opticalMs) * THOUSANDTHS_PER_MS, DIGITAL_MAX);
    } else {
        const double digitalMs =
            std::min(-elapsedMs, (m_digitalThousandths - 1000.0) / THOUSANDTHS_PER_MS);
        m_digitalThousandths =
            std::max(m_digitalThousandths - digitalMs * THOUSANDTHS_PER_MS, 1000.0);
        m_opticalPercent =
            std::max(m_opticalPercent - (-elapsedMs - digitalMs) * PERCENT_PER_MS, 0.0);
    }
}

void CameraModel::stepBrightness(int step)
{
    m_brightness = std::clamp(m_brightness + step, BRIGHTNESS_MIN, BRIGHTNESS_MAX);
}

/// In steps, so that the picture need not be drawn again for every frame of the run.
double CameraModel::blur(std::int64_t nowMs) const
{
    if (!m_focused)
        return 0.0;
    const double part = static_cast<double>(nowMs - m_focusStartMs) / FOCUS_MS;
    if (part >= 1.0 || part < 0.0)
        return 0.0;
    const double amount = part < FOCUS_TURN ? part / FOCUS_TURN : (1.0 - part) / (1.0 - FOCUS_TURN);
    return std::ceil(amount * 8.0) / 8.0;
}
