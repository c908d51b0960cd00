#pragma once

#include "sources/LiveSource.h"
#include "tests/fakes/RecordingSink.h"
#include "tools/virtualcamera/VirtualCamera.h"

#include <QtTest>

#include <QStringList>

#include <memory>
#include <mutex>

/// Collects what is said with qDebug() and the like, from any thread.
class MessageLog
{
public:
    MessageLog()
    {
        lines().clear();
        s_previous = qInstallMessageHandler(&MessageLog::take);
    }
    ~MessageLog() { qInstallMessageHandler(s_previous); }
    MessageLog(const MessageLog &) = delete;
    MessageLog &operator=(const MessageLog &) = delete;

    int count(const QString &text) const
    {
        const std::lock_guard lock(mutex());
        return lines().count(text);
    }

private:
    static void take(QtMsgType, const QMessageLogContext &, const QString &text)
    {
        const std::lock_guard lock(mutex());
        lines().append(text);
    }
    static std::mutex &mutex()
    {
        static std::mutex mutex;
        return mutex;
    }
    static QStringList &lines()
    {
        static QStringList lines;
        return lines;
    }
    static inline QtMessageHandler s_previous = nullptr;
};

/// The emulated camera of this process. The environment chooses the transport, so that every test
/// runs over both.
inline VirtualCameraConfig rigCamera()
{
    VirtualCameraConfig config;
    if (qgetenv("CAMERA_TRANSPORT") == "isochronous")
        config.transport = VirtualCameraConfig::Transport::Isochronous;
    return config;
}

/// The variable of the environment that makes pull() a dirty one.
inline const QString DIRTY = QStringLiteral("CAMERA_LEAVES_DIRTY=1");

/// Pulls the camera out in the way that the environment chooses.
inline void pull(VirtualCamera &camera)
{
    if (qEnvironmentVariableIsSet("CAMERA_LEAVES_DIRTY"))
        camera.unplugDirty();
    else
        camera.unplug();
}

/// A live source with something to give its frames to.
struct LiveRig {
    static constexpr QSize PREVIEW{1024, 768};
    static constexpr QSize RECORDING{1280, 720};
    /// Far more than anything takes, as the machine may stand still for half a minute.
    static constexpr int TIMEOUT_MS = 90000;

    RecordingSink sink;
    std::unique_ptr<LiveSource> source =
        std::make_unique<LiveSource>(&sink, PREVIEW, RECORDING, nullptr);

    bool waitUntilRunning()
    {
        return QTest::qWaitFor([this] { return source->running(); }, TIMEOUT_MS);
    }

    /// Makes a call again until it gives `expected`: what comes too late for the call is given by a
    /// later one. In the pauses the source gains back what it may wait.
    template <typename Call>
    [[nodiscard]] static bool gives(Call call, int expected)
    {
        return QTest::qWaitFor(
            [&] {
                const bool given = call() == expected;
                if (!given)
                    QTest::qWait(300);
                return given;
            },
            TIMEOUT_MS);
    }

    bool waitForFrames(int more = 3)
    {
        const int wanted = sink.count() + more;
        return QTest::qWaitFor([this, wanted] { return sink.count() >= wanted; }, TIMEOUT_MS);
    }

    bool waitForSize(QSize size)
    {
        return QTest::qWaitFor([this, size] { return sink.size() == size; }, TIMEOUT_MS);
    }

    /// Plugged in, opened and streaming.
    bool bringUp(VirtualCamera &camera)
    {
        return camera.plug() && waitUntilRunning() && waitForFrames();
    }
};

/// That no frame comes for as long as several would have.
inline bool staysWithoutFrames(const RecordingSink &sink, int milliseconds = 400)
{
    const int before = sink.count();
    return !QTest::qWaitFor([&sink, before] { return sink.count() != before; }, milliseconds);
}
