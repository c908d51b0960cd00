#include "canvas/drawing/TextPainter.h"

#include "canvas/drawing/AnnotationLayer.h"
#include "canvas/drawing/TextAnchor.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>
#include <QTransform>

#include <algorithm>

namespace
{

/// What the document may paint, in its own coordinates: letters lean out of their lines, and a word
/// that is wider than the editor runs out of it to either side.
QRectF inkOf(const QTextDocument &document)
{
    const double overhang = TextPainter::MOST_POINTS;
    const double width = std::max(document.size().width(), document.idealWidth());
    return QRectF(-width - overhang, -overhang, 3.0 * width + 2.0 * overhang,
                  document.size().height() + 2.0 * overhang);
}

/// What the lines of the document cover, in its own coordinates.
QRectF linesOf(const QTextDocument &document)
{
    QRectF lines;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QRectF place = document.documentLayout()->blockBoundingRect(block);
        for (int i = 0; i < block.layout()->lineCount(); ++i)
            lines |= block.layout()->lineAt(i).naturalTextRect().translated(place.topLeft());
    }
    return lines;
}

} // namespace

void TextPainter::paint(QTextDocument &document, AnnotationLayer &layer, const TextAnchor &anchor,
                        QSize transformedSize, QSize canvasSize)
{
    layer.setUsed();
    if (canvasSize.isEmpty() || document.isEmpty())
        return;
    const double scale =
        std::min(static_cast<double>(transformedSize.height()) / canvasSize.height(),
                 static_cast<double>(transformedSize.width()) / canvasSize.width());
    const QRectF lines = QTransform::fromScale(scale, scale).mapRect(linesOf(document));
    const QPoint corner = anchor.point(lines, layer.size());
    QTransform place = QTransform::fromTranslate(corner.x(), corner.y());
    place.scale(scale, scale);
    layer.paint({place.mapRect(inkOf(document)).toAlignedRect() & layer.rect()},
                [&](QPainter &painter) {
                    painter.setTransform(place);
                    document.drawContents(&painter);
                });
    // Only the tiles under the letters carry drawing, which are fewer than were touched.
    layer.trim();
}
