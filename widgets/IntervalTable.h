#pragma once

#include <QString>

#include <array>

/// The intervals that a continuous series of snapshots can have. Pure functions but for the label,
/// which goes through the installed translation.
namespace IntervalTable
{

struct Interval {
    unsigned long long seconds;
    int number;
    /// Source text in the context of the settings window.
    const char *unit;
};

[[nodiscard]] const std::array<Interval, 17> &intervals();

/// The entry of that many seconds, the first one for any other number.
[[nodiscard]] int indexOf(unsigned long long seconds);

/// Number and unit word, such as "10 min", in the interface language.
[[nodiscard]] QString label(const Interval &interval);

} // namespace IntervalTable
