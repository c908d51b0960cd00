#pragma once

#include "sources/recording/SoundCapture.h"

#include <QProcess>
#include <QString>
#include <QStringList>

/// A sound server of its own with the emulated microphone of the camera, whose samples come from a
/// pipe: one channel, 44100 samples a second, signed 16 bit.
class SoundServer
{
public:
    /// The camera's microphone, and its properties as a source of the server.
    static constexpr MicrophoneId CAMERA_ID{0x04FC, 0x6330};
    static constexpr char CAMERA[] =
        "device.description=CameraMic device.vendor.id=04fc device.product.id=6330 device.bus=usb";

    enum class Kind {
        PulseAudio,
        PipeWire ///< with its session manager and the service that speaks PulseAudio's protocol
    };

    /// The server's files lie in `folder`.
    explicit SoundServer(const QString &folder, Kind kind = Kind::PulseAudio);
    ~SoundServer();

    /// Starts it with a microphone of these properties, without one if they are empty, and points
    /// this process and its children to it. False when it does not come up.
    bool start(const QString &microphoneProperties = QString::fromLatin1(CAMERA));
    /// Loads the microphone into a running server, or takes it away.
    bool plugMicrophone(const QString &properties = QString::fromLatin1(CAMERA));
    bool unplugMicrophone();
    /// Another microphone beside it, with a pipe of its own.
    bool plugOther(const QString &name, int rate = 44100, int channels = 1);
    /// Another name for the camera's microphone, which needs fewer descriptors of the server.
    bool plugCopy(const QString &name);
    bool unplugOthers();
    QString otherPipe(const QString &name) const { return m_folder + '/' + name; }
    /// Kills it, as a crash does.
    void kill();
    /// Halts it where it stands, or lets it go on.
    void freeze(bool frozen);
    /// Points this process to a server that is not there.
    void pretendAbsent();

    QString pipe() const { return m_folder + QStringLiteral("/microphone"); }

private:
    [[nodiscard]] QString socket() const;
    void startPulseAudio();
    bool startPipeWire();
    bool control(const QStringList &arguments);

    QString m_folder;
    Kind m_kind;
    /// What speaks with the clients.
    QProcess m_server;
    /// What stands behind it.
    QProcess m_graph;
    QProcess m_manager;
    /// The numbers of their modules.
    QStringList m_others;
};
