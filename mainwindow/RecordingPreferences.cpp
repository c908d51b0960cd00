#include "mainwindow/RecordingPreferences.h"

#include "settings/Preferences.h"
#include "sources/LiveRecording.h"

namespace
{

const QString MICROPHONE = QStringLiteral("microphone");
const QString MICROPHONE_NAME = QStringLiteral("microphoneName");
const QString NO_MICROPHONE = QStringLiteral("none");
const QString QUALITY = QStringLiteral("movieQuality");
const QString TIME_LAPSE = QStringLiteral("timeLapse");
const QString SOURCE = QStringLiteral("source ");

} // namespace

void RecordingPreferences::restore(LiveRecording &recording)
{
    recording.setMicrophone(toChoice(Preferences::text(MICROPHONE)));
    recording.setQuality(MovieQuality(Preferences::number(QUALITY, 0, 0, 1)));
    recording.setTimeLapse(
        std::chrono::seconds(Preferences::number(TIME_LAPSE, 0, 0, LONGEST_TIME_LAPSE)));
}

void RecordingPreferences::chooseMicrophone(LiveRecording &recording,
                                            const MicrophoneChoice &choice, const QString &name)
{
    Preferences::setText(MICROPHONE, toText(choice));
    Preferences::setText(MICROPHONE_NAME,
                         choice.kind == MicrophoneChoice::Kind::Source ? name : QString());
    recording.setMicrophone(choice);
}

void RecordingPreferences::chooseQuality(LiveRecording &recording, MovieQuality quality)
{
    if (quality != recording.quality())
        Preferences::setNumber(QUALITY, static_cast<int>(quality));
    recording.setQuality(quality);
}

void RecordingPreferences::chooseTimeLapse(LiveRecording &recording, int seconds)
{
    if (seconds != recording.timeLapse().count())
        Preferences::setNumber(TIME_LAPSE, seconds);
    recording.setTimeLapse(std::chrono::seconds(seconds));
}

QString RecordingPreferences::microphoneName()
{
    return Preferences::text(MICROPHONE_NAME);
}

QString RecordingPreferences::toText(const MicrophoneChoice &choice)
{
    switch (choice.kind) {
    case MicrophoneChoice::Kind::Source:
        return SOURCE + choice.source;
    case MicrophoneChoice::Kind::None:
        return NO_MICROPHONE;
    case MicrophoneChoice::Kind::OfCamera:
        break;
    }
    return {};
}

MicrophoneChoice RecordingPreferences::toChoice(const QString &text)
{
    if (text == NO_MICROPHONE)
        return MicrophoneChoice::none();
    if (text.startsWith(SOURCE))
        return MicrophoneChoice::ofSource(text.mid(SOURCE.size()));
    return {};
}
