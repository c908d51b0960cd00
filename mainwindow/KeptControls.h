#pragma once

#include "sources/camera/StandardControl.h"

#include <QString>

#include <map>
#include <optional>

/// How a user has set the controls of one camera, as a text that can be kept. Any text is read:
/// what makes no sense in it is left out.
class KeptControls
{
public:
    [[nodiscard]] static KeptControls fromText(const QString &text);
    [[nodiscard]] QString text() const;

    /// Nothing for a control that the camera sets by itself.
    using Value = std::optional<std::int64_t>;
    [[nodiscard]] const std::map<StandardControl, Value> &values() const { return m_values; }
    void keep(StandardControl control, Value value) { m_values[control] = value; }

private:
    std::map<StandardControl, Value> m_values;
};
