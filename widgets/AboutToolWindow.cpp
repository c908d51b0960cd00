#include "widgets/AboutToolWindow.h"

#include "sources/WindowServices.h"
#include "widgets/FormControls.h"
#include "widgets/ImageButton.h"

#include <QLabel>

AboutToolWindow::AboutToolWindow(ImageButton *toolButton, MainWindow *mainWindow,
                                 const QImage &background)
    : ToolWindow(background, toolButton, WindowServices::of(mainWindow).widget(), tr("About"))
{
    setStyleSheet("QLabel { font-family: Arial; font-size: 14px; color: gray; }"
                  "QLineEdit { width: 124px; } QComboBox { width: 124px; } ");
    auto *version = new QLabel(tr("Version 1.00"), this);
    version->move(20, 30);
    FormControls::keepLineHeight(version);
    auto *ok = new ImageButton("POPUP_BUTTON", this, 90, 70);
    ok->setFont(FormControls::font());
    ok->setText(tr("OK"));
    connect(ok, SIGNAL(clicked()), this, SLOT(AboutOk()));
}

void AboutToolWindow::AboutOk()
{
    close();
}
