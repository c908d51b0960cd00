#include "widgets/MaskToolWindow.h"

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
    // Each names the part that stays visible.
    const QString names[] = {MaskToolWindow::tr("Circle"), MaskToolWindow::tr("Rectangle"),
                             MaskToolWindow::tr("Right half"), MaskToolWindow::tr("Lower half")};
    std::vector<ChoiceRow::Choice> list;
    for (std::size_t i = 0; i < std::size(names); ++i) {
        const QString icon = MaskToolWindow::maskIconNames[i + 1];
        list.push_back({QStringLiteral("ICON_MASK_SUB_%1").arg(icon), names[i]});
    }
    return list;
}

} // namespace

MaskToolWindow::MaskToolWindow(ImageButton *toolButton, MainWindow *mainWindow)
    : ToolWindow(SkinImages::load(":/icons/Background/POP_BK_TOOL.png"), toolButton,
                 WindowServices::of(mainWindow).widget(), tr("Effect"))
    , m_row(new ChoiceRow(this, QString(), choices(), {{}, {4, 18}, 60}, SLOT(maskChanged())))
    , m_mainWindow(mainWindow)
{
    modeChanged();
    WindowServices::of(mainWindow).notifyOfMode(this);
}

void MaskToolWindow::setCurrentMask(int index)
{
    ImageCanvas *canvas = WindowServices::of(m_mainWindow).currentCanvas();
    if (!canvas || index < 0 || index >= static_cast<int>(maskModes.size()))
        return;
    m_selectedMask = maskModes[static_cast<std::size_t>(index)];
    canvas->maskMode = m_selectedMask;
    toolButton()->setChecked(index != 0);
    if (index != 0) {
        toolButton()->setImage(
            QStringLiteral("ICON_MASK_%1").arg(maskIconNames[static_cast<std::size_t>(index)]));
    }
    if (OSDProcessor *indications = WindowServices::of(m_mainWindow).indications(canvas))
        indications->osdMask();
}

void MaskToolWindow::previousMask()
{
    const int current = currentNumber();
    choose(current == 0 ? static_cast<int>(maskModes.size()) - 1 : current - 1);
}

void MaskToolWindow::nextMask()
{
    choose((currentNumber() + 1) % static_cast<int>(maskModes.size()));
}

CanvasModes::MaskMode MaskToolWindow::selectedMaskMode() const
{
    return m_selectedMask;
}

void MaskToolWindow::maskChanged()
{
    const int index = m_row->indexOf(sender());
    if (index >= 0)
        setCurrentMask(index + 1);
}

void MaskToolWindow::modeChanged()
{
    const ImageCanvas *canvas = WindowServices::of(m_mainWindow).currentCanvas();
    if (!canvas)
        return;
    for (int i = 0; i < static_cast<int>(maskModes.size()); ++i) {
        if (maskModes[static_cast<std::size_t>(i)] == canvas->maskMode)
            m_row->check(i - 1);
    }
}

int MaskToolWindow::currentNumber() const
{
    return toolButton()->isChecked() ? qMax(m_row->checkedIndex(), 0) + 1 : 0;
}

void MaskToolWindow::choose(int index)
{
    if (index > 0)
        m_row->check(index - 1);
    setCurrentMask(index);
}
