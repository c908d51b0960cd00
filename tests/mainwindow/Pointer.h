#pragma once

#include <QPoint>
#include <QStringList>

class QWidget;

/// The mouse and the keyboard of a user: events go through the X server, so they reach what really
/// lies under the pointer. Each call returns when the server has taken the events; the
/// application's event loop runs meanwhile.
namespace Pointer
{

/// Where a widget's middle stands on the screen.
QPoint middle(const QWidget *widget);

void moveTo(QPoint global);
void press();
void release();
void click(QPoint global);
void click(const QWidget *widget);
/// Button down, a straight way in steps, button up; all on the screen.
void drag(QPoint from, QPoint to);
/// A key by its X name, such as "space" or "ctrl+s".
void key(const QString &name);
void keyDown(const QString &name);
void keyUp(const QString &name);
void type(const QString &text);

/// One call of the tool, for window moves and the like.
void run(const QStringList &arguments);

} // namespace Pointer
