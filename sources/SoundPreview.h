#pragma once

#include "sources/recording/Microphone.h"
#include "sources/recording/SoundMeter.h"

#include <QString>

#include <memory>

class LiveSource;
class SoundCapture;

/// What a recording hears, or would hear: listens to the chosen microphone itself while no
/// recording does. GUI thread; never waits for a sound server.
class SoundPreview
{
public:
    /// The source outlives it.
    explicit SoundPreview(LiveSource &source);
    ~SoundPreview();
    SoundPreview(const SoundPreview &) = delete;
    SoundPreview &operator=(const SoundPreview &) = delete;

    /// To be called again and again while somebody looks: begins to listen, follows the choice, and
    /// leaves the microphone to a recording.
    void listen();
    /// Lets go of the microphone.
    void rest();
    [[nodiscard]] bool listening() const { return m_capture != nullptr; }

    /// Empty while there is nothing to hear.
    [[nodiscard]] QString heard() const;
    [[nodiscard]] SoundMeter::Level level() const;

private:
    LiveSource &m_source;
    MicrophoneChoice m_choice;
    std::unique_ptr<SoundCapture> m_capture;
    /// Shared with a capture that is still ending.
    std::shared_ptr<SoundMeter> m_meter;
};
