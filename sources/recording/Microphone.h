#pragma once

#include <QString>

#include <cstdint>

/// The USB ids of the camera whose own microphone is wanted.
struct MicrophoneId {
    std::uint16_t vendor = 0;
    std::uint16_t product = 0;

    friend bool operator==(MicrophoneId one, MicrophoneId other)
    {
        return one.vendor == other.vendor && one.product == other.product;
    }
};

/// Which microphone a recording hears: the camera's own, a source of the sound server, or none.
struct MicrophoneChoice {
    enum class Kind { OfCamera, Source, None };

    MicrophoneChoice() = default;
    /// The camera's own.
    MicrophoneChoice(MicrophoneId ofCamera)
        : camera(ofCamera)
    {
    }
    [[nodiscard]] static MicrophoneChoice ofSource(const QString &id)
    {
        MicrophoneChoice choice;
        choice.kind = Kind::Source;
        choice.source = id;
        return choice;
    }
    [[nodiscard]] static MicrophoneChoice none()
    {
        MicrophoneChoice choice;
        choice.kind = Kind::None;
        return choice;
    }

    Kind kind = Kind::OfCamera;
    MicrophoneId camera;
    /// SoundSource::id.
    QString source;

    friend bool operator==(const MicrophoneChoice &one, const MicrophoneChoice &other)
    {
        return one.kind == other.kind && one.camera == other.camera && one.source == other.source;
    }
};

/// A microphone that the sound server offers.
struct SoundSource {
    /// Stays the same when it is plugged in again.
    QString id;
    /// For the user.
    QString name;

    friend bool operator==(const SoundSource &one, const SoundSource &other)
    {
        return one.id == other.id && one.name == other.name;
    }
};
