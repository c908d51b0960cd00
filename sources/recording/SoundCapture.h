#pragma once

#include "sources/recording/Microphone.h"

#include <QString>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

/// A piece of sound: one channel, 44100 samples a second, signed 16 bit.
struct SoundBuffer {
    /// Valid during the call that hands the buffer over.
    const std::int16_t *samples = nullptr;
    int count = 0;
    /// When the first sample was captured, in microseconds of captureMicroseconds(), right to
    /// about 10 ms.
    qint64 presentationUs = 0;
};

/// The sound of a recording: that of the chosen microphone, or silence in its place.
///
/// Sound comes in real time from start() to stop(), whatever happens. Where there is no such
/// microphone or no sound server, and from the moment that either is lost, the buffers hold
/// silence and a debug line says so; a microphone that comes back is used again. Presentation
/// times never go back. Owned by the recorder; start() and stop() belong to one thread.
class SoundCapture
{
public:
    static constexpr int SAMPLE_RATE = 44100;

    /// Called on the thread "LiveQueue", one buffer after the other, each soon after its capture.
    using Handler = std::function<void(const SoundBuffer &)>;

    /// `searchInterval`: how often the microphone is looked for while there is none.
    static std::unique_ptr<SoundCapture>
    create(const MicrophoneChoice &microphone,
           std::chrono::milliseconds searchInterval = std::chrono::seconds(2));
    virtual ~SoundCapture() = default;

    /// Returns at once; the microphone is looked for meanwhile.
    virtual void start(Handler handler) = 0;
    /// Returns when no call of the handler is under way any more and none will come. The microphone
    /// is let go of meanwhile; only the end of the program waits for that. Must not be called under
    /// a lock that the handler takes.
    virtual void stop() = 0;

    /// Listens to that microphone from now on. Belongs to the thread of start() and stop(), as
    /// heard() does.
    virtual void choose(const MicrophoneChoice &microphone) = 0;
    /// The name of the microphone that is being listened to; empty while it is silence.
    [[nodiscard]] virtual QString heard() const = 0;

    /// The microphones that there were when the sound server was looked at last, which each
    /// capture does. Any thread.
    [[nodiscard]] static std::vector<SoundSource> sources();

    /// Whether a sound source with these properties is that microphone: USB ids in hexadecimal with
    /// or without "0x", and a class that is not "monitor".
    static bool isCameraMicrophone(MicrophoneId microphone, const QString &vendorId,
                                   const QString &productId, const QString &deviceClass);
};
