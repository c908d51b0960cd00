#pragma once

#include <QWidget>

class CanvasDeck;

/// Tells screen readers which indication or sentence is shown over the picture and which mode was
/// entered, each once, as an alert and as a notification. The widget is never shown; its accessible
/// name is the text that was announced last. A child of the window. GUI thread.
class Announcer : public QWidget
{
    Q_OBJECT

public:
    /// Announces for the canvases that the deck has at this moment, and for the sentences over
    /// them.
    Announcer(const CanvasDeck *deck, QWidget *window);

    void say(const QString &text);
};
