#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

/// The controls of the video class that this program uses; any camera may have them.
enum class StandardControl {
    Brightness,
    Sharpness,
    WhiteBalance, ///< colour temperature in kelvins
    WhiteBalanceAuto,
    PowerLine, ///< against flicker: 0 off, 1 for 50 Hz, 2 for 60 Hz, 3 automatic
    Exposure,  ///< in units of 100 microseconds
    ExposureAuto,
    Focus,
    FocusAuto,
    Zoom,
};

/// The parts of a camera that have them.
enum class StandardUnit { CameraTerminal, ProcessingUnit };

/// A control as the class defines it, a row for each.
struct StandardControlRow {
    enum class Kind {
        Number,
        Choice, ///< a few numbers from 0 on
        Switch, ///< 0 or 1
        Modes,  ///< one bit of several; its resolution tells which there are
    };

    StandardControl control;
    StandardUnit unit;
    std::uint8_t selector;
    /// Its bit in the unit's map of controls.
    std::uint8_t bit;
    /// Of its value, least significant byte first.
    std::uint8_t bytes;
    bool isSigned;
    Kind kind;

    [[nodiscard]] static inline const StandardControlRow &of(StandardControl control);

    [[nodiscard]] inline std::vector<std::uint8_t> encode(std::int64_t value) const;
    [[nodiscard]] inline std::int64_t decode(const std::vector<std::uint8_t> &data) const;
};

using StandardKind = StandardControlRow::Kind;

inline constexpr std::array<StandardControlRow, 10> STANDARD_CONTROLS{{
    {StandardControl::Brightness, StandardUnit::ProcessingUnit, 0x02, 0, 2, true,
     StandardKind::Number},
    {StandardControl::Sharpness, StandardUnit::ProcessingUnit, 0x08, 4, 2, false,
     StandardKind::Number},
    {StandardControl::WhiteBalance, StandardUnit::ProcessingUnit, 0x0A, 6, 2, false,
     StandardKind::Number},
    {StandardControl::WhiteBalanceAuto, StandardUnit::ProcessingUnit, 0x0B, 12, 1, false,
     StandardKind::Switch},
    {StandardControl::PowerLine, StandardUnit::ProcessingUnit, 0x05, 10, 1, false,
     StandardKind::Choice},
    {StandardControl::Exposure, StandardUnit::CameraTerminal, 0x04, 3, 4, false,
     StandardKind::Number},
    {StandardControl::ExposureAuto, StandardUnit::CameraTerminal, 0x02, 1, 1, false,
     StandardKind::Modes},
    {StandardControl::Focus, StandardUnit::CameraTerminal, 0x06, 5, 2, false, StandardKind::Number},
    {StandardControl::FocusAuto, StandardUnit::CameraTerminal, 0x08, 17, 1, false,
     StandardKind::Switch},
    {StandardControl::Zoom, StandardUnit::CameraTerminal, 0x0B, 9, 2, false, StandardKind::Number},
}};

inline const StandardControlRow &StandardControlRow::of(StandardControl control)
{
    for (const StandardControlRow &row : STANDARD_CONTROLS) {
        if (row.control == control)
            return row;
    }
    return STANDARD_CONTROLS.front();
}

inline std::vector<std::uint8_t> StandardControlRow::encode(std::int64_t value) const
{
    std::vector<std::uint8_t> data(bytes);
    for (std::size_t i = 0; i < data.size(); ++i)
        data[i] = static_cast<std::uint8_t>(static_cast<std::uint64_t>(value) >> 8 * i);
    return data;
}

inline std::int64_t StandardControlRow::decode(const std::vector<std::uint8_t> &data) const
{
    std::uint64_t value = 0;
    const std::size_t length = std::min<std::size_t>(data.size(), bytes);
    for (std::size_t i = 0; i < length; ++i)
        value |= static_cast<std::uint64_t>(data[i]) << 8 * i;
    if (isSigned && length > 0 && (data[length - 1] & 0x80))
        value |= ~std::uint64_t{0} << 8 * length;
    return static_cast<std::int64_t>(value);
}

/// What a camera has answered about one control; nothing where it did not.
struct ControlAnswers {
    bool settable = true;
    std::optional<std::int64_t> minimum;
    std::optional<std::int64_t> maximum;
    std::optional<std::int64_t> resolution;
    std::optional<std::int64_t> initial;
    std::optional<std::int64_t> current;
};

/// The values that a control can have.
struct ControlRange {
    std::int64_t minimum = 0;
    std::int64_t maximum = 0;
    std::int64_t step = 1; ///< at least 1
    std::int64_t current = 0;

    /// Nothing for a control that cannot be changed or makes no sense.
    [[nodiscard]] static std::optional<ControlRange> of(const StandardControlRow &row,
                                                        const ControlAnswers &answers);
    /// The nearest value that there is.
    [[nodiscard]] std::int64_t nearest(std::int64_t value) const;
};

/// The units of a camera and the maps of their controls, as its descriptors list them.
struct StandardUnits {
    std::uint8_t cameraTerminal = 0;
    std::uint64_t cameraControls = 0;
    std::uint8_t processingUnit = 0;
    std::uint64_t processingControls = 0;

    [[nodiscard]] std::uint8_t numberOf(StandardUnit unit) const
    {
        return unit == StandardUnit::CameraTerminal ? cameraTerminal : processingUnit;
    }
    [[nodiscard]] bool has(const StandardControlRow &row) const
    {
        const std::uint64_t map =
            row.unit == StandardUnit::CameraTerminal ? cameraControls : processingControls;
        return numberOf(row.unit) != 0 && (map >> row.bit & 1) != 0;
    }
};
