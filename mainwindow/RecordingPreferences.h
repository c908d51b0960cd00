#pragma once

#include <QString>

class LiveRecording;
struct MicrophoneChoice;
enum class MovieQuality;

/// What the user has chosen for recordings on their page, remembered from one start of the program
/// to the next. GUI thread.
namespace RecordingPreferences
{

/// Has recordings be made as was chosen last.
void restore(LiveRecording &recording);

/// Has recordings hear that microphone, and remembers it with its name.
void chooseMicrophone(LiveRecording &recording, const MicrophoneChoice &choice,
                      const QString &name);
/// The name of the chosen microphone, also while it is not there.
[[nodiscard]] QString microphoneName();

void chooseQuality(LiveRecording &recording, MovieQuality quality);

/// In seconds; 0 for none.
constexpr int LONGEST_TIME_LAPSE = 3600;
void chooseTimeLapse(LiveRecording &recording, int seconds);

/// A choice as a text, and back; empty for the camera's own.
[[nodiscard]] QString toText(const MicrophoneChoice &choice);
[[nodiscard]] MicrophoneChoice toChoice(const QString &text);

} // namespace RecordingPreferences
