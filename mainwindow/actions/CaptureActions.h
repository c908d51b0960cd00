#pragma once

#include <QString>

class CanvasDeck;
class CommandButtons;
class ImageButton;
class LiveSource;
class RecordingSign;
class QWidget;

/// Snapshots and recordings: folders and modes from the settings, the buttons that show what runs.
/// GUI thread.
class CaptureActions
{
public:
    /// Messages stand over `window`.
    CaptureActions(CanvasDeck *deck, const CommandButtons *buttons, QWidget *window);

    /// Null, or none yet: nothing can be recorded.
    void setSource(LiveSource *source);

    /// The second record button, beside the panel's.
    void setLiveRecordButton(ImageButton *button);
    /// What says in every mode that a recording runs.
    void setRecordingSign(RecordingSign *sign);

    /// One picture, or the start or end of a series, as the settings say.
    void snapshot();
    /// After a change of canvas: a series belongs to its canvas, the button to the window.
    void showSeries();

    /// Whether the camera's source has been asked to record; false without that source.
    [[nodiscard]] bool recording() const;
    void startRecording();
    /// Nothing happens while no recording runs.
    void stopRecording();
    /// Stops as the user would and tells him why, once a recording.
    void recordingFailed(const QString &sentence);

private:
    /// Whether a folder is chosen and, as far as it answers, there.
    [[nodiscard]] static bool isThere(const QString &path);
    void askForFolder();
    void showRecording(bool on);

    CanvasDeck *m_deck;
    const CommandButtons *m_buttons;
    QWidget *m_window;
    LiveSource *m_source = nullptr;
    ImageButton *m_liveRecordButton = nullptr;
    RecordingSign *m_recordingSign = nullptr;
    /// Whether the user knows that the latest recording failed, which may be after its end.
    bool m_failureTold = true;
};
