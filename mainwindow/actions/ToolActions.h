#pragma once

#include "mainwindow/ButtonTable.h"

#include <QString>

class MainWindow;
class Popups;

/// What the buttons of drawing, mask and effect do to the current canvas, and the pop-up windows
/// that a held one opens. GUI thread; part of the main window.
class ToolActions
{
public:
    using PanelButton = ButtonTable::PanelButton;
    using MouseMode = CanvasModes::MouseMode;

    ToolActions(MainWindow *window, Popups *popups);

    /// Translates the captions of the pop-ups; once a translation is installed.
    void storeCaptions();

    /// A tool whose own pop-up stays open.
    void select(PanelButton button, MouseMode mode);
    /// A tool without a pop-up.
    void selectPlain(MouseMode mode);
    /// The button whose pop-up does the work.
    void closeUnlessOwnedBy(PanelButton button);
    void eraseAll();

    /// The pop-up of a tool with widths and colours.
    void openColorTool(PanelButton button);
    void openText();
    void openFillBackground();
    void openMask();
    void openEffect();

    /// Brings the remembered mask back or takes the mask away, as the mask button is checked.
    void toggleMask();

private:
    /// The tool of a held button. The release clicks the button only if the pointer is still on it,
    /// so the button is checked here.
    void selectHeld(PanelButton button, MouseMode mode);

    MainWindow *m_window;
    Popups *m_popups;
    QString m_widthText;
    QString m_lineWidthText;
    QString m_lineColorText;
    QString m_fillColorText;
    /// The mask that the mask button brings back; one for all canvases, never none.
    CanvasModes::MaskMode m_rememberedMask = CanvasModes::MaskCircle;
};
