#pragma once

#include "mainwindow/Commands.h"

#include <map>

class ImageButton;

/// The buttons of the window by their commands. Whoever makes a button adds it; the widgets are
/// owned elsewhere and live as long as the window.
class CommandButtons
{
public:
    void add(Command command, ImageButton *button) { m_buttons[command] = button; }

    /// Null for a command without a button.
    [[nodiscard]] ImageButton *of(Command command) const
    {
        const auto found = m_buttons.find(command);
        return found == m_buttons.end() ? nullptr : found->second;
    }

private:
    std::map<Command, ImageButton *> m_buttons;
};
