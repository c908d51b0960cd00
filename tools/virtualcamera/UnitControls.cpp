#include "tools/virtualcamera/UnitControls.h"

#include "tools/virtualcamera/UvcFunction.h"
#include "tools/virtualcamera/UvcRequests.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace
{

/// Those of the four exposure modes that set the time by themselves.
constexpr std::int64_t TIMED_BY_CAMERA = 2 | 8;

int replyBytes(const SetupPacket &setup, std::uint8_t *data,
               const std::vector<std::uint8_t> &answer)
{
    const std::size_t length = std::min<std::size_t>(setup.length, answer.size());
    std::copy_n(answer.begin(), length, data);
    return static_cast<int>(length);
}

} // namespace

UnitControls::UnitControls(std::vector<UnitControl> controls)
    : m_controls(std::move(controls))
{
    powerOn();
}

std::uint32_t UnitControls::map(StandardUnit unit) const
{
    std::uint32_t bits = 0;
    for (const UnitControl &each : m_controls) {
        const StandardControlRow &row = StandardControlRow::of(each.control);
        if (row.unit == unit)
            bits |= 1u << row.bit;
    }
    return bits;
}

int UnitControls::control(StandardUnit unit, const SetupPacket &setup, std::uint8_t *data)
{
    const std::lock_guard lock(m_mutex);
    const auto found =
        std::find_if(m_controls.begin(), m_controls.end(), [&](const UnitControl &each) {
            const StandardControlRow &row = StandardControlRow::of(each.control);
            return row.unit == unit && row.selector == setup.value >> 8;
        });
    if (found == m_controls.end())
        return -EPIPE;
    const StandardControlRow &row = StandardControlRow::of(found->control);
    const auto answer = [&](std::int64_t value) {
        return replyBytes(setup, data, row.encode(value));
    };
    m_questions += setup.request == SET_CUR ? 0 : 1;
    const bool ranged = row.kind == StandardKind::Number || row.kind == StandardKind::Choice;
    switch (setup.request) {
    case SET_CUR:
        return set(*found, setup, data);
    case GET_CUR:
        return answer(m_values[found->control]);
    case GET_MIN:
        return ranged ? answer(found->minimum) : -EPIPE;
    case GET_MAX:
        return ranged ? answer(found->maximum) : -EPIPE;
    case GET_RES:
        return row.kind == StandardKind::Switch ? -EPIPE : answer(found->resolution);
    case GET_DEF:
        return answer(found->initial);
    case GET_INFO:
        return replyBytes(setup, data, {GET_AND_SET});
    case GET_LEN:
        return replyBytes(setup, data, {row.bytes, 0});
    default:
        return -EPIPE;
    }
}

std::int64_t UnitControls::value(StandardControl control) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_values.find(control);
    return found == m_values.end() ? 0 : found->second;
}

void UnitControls::setValue(StandardControl control, std::int64_t value)
{
    const std::lock_guard lock(m_mutex);
    m_values[control] = value;
}

int UnitControls::questions() const
{
    const std::lock_guard lock(m_mutex);
    return m_questions;
}

std::vector<UnitWrite> UnitControls::takeWrites()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_writes, {});
}

void UnitControls::powerOn()
{
    const std::lock_guard lock(m_mutex);
    for (const UnitControl &each : m_controls)
        m_values[each.control] = each.initial;
}

bool UnitControls::takes(const UnitControl &control, std::int64_t value) const
{
    const auto at = [this](StandardControl which) {
        const auto found = m_values.find(which);
        return found == m_values.end() ? 0 : found->second;
    };
    switch (control.control) {
    case StandardControl::ExposureAuto:
        return value > 0 && (value & (value - 1)) == 0 && (value & control.resolution) == value;
    case StandardControl::Exposure:
        if (at(StandardControl::ExposureAuto) & TIMED_BY_CAMERA)
            return false;
        break;
    case StandardControl::Focus:
        if (at(StandardControl::FocusAuto))
            return false;
        break;
    case StandardControl::WhiteBalance:
        if (at(StandardControl::WhiteBalanceAuto))
            return false;
        break;
    default:
        break;
    }
    const std::int64_t step = std::max<std::int64_t>(control.resolution, 1);
    return value >= control.minimum && value <= control.maximum &&
           (value - control.minimum) % step == 0;
}

int UnitControls::set(const UnitControl &control, const SetupPacket &setup,
                      const std::uint8_t *data)
{
    constexpr std::size_t LOG_LIMIT = 100000;
    const StandardControlRow &row = StandardControlRow::of(control.control);
    if (setup.length != row.bytes)
        return -EPIPE;
    const std::int64_t value = row.decode({data, data + row.bytes});
    const bool taken = takes(control, value);
    if (m_writes.size() < LOG_LIMIT)
        m_writes.push_back({control.control, value, taken});
    if (!taken)
        return -EPIPE;
    m_values[control.control] = value;
    return setup.length;
}
