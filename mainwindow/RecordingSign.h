#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QTimer>
#include <QWidget>

/// Says in every mode that a recording runs: a red dot on the tab of the live picture, and the time
/// in the title of the window. GUI thread.
class RecordingSign : public QWidget
{
    Q_OBJECT

public:
    /// A child of the tab, whose window has the title.
    explicit RecordingSign(QWidget *tab);

    /// Counts from now on. Nothing changes while it counts already.
    void start();
    /// Gives the window its own title back.
    void stop();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void showTime();

    QElapsedTimer m_clock;
    QTimer m_timer;
    QString m_ownTitle;
};
