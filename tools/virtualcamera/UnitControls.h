#pragma once

#include "sources/camera/StandardControl.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <vector>

struct SetupPacket;

/// A control that the emulated camera's terminal or processing unit has.
struct UnitControl {
    StandardControl control = StandardControl::Brightness;
    std::int64_t minimum = 0;
    std::int64_t maximum = 255;
    /// The answer to GET_RES; of exposure modes the bits that there are.
    std::int64_t resolution = 1;
    std::int64_t initial = 128;
};

/// A value that was written, and whether the camera took it.
struct UnitWrite {
    StandardControl control;
    std::int64_t value;
    bool taken;
};

/// The controls of the camera terminal and of the processing unit. A value that it does not have is
/// refused, and so is one of a control that the camera sets by itself at that moment. Safe on any
/// thread.
class UnitControls
{
public:
    explicit UnitControls(std::vector<UnitControl> controls);

    /// The bits of the unit's controls, as its descriptor tells them.
    [[nodiscard]] std::uint32_t map(StandardUnit unit) const;
    /// The bytes of the answer in `data`, or a negative errno.
    [[nodiscard]] int control(StandardUnit unit, const SetupPacket &setup, std::uint8_t *data);

    /// Where a control stands; 0 for one that there is not.
    [[nodiscard]] std::int64_t value(StandardControl control) const;
    /// The camera has set it by itself.
    void setValue(StandardControl control, std::int64_t value);
    /// How often any of them was asked for.
    [[nodiscard]] int questions() const;
    /// What was written since the last call, oldest first.
    [[nodiscard]] std::vector<UnitWrite> takeWrites();

    /// Back to the state after power-on.
    void powerOn();

private:
    [[nodiscard]] bool takes(const UnitControl &control, std::int64_t value) const;
    [[nodiscard]] int set(const UnitControl &control, const SetupPacket &setup,
                          const std::uint8_t *data);

    const std::vector<UnitControl> m_controls;
    mutable std::mutex m_mutex; ///< guards all below
    std::map<StandardControl, std::int64_t> m_values;
    std::vector<UnitWrite> m_writes;
    int m_questions = 0;
};
