#pragma once

#include <QString>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

/// A piece of sound: one channel, 44100 samples a second, signed 16 bit.
struct SoundBuffer {
    /// Valid during the call that hands the buffer over.
    const std::int16_t *samples = nullptr;
    int count = 0;
    /// When the first sample was captured, in microseconds of captureMicroseconds(), right to
    /// about 10 ms.
    qint64 presentationUs = 0;
};

/// The USB ids of the camera whose own microphone is wanted.
struct MicrophoneId {
    std::uint16_t vendor = 0;
    std::uint16_t product = 0;
};

/// The sound of a recording: the camera's own microphone, or silence in its place.
///
/// Sound comes in real time from start() to stop(), whatever happens. Where there is no camera
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
    create(MicrophoneId microphone,
           std::chrono::milliseconds searchInterval = std::chrono::seconds(2));
    virtual ~SoundCapture() = default;

    /// Returns at once; the microphone is looked for meanwhile.
    virtual void start(Handler handler) = 0;
    /// Returns when no call of the handler is under way any more and none will come. Never waits
    /// for a sound server that does not answer. Must not be called under a lock that the handler
    /// takes.
    virtual void stop() = 0;

    /// Whether a sound source with these properties is that microphone: USB ids in hexadecimal with
    /// or without "0x", and a class that is not "monitor".
    static bool isCameraMicrophone(MicrophoneId microphone, const QString &vendorId,
                                   const QString &productId, const QString &deviceClass);
};
