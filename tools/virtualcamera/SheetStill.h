#pragma once

class QPainter;
class QString;

/// The part of the scene that does not move, in the same units.
namespace SheetScene
{

/// Desk, sheet and all that lies still. Texts are left out where no fonts are to be had, which is
/// in a program without a QGuiApplication.
void paintStill(QPainter &painter, const QString &banner);

} // namespace SheetScene
