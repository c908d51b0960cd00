#include "canvas/TextAnnotation.h"

#include "canvas/TextEditor.h"
#include "canvas/drawing/AnnotationLayer.h"
#include "canvas/drawing/TextAnchor.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QTextBlock>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>
#include <QTransform>

#include <algorithm>

namespace
{

const char DEFAULT_FACE[] = "Arial";
constexpr int DEFAULT_POINTS = 18;
/// Larger letters than any picture; layouts of a million points hang.
constexpr int MOST_POINTS = 1000;
constexpr int LARGEST_EDGE = 300;
/// Between the editor and the canvas edge, one more than is left free.
constexpr int EDGE_MARGIN = 5;

/// What the document may paint, in its own coordinates: letters lean out of their lines, and a word
/// that is wider than the editor runs out of it to either side.
QRectF inkOf(const QTextDocument &document)
{
    const double overhang = MOST_POINTS;
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

TextAnnotation::TextAnnotation(QWidget *canvas)
    : m_editor(new TextEditor(canvas))
    , m_fontFace(QString::fromLatin1(DEFAULT_FACE))
    , m_fontSize(DEFAULT_POINTS)
{
    m_editor->hide();
    m_editor->setStyleSheet(QStringLiteral("border: none;"));
    // A press on the editor, its context menu's included, is no press on the canvas.
    m_editor->setAttribute(Qt::WA_NoMousePropagation);
}

void TextAnnotation::open(QPoint widgetPoint)
{
    const QSize room = m_editor->parentWidget()->size() - QSize(EDGE_MARGIN, EDGE_MARGIN);
    m_editor->move(widgetPoint);
    // A click in the last pixels still opens something to type into.
    m_editor->resize(std::clamp(room.width() - widgetPoint.x(), 1, LARGEST_EDGE),
                     std::clamp(room.height() - widgetPoint.y(), 1, LARGEST_EDGE));
    m_editor->clear();
    m_editor->show();
    m_editor->setFocus();
    applyFormat();
}

bool TextAnnotation::isOpen() const
{
    return !m_editor->isHidden();
}

void TextAnnotation::close()
{
    // A text editor does not pass the focus on when it is hidden, and would go on taking every key.
    m_editor->clearFocus();
    m_editor->hide();
    m_editor->moveCursor(QTextCursor::Start);
    // An editor that was never on the screen has not laid its document out.
    if (m_editor->document()->textWidth() <= 0.0)
        m_editor->document()->setTextWidth(m_editor->width());
}

void TextAnnotation::keepInside()
{
    if (!isOpen())
        return;
    const QSize free = m_editor->parentWidget()->size() - m_editor->size();
    m_editor->move(std::clamp(m_editor->x(), 0, std::max(free.width(), 0)),
                   std::clamp(m_editor->y(), 0, std::max(free.height(), 0)));
}

void TextAnnotation::setColor(const QColor &color)
{
    m_color = color;
    applyFormat();
}

void TextAnnotation::setFontFace(const QString &face)
{
    m_fontFace = face;
    applyFormat();
}

void TextAnnotation::setFontSize(int points)
{
    if (points < 1)
        return;
    m_fontSize = points;
    applyFormat();
}

void TextAnnotation::applyFormat()
{
    QTextCursor cursor = m_editor->textCursor();
    QTextCharFormat format = cursor.charFormat();
    format.setFont(QFont(m_fontFace, std::min(m_fontSize, MOST_POINTS)));
    format.setForeground(QBrush(m_color));
    cursor.setCharFormat(format);
    m_editor->setTextCursor(cursor);
}

void TextAnnotation::paintInto(AnnotationLayer &layer, const TextAnchor &anchor,
                               QSize transformedSize, QSize canvasSize) const
{
    layer.setUsed();
    if (canvasSize.isEmpty())
        return;
    QTextDocument *document = m_editor->document();
    if (document->isEmpty())
        return;
    const double scale = std::min(double(transformedSize.height()) / canvasSize.height(),
                                  double(transformedSize.width()) / canvasSize.width());
    const QRectF lines = QTransform::fromScale(scale, scale).mapRect(linesOf(*document));
    const QPoint corner = anchor.point(lines, layer.size());
    QTransform place = QTransform::fromTranslate(corner.x(), corner.y());
    place.scale(scale, scale);
    layer.paint({place.mapRect(inkOf(*document)).toAlignedRect() & layer.rect()},
                [&](QPainter &painter) {
                    painter.setTransform(place);
                    document->drawContents(&painter);
                });
    // The letters cover far less than they might have.
    layer.trim();
}
