#pragma once

class PointerInput;
class QEvent;

/// Hands the toolkit's events to PointerInput. GUI thread.
namespace PointerEvents
{

/// Hands on an event of a mouse, a pen, a finger or a wheel that a widget has received, and says
/// whether it was one. It accepts what a pointer does to the widget, so that the toolkit makes no
/// mouse of a pen or a finger; a pen in the air is left to the toolkit, which moves its pointer.
bool hand(QEvent *event, PointerInput &input);

/// Whether fingers sent it; a widget gets such events in event() alone.
[[nodiscard]] bool isOfFingers(const QEvent &event);

/// Hands on that a pen has come near or gone, which the application object is told.
void handProximity(const QEvent *event, PointerInput &input);

} // namespace PointerEvents
