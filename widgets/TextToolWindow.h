#pragma once

#include "widgets/ToolWindow.h"

#include <QList>
#include <QPointer>
#include <QStringList>

class ChoiceRow;
class ImageCanvas;
class MainWindow;
class QComboBox;

/// The pop-up that chooses face, size and colour of the text written on the current canvas.
class TextToolWindow : public ToolWindow
{
    Q_OBJECT

public:
    TextToolWindow(ImageButton *toolButton, MainWindow *mainWindow);
    ~TextToolWindow() override;

public slots:
    /// Shows the settings of the current canvas, as far as the boxes list them.
    void modeChanged();
    void colorChanged();
    void fontFaceChanged();
    /// Every number that is typed counts at once.
    void fontSizeChanged();

private:
    /// The index of a font in the box; -1 for one that it does not list.
    [[nodiscard]] int faceEntry(const QString &face) const;
    /// Writes the canvas's size into the box, also one that the box does not list.
    void showFontSize();
    void createFaceBox();
    void createSizeBox();

    QComboBox *m_fontFaceBox;
    QComboBox *m_fontSizeBox;
    QStringList m_fontFaces;
    QList<int> m_fontSizes;
    ChoiceRow *m_colorRow = nullptr;
    QPointer<ImageCanvas> m_canvas;
    MainWindow *m_mainWindow;
};
