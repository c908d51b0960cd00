#pragma once

#include <QTextEdit>

/// A rich-text editor that one key ends: Escape. Every other key is text.
class TextEditor : public QTextEdit
{
    Q_OBJECT

public:
    using QTextEdit::QTextEdit;

signals:
    /// The writer wants the text to be committed.
    void finished();

protected:
    void keyPressEvent(QKeyEvent *event) override;
};
