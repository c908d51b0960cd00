#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

/// Where everything stands in the main window: a pure function of the window's size, the state of
/// the side panel and the sizes that the skin gives. All in window coordinates, in pixels, unless
/// said otherwise; halves are integer halves that truncate towards zero.
struct WindowLayout {
    /// By how much the window is wider with its side panel open.
    static constexpr int SIDE_PANEL_WIDTH = 138;

    /// The current sizes of those widgets that are placed by their own width or height.
    struct Sizes {
        QSize window;
        bool sidePanelOpen = false;
        QSize liveBox;
        QSize recordTimeLabel;
        QSize filmBar;
        QSize volumeSlider;
        QSize photographBar;
    };

    int panelHeight = 0;
    QPoint aboutButton;
    QPoint sidePanelButton;
    QPoint liveButton;
    QPoint filmButton;
    QPoint photographButton;
    QPoint drawingBoardButton;
    /// The upper right corner of what tells of a recording.
    QPoint recordingStatus;
    QRect stack;
    QPoint liveBox;
    QPoint recordTimeLabel;
    QPoint card;
    /// The width that the card may take before it meets the widest bar.
    int cardRoom = 0;
    QPoint filmBar;
    QPoint volumeSlider;
    QRect filmPosition;
    QPoint photographBar;
    QPoint intervalSlider;
    QPoint intervalLabel;
    QRect indexLabel;
    /// In the coordinates of the canvas stack.
    QRect thumbnailStrip;
    QRect thumbnailScrollBar;

    [[nodiscard]] static WindowLayout of(const Sizes &sizes);
};
