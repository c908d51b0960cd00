#include "mainwindow/actions/ToolActions.h"

#include "canvas/ImageCanvas.h"
#include "canvas/osd/EffectNames.h"
#include "mainwindow/CanvasDeck.h"
#include "mainwindow/CommandButtons.h"
#include "mainwindow/Popups.h"
#include "widgets/ColorToolWindow.h"
#include "widgets/DrawingColors.h"
#include "widgets/EffectToolWindow.h"
#include "widgets/ImageButton.h"
#include "widgets/MaskToolWindow.h"

#include <QButtonGroup>

#include <algorithm>

namespace
{

/// The skin of a button that shows which of several is chosen; `usual` for what the table does not
/// know and for what has no image of its own.
template <std::size_t N>
QString skinOf(const char *kind, const std::array<const char *, N> &names, int mode,
               const char *usual)
{
    const QString name = EffectNames::nameOf(names, mode);
    return QString::fromLatin1(kind) + (name.isEmpty() ? QString::fromLatin1(usual) : name);
}

} // namespace

ToolActions::ToolActions(CanvasDeck *deck, Popups *popups, const CommandButtons *buttons)
    : m_deck(deck)
    , m_popups(popups)
    , m_buttons(buttons)
{
}

void ToolActions::select(Command command)
{
    const Commands::Row &row = Commands::row(command);
    if (row.popUp == Commands::PopUp::None)
        m_popups->closeAny();
    if (row.tool)
        m_deck->current()->setMouseMode(*row.tool);
    m_popups->closeUnlessOwnedBy(m_buttons->of(command));
}

void ToolActions::showOptions(Command command)
{
    const Commands::Row &row = Commands::row(command);
    ImageButton *button = m_buttons->of(command);
    if (row.tool) {
        m_deck->current()->setMouseMode(*row.tool);
        button->setChecked(true);
    }
    m_popups->open(row, button);
}

void ToolActions::eraseAll()
{
    m_popups->closeAny();
    m_deck->current()->clearPainting();
}

void ToolActions::toggleMask()
{
    const ImageButton *button = m_buttons->of(Command::Mask);
    m_popups->closeUnlessOwnedBy(button);
    ImageCanvas *canvas = m_deck->current();
    if (button->isChecked()) {
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

void ToolActions::nextMask()
{
    m_popups->closeUnlessOwnedBy(m_buttons->of(Command::Mask));
    if (m_deck->current()->maskMode != CanvasModes::MaskNone)
        m_rememberedMask = m_deck->current()->maskMode;
    m_popups->with(Command::Mask, m_buttons->of(Command::Mask),
                   [](ToolWindow *popup) { static_cast<MaskToolWindow *>(popup)->nextMask(); });
}

void ToolActions::nextEffect()
{
    m_popups->closeUnlessOwnedBy(m_buttons->of(Command::Effect));
    m_popups->with(Command::Effect, m_buttons->of(Command::Effect),
                   [](ToolWindow *popup) { static_cast<EffectToolWindow *>(popup)->nextEffect(); });
}

void ToolActions::setPenColor(int index)
{
    m_deck->current()->penColor = DrawingColors::colorAt(DrawingColors::PEN, index);
    refreshPopup();
}

void ToolActions::changePenWidth(int places)
{
    ImageCanvas *canvas = m_deck->current();
    const int width = canvas->penWidth + places * ColorToolWindow::WIDTH_STEP;
    canvas->penWidth = std::clamp(width, ColorToolWindow::WIDTH_STEP,
                                  ColorToolWindow::WIDTHS * ColorToolWindow::WIDTH_STEP);
    refreshPopup();
}

void ToolActions::refreshPopup()
{
    if (auto *popup = qobject_cast<ColorToolWindow *>(m_popups->current()))
        popup->modeChanged();
}

void ToolActions::showCanvasState()
{
    const ImageCanvas *canvas = m_deck->current();
    checkTool();
    ImageButton *mask = m_buttons->of(Command::Mask);
    mask->setChecked(canvas->maskMode != CanvasModes::MaskNone);
    mask->setImage(skinOf("ICON_MASK_", EffectNames::maskIconNames, canvas->maskMode, "CIRCLE"));
    m_buttons->of(Command::Effect)
        ->setImage(
            skinOf("ICON_EFFECT_", EffectNames::effectIconNames, canvas->effectMode, "COLOR"));
    m_buttons->of(Command::Freeze)->setChecked(canvas->frozen);
}

void ToolActions::checkTool()
{
    if (const auto tool = Commands::ofTool(m_deck->current()->mouseMode())) {
        m_buttons->of(*tool)->setChecked(true);
        return;
    }
    QButtonGroup *group = m_buttons->of(Command::Freehand)->group();
    QAbstractButton *checked = group ? group->checkedButton() : nullptr;
    if (!checked)
        return;
    // An exclusive group refuses to be emptied.
    group->setExclusive(false);
    checked->setChecked(false);
    group->setExclusive(true);
}
