#pragma once

#include "sources/LiveRecording.h"

#include <QComboBox>
#include <QTimer>

#include <vector>

/// The microphones, of which the user chooses the one that recordings hear. It follows what is
/// plugged in while it is visible. GUI thread; the recording outlives it.
class MicrophoneList : public QComboBox
{
    Q_OBJECT

public:
    MicrophoneList(LiveRecording *recording, QWidget *parent);

private slots:
    void look();
    void take(int index);

private:
    void refresh();

    LiveRecording *m_recording;
    std::vector<SoundSource> m_sources;
    QTimer m_timer;
};
