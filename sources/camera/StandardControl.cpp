#include "sources/camera/StandardControl.h"

#include <algorithm>

namespace
{

/// Off, 50 Hz and 60 Hz: what the first edition of the class has.
constexpr std::int64_t LAST_CHOICE = 2;

} // namespace

std::optional<ControlRange> ControlRange::of(const StandardControlRow &row,
                                             const ControlAnswers &answers)
{
    ControlRange range;
    if (!answers.settable || (row.kind != StandardKind::Number && !answers.current))
        return std::nullopt;
    switch (row.kind) {
    case StandardKind::Number:
        if (!answers.minimum || !answers.maximum)
            return std::nullopt;
        range.minimum = *answers.minimum;
        range.maximum = *answers.maximum;
        range.step = answers.resolution.value_or(1);
        break;
    case StandardKind::Choice:
        range.maximum = answers.maximum.value_or(LAST_CHOICE);
        break;
    case StandardKind::Switch:
        range.maximum = 1;
        break;
    case StandardKind::Modes:
        // Its values are bits, of which `maximum` holds all that there are.
        range.maximum = answers.resolution.value_or(answers.initial.value_or(0) | *answers.current);
        break;
    }
    if (range.maximum <= range.minimum)
        return std::nullopt;
    range.step = std::clamp<std::int64_t>(range.step, 1, range.maximum - range.minimum);
    range.current =
        range.nearest(answers.current.value_or(answers.initial.value_or(range.minimum)));
    return range;
}

std::int64_t ControlRange::nearest(std::int64_t value) const
{
    const std::int64_t inside = std::clamp(value, minimum, maximum);
    const std::int64_t steps = (inside - minimum + step / 2) / step;
    return minimum + std::min(steps, (maximum - minimum) / step) * step;
}
