#pragma once

#include "widgets/ToolWindow.h"

#include <QPointer>

class ChoiceRow;
class ImageCanvas;
class MainWindow;

/// The pop-up that chooses the colour of the drawing board. Opening it paints the board white.
class FillBackgroundToolWindow : public ToolWindow
{
    Q_OBJECT

public:
    /// An empty label leaves out the row. Title and label come translated.
    FillBackgroundToolWindow(ImageButton *toolButton, MainWindow *mainWindow, const QString &title,
                             const QString &label);

public slots:
    void colorChanged();
    /// Shows the settings of the current canvas.
    void modeChanged();

private:
    MainWindow *m_mainWindow;
    QPointer<ImageCanvas> m_canvas;
    /// Null when the window has no row.
    ChoiceRow *m_row = nullptr;
};
