#pragma once

#include "canvas/osd/StopWatch.h"

#include <QElapsedTimer>
#include <QString>
#include <QTimer>
#include <QWidget>

class ImageButton;

/// Says in every mode that a recording runs: a red dot on the tab of the live picture, and the time
/// in the title of the window. GUI thread.
class RecordingSign : public QWidget
{
    Q_OBJECT

public:
    /// A child of the tab, whose window has the title.
    explicit RecordingSign(ImageButton *tab);

    /// Counts from now on. Nothing changes while it counts already.
    void start();
    /// Has the time stand still, and shows two bars in place of the dot.
    void setPaused(bool paused);
    /// Gives the window its own title back.
    void stop();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void showTime();

    ImageButton *const m_tab;
    QElapsedTimer m_clock;
    StopWatch m_time;
    bool m_paused = false;
    QTimer m_timer;
    QString m_ownTitle;
};
