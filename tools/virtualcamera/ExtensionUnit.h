#pragma once

#include "tools/virtualcamera/CameraModel.h"
#include "tools/virtualcamera/CameraStatistics.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <vector>

/// The two 8-byte registers of the extension unit, parameter id and parameter value, over the
/// camera they steer. Safe on any thread.
class ExtensionUnit
{
public:
    /// Nothing when the unit has no such selector.
    [[nodiscard]] bool set(int selector, std::uint64_t value);
    [[nodiscard]] std::optional<std::uint64_t> get(int selector);

    [[nodiscard]] std::uint64_t parameter(std::uint64_t id) const;
    void overrideParameter(std::uint64_t id, std::uint64_t value);
    void clearOverrides();
    [[nodiscard]] CameraView view() const;

    /// Everything set and read since the last call, oldest first; the last 100000 at most.
    [[nodiscard]] std::vector<ExtensionTransfer> takeTransfers();

    /// Back to the state after power-on; overrides stay.
    void powerOn();

private:
    void log(const ExtensionTransfer &transfer);

    mutable std::mutex m_mutex; ///< guards all below
    mutable CameraModel m_model;
    std::uint64_t m_id = 0;
    std::vector<ExtensionTransfer> m_transfers;
};
