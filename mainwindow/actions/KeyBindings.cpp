#include "mainwindow/actions/KeyBindings.h"

#include "mainwindow/ModeRules.h"

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

PresenterAction escapeAction(const PresenterContext &context)
{
    // What lies on top goes first.
    if (context.popUpShown)
        return PresenterAction::ClosePopUp;
    return context.fullScreen ? PresenterAction::ToggleFullScreen : PresenterAction::None;
}

PresenterAction plainAction(int key, const PresenterContext &context)
{
    const bool photographs = context.mode == ModeRules::Photograph;
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
        return spaceAction(context.mode);
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        return PresenterAction::ZoomIn;
    case Qt::Key_Minus:
        return PresenterAction::ZoomOut;
    case Qt::Key_F11:
        return PresenterAction::ToggleFullScreen;
    case Qt::Key_Escape:
        return escapeAction(context);
    default:
        return PresenterAction::None;
    }
}

} // namespace

PresenterAction presenterAction(int key, Qt::KeyboardModifiers modifiers,
                                const PresenterContext &context)
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
    return plainAction(key, context);
}
