#pragma once

#include "sources/LiveRecording.h"

#include <QString>
#include <QTimer>
#include <QWidget>

class LiveSource;

/// How a recording is doing, at the upper right of the window in every mode while one runs: five
/// bars for the loudness, the minutes that the disk lasts, and the pictures that were lost. What is
/// wrong is marked. GUI thread.
class RecordingStatus : public QWidget
{
    Q_OBJECT

public:
    static constexpr QSize SIZE{116, 20};

    explicit RecordingStatus(QWidget *window);

    /// Asks the source from time to time until stop(); hidden without one.
    void start(const LiveSource *source);
    void stop();

    /// What it shows of that state, with the pictures that the camera or the program lost. Paints
    /// only what is another one.
    void showState(const RecordingState &state, qint64 missed);

protected:
    void paintEvent(QPaintEvent *event) override;

private slots:
    void look();

private:
    struct Shown {
        int bars = 0;
        bool withSound = true;
        bool mute = false;
        QString minutes;
        bool fewMinutes = false;
        QString lost;

        bool operator==(const Shown &other) const;
    };

    int paintBars(QPainter &painter) const;

    const LiveSource *m_source = nullptr;
    QTimer m_timer;
    Shown m_shown;
};
