#pragma once

#include <QString>
#include <QtGlobal>

#include <atomic>
#include <thread>

/// Speaks into the emulated microphone in real time: silence with a clap of five milliseconds at
/// every whole period.
class MicrophoneFeed
{
public:
    /// Sample 0 is spoken at `startUs` of captureMicroseconds(); the microphone's own clock runs
    /// fast by `partsPerMillion`. The first clap comes after one period.
    /// With `silentUs` it hands over nothing for so long after `startUs`, and then at once all that
    /// it has heard meanwhile.
    /// With `unreadUs` it loses the oldest when more than that has not been read, as the memory of
    /// a real one is small; else a server that stood still once is late for good.
    MicrophoneFeed(const QString &pipe, qint64 startUs, qint64 periodUs, int partsPerMillion,
                   qint64 silentUs = 0, qint64 unreadUs = 0);
    ~MicrophoneFeed();
    MicrophoneFeed(const MicrophoneFeed &) = delete;
    MicrophoneFeed &operator=(const MicrophoneFeed &) = delete;

private:
    void run();
    void loseOldest() const;

    const int m_pipe;
    const qint64 m_startUs;
    const qint64 m_periodUs;
    const double m_rate;
    const qint64 m_silentUs;
    /// 0 for as many as the pipe holds.
    const int m_unreadSamples;
    std::atomic<bool> m_stopping{false};
    std::thread m_thread;
};
