#include "canvas/TextEditor.h"

#include <QKeyEvent>

void TextEditor::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        event->accept();
        emit finished();
        return;
    }
    QTextEdit::keyPressEvent(event);
}
