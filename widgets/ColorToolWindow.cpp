#include "widgets/ColorToolWindow.h"

#include "canvas/ImageCanvas.h"
#include "resources/SkinImages.h"
#include "sources/WindowServices.h"
#include "widgets/ChoiceRow.h"
#include "widgets/DrawingColors.h"
#include "widgets/ImageButton.h"

namespace
{

constexpr int BUTTON_X = 152;
constexpr int PITCH = 33;
/// The fill button that turns filling off, after the four colours.
constexpr int NO_FILL = 4;
/// It stands alone, left of the row.
constexpr int NO_FILL_X = 119;

QImage background(int rows)
{
    return SkinImages::load(QStringLiteral(":/icons/Background/POP_BK_COLOR_%1LINE").arg(rows));
}

std::vector<ChoiceRow::Choice> widthChoices()
{
    std::vector<ChoiceRow::Choice> choices;
    for (int i = 1; i <= ColorToolWindow::WIDTHS; ++i) {
        choices.push_back({QStringLiteral("ICON_LINE_WIDTH_%1").arg(i),
                           ColorToolWindow::tr("%1 pixels").arg(i * ColorToolWindow::WIDTH_STEP)});
    }
    return choices;
}

std::vector<ChoiceRow::Choice> colorChoices(const QString &skin)
{
    std::vector<ChoiceRow::Choice> choices;
    choices.reserve(DrawingColors::PEN.size());
    for (const DrawingColors::Entry &entry : DrawingColors::PEN)
        choices.push_back({skin.arg(entry.skin), DrawingColors::name(entry)});
    return choices;
}

} // namespace

ColorToolWindow::ColorToolWindow(ImageButton *toolButton, MainWindow *mainWindow,
                                 const QString &title, const QString &widthLabel,
                                 const QString &colorLabel, const QString &fillLabel)
    : ToolWindow(QImage(), toolButton, WindowServices::of(mainWindow).widget(), title)
    , m_mainWindow(mainWindow)
    , m_canvas(WindowServices::of(mainWindow).currentCanvas())
{
    const bool hasColorRow = !colorLabel.isEmpty();
    const bool hasFillRow = hasColorRow && !fillLabel.isEmpty();
    setBackground(background(1 + static_cast<int>(hasColorRow) + static_cast<int>(hasFillRow)));
    setStyleSheet("font-family: Arial; font-size: 15px; color: white;");

    m_widthRow = new ChoiceRow(this, widthLabel, widthChoices(), {{8, 22}, {BUTTON_X, 20}, PITCH},
                               SLOT(lineWidthChanged()));
    if (hasColorRow) {
        m_colorRow = new ChoiceRow(this, colorLabel, colorChoices("ICON_LINE_COLOR_%1"),
                                   {{8, 45}, {BUTTON_X, 43}, PITCH}, SLOT(colorChanged()));
    }
    if (hasFillRow) {
        std::vector<ChoiceRow::Choice> choices = colorChoices("ICON_FILL_COLOR_%1");
        choices.push_back({"ICON_FILL_COLOR_NONE", tr("No fill")});
        m_fillRow =
            new ChoiceRow(this, fillLabel, choices, {{8, 68}, {BUTTON_X, 67}, PITCH, NO_FILL_X},
                          SLOT(fillColorChanged()));
        m_fillRow->button(NO_FILL)->move(NO_FILL_X, 67);
    }
    modeChanged();
    WindowServices::of(mainWindow).notifyOfMode(this);
}

void ColorToolWindow::modeChanged()
{
    m_canvas = WindowServices::of(m_mainWindow).currentCanvas();
    if (!m_canvas)
        return;
    const int width = m_canvas->penWidth;
    const bool known =
        width % WIDTH_STEP == 0 && width >= WIDTH_STEP && width <= WIDTHS * WIDTH_STEP;
    m_widthRow->check(known ? width / WIDTH_STEP - 1 : 0);
    if (m_colorRow)
        m_colorRow->check(DrawingColors::indexOf(DrawingColors::PEN, m_canvas->penColor, 0));
    if (m_fillRow) {
        const int color = DrawingColors::indexOf(DrawingColors::PEN, m_canvas->fillColor, 0);
        m_fillRow->check(m_canvas->fillEnabled ? color : NO_FILL);
    }
}

void ColorToolWindow::lineWidthChanged()
{
    const int index = m_widthRow->indexOf(sender());
    if (m_canvas && index >= 0)
        m_canvas->penWidth = (index + 1) * WIDTH_STEP;
}

void ColorToolWindow::colorChanged()
{
    const int index = m_colorRow ? m_colorRow->indexOf(sender()) : -1;
    if (m_canvas && index >= 0)
        m_canvas->penColor = DrawingColors::colorAt(DrawingColors::PEN, index);
}

void ColorToolWindow::fillColorChanged()
{
    const int index = m_fillRow ? m_fillRow->indexOf(sender()) : -1;
    if (!m_canvas || index < 0)
        return;
    m_canvas->fillEnabled = index != NO_FILL;
    if (index != NO_FILL)
        m_canvas->fillColor = DrawingColors::colorAt(DrawingColors::PEN, index);
}
