#pragma once

#include <QSize>
#include <QString>

class QSvgRenderer;

/// Draws into memory and writes PNG files: shapes, never text, so neither a display nor fonts are
/// needed.
namespace Drawing
{

/// Draws the whole drawing at that size into the file, whose folder is made when it is missing.
/// False when it cannot be written.
[[nodiscard]] bool write(QSvgRenderer &drawing, QSize size, const QString &path);

} // namespace Drawing
