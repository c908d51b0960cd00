#pragma once

#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"
#include "tests/fakes/FakeMainWindow.h"
#include "widgets/ImageButton.h"

#include <QPushButton>
#include <QTest>
#include <QWidget>

#include <memory>

/// What a pop-up window needs around it: a window with a tool button, a canvas and its indications.
struct PopupScene {
    PopupScene()
        : canvas(&window)
        , indications(&window, &canvas)
        , toolButton("ICON_LINE", &window, 10, 20)
    {
        window.resize(800, 600);
        window.canvas = &canvas;
        window.osdProcessor = &indications;
    }

    MainWindow window;
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
