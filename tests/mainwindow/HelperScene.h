#pragma once

#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"
#include "mainwindow/CanvasDeck.h"
#include "mainwindow/CommandButtons.h"
#include "mainwindow/Popups.h"
#include "widgets/ImageButton.h"
#include "widgets/ToolWindow.h"

#include <QButtonGroup>
#include <QWidget>

/// What the main window's helpers are handed, without the window: canvases, pop-ups and the buttons
/// of the side panel. The pop-ups find no services, and so no canvas.
struct HelperScene {
    HelperScene()
        : deck(&parent)
        , popups(nullptr, QImage())
    {
        for (int mode = 0; mode < Modes::COUNT; ++mode) {
            auto *canvas = new ImageCanvas(&parent);
            deck.add(canvas, new OSDProcessor(nullptr, canvas));
        }
        for (const Commands::Row &row : Commands::rows()) {
            if (!Commands::inPanel(row.group))
                continue;
            auto *button = new ImageButton(row.skin, &parent, 0, 0);
            button->setCheckable((row.look & (Commands::Checkable | Commands::InToolGroup)) != 0);
            if (row.look & Commands::InToolGroup)
                tools.addButton(button);
            buttons.add(row.command, button);
        }
    }

    /// Opens the pop-up of a command.
    ToolWindow *open(Command command)
    {
        popups.open(Commands::row(command), buttons.of(command));
        return popups.current();
    }

    QWidget parent;
    QButtonGroup tools;
    CanvasDeck deck;
    Popups popups;
    CommandButtons buttons;
};
