#include "app/CommandLine.h"

#include "version.h"

#include <algorithm>
#include <iterator>

namespace
{

struct PlatformOption {
    const char *name;
    bool hasValue;
    /// Whether the value may follow an equals sign.
    bool joins;
};

/// The options that the application object and its X11 platform take from the arguments themselves,
/// with one dash or two.
constexpr PlatformOption PLATFORM_OPTIONS[] = {
    {"platform", true, false},
    {"platformpluginpath", true, false},
    {"platformtheme", true, false},
    {"plugin", true, false},
    {"qwindowgeometry", true, false},
    {"geometry", true, false},
    {"qwindowicon", true, false},
    {"icon", true, false},
    {"qwindowtitle", true, false},
    {"title", true, false},
    {"session", true, true},
    {"style", true, true},
    {"stylesheet", true, true},
    {"display", true, false},
    {"name", true, false},
    {"reverse", false, false},
    {"nograb", false, false},
    {"dograb", false, false},
    {"widgetcount", false, false},
};

const PlatformOption *findPlatformOption(const std::string &name)
{
    const auto *found =
        std::find_if(std::begin(PLATFORM_OPTIONS), std::end(PLATFORM_OPTIONS),
                     [&name](const PlatformOption &option) { return name == option.name; });
    return found == std::end(PLATFORM_OPTIONS) ? nullptr : found;
}

CommandLine refuse(const std::string &sentence)
{
    return {CommandLine::Action::Refuse, "document-camera: " + sentence + ", see --help\n", {}};
}

} // namespace

CommandLine CommandLine::parse(const std::vector<std::string> &arguments)
{
    CommandLine run;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string &argument = arguments[i];
        if (argument == "--version")
            return {Action::Print, "Document Camera " DOCUMENT_CAMERA_VERSION "\n", {}};
        if (argument == "--help")
            return {Action::Print, help(), {}};
        if (argument.empty() || argument[0] != '-')
            return refuse("unexpected argument '" + argument + "'");
        const std::size_t begin = argument.rfind("--", 0) == 0 ? 2 : 1;
        const std::size_t equals = argument.find('=');
        const PlatformOption *option = findPlatformOption(argument.substr(begin, equals - begin));
        if (!option || (equals != std::string::npos && !option->joins))
            return refuse("unknown option '" + argument + "'");
        if (option->hasValue && equals == std::string::npos && ++i == arguments.size())
            return refuse("option '" + argument + "' lacks its value");
        if (option->name == std::string("display"))
            run.display = arguments[i];
    }
    return run;
}

std::string CommandLine::help()
{
    return "Usage: document-camera [OPTION...]\n"
           "Shows, annotates and records the picture of a USB document camera.\n"
           "\n"
           "  --help             print this text and exit\n"
           "  --version          print the version and exit\n"
           "  -platform NAME     draw through this platform of the toolkit, xcb or wayland\n"
           "  -style NAME        draw dialogs in this style of the toolkit\n"
           "  -display NAME      use this X11 display\n"
           "\n"
           "Further options of the toolkit pass, too. The manual page document-camera(1) tells\n"
           "the keys, the files and what each line in the terminal means.\n";
}
