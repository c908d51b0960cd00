#pragma once

#include <QFont>

/// Captions stand in places of fixed sizes, which the usual font leaves room for. Where a wider
/// font stands in for it, its letters are made narrower rather than cut off.
namespace FittedFont
{

/// The font, as narrow as the text needs to be at most `width` device-independent pixels wide, but
/// no narrower than 70 percent.
[[nodiscard]] QFont within(const QFont &font, const QString &text, int width);

} // namespace FittedFont
