#pragma once

#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"
#include "tests/fakes/FakeMainWindowDoor.h"
#include "widgets/ImageButton.h"

#include <QPushButton>
#include <QTest>
#include <QWidget>

#include <memory>

/// A window that says when its mode changes, as the main window does.
class ModeSignaller : public QWidget
{
    Q_OBJECT

signals:
    void modeChanged();
};

/// What a pop-up window needs around it: a window with a tool button, a canvas and its indications,
/// reached through the fake door.
struct PopupScene {
    PopupScene()
        : canvas(&window)
        , indications(anyWindow(), &canvas)
        , toolButton("ICON_LINE", &window, 10, 20)
    {
        window.resize(800, 600);
        fakeMainWindow = FakeMainWindow();
        fakeMainWindow.object = &window;
        fakeMainWindow.widget = &window;
        fakeMainWindow.canvas = &canvas;
        fakeMainWindow.osdProcessor = &indications;
    }
    ~PopupScene() { fakeMainWindow = FakeMainWindow(); }

    /// The door's fake takes any pointer but null for the window.
    static MainWindow *anyWindow() { return reinterpret_cast<MainWindow *>(&fakeMainWindow); }

    ModeSignaller window;
    ImageCanvas canvas;
    OSDProcessor indications;
    ImageButton toolButton;
};

namespace Popup
{

/// The checkable buttons of a pop-up whose top left corners stand in that row, from left to right.
inline QList<ImageButton *> row(const QWidget &popup, int y)
{
    QList<ImageButton *> buttons;
    for (ImageButton *button : popup.findChildren<ImageButton *>()) {
        if (button->isCheckable() && button->y() == y)
            buttons << button;
    }
    std::sort(buttons.begin(), buttons.end(),
              [](const ImageButton *a, const ImageButton *b) { return a->x() < b->x(); });
    return buttons;
}

/// The place of the checked button in a row, -1 for none.
inline int checked(const QWidget &popup, int y)
{
    const QList<ImageButton *> buttons = row(popup, y);
    for (int i = 0; i < buttons.size(); ++i) {
        if (buttons[i]->isChecked())
            return i;
    }
    return -1;
}

inline QList<int> lefts(const QWidget &popup, int y)
{
    QList<int> list;
    for (const ImageButton *button : row(popup, y))
        list << button->x();
    return list;
}

} // namespace Popup
