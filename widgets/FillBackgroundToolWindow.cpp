#include "widgets/FillBackgroundToolWindow.h"

#include "canvas/ImageCanvas.h"
#include "resources/SkinImages.h"
#include "sources/WindowServices.h"
#include "widgets/ChoiceRow.h"
#include "widgets/DrawingColors.h"

FillBackgroundToolWindow::FillBackgroundToolWindow(ImageButton *toolButton, MainWindow *mainWindow,
                                                   const QString &title, const QString &label)
    : ToolWindow(QImage(), toolButton, WindowServices::of(mainWindow).widget(), title)
    , m_mainWindow(mainWindow)
{
    setBackground(SkinImages::load(":/icons/Background/POP_BK_COLOR_1LINE"));
    setStyleSheet("font-family: Arial; font-size: 15px; color: white;");
    if (!label.isEmpty()) {
        std::vector<ChoiceRow::Choice> choices;
        choices.reserve(DrawingColors::BOARD.size());
        for (const DrawingColors::Entry &entry : DrawingColors::BOARD) {
            choices.push_back(
                {QStringLiteral("ICON_FILL_COLOR_%1").arg(entry.skin), DrawingColors::name(entry)});
        }
        m_row = new ChoiceRow(this, label, choices, {{8, 22}, {130, 20}, 33}, SLOT(colorChanged()));
    }
    modeChanged();
    WindowServices::of(mainWindow).notifyOfMode(this);
    if (m_canvas)
        m_canvas->fillCanvas(DrawingColors::colorAt(DrawingColors::BOARD, 0));
    modeChanged();
}

void FillBackgroundToolWindow::colorChanged()
{
    const int index = m_row ? m_row->indexOf(sender()) : -1;
    if (!m_canvas || index < 0)
        return;
    m_canvas->fillCanvas(DrawingColors::colorAt(DrawingColors::BOARD, index));
    m_canvas->update();
}

void FillBackgroundToolWindow::modeChanged()
{
    m_canvas = WindowServices::of(m_mainWindow).currentCanvas();
    if (m_canvas && m_row)
        m_row->check(DrawingColors::indexOf(DrawingColors::BOARD, m_canvas->boardColor(), 0));
}
