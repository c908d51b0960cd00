#pragma once

#include <QString>

class CanvasDeck;
class CommandButtons;
class ImageButton;
class LiveSource;
class RecordingSign;
class RecordingStatus;
class QWidget;

/// Takes snapshots and recordings with the folders and modes of the settings, and keeps the buttons
/// that show them. GUI thread.
class CaptureActions
{
public:
    /// Message boxes stand over `window`.
    CaptureActions(CanvasDeck *deck, const CommandButtons *buttons, QWidget *window);

    /// While it is null, nothing can be recorded.
    void setSource(LiveSource *source);

    /// The second record button, beside the panel's.
    void setLiveRecordButton(ImageButton *button);
    /// Sets what shows in every mode that a recording runs, and how it is doing; the latter may be
    /// null.
    void setRecordingSigns(RecordingSign *sign, RecordingStatus *status);

    /// One picture, or the start or end of a series, as the settings say.
    void snapshot();
    /// To be called when the canvas changes: a series belongs to its canvas, but the button to the
    /// window.
    void showSeries();

    /// Whether the camera's source has been asked to record; false without that source.
    [[nodiscard]] bool recording() const;
    void startRecording();
    /// Stops the recording; does nothing while none runs.
    void stopRecording();
    /// Pauses the recording or has it go on; nothing without one.
    void togglePause();
    /// Stops as the user would and tells the user why, once for each recording.
    void recordingFailed(const QString &sentence);

private:
    /// Whether a folder is chosen and, as far as it answers, there.
    [[nodiscard]] static bool isThere(const QString &path);
    void askForFolder();
    void showRecording(bool on);
    void showPause(bool paused);

    CanvasDeck *m_deck;
    const CommandButtons *m_buttons;
    QWidget *m_window;
    LiveSource *m_source = nullptr;
    ImageButton *m_liveRecordButton = nullptr;
    RecordingSign *m_recordingSign = nullptr;
    RecordingStatus *m_recordingStatus = nullptr;
    /// Whether the user knows that the latest recording failed, which may be after its end.
    bool m_failureTold = true;
};
