#pragma once

#include "mainwindow/Commands.h"

class CanvasDeck;
class CommandButtons;
class Popups;

/// What the buttons of drawing, mask and effect do to the current canvas, and the pop-up windows
/// that a held one opens. GUI thread.
class ToolActions
{
public:
    ToolActions(CanvasDeck *deck, Popups *popups, const CommandButtons *buttons);

    /// Takes the command's tool, if it has one. Its own pop-up stays open, any other closes.
    void select(Command command);
    /// Takes the tool and opens the pop-up. The release clicks a held button only if the pointer is
    /// still on it, so the button of a tool is checked here.
    void showOptions(Command command);
    void eraseAll();
    /// Brings the remembered mask back or takes the mask away, as the mask button is checked.
    void toggleMask();
    // Round the tables of their pop-ups.
    void nextMask();
    void nextEffect();
    /// One of the pop-up's colours of lines, by its place.
    void setPenColor(int index);
    /// So many places further in the pop-up's row of widths, as far as that goes.
    void changePenWidth(int places);

    /// Brings the buttons in line with what the current canvas is set to.
    void showCanvasState();

private:
    /// Shows in an open pop-up what has changed without it.
    void refreshPopup();
    void checkTool();

    CanvasDeck *m_deck;
    Popups *m_popups;
    const CommandButtons *m_buttons;
    /// The mask that the mask button brings back; one for all canvases, never none.
    CanvasModes::MaskMode m_rememberedMask = CanvasModes::MaskCircle;
};
