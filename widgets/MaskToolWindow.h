#pragma once

#include "canvas/osd/EffectNames.h"
#include "settings/CanvasModes.h"
#include "widgets/ToolWindow.h"

#include <array>

class ChoiceRow;
class MainWindow;

/// The pop-up that chooses the mask of the current canvas. The tool button is checked while a mask
/// is on.
class MaskToolWindow : public ToolWindow
{
    Q_OBJECT

public:
    static constexpr const auto &maskIconNames = EffectNames::maskIconNames;
    static constexpr std::array<CanvasModes::MaskMode, 5> maskModes{
        CanvasModes::MaskNone, CanvasModes::MaskCircle, CanvasModes::MaskRectangle,
        CanvasModes::MaskLeft, CanvasModes::MaskTop};

    MaskToolWindow(ImageButton *toolButton, MainWindow *mainWindow);

    /// Sets the mask, 0 to 4, changes the tool button's image and shows the indication; does
    /// nothing for an index outside the table. No mask leaves the tool button's last skin.
    void setCurrentMask(int index);
    /// Steps through none, circle, rectangle, left, top, and round to none again.
    void previousMask();
    void nextMask();
    /// The mask chosen in this window; none until one is.
    [[nodiscard]] CanvasModes::MaskMode selectedMaskMode() const;

public slots:
    void maskChanged();
    /// Shows the settings of the current canvas.
    void modeChanged();

private:
    [[nodiscard]] int currentNumber() const;
    void choose(int index);

    ChoiceRow *m_row;
    MainWindow *m_mainWindow;
    CanvasModes::MaskMode m_selectedMask = CanvasModes::MaskNone;
};
