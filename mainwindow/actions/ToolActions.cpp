#include "mainwindow/actions/ToolActions.h"

#include "canvas/ImageCanvas.h"
#include "mainwindow/MainWindow.h"
#include "mainwindow/Popups.h"
#include "widgets/ColorToolWindow.h"
#include "widgets/EffectToolWindow.h"
#include "widgets/FillBackgroundToolWindow.h"
#include "widgets/ImageButton.h"
#include "widgets/MaskToolWindow.h"
#include "widgets/TextToolWindow.h"

ToolActions::ToolActions(MainWindow *window, Popups *popups)
    : m_window(window)
    , m_popups(popups)
{
}

void ToolActions::storeCaptions()
{
    m_widthText = MainWindow::tr("Width");
    m_lineWidthText = MainWindow::tr("Line Width");
    m_lineColorText = MainWindow::tr("Line Color");
    m_fillColorText = MainWindow::tr("Fill Color");
}

void ToolActions::select(PanelButton button, MouseMode mode)
{
    m_window->currentCanvas()->setMouseMode(mode);
    closeUnlessOwnedBy(button);
}

void ToolActions::selectPlain(MouseMode mode)
{
    m_popups->closeAny();
    m_window->currentCanvas()->setMouseMode(mode);
}

void ToolActions::closeUnlessOwnedBy(PanelButton button)
{
    m_popups->closeUnlessOwnedBy(m_window->panelButton(button));
}

void ToolActions::eraseAll()
{
    m_popups->closeAny();
    m_window->currentCanvas()->clearPainting();
}

void ToolActions::selectHeld(PanelButton button, MouseMode mode)
{
    m_window->currentCanvas()->setMouseMode(mode);
    m_window->panelButton(button)->setChecked(true);
}

void ToolActions::openColorTool(PanelButton button)
{
    for (const ButtonTable::ColorToolRow &row : ButtonTable::colorToolRows()) {
        if (row.button != button)
            continue;
        selectHeld(row.button, row.mouseMode);
        m_popups->open([this, &row] {
            return new ColorToolWindow(m_window->panelButton(row.button), m_window,
                                       QObject::tr(row.title),
                                       row.colorRow ? m_lineWidthText : m_widthText,
                                       row.colorRow ? m_lineColorText : QString(),
                                       row.fillRow ? m_fillColorText : QString());
        });
    }
}

void ToolActions::openText()
{
    selectHeld(PanelButton::Text, CanvasModes::Text);
    m_popups->open(
        [this] { return new TextToolWindow(m_window->panelButton(PanelButton::Text), m_window); });
}

void ToolActions::openFillBackground()
{
    m_popups->open([this] {
        return new FillBackgroundToolWindow(m_window->panelButton(PanelButton::FillBackground),
                                            m_window, MainWindow::tr("Background Color"),
                                            m_fillColorText);
    });
}

void ToolActions::openMask()
{
    m_popups->open(
        [this] { return new MaskToolWindow(m_window->panelButton(PanelButton::Mask), m_window); });
}

void ToolActions::openEffect()
{
    m_popups->open([this] {
        return new EffectToolWindow(m_window->panelButton(PanelButton::Effect), m_window);
    });
}

void ToolActions::toggleMask()
{
    closeUnlessOwnedBy(PanelButton::Mask);
    ImageCanvas *canvas = m_window->currentCanvas();
    if (m_window->panelButton(PanelButton::Mask)->isChecked()) {
        canvas->maskMode = m_rememberedMask;
    } else {
        if (canvas->maskMode != CanvasModes::MaskNone)
            m_rememberedMask = canvas->maskMode;
        canvas->maskMode = CanvasModes::MaskNone;
    }
    // A hold opens the pop-up before its release, which is a click, changes the mask.
    if (auto *popup = qobject_cast<MaskToolWindow *>(m_popups->current()))
        popup->modeChanged();
}
