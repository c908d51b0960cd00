#include "mainwindow/ButtonTable.h"

#include <QObject>

namespace
{

constexpr const char *LINE_WIDTH = QT_TRANSLATE_NOOP("MainWindow", "Line Width");
constexpr const char *WIDTH = QT_TRANSLATE_NOOP("MainWindow", "Width");

} // namespace

namespace ButtonTable
{

const std::array<const char *, PANEL_GROUP_COUNT> &groupTitles()
{
    static constexpr std::array<const char *, PANEL_GROUP_COUNT> titles{
        QT_TRANSLATE_NOOP("MainWindow", "Noting"),
        QT_TRANSLATE_NOOP("MainWindow", "Assisting"),
        QT_TRANSLATE_NOOP("MainWindow", "Adjustment"),
        QT_TRANSLATE_NOOP("MainWindow", "Recording"),
    };
    return titles;
}

// clang-format off
const std::array<PanelRow, PANEL_BUTTON_COUNT> &panelRows()
{
    using B = PanelButton;
    using G = PanelGroup;
    static const std::array<PanelRow, PANEL_BUTTON_COUNT> rows{{
        {B::Line, G::Noting, "ICON_LINE", QT_TRANSLATE_NOOP("MainWindow", "Line"),
         SLOT(line()), SLOT(lineHold()), true, Nothing},
        {B::Rectangle, G::Noting, "ICON_RETANGLE", QT_TRANSLATE_NOOP("MainWindow", "Rectangle"),
         SLOT(rectangle()), SLOT(rectangleHold()), true, Nothing},
        {B::Freehand, G::Noting, "ICON_FREEHAND", QT_TRANSLATE_NOOP("MainWindow", "Freehand"),
         SLOT(freehand()), SLOT(freehandHold()), true, Checked},
        {B::Circle, G::Noting, "ICON_CIRCLE", QT_TRANSLATE_NOOP("MainWindow", "Circle"),
         SLOT(circle()), SLOT(circleHold()), true, Nothing},
        {B::Arrow, G::Noting, "ICON_ARROW", QT_TRANSLATE_NOOP("MainWindow", "Arrow"),
         SLOT(arrow()), SLOT(arrowHold()), true, Nothing},
        {B::Triangle, G::Noting, "ICON_TRIANGLE", QT_TRANSLATE_NOOP("MainWindow", "Triangle"),
         SLOT(triangle()), SLOT(triangleHold()), true, Nothing},
        {B::Eraser, G::Noting, "ICON_ERASE", QT_TRANSLATE_NOOP("MainWindow", "Eraser"),
         SLOT(erase()), SLOT(eraseHold()), true, Nothing},
        {B::Text, G::Noting, "ICON_TEXT", QT_TRANSLATE_NOOP("MainWindow", "Text"),
         SLOT(text()), SLOT(textHold()), true, Nothing},
        {B::EraseAll, G::Noting, "ICON_ERASE_ALL", QT_TRANSLATE_NOOP("MainWindow", "Erase all"),
         SLOT(eraseAll()), nullptr, false, Nothing},
        {B::Clip, G::Noting, "ICON_COPY", QT_TRANSLATE_NOOP("MainWindow", "Clip image"),
         SLOT(clip()), nullptr, true, Nothing},
        {B::Hand, G::Noting, "ICON_HAND", QT_TRANSLATE_NOOP("MainWindow", "Hand"),
         SLOT(hand()), nullptr, true, HiddenAndDisabled},
        {B::FillBackground, G::Noting, "ICON_FILL", QT_TRANSLATE_NOOP("MainWindow", "Fill background"),
         SLOT(fillBackground()), SLOT(fillBackgroundHold()), true, MadeUncheckable | HiddenAndDisabled},
        {B::Mask, G::Assisting, "ICON_MASK_CIRCLE", QT_TRANSLATE_NOOP("MainWindow", "Mask"),
         SLOT(mask()), SLOT(maskHold()), false, MadeCheckable},
        {B::Effect, G::Assisting, "ICON_EFFECT_COLOR", QT_TRANSLATE_NOOP("MainWindow", "Effect"),
         nullptr, SLOT(effectHold()), false, Nothing},
        {B::ZoomOut, G::Adjustment, "ICON_ZOOM_OUT", QT_TRANSLATE_NOOP("MainWindow", "Zoom out"),
         nullptr, nullptr, false, Nothing},
        {B::ZoomIn, G::Adjustment, "ICON_ZOOM_IN", QT_TRANSLATE_NOOP("MainWindow", "Zoom in"),
         nullptr, nullptr, false, Nothing},
        {B::ZoomReset, G::Adjustment, "ICON_ZOOM_RESET", QT_TRANSLATE_NOOP("MainWindow", "Reset zoom"),
         SLOT(zoomReset()), nullptr, false, Nothing},
        {B::AutoFocus, G::Adjustment, "ICON_AUTOFOCUS", QT_TRANSLATE_NOOP("MainWindow", "Auto focus"),
         SLOT(autoFocus()), nullptr, false, Nothing},
        {B::BrightnessDown, G::Adjustment, "ICON_BRIGHTNESS_REDUCE",
         QT_TRANSLATE_NOOP("MainWindow", "Brightness down"), SLOT(brightnessDown()), nullptr, false, Nothing},
        {B::BrightnessUp, G::Adjustment, "ICON_BRIGHTNESS_INCREASE",
         QT_TRANSLATE_NOOP("MainWindow", "Brightness up"), SLOT(brightnessUp()), nullptr, false, Nothing},
        {B::Rotate, G::Adjustment, "ICON_ROTATE", QT_TRANSLATE_NOOP("MainWindow", "Rotate"),
         SLOT(rotate()), nullptr, false, Nothing},
        {B::Freeze, G::Adjustment, "ICON_FREEZE", QT_TRANSLATE_NOOP("MainWindow", "Freeze"),
         SLOT(freeze()), nullptr, false, MadeCheckable},
        {B::Record, G::Recording, "ICON_RECORDING", QT_TRANSLATE_NOOP("MainWindow", "Record video"),
         SLOT(record()), nullptr, false, MadeCheckable},
        {B::Snapshot, G::Recording, "ICON_CAPTURE", QT_TRANSLATE_NOOP("MainWindow", "Take snapshot"),
         SLOT(snapshot()), nullptr, false, Nothing},
        {B::Settings, G::Recording, "ICON_SETTING", QT_TRANSLATE_NOOP("MainWindow", "Settings"),
         SLOT(settings()), nullptr, false, Nothing},
        {B::Print, G::Recording, "ICON_PRINT", QT_TRANSLATE_NOOP("MainWindow", "Print"),
         SLOT(print()), nullptr, false, Nothing},
    }};
    return rows;
}

const std::array<ModeRow, 4> &modeRows()
{
    static constexpr std::array<ModeRow, 4> rows{{
        {"MAIN_BUTTON", QT_TRANSLATE_NOOP("MainWindow", "Live")},
        {"MAIN_BUTTON", QT_TRANSLATE_NOOP("MainWindow", "Film")},
        {"MAIN_BUTTON", QT_TRANSLATE_NOOP("MainWindow", "Photograph")},
        {"MAIN_BUTTON_LONG", QT_TRANSLATE_NOOP("MainWindow", "Drawing Board")},
    }};
    return rows;
}

const std::array<BarRow, 7> &filmBarRows()
{
    static const std::array<BarRow, 7> rows{{
        {"ICON_FILM_OPEN", 20, SLOT(filmOpenFile()), false, QT_TRANSLATE_NOOP("MainWindow", "Open film")},
        {"ICON_FILM_PLAY", 60, SLOT(filmPlay()), false, QT_TRANSLATE_NOOP("MainWindow", "Play")},
        {"ICON_FILM_PAUSE", 100, SLOT(filmPause()), false, QT_TRANSLATE_NOOP("MainWindow", "Pause")},
        {"ICON_FILM_STOP", 140, SLOT(filmStop()), false, QT_TRANSLATE_NOOP("MainWindow", "Stop")},
        {"ICON_FILM_BACKWARD", 180, SLOT(filmBackward()), false,
         QT_TRANSLATE_NOOP("MainWindow", "Slower or backward")},
        {"ICON_FILM_FORWARD", 220, SLOT(filmForward()), false, QT_TRANSLATE_NOOP("MainWindow", "Faster")},
        {"ICON_FILM_VOLUME", 260, SLOT(filmVolume()), true, QT_TRANSLATE_NOOP("MainWindow", "Volume")},
    }};
    return rows;
}

const std::array<BarRow, 6> &photographBarRows()
{
    static const std::array<BarRow, 6> rows{{
        {"ICON_PHOTO_OPEN", 20, SLOT(photographOpenDirectory()), false,
         QT_TRANSLATE_NOOP("MainWindow", "Open folder of photographs")},
        {"ICON_PHOTO_BACKWARD", 60, SLOT(photographPrevious()), false,
         QT_TRANSLATE_NOOP("MainWindow", "Previous photograph")},
        {"ICON_PHOTO_SLIDE", 100, SLOT(photographPlay()), true,
         QT_TRANSLATE_NOOP("MainWindow", "Slideshow")},
        {"ICON_PHOTO_FORWARD", 140, SLOT(photographNext()), false,
         QT_TRANSLATE_NOOP("MainWindow", "Next photograph")},
        {"ICON_PHOTO_THUMBNIL", 180, SLOT(photographPreview()), true,
         QT_TRANSLATE_NOOP("MainWindow", "Thumbnails")},
        {"ICON_PHOTO_TIME", 220, SLOT(photographPlayInterval()), true,
         QT_TRANSLATE_NOOP("MainWindow", "Slideshow interval")},
    }};
    return rows;
}

const std::array<ColorToolRow, 7> &colorToolRows()
{
    using B = PanelButton;
    static constexpr std::array<ColorToolRow, 7> rows{{
        {B::Line, CanvasModes::Line, QT_TRANSLATE_NOOP("QObject", "Line"), LINE_WIDTH, true, false},
        {B::Rectangle, CanvasModes::Rectangle, QT_TRANSLATE_NOOP("QObject", "Rectangle"), LINE_WIDTH, true, true},
        {B::Freehand, CanvasModes::Freehand, QT_TRANSLATE_NOOP("QObject", "Freehand"), LINE_WIDTH, true, false},
        {B::Circle, CanvasModes::Circle, QT_TRANSLATE_NOOP("QObject", "Circle"), LINE_WIDTH, true, true},
        {B::Arrow, CanvasModes::Arrow, QT_TRANSLATE_NOOP("QObject", "Arrow"), LINE_WIDTH, true, true},
        {B::Triangle, CanvasModes::Triangle, QT_TRANSLATE_NOOP("QObject", "Triangle"), LINE_WIDTH, true, true},
        {B::Eraser, CanvasModes::Eraser, QT_TRANSLATE_NOOP("QObject", "Eraser"), WIDTH, false, false},
    }};
    return rows;
}
// clang-format on

} // namespace ButtonTable
