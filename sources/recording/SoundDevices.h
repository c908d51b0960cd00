#pragma once

#include "sources/gst/GstPointers.h"
#include "sources/recording/SoundCapture.h"

#include <mutex>
#include <vector>

/// The sound sources of the sound server. One list for the process.
///
/// The library's own GstDeviceMonitor asks a sound server that it cannot watch by a second way,
/// which leaks three descriptors each time the server is not there. Here the servers are
/// watched or left alone by the same objects every time, so that one may look as often as one
/// likes.
class SoundDevices
{
public:
    /// Calls GstRuntime::initialise(). Any thread; never destroyed, as a thread that waits for a
    /// sound server may still use it at the end of the program.
    static SoundDevices &instance();

    /// To be held by the thread that calls the functions below. That thread may wait for a sound
    /// server without end, so take it with try_lock().
    std::mutex &mutex() { return m_mutex; }

    /// Asks the sound servers again and watches them from then on; null when there is no such
    /// microphone, and then nothing is watched unless none is wanted.
    [[nodiscard]] GstPtr<GstDevice> find(const MicrophoneChoice &choice);
    /// Whether any sound server answered the last look.
    [[nodiscard]] bool serverAnswered() const { return m_serverAnswered; }
    /// Whether that microphone has been taken away since the last call.
    [[nodiscard]] bool removed(const MicrophoneChoice &choice);
    /// Stops watching.
    void rest();

    /// The microphones as they were seen last, of one sound server. Any thread, at any time.
    [[nodiscard]] static std::vector<SoundSource> sources();

private:
    struct Provider {
        GstPtr<GstDeviceProvider> object;
        bool started = false;
        /// Its microphones are those that sources() tells of.
        bool lists = false;
    };

    SoundDevices();

    /// Guards the two members below.
    std::mutex m_mutex;
    std::vector<Provider> m_providers;
    bool m_serverAnswered = false;
};
