#include "mainwindow/Commands.h"

#include "mainwindow/CommandTable.h"

#include <QtGlobal>

#include <algorithm>
#include <array>
#include <utility>

namespace Commands
{

Row &&Row::clicks(const char *slot) &&
{
    clickSlot = slot;
    return std::move(*this);
}

Row &&Row::lasts(const char *start, const char *stop) &&
{
    startSlot = start;
    stopSlot = stop;
    return std::move(*this);
}

Row &&Row::holds(const char *slot, PopUp kind, const char *title) &&
{
    holdSlot = slot;
    popUp = kind;
    popUpTitle = title;
    return std::move(*this);
}

Row &&Row::opens(PopUp kind) &&
{
    popUp = kind;
    return std::move(*this);
}

Row &&Row::draws(CanvasModes::MouseMode mode) &&
{
    tool = mode;
    look |= InToolGroup;
    return std::move(*this);
}

Row &&Row::in(Modes::Set set) &&
{
    modes = set;
    return std::move(*this);
}

Row &&Row::looks(unsigned bits) &&
{
    look |= bits;
    return std::move(*this);
}

Row &&Row::on(std::vector<int> all) &&
{
    keys = std::move(all);
    return std::move(*this);
}

Row &&Row::repeats() &&
{
    repeating = true;
    return std::move(*this);
}

const std::vector<Row> &rows()
{
    static const std::vector<Row> all = [] {
        std::vector<Row> table;
        for (auto part : {notingRows, panelRows, modeRows, barRows, edgeRows, cardRows, keyRows}) {
            for (Row &each : part())
                table.push_back(std::move(each));
        }
        return table;
    }();
    return all;
}

const Row &row(Command command)
{
    const Row &found = rows()[static_cast<std::size_t>(command)];
    Q_ASSERT(found.command == command);
    return found;
}

std::vector<Row> rowsOf(Group group)
{
    std::vector<Row> found;
    std::copy_if(rows().begin(), rows().end(), std::back_inserter(found),
                 [group](const Row &each) { return each.group == group; });
    return found;
}

bool inPanel(Group group)
{
    return static_cast<int>(group) < PANEL_GROUP_COUNT;
}

const char *titleOf(Group group)
{
    static constexpr std::array<const char *, PANEL_GROUP_COUNT> titles{
        QT_TRANSLATE_NOOP("MainWindow", "Noting"),
        QT_TRANSLATE_NOOP("MainWindow", "Assisting"),
        QT_TRANSLATE_NOOP("MainWindow", "Adjustment"),
        QT_TRANSLATE_NOOP("MainWindow", "Recording"),
    };
    return inPanel(group) ? titles[static_cast<std::size_t>(group)] : "";
}

std::optional<Command> ofTool(int mouseMode)
{
    for (const Row &each : rows()) {
        if (each.tool && int(*each.tool) == mouseMode)
            return each.command;
    }
    return std::nullopt;
}

std::optional<Command> ofKey(int key, Qt::KeyboardModifiers modifiers, int mode)
{
    const int pressed = key | static_cast<int>(modifiers & ~Qt::KeypadModifier);
    for (const Row &each : rows()) {
        const bool has = std::find(each.keys.begin(), each.keys.end(), pressed) != each.keys.end();
        if (has && Modes::contains(each.modes, mode))
            return each.command;
    }
    return std::nullopt;
}

} // namespace Commands
