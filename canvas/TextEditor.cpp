#include "canvas/TextEditor.h"

#include <QAbstractTextDocumentLayout>
#include <QGlyphRun>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QPainterPath>
#include <QRawFont>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextFrame>
#include <QTextLayout>
#include <QVector>

#include <algorithm>
#include <cmath>

namespace
{

const QColor OUTLINE(0x0074E6);
/// Half of it is seen on each ground; a single pixel is lost on a projector.
constexpr int CARET_WIDTH = 4;
/// How far the halo reaches out of a letter.
constexpr double HALO = 2.5;

/// Relative luminance of a colour, 0 to 1, as the contrast of texts is defined.
double luminance(const QColor &color)
{
    const auto linear = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

/// White or black, whichever the ink reads better on: at least 4.5:1 for every ink.
QColor haloFor(const QColor &ink)
{
    // At this luminance both contrasts are the same.
    constexpr double EQUAL_CONTRAST = 0.1791;
    return luminance(ink) > EQUAL_CONTRAST ? Qt::black : Qt::white;
}

/// Whether some of a place's height is seen, a halo included.
bool meets(const QRectF &place, const QRectF &seen)
{
    return place.top() - HALO < seen.bottom() && place.bottom() + HALO > seen.top();
}

/// From where to where in a text, the end left out.
struct Span {
    int start;
    int end;
};

Span shared(const Span &a, const Span &b)
{
    return {std::max(a.start, b.start), std::min(a.end, b.end)};
}

/// Letters of one colour, counted in the text of their block as it is laid out: with what an input
/// method composes.
struct InkedSpan {
    Span span;
    QColor ink;
};

QColor inkOf(const QTextCharFormat &format, const QColor &usual)
{
    return format.hasProperty(QTextFormat::ForegroundBrush) ? format.foreground().color() : usual;
}

/// All letters of a block; `usual` is the colour of those that have none.
QVector<InkedSpan> inkedSpans(const QTextBlock &block, const QColor &usual)
{
    const QTextLayout &layout = *block.layout();
    const int composed = layout.preeditAreaText().size();
    // Nothing that is composed counts as an empty part at the end.
    const int composedAt = composed > 0 ? layout.preeditAreaPosition() : block.length();
    QVector<InkedSpan> spans;
    // What is composed has the format of the letter before it, unless the input method says more.
    QColor ink = inkOf(block.charFormat(), usual);
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const int start = it.fragment().position() - block.position();
        const int end = start + it.fragment().length();
        const QColor own = inkOf(it.fragment().charFormat(), usual);
        if (start < composedAt)
            ink = own;
        spans.append({{start, std::min(end, composedAt)}, own});
        spans.append({{std::max(start, composedAt) + composed, end + composed}, own});
    }
    spans.append({{composedAt, composedAt + composed}, ink});
    for (const QTextLayout::FormatRange &range : layout.formats())
        spans.append({{range.start, range.start + range.length}, inkOf(range.format, ink)});
    return spans;
}

/// The letters of a span of a line, in the coordinates of the block.
QPainterPath lettersOf(const QTextLine &line, const Span &span)
{
    QPainterPath letters;
    letters.setFillRule(Qt::WindingFill);
    const QList<QGlyphRun> runs = line.glyphRuns(span.start, span.end - span.start);
    for (const QGlyphRun &run : runs) {
        const QVector<quint32> glyphs = run.glyphIndexes();
        const QVector<QPointF> places = run.positions();
        for (int i = 0; i < glyphs.size(); ++i)
            letters.addPath(run.rawFont().pathForGlyph(glyphs[i]).translated(places[i]));
    }
    return letters;
}

void paintHalo(QPainter *painter, const QTextLine &line, const QVector<InkedSpan> &spans)
{
    const Span whole{line.textStart(), line.textStart() + line.textLength()};
    for (const InkedSpan &each : spans) {
        const Span span = shared(each.span, whole);
        if (span.start < span.end)
            painter->strokePath(
                lettersOf(line, span),
                QPen(haloFor(each.ink), 2.0 * HALO, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    }
}

/// Of what is seen alone: what is pasted may be a book, and no key may take longer for it.
void paintHalo(QPainter *painter, const QTextDocument &document, const QRectF &seen,
               const QColor &usual)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        // Within a table a block's own layout knows the place in the cell only.
        const QRectF place = document.documentLayout()->blockBoundingRect(block);
        if (place.top() - HALO >= seen.bottom() &&
            document.frameAt(block.position()) == document.rootFrame())
            break;
        if (!meets(place, seen))
            continue;
        const QVector<InkedSpan> spans = inkedSpans(block, usual);
        painter->translate(place.topLeft());
        for (int i = 0; i < block.layout()->lineCount(); ++i) {
            const QTextLine line = block.layout()->lineAt(i);
            if (meets(line.rect().translated(place.topLeft()), seen))
                paintHalo(painter, line, spans);
        }
        painter->translate(-place.topLeft());
    }
}

/// The parts of a span that have no colour of their own.
QVector<Span> partsWithoutInk(const QTextDocument &document, Span span)
{
    QVector<Span> parts;
    for (QTextBlock block = document.findBlock(span.start);
         block.isValid() && block.position() < span.end; block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const int start = it.fragment().position();
            const Span part = shared({start, start + it.fragment().length()}, span);
            if (part.start < part.end &&
                !it.fragment().charFormat().hasProperty(QTextFormat::ForegroundBrush))
                parts.append(part);
        }
    }
    return parts;
}

} // namespace

TextEditor::TextEditor(QWidget *parent)
    : QTextEdit(parent)
{
    viewport()->setAutoFillBackground(false);
    setCursorWidth(CARET_WIDTH);
    connect(this, &QTextEdit::textChanged, this, [this] { m_halo = QPixmap(); });
}

void TextEditor::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        event->accept();
        emit finished();
        return;
    }
    QTextEdit::keyPressEvent(event);
}

void TextEditor::inputMethodEvent(QInputMethodEvent *event)
{
    QList<QInputMethodEvent::Attribute> attributes = event->attributes();
    const bool hasFormat =
        std::any_of(attributes.cbegin(), attributes.cend(),
                    [](const auto &each) { return each.type == QInputMethodEvent::TextFormat; });
    // Without one the first letters of a text would be composed in the desktop's font and colour.
    if (!hasFormat && !event->preeditString().isEmpty())
        attributes.append({QInputMethodEvent::TextFormat, 0, event->preeditString().size(),
                           textCursor().charFormat()});
    QInputMethodEvent formatted(event->preeditString(), attributes);
    formatted.setCommitString(event->commitString(), event->replacementStart(),
                              event->replacementLength());
    QTextEdit::inputMethodEvent(&formatted);
    event->setAccepted(formatted.isAccepted());
    m_halo = QPixmap();
}

void TextEditor::insertFromMimeData(const QMimeData *source)
{
    QTextCharFormat ink;
    ink.setForeground(textCursor().charFormat().foreground());
    const int start = textCursor().selectionStart();
    QTextEdit::insertFromMimeData(source);
    const QVector<Span> parts = partsWithoutInk(*document(), {start, textCursor().position()});
    if (parts.isEmpty())
        return;
    QTextCursor cursor(document());
    // One step of undo takes it all away.
    cursor.joinPreviousEditBlock();
    for (const Span &part : parts) {
        cursor.setPosition(part.start);
        cursor.setPosition(part.end, QTextCursor::KeepAnchor);
        cursor.mergeCharFormat(ink);
    }
    cursor.endEditBlock();
}

void TextEditor::paintEvent(QPaintEvent *event)
{
    {
        QPainter painter(viewport());
        // The editor is painted with every frame of the picture under it.
        if (m_halo.isNull())
            m_halo = paintedHalo();
        painter.drawPixmap(0, 0, m_halo);
        paintCaretGround(painter);
    }
    QTextEdit::paintEvent(event);
    QPainter painter(viewport());
    painter.setPen(QPen(OUTLINE, 1.0, Qt::DashLine));
    painter.drawRect(viewport()->rect().adjusted(0, 0, -1, -1));
}

void TextEditor::resizeEvent(QResizeEvent *event)
{
    m_halo = QPixmap();
    QTextEdit::resizeEvent(event);
}

void TextEditor::scrollContentsBy(int dx, int dy)
{
    m_halo = QPixmap();
    QTextEdit::scrollContentsBy(dx, dy);
}

QPixmap TextEditor::paintedHalo() const
{
    const double ratio = devicePixelRatioF();
    QPixmap halo(viewport()->size() * ratio);
    halo.fill(Qt::transparent);
    QPainter painter(&halo);
    painter.setRenderHint(QPainter::Antialiasing);
    // A painter would leave out a ratio below 1, which small screens have.
    painter.scale(ratio, ratio);
    const QPointF scrolled(horizontalScrollBar()->value(), verticalScrollBar()->value());
    painter.translate(-scrolled);
    paintHalo(&painter, *document(), QRectF(scrolled, viewport()->size()),
              palette().color(QPalette::Text));
    painter.end();
    halo.setDevicePixelRatio(ratio);
    return halo;
}

// The toolkit's caret inverts what is under it, which on gray is gray again.
void TextEditor::paintCaretGround(QPainter &painter) const
{
    if (!hasFocus())
        return;
    const QRect caret = cursorRect();
    const QRect left(caret.topLeft(), QSize(caret.width() / 2, caret.height()));
    painter.fillRect(caret, Qt::black);
    painter.fillRect(left, Qt::white);
}
