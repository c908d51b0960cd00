#pragma once

#include "mainwindow/Commands.h"

class CanvasDeck;
class CommandButtons;
class Popups;

/// Applies what the buttons of drawing, mask and effect do to the current canvas, and opens the
/// pop-up windows of held buttons. GUI thread.
class ToolActions
{
public:
    ToolActions(CanvasDeck *deck, Popups *popups, const CommandButtons *buttons);

    /// Takes the command's tool, if it has one. Its own pop-up stays open, any other closes.
    void select(Command command);
    /// Chooses the tool and opens the pop-up. Releasing a held button clicks it only if the pointer
    /// is still on it, so the button of a tool is checked here.
    void showOptions(Command command);
    void eraseAll();
    /// Applies the remembered mask or removes the mask, as the mask button is checked.
    void toggleMask();
    // These step through the tables of their pop-ups.
    void nextMask();
    void nextEffect();
    /// Sets one of the pop-up's line colours, by its index.
    void setPenColor(int index);
    /// Moves that many steps in the pop-up's row of widths, as far as it goes.
    void changePenWidth(int places);

    /// Makes the buttons show the settings of the current canvas.
    void showCanvasState();

private:
    /// Makes an open pop-up show a change that was made outside it.
    void refreshPopup();
    void checkTool();

    CanvasDeck *m_deck;
    Popups *m_popups;
    const CommandButtons *m_buttons;
    /// The mask that the mask button brings back; one for all canvases, never none.
    CanvasModes::MaskMode m_rememberedMask = CanvasModes::MaskCircle;
};
