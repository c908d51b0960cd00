#pragma once

#include <QObject>

class Popups;
class QWidget;

/// Closes the open pop-up when a canvas is pressed; the press then does what it does without one.
/// GUI thread.
class PopupCloser : public QObject
{
    Q_OBJECT

public:
    /// A child of the canvas. The pop-ups must live longer.
    PopupCloser(Popups *popups, QWidget *canvas);

    /// Filters nothing.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Popups *m_popups;
};
