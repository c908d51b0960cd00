#include "canvas/TextAnnotation.h"

#include "canvas/TextEditor.h"
#include "canvas/drawing/TextPainter.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QScrollBar>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>

namespace
{

const char DEFAULT_FACE[] = "Arial";
constexpr int DEFAULT_POINTS = 18;
constexpr int LARGEST_EDGE = 300;
/// The distance between the editor and the canvas edge, plus one.
constexpr int EDGE_MARGIN = 5;

} // namespace

TextAnnotation::TextAnnotation(QWidget *canvas)
    : m_editor(new TextEditor(canvas))
    , m_fontFace(QString::fromLatin1(DEFAULT_FACE))
    , m_fontSize(DEFAULT_POINTS)
{
    m_editor->hide();
    m_editor->setStyleSheet(QStringLiteral("border: none;"));
    QPalette palette = m_editor->palette();
    palette.setColor(QPalette::Base, Qt::transparent);
    palette.setColor(QPalette::Highlight, QColor(0x0074E6));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    m_editor->setPalette(palette);
    // Presses on the editor and its context menu must not reach the canvas.
    m_editor->setAttribute(Qt::WA_NoMousePropagation);
}

void TextAnnotation::open(QPoint widgetPoint)
{
    const QSize room = m_editor->parentWidget()->size() - QSize(EDGE_MARGIN, EDGE_MARGIN);
    m_editor->move(widgetPoint);
    // A click in the last pixels still opens an editor that can be typed into.
    m_editor->resize(std::clamp(room.width() - widgetPoint.x(), 1, LARGEST_EDGE),
                     std::clamp(room.height() - widgetPoint.y(), 1, LARGEST_EDGE));
    m_editor->clear();
    m_editor->show();
    m_editor->setFocus();
    applyFormat();
}

QTextDocument &TextAnnotation::document() const
{
    return *m_editor->document();
}

bool TextAnnotation::isOpen() const
{
    return !m_editor->isHidden();
}

void TextAnnotation::close()
{
    // A hidden text editor does not pass the focus on and would go on taking every key.
    m_editor->clearFocus();
    m_editor->hide();
    m_editor->moveCursor(QTextCursor::Start);
    // An editor that was never on the screen has not laid its document out.
    if (m_editor->document()->textWidth() <= 0.0)
        m_editor->document()->setTextWidth(m_editor->width());
}

void TextAnnotation::paint(QPainter *painter) const
{
    if (!isOpen())
        return;
    const QPoint scrolled(m_editor->horizontalScrollBar()->value(),
                          m_editor->verticalScrollBar()->value());
    painter->save();
    painter->setClipRect(m_editor->geometry(), Qt::IntersectClip);
    painter->translate(m_editor->pos() - scrolled);
    QAbstractTextDocumentLayout::PaintContext context;
    // This is painted with every frame, and what is pasted may be a book.
    context.clip = QRectF(scrolled, m_editor->size());
    context.palette.setColor(QPalette::Text, m_color);
    document().documentLayout()->draw(painter, context);
    painter->restore();
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
    format.setFont(QFont(m_fontFace, std::min(m_fontSize, TextPainter::MOST_POINTS)));
    format.setForeground(QBrush(m_color));
    cursor.setCharFormat(format);
    m_editor->setTextCursor(cursor);
}
