#pragma once

#include <string>
#include <vector>

/// What the command line asks for, decided before there is a display, a home or a camera.
struct CommandLine {
    enum class Action { Run, Print, Refuse };

    Action action = Action::Run;
    /// What to print, with its line end: on the standard output, or on the standard error for a
    /// command line that is refused.
    std::string text;
    /// The X11 display that an option of the platform names, empty without one.
    std::string display;

    /// The arguments without the program's own name. Options of the platform pass, as the
    /// application object takes them.
    [[nodiscard]] static CommandLine parse(const std::vector<std::string> &arguments);

    /// The text of --help.
    [[nodiscard]] static std::string help();
};
