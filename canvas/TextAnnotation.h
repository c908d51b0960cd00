#pragma once

#include <QColor>
#include <QPoint>
#include <QSize>
#include <QString>

class AnnotationLayer;
class TextAnchor;
class TextEditor;
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

    [[nodiscard]] TextEditor *editor() const { return m_editor; }

    /// Shows an empty editor with the keyboard focus.
    void open(QPoint widgetPoint);
    /// Also when the canvas itself is not on the screen.
    [[nodiscard]] bool isOpen() const;
    /// Hides the editor and leaves the keyboard focus to the window. The text stays.
    void close();
    /// Moves an open editor back into a canvas that has become smaller.
    void keepInside();

    /// Each acts on the selection, or else on what is typed next. A size below 1 point is ignored.
    void setColor(const QColor &color);
    void setFontFace(const QString &face);
    void setFontSize(int points);
    void applyFormat();

    [[nodiscard]] QColor color() const { return m_color; }
    [[nodiscard]] QString fontFace() const { return m_fontFace; }
    [[nodiscard]] int fontSize() const { return m_fontSize; }

    /// Paints the document into the layer at the anchor, scaled as the view (`transformedSize`, in
    /// output pixels) is to the canvas, and makes the layer count as used. A canvas without pixels
    /// only does the latter. Needs the lock that guards the layer.
    void paintInto(AnnotationLayer &layer, const TextAnchor &anchor, QSize transformedSize,
                   QSize canvasSize) const;

private:
    TextEditor *const m_editor;
    QColor m_color = Qt::black;
    QString m_fontFace;
    int m_fontSize;
};
