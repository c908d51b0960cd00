#pragma once

#include <QWidget>

class CanvasDeck;

/// Tells screen readers what the indications on the picture tell the eyes, and which mode has been
/// entered: each of them once, as an alert. Never shown; its name is what was said last. A child of
/// the window. GUI thread.
class Announcer : public QWidget
{
    Q_OBJECT

public:
    /// Speaks for all canvases that the deck has by now.
    Announcer(const CanvasDeck *deck, QWidget *window);

    void say(const QString &text);
};
