#pragma once

#include <QSize>

class AnnotationLayer;
class QTextDocument;
class TextAnchor;

/// How a written text becomes part of the drawing.
namespace TextPainter
{

/// A limit above the size of letters in any picture, in points; layouts of a million points hang.
constexpr int MOST_POINTS = 1000;

/// Paints the document into the layer at the anchor, scaled as the view (`transformedSize`, in
/// output pixels) is to the canvas, and makes the layer count as used. A canvas without pixels
/// only does the latter.
void paint(QTextDocument &document, AnnotationLayer &layer, const TextAnchor &anchor,
           QSize transformedSize, QSize canvasSize);

} // namespace TextPainter
