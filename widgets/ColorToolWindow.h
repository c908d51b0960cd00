#pragma once

#include "widgets/ToolWindow.h"

#include <QPointer>

class ChoiceRow;
class ImageCanvas;
class MainWindow;

/// The pop-up of a drawing tool: line width, line colour and fill colour of the current canvas, for
/// the next shape drawn.
class ColorToolWindow : public ToolWindow
{
    Q_OBJECT

public:
    /// An empty colour label leaves out the colour row and the fill row, an empty fill label the
    /// fill row. The labels come translated.
    /// The widths are the multiples of the first one, in pixels.
    static constexpr int WIDTH_STEP = 3;
    static constexpr int WIDTHS = 4;

    ColorToolWindow(ImageButton *toolButton, MainWindow *mainWindow, const QString &title,
                    const QString &widthLabel, const QString &colorLabel, const QString &fillLabel);

public slots:
    /// Shows the settings of the current canvas.
    void modeChanged();
    void lineWidthChanged();
    void colorChanged();
    void fillColorChanged();

private:
    MainWindow *m_mainWindow;
    QPointer<ImageCanvas> m_canvas;
    ChoiceRow *m_widthRow = nullptr;
    /// Null when the window has no such row.
    ChoiceRow *m_colorRow = nullptr;
    ChoiceRow *m_fillRow = nullptr;
};
