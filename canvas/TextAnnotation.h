#pragma once

#include <QColor>
#include <QPoint>
#include <QString>

class QPainter;
class QTextDocument;
class QWidget;
class TextEditor;

/// The text tool: a borderless editor on the canvas whose document becomes part of the drawing.
///
/// GUI thread only. It works on widgets, which deliver events.
class TextAnnotation
{
public:
    /// The editor is a hidden child of the canvas, which owns it.
    explicit TextAnnotation(QWidget *canvas);

    [[nodiscard]] TextEditor *editor() const { return m_editor; }
    /// What was written last, also after close().
    [[nodiscard]] QTextDocument &document() const;

    /// Shows an empty editor that has the keyboard focus.
    void open(QPoint widgetPoint);
    /// Whether the editor is open, also while the canvas itself is not on the screen.
    [[nodiscard]] bool isOpen() const;
    /// Hides the editor and gives the keyboard focus to the window. The text stays.
    void close();
    /// Paints an open text where it stands on the canvas, without its caret and selection.
    void paint(QPainter *painter) const;
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

private:
    TextEditor *const m_editor;
    QColor m_color = Qt::black;
    QString m_fontFace;
    int m_fontSize;
};
