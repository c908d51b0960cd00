#pragma once

#include "sources/SoundPreview.h"

#include <QTimer>
#include <QWidget>

class LiveSource;
class QLabel;

/// Which microphone is heard now, and how loud it is. It listens only while it is visible. GUI
/// thread; the source outlives it.
class MicrophoneLevel : public QWidget
{
    Q_OBJECT

public:
    MicrophoneLevel(LiveSource *source, QWidget *parent);

    [[nodiscard]] const SoundPreview &preview() const { return m_preview; }

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private slots:
    void look();

private:
    SoundPreview m_preview;
    QLabel *m_name;
    QTimer m_timer;
    SoundMeter::Level m_level;
};
