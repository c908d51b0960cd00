#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class CanvasModel;
class QWidget;

/// Says when a canvas has to make its picture anew by itself: in place of a source that delivers
/// nothing, and between two frames when the view has moved. A part of the canvas. GUI thread.
class RefreshTimers : public QObject
{
    Q_OBJECT

public:
    /// Both must live longer.
    RefreshTimers(const QWidget &canvas, const CanvasModel &model);

    // The source has stopped delivering, or delivers again.
    void start() { m_refresh.start(); }
    void stop() { m_refresh.stop(); }

    /// Something was drawn. A source in motion shows it with its next frame.
    void drawn();
    /// The view has moved. That is shown at once, as it costs a picture and not a frame: the eye
    /// follows a hand that pulls the picture, and a whole frame's time would be seen.
    void viewMoved();

signals:
    /// The picture is to be made anew, with all that a frame does.
    void due();
    /// The picture is to be made anew for the eye alone.
    void viewDue();
    /// A moment at which nothing else is to be done; comes every 40 ms.
    void idle();

private:
    void refreshWhenIdle();
    void showView();

    const QWidget &m_canvas;
    const CanvasModel &m_model;
    QTimer m_refresh;
    QTimer m_idle;
    /// Runs from a stroke over a standing picture to the refresh that shows it.
    QTimer m_stroke;
    /// Runs from a change of the view to the refresh that shows it.
    QTimer m_view;
    /// Since the view was shown last.
    QElapsedTimer m_sinceView;
};
