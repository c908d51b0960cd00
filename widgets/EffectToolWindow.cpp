#include "widgets/EffectToolWindow.h"

#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"
#include "resources/SkinImages.h"
#include "sources/WindowServices.h"
#include "widgets/ChoiceRow.h"
#include "widgets/ImageButton.h"

namespace
{

std::vector<ChoiceRow::Choice> choices()
{
    std::vector<ChoiceRow::Choice> list;
    for (int i = 0; i < static_cast<int>(EffectToolWindow::effectIconNames.size()); ++i) {
        const QString icon = EffectToolWindow::effectIconNames[static_cast<std::size_t>(i)];
        list.push_back(
            {QStringLiteral("ICON_EFFECT_SUB_%1").arg(icon), EffectNames::translatedEffectName(i)});
    }
    return list;
}

} // namespace

EffectToolWindow::EffectToolWindow(ImageButton *toolButton, MainWindow *mainWindow)
    : ToolWindow(SkinImages::load(":/icons/Background/POP_BK_TOOL.png"), toolButton,
                 WindowServices::of(mainWindow).widget(), tr("Color Effect"))
    , m_mainWindow(mainWindow)
    , m_row(new ChoiceRow(this, QString(), choices(), {{}, {4, 18}, 60}, SLOT(effectChanged())))
{
    modeChanged();
    WindowServices::of(mainWindow).notifyOfMode(this);
}

void EffectToolWindow::setCurrentEffect(int index)
{
    ImageCanvas *canvas = WindowServices::of(m_mainWindow).currentCanvas();
    if (!canvas || index < 0 || index >= static_cast<int>(effectModes.size()))
        return;
    canvas->effectMode = effectModes[static_cast<std::size_t>(index)];
    toolButton()->setImage(
        QStringLiteral("ICON_EFFECT_%1").arg(effectIconNames[static_cast<std::size_t>(index)]));
    if (OSDProcessor *indications = WindowServices::of(m_mainWindow).indications(canvas))
        indications->osdEffect();
}

void EffectToolWindow::previousEffect()
{
    const int current = m_row->checkedIndex();
    if (current >= 0)
        choose(current == 0 ? m_row->count() - 1 : current - 1);
}

void EffectToolWindow::nextEffect()
{
    const int current = m_row->checkedIndex();
    if (current >= 0)
        choose((current + 1) % m_row->count());
}

void EffectToolWindow::effectChanged()
{
    setCurrentEffect(m_row->indexOf(sender()));
}

void EffectToolWindow::modeChanged()
{
    const ImageCanvas *canvas = WindowServices::of(m_mainWindow).currentCanvas();
    if (!canvas)
        return;
    for (int i = 0; i < static_cast<int>(effectModes.size()); ++i) {
        if (effectModes[static_cast<std::size_t>(i)] == canvas->effectMode)
            m_row->check(i);
    }
}

void EffectToolWindow::choose(int index)
{
    m_row->check(index);
    setCurrentEffect(index);
}
