#include "tools/virtualcamera/ExtensionUnit.h"

#include "sources/camera/CameraParameters.h"

#include <chrono>
#include <utility>

namespace
{

constexpr std::size_t LOG_LIMIT = 100000;

std::int64_t nowMs()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

} // namespace

bool ExtensionUnit::set(int selector, std::uint64_t value)
{
    const std::lock_guard lock(m_mutex);
    if (selector == CameraParameter::ID_SELECTOR)
        m_id = value;
    else if (selector == CameraParameter::VALUE_SELECTOR)
        m_model.write(m_id, value, nowMs());
    else
        return false;
    log({true, selector, value});
    return true;
}

std::optional<std::uint64_t> ExtensionUnit::get(int selector)
{
    const std::lock_guard lock(m_mutex);
    std::uint64_t value = 0;
    if (selector == CameraParameter::ID_SELECTOR)
        value = m_id;
    else if (selector == CameraParameter::VALUE_SELECTOR)
        value = m_model.read(m_id, nowMs());
    else
        return std::nullopt;
    log({false, selector, value});
    return value;
}

std::uint64_t ExtensionUnit::parameter(std::uint64_t id) const
{
    const std::lock_guard lock(m_mutex);
    return m_model.read(id, nowMs());
}

void ExtensionUnit::overrideParameter(std::uint64_t id, std::uint64_t value)
{
    const std::lock_guard lock(m_mutex);
    m_model.override(id, value);
}

void ExtensionUnit::clearOverrides()
{
    const std::lock_guard lock(m_mutex);
    m_model.clearOverrides();
}

CameraView ExtensionUnit::view() const
{
    const std::lock_guard lock(m_mutex);
    return m_model.view(nowMs());
}

std::vector<ExtensionTransfer> ExtensionUnit::takeTransfers()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_transfers, {});
}

void ExtensionUnit::powerOn()
{
    const std::lock_guard lock(m_mutex);
    m_model.powerOn();
    m_id = 0;
}

void ExtensionUnit::log(const ExtensionTransfer &transfer)
{
    if (m_transfers.size() >= LOG_LIMIT)
        m_transfers.erase(m_transfers.begin(), m_transfers.begin() + LOG_LIMIT / 2);
    m_transfers.push_back(transfer);
}
