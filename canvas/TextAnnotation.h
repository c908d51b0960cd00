#pragma once

#include <QColor>
#include <QPoint>
#include <QSize>
#include <QString>

class AnnotationLayer;
class QTextEdit;
class QWidget;

/// The text tool: a borderless editor on the canvas whose document becomes part of the drawing.
///
/// GUI thread only. Everything but paintInto() works on widgets, which deliver events, and is
/// therefore never called under the canvas lock.
class TextAnnotation
{
public:
    /// The editor is a hidden child of the canvas, which owns it.
    explicit TextAnnotation(QWidget *canvas);

    /// Shows an empty editor with the keyboard focus. Its document will begin at the anchor, in
    /// layer coordinates.
    void open(QPoint widgetPoint, QPoint anchor);
    /// Also when the canvas itself is not on the screen.
    [[nodiscard]] bool isOpen() const;
    void close();

    /// Each acts on the selection, or else on what is typed next. A size below 1 point is ignored.
    void setColor(const QColor &color);
    void setFontFace(const QString &face);
    void setFontSize(int points);
    void applyFormat();

    [[nodiscard]] QColor color() const { return m_color; }
    [[nodiscard]] QString fontFace() const { return m_fontFace; }
    [[nodiscard]] int fontSize() const { return m_fontSize; }

    /// Paints the document into the layer, scaled as the view (`transformedSize`, in output
    /// pixels) is to the canvas, and makes the layer count as used. A canvas without pixels only
    /// does the latter. Needs the lock that guards the layer.
    void paintInto(AnnotationLayer &layer, QSize transformedSize, QSize canvasSize) const;

private:
    QTextEdit *const m_editor;
    QPoint m_anchor;
    QColor m_color = Qt::black;
    QString m_fontFace;
    int m_fontSize;
};
