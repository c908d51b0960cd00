#include "PresenterActions.h"

#include "ModeRules.h"

namespace
{

PresenterAction spaceAction(int mode)
{
    switch (mode) {
    case ModeRules::Live:
        return PresenterAction::Freeze;
    case ModeRules::Film:
        return PresenterAction::PlayOrPause;
    default:
        return PresenterAction::None;
    }
}

PresenterAction plainAction(int key, int mode, bool fullScreen)
{
    const bool photographs = mode == ModeRules::Photograph;
    switch (key) {
    case Qt::Key_PageUp:
    case Qt::Key_Left:
    case Qt::Key_Up:
        return photographs ? PresenterAction::PreviousPhotograph : PresenterAction::None;
    case Qt::Key_PageDown:
    case Qt::Key_Right:
    case Qt::Key_Down:
        return photographs ? PresenterAction::NextPhotograph : PresenterAction::None;
    case Qt::Key_Space:
        return spaceAction(mode);
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        return PresenterAction::ZoomIn;
    case Qt::Key_Minus:
        return PresenterAction::ZoomOut;
    case Qt::Key_F11:
        return PresenterAction::ToggleFullScreen;
    case Qt::Key_Escape:
        return fullScreen ? PresenterAction::ToggleFullScreen : PresenterAction::None;
    default:
        return PresenterAction::None;
    }
}

} // namespace

PresenterAction presenterAction(int key, Qt::KeyboardModifiers modifiers, int mode, bool fullScreen)
{
    const Qt::KeyboardModifiers held = modifiers & ~Qt::KeypadModifier;
    if (held == Qt::ControlModifier && key == Qt::Key_S)
        return PresenterAction::Snapshot;
    if (held == Qt::ControlModifier && key == Qt::Key_P)
        return PresenterAction::Print;
    if ((held & ~Qt::ShiftModifier) != Qt::NoModifier)
        return PresenterAction::None;
    const bool shiftedSign = key == Qt::Key_Plus || key == Qt::Key_Minus;
    if ((held & Qt::ShiftModifier) && !shiftedSign)
        return PresenterAction::None;
    return plainAction(key, mode, fullScreen);
}
