#include "mainwindow/CommandTable.h"

#include <QObject>

// A row begins with its command and stands on as few lines as it needs.
// clang-format off

namespace Commands
{

namespace
{

using C = Command;
constexpr Modes::Set LIVE = Modes::only(Modes::Live);
constexpr Modes::Set FILM = Modes::only(Modes::Film);
constexpr Modes::Set PHOTOGRAPH = Modes::only(Modes::Photograph);
constexpr Modes::Set BOARD = Modes::only(Modes::DrawingBoard);

} // namespace

std::vector<Row> notingRows()
{
    constexpr Group N = Group::Noting;
    return {
        Row(C::Line, N, "ICON_LINE", QT_TRANSLATE_NOOP("MainWindow", "Line"))
            .clicks(SLOT(line())).draws(CanvasModes::Line)
            .holds(SLOT(lineHold()), PopUp::Line, QT_TRANSLATE_NOOP("QObject", "Line")).on({Qt::Key_L}),
        Row(C::Rectangle, N, "ICON_RETANGLE", QT_TRANSLATE_NOOP("MainWindow", "Rectangle"))
            .clicks(SLOT(rectangle())).draws(CanvasModes::Rectangle)
            .holds(SLOT(rectangleHold()), PopUp::Shape, QT_TRANSLATE_NOOP("QObject", "Rectangle")).on({Qt::Key_R}),
        Row(C::Freehand, N, "ICON_FREEHAND", QT_TRANSLATE_NOOP("MainWindow", "Freehand"))
            .clicks(SLOT(freehand())).draws(CanvasModes::Freehand).looks(Checked)
            .holds(SLOT(freehandHold()), PopUp::Line, QT_TRANSLATE_NOOP("QObject", "Freehand")).on({Qt::Key_F}),
        Row(C::Circle, N, "ICON_CIRCLE", QT_TRANSLATE_NOOP("MainWindow", "Circle"))
            .clicks(SLOT(circle())).draws(CanvasModes::Circle)
            .holds(SLOT(circleHold()), PopUp::Shape, QT_TRANSLATE_NOOP("QObject", "Circle")).on({Qt::Key_C}),
        Row(C::Arrow, N, "ICON_ARROW", QT_TRANSLATE_NOOP("MainWindow", "Arrow"))
            .clicks(SLOT(arrow())).draws(CanvasModes::Arrow)
            .holds(SLOT(arrowHold()), PopUp::Shape, QT_TRANSLATE_NOOP("QObject", "Arrow")).on({Qt::Key_A}),
        Row(C::Triangle, N, "ICON_TRIANGLE", QT_TRANSLATE_NOOP("MainWindow", "Triangle"))
            .clicks(SLOT(triangle())).draws(CanvasModes::Triangle)
            .holds(SLOT(triangleHold()), PopUp::Shape, QT_TRANSLATE_NOOP("QObject", "Triangle")).on({Qt::Key_T}),
        Row(C::Eraser, N, "ICON_ERASE", QT_TRANSLATE_NOOP("MainWindow", "Eraser"))
            .clicks(SLOT(erase())).draws(CanvasModes::Eraser)
            .holds(SLOT(eraseHold()), PopUp::Width, QT_TRANSLATE_NOOP("QObject", "Eraser")).on({Qt::Key_E}),
        Row(C::Text, N, "ICON_TEXT", QT_TRANSLATE_NOOP("MainWindow", "Text"))
            .clicks(SLOT(text())).draws(CanvasModes::Text)
            .holds(SLOT(textHold()), PopUp::Text).on({Qt::Key_X}),
        Row(C::EraseAll, N, "ICON_ERASE_ALL", QT_TRANSLATE_NOOP("MainWindow", "Erase all"))
            .clicks(SLOT(eraseAll())).on({Qt::CTRL | Qt::Key_Delete}),
        Row(C::Clip, N, "ICON_COPY", QT_TRANSLATE_NOOP("MainWindow", "Clip image"))
            .clicks(SLOT(clip())).draws(CanvasModes::Clip).on({Qt::SHIFT | Qt::Key_X}),
        Row(C::Hand, N, "ICON_HAND", QT_TRANSLATE_NOOP("MainWindow", "Hand"))
            .clicks(SLOT(hand())).draws(CanvasModes::Hand).in(FILM | PHOTOGRAPH | BOARD).on({Qt::Key_H}),
        Row(C::FillBackground, N, "ICON_FILL", QT_TRANSLATE_NOOP("MainWindow", "Fill background"))
            .clicks(SLOT(fillBackground())).looks(InToolGroup | NeverChecked).in(BOARD)
            .holds(SLOT(fillBackgroundHold()), PopUp::FillBackground),
    };
}

std::vector<Row> panelRows()
{
    constexpr Group V = Group::Assisting;
    constexpr Group A = Group::Adjustment;
    constexpr Group R = Group::Recording;
    return {
        Row(C::Mask, V, "ICON_MASK_CIRCLE", QT_TRANSLATE_NOOP("MainWindow", "Mask"))
            .clicks(SLOT(mask())).looks(Checkable).holds(SLOT(maskHold()), PopUp::Mask).on({Qt::Key_M}),
        Row(C::Effect, V, "ICON_EFFECT_COLOR", QT_TRANSLATE_NOOP("MainWindow", "Effect"))
            .holds(SLOT(effectHold()), PopUp::Effect),
        Row(C::ZoomOut, A, "ICON_ZOOM_OUT", QT_TRANSLATE_NOOP("MainWindow", "Zoom out"))
            .lasts(SLOT(zoomOutStart()), SLOT(zoomOutStop()))
            .on({Qt::Key_Minus, Qt::SHIFT | Qt::Key_Minus}),
        Row(C::ZoomIn, A, "ICON_ZOOM_IN", QT_TRANSLATE_NOOP("MainWindow", "Zoom in"))
            .lasts(SLOT(zoomInStart()), SLOT(zoomInStop()))
            .on({Qt::Key_Plus, Qt::SHIFT | Qt::Key_Plus, Qt::Key_Equal}),
        Row(C::ZoomReset, A, "ICON_ZOOM_RESET", QT_TRANSLATE_NOOP("MainWindow", "Reset zoom"))
            .clicks(SLOT(zoomReset())).on({Qt::CTRL | Qt::Key_0}),
        Row(C::AutoFocus, A, "ICON_AUTOFOCUS", QT_TRANSLATE_NOOP("MainWindow", "Auto focus"))
            .clicks(SLOT(autoFocus())).in(LIVE).on({Qt::CTRL | Qt::Key_F}),
        Row(C::BrightnessDown, A, "ICON_BRIGHTNESS_REDUCE", QT_TRANSLATE_NOOP("MainWindow", "Brightness down"))
            .clicks(SLOT(brightnessDown())).in(LIVE).on({Qt::CTRL | Qt::Key_Down}),
        Row(C::BrightnessUp, A, "ICON_BRIGHTNESS_INCREASE", QT_TRANSLATE_NOOP("MainWindow", "Brightness up"))
            .clicks(SLOT(brightnessUp())).in(LIVE).on({Qt::CTRL | Qt::Key_Up}),
        Row(C::Rotate, A, "ICON_ROTATE", QT_TRANSLATE_NOOP("MainWindow", "Rotate"))
            .clicks(SLOT(rotate())).on({Qt::Key_O}),
        Row(C::Freeze, A, "ICON_FREEZE", QT_TRANSLATE_NOOP("MainWindow", "Freeze"))
            .clicks(SLOT(freeze())).looks(Checkable).in(LIVE).on({Qt::Key_Space}),
        Row(C::Record, R, "ICON_RECORDING", QT_TRANSLATE_NOOP("MainWindow", "Record video"))
            .clicks(SLOT(record())).looks(Checkable).in(LIVE).on({Qt::CTRL | Qt::Key_R}),
        Row(C::Snapshot, R, "ICON_CAPTURE", QT_TRANSLATE_NOOP("MainWindow", "Take snapshot"))
            .clicks(SLOT(snapshot())).on({Qt::CTRL | Qt::Key_S}),
        Row(C::Settings, R, "ICON_SETTING", QT_TRANSLATE_NOOP("MainWindow", "Settings"))
            .clicks(SLOT(settings())).opens(PopUp::Settings).in(LIVE),
        Row(C::Print, R, "ICON_PRINT", QT_TRANSLATE_NOOP("MainWindow", "Print"))
            .clicks(SLOT(print())).on({Qt::CTRL | Qt::Key_P}),
    };
}

std::vector<Row> modeRows()
{
    constexpr Group M = Group::Modes;
    return {
        Row(C::LiveMode, M, "MAIN_BUTTON", QT_TRANSLATE_NOOP("MainWindow", "Live"))
            .clicks(SLOT(switchMode())).looks(Checkable | Checked).on({Qt::CTRL | Qt::Key_1}),
        Row(C::FilmMode, M, "MAIN_BUTTON", QT_TRANSLATE_NOOP("MainWindow", "Film"))
            .clicks(SLOT(switchMode())).looks(Checkable).on({Qt::CTRL | Qt::Key_2}),
        Row(C::PhotographMode, M, "MAIN_BUTTON", QT_TRANSLATE_NOOP("MainWindow", "Photograph"))
            .clicks(SLOT(switchMode())).looks(Checkable).on({Qt::CTRL | Qt::Key_3}),
        Row(C::DrawingBoardMode, M, "MAIN_BUTTON_LONG", QT_TRANSLATE_NOOP("MainWindow", "Drawing Board"))
            .clicks(SLOT(switchMode())).looks(Checkable).on({Qt::CTRL | Qt::Key_4}),
    };
}

std::vector<Row> barRows()
{
    constexpr Group F = Group::FilmBar;
    constexpr Group P = Group::PhotographBar;
    return {
        Row(C::OpenFilm, F, "ICON_FILM_OPEN", QT_TRANSLATE_NOOP("MainWindow", "Open film"))
            .clicks(SLOT(filmOpenFile())).in(FILM),
        Row(C::PlayFilm, F, "ICON_FILM_PLAY", QT_TRANSLATE_NOOP("MainWindow", "Play"))
            .clicks(SLOT(filmPlay())).in(FILM),
        Row(C::PauseFilm, F, "ICON_FILM_PAUSE", QT_TRANSLATE_NOOP("MainWindow", "Pause"))
            .clicks(SLOT(filmPause())).in(FILM),
        Row(C::StopFilm, F, "ICON_FILM_STOP", QT_TRANSLATE_NOOP("MainWindow", "Stop"))
            .clicks(SLOT(filmStop())).in(FILM),
        Row(C::SlowerFilm, F, "ICON_FILM_BACKWARD", QT_TRANSLATE_NOOP("MainWindow", "Slower or backward"))
            .clicks(SLOT(filmBackward())).in(FILM),
        Row(C::FasterFilm, F, "ICON_FILM_FORWARD", QT_TRANSLATE_NOOP("MainWindow", "Faster"))
            .clicks(SLOT(filmForward())).in(FILM),
        Row(C::FilmVolume, F, "ICON_FILM_VOLUME", QT_TRANSLATE_NOOP("MainWindow", "Volume"))
            .clicks(SLOT(filmVolume())).looks(Checkable).in(FILM),
        Row(C::OpenPhotographs, P, "ICON_PHOTO_OPEN", QT_TRANSLATE_NOOP("MainWindow", "Open folder of photographs"))
            .clicks(SLOT(photographOpenDirectory())).in(PHOTOGRAPH),
        Row(C::PreviousPhotograph, P, "ICON_PHOTO_BACKWARD", QT_TRANSLATE_NOOP("MainWindow", "Previous photograph"))
            .clicks(SLOT(photographPrevious())).in(PHOTOGRAPH).repeats()
            .on({Qt::Key_PageUp, Qt::Key_Left, Qt::Key_Up}),
        Row(C::Slideshow, P, "ICON_PHOTO_SLIDE", QT_TRANSLATE_NOOP("MainWindow", "Slideshow"))
            .clicks(SLOT(photographPlay())).looks(Checkable).in(PHOTOGRAPH),
        Row(C::NextPhotograph, P, "ICON_PHOTO_FORWARD", QT_TRANSLATE_NOOP("MainWindow", "Next photograph"))
            .clicks(SLOT(photographNext())).in(PHOTOGRAPH).repeats()
            .on({Qt::Key_PageDown, Qt::Key_Right, Qt::Key_Down}),
        Row(C::Thumbnails, P, "ICON_PHOTO_THUMBNIL", QT_TRANSLATE_NOOP("MainWindow", "Thumbnails"))
            .clicks(SLOT(photographPreview())).looks(Checkable).in(PHOTOGRAPH),
        Row(C::SlideshowInterval, P, "ICON_PHOTO_TIME", QT_TRANSLATE_NOOP("MainWindow", "Slideshow interval"))
            .clicks(SLOT(photographPlayInterval())).looks(Checkable).in(PHOTOGRAPH),
    };
}

std::vector<Row> edgeRows()
{
    constexpr Group E = Group::Edge;
    return {
        Row(C::About, E, "AboutButton", QT_TRANSLATE_NOOP("MainWindow", "About"))
            .clicks(SLOT(About())).opens(PopUp::About),
        Row(C::SidePanel, E, "BUTTON_SIDE_CLOSE", QT_TRANSLATE_NOOP("MainWindow", "Side panel"))
            .clicks(SLOT(expand())).on({Qt::Key_F9}),
    };
}

std::vector<Row> cardRows()
{
    constexpr Group K = Group::Card;
    return {
        Row(C::Undo, K, "ICON_UNDO", QT_TRANSLATE_NOOP("MainWindow", "Undo"))
            .clicks(SLOT(undo())).on({Qt::CTRL | Qt::Key_Z}),
        Row(C::Redo, K, "ICON_REDO", QT_TRANSLATE_NOOP("MainWindow", "Redo"))
            .clicks(SLOT(redo())).on({Qt::CTRL | Qt::SHIFT | Qt::Key_Z, Qt::CTRL | Qt::Key_Y}),
        Row(C::Present, K, "ICON_PRESENT", QT_TRANSLATE_NOOP("MainWindow", "Presentation"))
            .clicks(SLOT(present())).looks(Checkable).on({Qt::Key_F5}),
        Row(C::HoldPresentation, K, "ICON_PRESENT_HOLD", QT_TRANSLATE_NOOP("MainWindow", "Hold the presentation"))
            .clicks(SLOT(holdPresentation())).looks(Checkable).on({Qt::SHIFT | Qt::Key_F5}),
        Row(C::BlankPresentation, K, "ICON_PRESENT_BLANK", QT_TRANSLATE_NOOP("MainWindow", "Black presentation"))
            .clicks(SLOT(blankPresentation())).looks(Checkable).on({Qt::Key_B, Qt::Key_Period}),
        Row(C::PauseRecording, K, "ICON_RECORD_PAUSE", QT_TRANSLATE_NOOP("MainWindow", "Pause recording"))
            .clicks(SLOT(pauseRecording())).looks(Checkable | AtTimes).on({Qt::CTRL | Qt::SHIFT | Qt::Key_R}),
        Row(C::More, K, "ICON_MORE", QT_TRANSLATE_NOOP("MainWindow", "More"))
            .clicks(SLOT(more())).opens(PopUp::More),
    };
}

std::vector<Row> keyRows()
{
    constexpr Group K = Group::Keys;
    return {
        Row(C::PlayOrPauseFilm, K, nullptr, QT_TRANSLATE_NOOP("MainWindow", "Play or pause"))
            .clicks(SLOT(filmPlayOrPause())).in(FILM).on({Qt::Key_Space}),
        Row(C::FullScreen, K, nullptr, QT_TRANSLATE_NOOP("MainWindow", "Full screen"))
            .clicks(SLOT(toggleFullScreen())).on({Qt::Key_F11}),
        Row(C::Leave, K, nullptr, QT_TRANSLATE_NOOP("MainWindow", "Close the pop-up or leave the full screen"))
            .clicks(SLOT(leave())).on({Qt::Key_Escape}),
        Row(C::Help, K, nullptr, QT_TRANSLATE_NOOP("MainWindow", "All keys"))
            .clicks(SLOT(showKeys())).on({Qt::Key_F1}),
        Row(C::NextMask, K, nullptr, QT_TRANSLATE_NOOP("MainWindow", "Next mask"))
            .clicks(SLOT(nextMask())).on({Qt::SHIFT | Qt::Key_M}),
        Row(C::NextEffect, K, nullptr, QT_TRANSLATE_NOOP("MainWindow", "Next effect"))
            .clicks(SLOT(nextEffect())).on({Qt::Key_V}),
        Row(C::BlackPen, K, nullptr, QT_TRANSLATE_NOOP("MainWindow", "Black pen"))
            .clicks(SLOT(blackPen())).on({Qt::Key_1}),
        Row(C::RedPen, K, nullptr, QT_TRANSLATE_NOOP("MainWindow", "Red pen"))
            .clicks(SLOT(redPen())).on({Qt::Key_2}),
        Row(C::YellowPen, K, nullptr, QT_TRANSLATE_NOOP("MainWindow", "Yellow pen"))
            .clicks(SLOT(yellowPen())).on({Qt::Key_3}),
        Row(C::BluePen, K, nullptr, QT_TRANSLATE_NOOP("MainWindow", "Blue pen"))
            .clicks(SLOT(bluePen())).on({Qt::Key_4}),
        Row(C::ThinnerPen, K, nullptr, QT_TRANSLATE_NOOP("MainWindow", "Thinner pen"))
            .clicks(SLOT(thinnerPen())).on({Qt::Key_Q}),
        Row(C::ThickerPen, K, nullptr, QT_TRANSLATE_NOOP("MainWindow", "Thicker pen"))
            .clicks(SLOT(thickerPen())).on({Qt::Key_W}),
    };
}

} // namespace Commands
