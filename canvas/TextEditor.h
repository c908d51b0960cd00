#pragma once

#include <QPixmap>
#include <QTextEdit>

/// A rich-text editor on a transparent ground, so that the picture is seen under the writing, with
/// a dashed line along its edge. While it is open, a black or white halo around the letters lets
/// them be read on whatever the picture shows there. One key ends it: Escape. Every other key is
/// text.
class TextEditor : public QTextEdit
{
    Q_OBJECT

public:
    explicit TextEditor(QWidget *parent);

signals:
    /// Escape was pressed: the text is to be committed.
    void finished();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    /// What has no colour of its own gets that of what is written there.
    void insertFromMimeData(const QMimeData *source) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    [[nodiscard]] QPixmap paintedHalo() const;
    void paintCaretGround(QPainter &painter) const;

    /// Null when the text, what an input method composes, the size or the place in a long text has
    /// changed since it was painted.
    QPixmap m_halo;
};
