#pragma once

#include "canvas/osd/EffectNames.h"
#include "settings/CanvasModes.h"
#include "widgets/ToolWindow.h"

#include <array>

class ChoiceRow;
class MainWindow;

/// The pop-up that chooses the colour effect of the current canvas.
class EffectToolWindow : public ToolWindow
{
    Q_OBJECT

public:
    static constexpr const auto &effectIconNames = EffectNames::effectIconNames;
    static constexpr const auto &effectNames = EffectNames::effectNames;
    static constexpr std::array<CanvasModes::EffectMode, 4> effectModes{
        CanvasModes::EffectColor, CanvasModes::EffectBW, CanvasModes::EffectNegative,
        CanvasModes::EffectMosaic};

    EffectToolWindow(ImageButton *toolButton, MainWindow *mainWindow);

    /// Sets the effect, changes the tool button's image and shows the indication; does nothing for
    /// an index outside the table.
    void setCurrentEffect(int index);
    /// Steps through the table, from its end to its beginning too.
    void previousEffect();
    void nextEffect();

public slots:
    void effectChanged();
    /// Shows the settings of the current canvas.
    void modeChanged();

private:
    void choose(int index);

    MainWindow *m_mainWindow;
    ChoiceRow *m_row;
};
