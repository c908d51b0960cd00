#pragma once

#include "widgets/ToolWindow.h"

class MainWindow;

/// The pop-up that names the program's version.
class AboutToolWindow : public ToolWindow
{
    Q_OBJECT

public:
    AboutToolWindow(ImageButton *toolButton, MainWindow *mainWindow, const QImage &background);

public slots:
    void AboutOk();
};
