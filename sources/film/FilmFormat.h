#pragma once

#include <QSize>

/// What becomes of a film's pictures before they are shown. No media library.
namespace FilmFormat
{

/// The size in which a picture with pixels of `aspectWidth` to `aspectHeight` is shown: square
/// pixels, of which none is lost, and at most 3840x2160 or its upright, in the same shape. An
/// aspect that makes no sense counts as square.
[[nodiscard]] QSize shownSize(QSize stored, int aspectWidth, int aspectHeight);

/// Whether pictures of that size that do not say how their colours are stored are taken for
/// high-definition ones (BT.709), as players agreed on, or for older ones (BT.601).
[[nodiscard]] bool isHighDefinition(QSize stored);

/// Of how many lines the television is that has pictures of that size: 525, 625, or 0 for none.
/// Its screens' primaries are those of pictures that name none, as players agreed on.
[[nodiscard]] int televisionLines(QSize stored);

} // namespace FilmFormat
