#include "mainwindow/WindowLayout.h"

WindowLayout WindowLayout::of(const Sizes &sizes)
{
    const int w = sizes.window.width();
    const int h = sizes.window.height();
    const int s = sizes.sidePanelOpen ? SIDE_PANEL_WIDTH : 0;
    const auto centred = [w, h, s](QSize size) {
        return QPoint((w - s - size.width()) / 2 + s, h - 60);
    };

    WindowLayout at;
    at.panelHeight = h - 100;
    at.aboutButton = QPoint(34, h - 55);
    at.sidePanelButton = QPoint(4, 50);
    at.liveButton = QPoint(s + 40, 5);
    at.filmButton = QPoint(s + 147, 5);
    at.photographButton = QPoint(s + 254, 5);
    at.drawingBoardButton = QPoint(s + 361, 5);
    at.recordingStatus = QPoint(w - 22, 5);
    at.stack = QRect(s + 36, 25, w - s - 55, h - 100);

    at.liveBox = centred(sizes.liveBox);
    at.recordTimeLabel = QPoint(w - 20 - sizes.recordTimeLabel.width(), h - 60);

    const QPoint belowStack(at.stack.x(), at.stack.y() + at.stack.height());
    const QSize belowStackSize(at.stack.width() + 2, 10);
    at.filmBar = centred(sizes.filmBar);
    at.card = QPoint(130, h - 60);
    at.cardRoom = at.filmBar.x() - at.card.x();
    at.volumeSlider = at.filmBar + QPoint(sizes.filmBar.width(),
                                          sizes.filmBar.height() - sizes.volumeSlider.height());
    at.filmPosition = QRect(belowStack, belowStackSize);

    at.photographBar = centred(sizes.photographBar);
    const int photographBarEnd = at.photographBar.x() + sizes.photographBar.width();
    at.intervalSlider = QPoint(photographBarEnd + 10, h - 50);
    at.intervalLabel = QPoint(photographBarEnd + 12, h - 30);
    at.indexLabel = QRect(w - 70, h - 60, 70, 30);
    constexpr int STRIP_HEIGHT = 60;
    at.thumbnailStrip =
        QRect(0, at.stack.height() - 7 - STRIP_HEIGHT, at.stack.width(), STRIP_HEIGHT);
    at.thumbnailScrollBar = QRect(belowStack, belowStackSize);
    return at;
}
