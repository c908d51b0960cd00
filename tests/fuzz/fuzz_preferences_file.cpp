// The file of what is kept beside the settings, which anything may have been written into: cameras,
// their controls and microphones are read from its texts and written as they were read.

#include "mainwindow/KeptControls.h"
#include "mainwindow/RecordingPreferences.h"
#include "settings/Preferences.h"
#include "sources/LiveRecording.h"
#include "sources/camera/CameraIdentity.h"
#include "sources/camera/CameraName.h"
#include "tests/fuzz/FuzzedStore.h"

// The name and the parameters are the fuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace
{

void require(bool holds)
{
    if (!holds)
        std::abort();
}

void readCamera()
{
    const auto identity = CameraIdentity::fromText(Preferences::text("cameraChosen"));
    if (identity)
        require(CameraIdentity::fromText(identity->text()) == identity);
    require(shownCameraName(Preferences::text("cameraName")).toUcs4().size() <= 60);
    require(Preferences::number("cameraMirrored", 0, 0, 3) <= 3);
    require(Preferences::number("cameraWidth", 0, 0, 65535) >= 0);
    const auto kept = KeptControls::fromText(Preferences::text("cameraControls/1234%3A5678"));
    require(KeptControls::fromText(kept.text()).values() == kept.values());
}

void readRecordings()
{
    LiveRecording recording([] { return false; });
    RecordingPreferences::restore(recording);
    const auto seconds = recording.timeLapse().count();
    require(seconds >= 0 && seconds <= RecordingPreferences::LONGEST_TIME_LAPSE);
    require(recording.quality() == MovieQuality::Standard ||
            recording.quality() == MovieQuality::Small);
    const MicrophoneChoice &microphone = recording.microphone();
    require(RecordingPreferences::toChoice(RecordingPreferences::toText(microphone)) == microphone);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static FuzzedStore store;
    store.write(data, size, [] { return Preferences::fileName(); });
    readCamera();
    readRecordings();
    return 0;
}
